// Opening a pattern: which file, which reader, what a load sets; and files of real instruments.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "patternfiles/patternfiles.h"
#include "support/support.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
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
  ws.recentfiles(2) = Make("a b.c d.Xy", xy);
  ws.smoothwindow = 11;
  ws.headerskip = 0;
  ws.npeaks = 3;
  ws.plotmask = 1;
  OpenPattern(2);
  EXPECT_TRUE(Events().empty());
  EXPECT_EQ(ws.patternpath, ws.recentfiles(2));
  EXPECT_EQ(ws.patternstem, "a b");
  EXPECT_EQ(ws.sampleid, "a b");
  EXPECT_EQ(ws.viewmode, 1);
  EXPECT_EQ(ws.recentpending, 1);
  EXPECT_EQ(ws.smoothwindow, 3);
  EXPECT_EQ(ws.npeaks, 0);
  EXPECT_EQ(ws.fullstart, 5);
  EXPECT_EQ(ws.crystend, ws.xval(AxisTth, 1, 3));
  EXPECT_EQ(WMenuGetState(MenuPlotInput, MenuChecked), 1);
  EXPECT_NEAR(ws.xval(AxisD, 1, 1), 1.54056 / 2 / std::sin(2.5 * std::acos(-1) / 180), 1e-4);
  for (const char* name : {"a.xyz", "noextension", "b.xy."}) {
    ws.patternpath = Make(name, xy);
    OpenPattern(5);
    EXPECT_EQ(Events(), std::vector<std::string>{"box\tError\tUnrecognized file type"}) << name;
    EXPECT_EQ(ws.viewmode, 1);
  }
}

TEST_F(Open, ByMenuTheFormatIsThatOfTheEntry) {
  const std::string path =
      Make("wrong.txt", "_pd_meas_2theta_range_inc 1.0\n  _pd_meas_intensity_total\n\n1\n2\n3\n");
  ws.filetype = 5;
  ws.viewmode = ws.plotmask = 1;
  ws.debugmode = 1;
  ws.gdfhead(3) = "earlier";
  Answer("file " + path);
  OpenPattern(0);
  EXPECT_EQ(Events(), (std::vector<std::string>{"select\tOpen pattern file\t|*.cif|\t*.cif",
                                                "box\tProgress\t" + path}));
  EXPECT_EQ(ws.npts(1), 3);
  EXPECT_EQ(ws.gdfhead(3), "");
}

// Without a pattern the program stays empty, whatever the command has asked for.
TEST_F(Open, FailuresBeforeAndAfterTheFirstPattern) {
  const std::string good = Make("good.xy", "1 2\n3 4\n"), bad = Make("bad.xy", "");
  for (int loaded : {0, 1}) {
    for (int filetype : {1, 99}) {
      ws.viewmode = ws.plotmask = 1;
      ws.filetype = filetype;
      if (filetype == 1) Answer("file");
      OpenPattern(0);
      EXPECT_EQ(ws.plotmask, 0);
      EXPECT_EQ(ws.viewmode, loaded);
    }
    ws.viewmode = ws.plotmask = 1;
    ws.patternpath = bad;
    OpenPattern(5);
    EXPECT_EQ(ws.plotmask, 1);
    EXPECT_EQ(ws.viewmode, loaded);
    ws.patternpath = good;
    OpenPattern(5);
    EXPECT_EQ(ws.viewmode, 1);
  }
}

// ---- Files of real instruments ----------------------------------------------------------------

struct ManifestRow {
  std::string file;
  std::uintmax_t bytes;
  int points;
  float first, last, max;
};

std::vector<std::string> SplitCsv(const std::string& line) {
  std::vector<std::string> cells(1);
  bool quoted = false;
  for (char c : line) {
    if (c == '"')
      quoted = !quoted;
    else if (c == ',' && !quoted)
      cells.emplace_back();
    else
      cells.back() += c;
  }
  return cells;
}

std::vector<ManifestRow> Manifest(const std::string& directory) {
  std::vector<ManifestRow> rows;
  std::ifstream in(directory + "MANIFEST.csv");
  std::string line;
  std::getline(in, line);  // headings
  while (std::getline(in, line)) {
    const auto cell = SplitCsv(line);
    rows.push_back({cell[0], std::stoull(cell[2]), std::stoi(cell[4]), std::stof(cell[6]),
                    std::stof(cell[7]), std::stof(cell[11])});
  }
  return rows;
}

// Files that do not open, with the message, and those whose points differ from their manifest.
constexpr std::pair<const char*, const char*> kRefused[] = {
    {".xye", "Unrecognized file type"},                  // not one of the nine
    {"cif/alumina.cif", "Error reading cif1"},           // the data key stands further in
    {"cif/cod_counts.cif", "Error reading cif1"},        // counts under another key
    {"cif/zn_mof.cif", "Error reading cif1"},            // the data key stands at the line's start
    {"clean/ceo2_area", "Nothing read from xy file"},    // headings that are no numbers
    {"xy/csv_heading.xy", "Nothing read from xy file"},  // the same
    {"xy/hash_header.xy", "Nothing read from xy file"},  // the same
    {"uxd/bt86_counts", "Error reading uxd file"},       // counts alone
    {"uxd/rates_16", "Error reading uxd file"},          // rates
    {"xrdml/powder_c", "Nothing read from xrdml file"},  // counts under another tag
};
constexpr const char* kDifferent[] = {
    "chi/",                  // zeros at the end are cut
    "uxd/reflectivity.uxd",  // the same
    "udf/mini.udf",          // the same
    "dat/pbso4_xray.dat",    // the header is not in fields of eight columns
    "dat/tbbaco.dat",        // the same, and eight values a line
    "xrdml/polefig",         // many scans, without a range of two-theta
};

TEST_F(Open, RealFiles) {
  const std::string directory = std::string(QUILLAGRAM_SOURCE) + "/../shared/data/patterns/";
  const std::vector<ManifestRow> rows = Manifest(directory);
  if (rows.empty()) GTEST_SKIP() << "no files of real instruments here";
  for (const ManifestRow& row : rows) {
    SCOPED_TRACE(row.file);
    // A file that is not the one described says nothing about the reader.
    if (std::filesystem::file_size(directory + row.file) != row.bytes) continue;
    const auto names = [&](const char* part) { return row.file.find(part) != std::string::npos; };
    SetUp();
    ws.patternpath = directory + row.file;
    OpenPattern(5);
    const int n = ws.npts(1);
    const auto counts = ws.yval.row(1).first(n);
    const auto* refused = std::ranges::find_if(kRefused, names, [](auto& r) { return r.first; });
    if (refused != std::end(kRefused)) {
      const auto events = Events();
      ASSERT_EQ(events.size(), 1u);
      EXPECT_TRUE(events[0].ends_with(refused->second)) << events[0];
      EXPECT_EQ(n, 0);
    } else if (std::ranges::any_of(kDifferent, names)) {
      EXPECT_GT(n, 30);
    } else {
      ASSERT_EQ(n, row.points);
      EXPECT_NEAR(ws.xval(AxisTth, 1, 1), row.first, 1e-5);
      EXPECT_NEAR(ws.xval(AxisTth, 1, n), row.last, 3e-4);
      EXPECT_NEAR(std::ranges::max(counts), row.max, 1e-6 * row.max);
    }
  }
}

}  // namespace
