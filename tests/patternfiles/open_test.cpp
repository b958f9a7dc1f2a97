// Opening a pattern: which file, which reader, what a load sets; and files of real instruments.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

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
  ws.npeaks = 3;
  ws.plotmask = 1;
  OpenPattern(2);
  EXPECT_TRUE(Events().empty());
  EXPECT_EQ(ws.patternpath, ws.recentfiles(2));
  EXPECT_EQ(ws.patternstem, "a b");
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

// Files of real instruments in layouts that are refused or not read to their end: headings that are
// no numbers, other keys, counts alone, header fields beside their columns, zeros at the end.
constexpr const char* kOddFiles[] = {
    ".xye",           "cif/alumina",      "cif/cod_counts",  "cif/zn_mof",     "clean/ceo2_area",
    "xy/csv_heading", "xy/hash_header",   "uxd/bt86_counts", "uxd/rates_16",   "xrdml/powder_c",
    "chi/",           "uxd/reflectivity", "udf/mini",        "dat/pbso4_xray", "dat/tbbaco",
    "xrdml/polefig",
};

TEST_F(Open, RealFiles) {
  const std::string directory = std::string(QUILLAGRAM_SOURCE) + "/../shared/data/patterns/";
  std::ifstream manifest(directory + "MANIFEST.csv");
  if (!manifest) GTEST_SKIP() << "no files of real instruments here";
  std::string line;
  std::getline(manifest, line);  // headings
  while (std::getline(manifest, line)) {
    std::vector<std::string> cell;
    std::istringstream cells(line);
    for (std::string text; std::getline(cells, text, ',');) cell.push_back(text);
    SCOPED_TRACE(cell[0]);
    ws.patternpath = directory + cell[0];
    // A file that is not the one described says nothing about the reader.
    std::error_code missing;
    if (std::filesystem::file_size(ws.patternpath, missing) != std::stoull(cell[2])) continue;
    if (std::ranges::any_of(kOddFiles,
                            [&](auto name) { return cell[0].find(name) != cell[0].npos; }))
      continue;
    OpenPattern(5);
    const int n = ws.npts(1);
    ASSERT_EQ(n, std::stoi(cell[4]));
    EXPECT_NEAR(ws.xval(AxisTth, 1, 1), std::stof(cell[6]), 1e-5);
    EXPECT_NEAR(ws.xval(AxisTth, 1, n), std::stof(cell[7]), 3e-4);
    EXPECT_FLOAT_EQ(std::ranges::max(ws.yval.row(1).first(n)), std::stof(cell[11]));
  }
}

}  // namespace
