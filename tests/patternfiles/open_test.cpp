// Opening a pattern: which file, which reader, what a load sets; and files of real instruments.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "patternfiles/patternfiles.h"
#include "patternfiles/samples.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

class Open : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    Events();
  }
  std::string Make(const std::string& name, const std::string& text) {
    const std::string path = dir_.file(name);
    WriteFile(path, text);
    return path;
  }
  TempDir dir_;
};

TEST_F(Open, ByExtensionWhateverItsCase) {
  const std::string xy = "5 100\n5.02 120\n5.04 -90\n";
  const std::string path = Make("a b.c d.Xy", xy);
  ws.smoothwindow = 11;
  ws.npeaks = ws.nmanualbg = 3;
  ws.gdfhead(3) = "earlier";
  ws.plotmask = 1;
  EXPECT_EQ(OpenPattern(path), Outcome::Done);
  EXPECT_TRUE(Events().empty());
  EXPECT_EQ(ws.patternpath, path);
  EXPECT_EQ(ws.patternstem, "a b");
  EXPECT_EQ(ws.viewmode, 1);
  EXPECT_EQ(ws.recentpending, 1);
  EXPECT_EQ(ws.smoothwindow, 3);
  EXPECT_EQ(ws.npeaks, 0);
  EXPECT_EQ(ws.gdfhead(3), "");
  EXPECT_EQ(ws.nmanualbg, 0);  // points set by hand belong to their pattern
  EXPECT_EQ(ws.fullstart, 5);
  EXPECT_EQ(ws.crystend, ws.xval(AxisTth, 1, 3));
  EXPECT_NEAR(ws.xval(AxisD, 1, 1), 1.54056 / 2 / std::sin(2.5 * std::acos(-1) / 180), 1e-4);
  for (const char* name : {"a.xyz", "noextension", "b.xy."}) {
    EXPECT_EQ(OpenPattern(Make(name, xy)), Outcome::Failed);
    EXPECT_EQ(Events(),
              std::vector<std::string>{"box\tError\tUnrecognized file type\\n" + dir_.file(name) +
                                       ": its name ends in none of xy, " +
                                       "gdf, txt, uxd, cif, dat, xrdml, udf, chi"});
  }
}

// What no file states is an assumption, whatever an earlier file or an overlay has stated.
TEST_F(Open, TheWavelengthIsStatedOrAssumed) {
  const std::string states = "txt uxd udf cif xrdml";
  const std::string cobalt = Make("co.cif", FormatSamples()[7].text());
  for (const FormatSample& sample : FormatSamples()) {
    SCOPED_TRACE(sample.extension);
    ASSERT_EQ(OpenPattern(cobalt), Outcome::Done);
    EXPECT_EQ(OpenPattern(Make("stem." + std::string(sample.extension), sample.text())),
              Outcome::Done);
    const bool stated = states.find(sample.extension) != states.npos;
    EXPECT_EQ(ws.statedwave, stated ? sample.wave[0] : 0);
    EXPECT_EQ(ws.axiswave, sample.wave[0]);
    ReadAs("cif", SlotOverlay, cobalt);
    EXPECT_EQ(ws.statedwave, stated ? sample.wave[0] : 0);
  }
  EXPECT_EQ(OpenPattern(Make("a.uxd", "_2THETACOUNTS\n 5 1\n 6 2\n")), Outcome::Done);
  EXPECT_EQ(ws.statedwave, 0);
}

// Files of real instruments in layouts that are refused or not read as their instrument meant them.
struct OddFile {
  const char* name;  // or a part of it
  const char* box;   // of a file that is refused
  int points = 0;
  float first = 0, last = 0;  // two-theta
  float highest = 0;          // intensity
};
constexpr OddFile kOddFiles[] = {
    {".xye", "Error\tUnrecognized file type"},
    // A bracketed uncertainty, six blanks in front of the last key; or other keys.
    {"cif/alumina", "File Error\tError reading cif1"},
    {"cif/cod_counts", "File Error\tError reading cif1"},
    {"cif/zn_mof", "File Error\tError reading cif1"},
    // Counts or rates under other keys.
    {"uxd/bt86_counts", "File Error\tError reading uxd file"},
    {"uxd/rates_16", "File Error\tError reading uxd file"},
    {"xrdml/powder_c", "File Error\tNothing read from xrdml file"},
    // Headings with an "e" in them end the data.
    {"clean/ceo2_area", "File error\tNothing read from xy file"},
    {"xy/csv_heading", "File error\tNothing read from xy file"},
    {"xy/hash_header", "File error\tNothing read from xy file"},
    // Zeros at the end are dropped, and so is a count with a slash behind it.
    {"chi/fe7c3", nullptr, 1076, 0.010420958f, 22.41548f},
    {"chi/lab6", nullptr, 1076, 0.010421041f, 22.415661f},
    {"uxd/reflectivity", nullptr, 418, 0, 2.085f},
    {"udf/mini", nullptr, 32, 5, 5.62f},
    // The step's field holds ".025 1" and "00.0"; of ten fields a line only eight are filled.
    {"dat/pbso4_xray", nullptr, 6001, 10, 160.6f},
    {"dat/tbbaco", nullptr, 656 * 10 + 5, 15, 15},
    // The axis that moves is no two-theta; the last of 30 scans stands.
    {"xrdml/polefig", nullptr, 120, 0, 0, 8278},
};

TEST_F(Open, RealFiles) {
  const std::string directory = std::string(QUILLAGRAM_SOURCE) + "/../shared/data/patterns/";
  std::ifstream manifest(directory + "MANIFEST.csv");
  if (!manifest) GTEST_SKIP() << "no files of real instruments here";
  std::string line;
  std::getline(manifest, line);  // headings
  int read = 0, refused = 0;
  while (std::getline(manifest, line)) {
    std::vector<std::string> cell;
    std::istringstream cells(line);
    for (std::string text; std::getline(cells, text, ',');) cell.push_back(text);
    SCOPED_TRACE(cell[0]);
    const std::string path = directory + cell[0];
    // A file that is not the one described says nothing about the reader.
    std::error_code missing;
    if (std::filesystem::file_size(path, missing) != std::stoull(cell[2])) continue;
    const float highest = std::stof(cell[11]);
    OddFile expected{"", nullptr, std::stoi(cell[4]), std::stof(cell[6]), std::stof(cell[7])};
    for (const OddFile& odd : kOddFiles)
      if (cell[0].find(odd.name) != cell[0].npos) expected = odd;
    OpenPattern(path);
    const std::vector<std::string> events = Events();
    if (expected.box) {
      ++refused;
      ASSERT_EQ(events.size(), 1u);
      EXPECT_TRUE(events[0].starts_with(std::string("box\t") + expected.box)) << events[0];
      continue;
    }
    ++read;
    const int n = ws.npts(1);
    ASSERT_EQ(n, expected.points);
    EXPECT_NEAR(ws.xval(AxisTth, 1, 1), expected.first, 1e-5);
    EXPECT_NEAR(ws.xval(AxisTth, 1, n), expected.last, 3e-4);
    EXPECT_FLOAT_EQ(std::ranges::max(ws.yval.row(1).first(n)),
                    expected.highest > 0 ? expected.highest : highest);
  }
  // Some of the 34 and the 17 may be missing, but not most.
  EXPECT_GT(read, 25);
  EXPECT_GT(refused, 12);
}

}  // namespace
