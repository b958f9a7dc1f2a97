// Opening a pattern: which file, which reader, what a load sets; and files of real instruments.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "patternfiles/patternfiles.h"
#include "plot/plot.h"
#include "shell/shell.h"
#include "support/support.h"
#include "toolkit/displaylist.h"
#include "workspace/menuids.h"
#include "workspace/snapshot.h"
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
  ws.npeaks = 3;
  ws.plotmask = 1;
  EXPECT_EQ(OpenPattern(path), Outcome::Done);
  EXPECT_TRUE(Events().empty());
  EXPECT_EQ(ws.patternpath, path);
  EXPECT_EQ(ws.patternstem, "a b");
  EXPECT_EQ(ws.viewmode, 1);
  EXPECT_EQ(ws.recentpending, 1);
  EXPECT_EQ(ws.smoothwindow, 3);
  EXPECT_EQ(ws.npeaks, 0);
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

TEST_F(Open, ByMenuTheFormatIsThatOfTheEntry) {
  const std::string path =
      Make("wrong.txt", "_pd_meas_2theta_range_inc 1.0\n  _pd_meas_intensity_total\n\n1\n2\n3\n");
  ws.debugmode = 1;
  ws.gdfhead(3) = "earlier";
  RunMenu(40013, "file " + path);
  EXPECT_EQ(Events(), (std::vector<std::string>{"select\tOpen pattern file\t|*.cif|\t*.cif",
                                                "box\tProgress\t" + path}));
  EXPECT_EQ(ws.npts(1), 3);
  EXPECT_EQ(ws.gdfhead(3), "");
}

// What is on show when an open fails or is cancelled stays: nothing, or the pattern of before with
// all that belongs to it.
TEST_F(Open, FailuresBeforeAndAfterTheFirstPattern) {
  std::string text;
  for (int i = 0; i < 100; ++i) text += std::to_string(i) + " 7\n";
  const std::string good = Make("good.xy", text), bad = Make("bad.xy", "");
  const std::string broken = Make("broken.gdf", "1\n2\n3\n");
  const auto state = [] {
    return std::tuple(TakeSnapshot(), ws.recentfiles, WMenuGetState(MenuPopupModify, MenuEnabled),
                      WMenuGetState(MenuSavePattern, MenuEnabled), ScreenList().points);
  };
  for (int loaded : {0, 1}) {
    if (loaded) OpenFile(good);
    ws.viewxmin = 20;  // a zoom
    ws.viewxmax = 40;
    ws.manualbg(1, 1) = ws.nmanualbg = loaded;
    DrawView();
    const auto before = state();
    const Snapshot& snapshot = std::get<0>(before);
    const auto same = [&] {
      auto now = state();
      std::get<0>(now) = TakeSnapshot(&snapshot);
      return now == before;
    };
    OpenFile(bad);
    EXPECT_TRUE(same());
    OpenFile(dir_.file("none.xy"));
    EXPECT_TRUE(same());
    OpenFile(broken);
    EXPECT_TRUE(same());
    OpenFile(Make("a.xyz", text));
    EXPECT_TRUE(same());
    RunMenu(40011, "file");
    EXPECT_TRUE(same());
    RunMenu(40004, "file \"" + broken + '"');
    EXPECT_TRUE(same());
    EXPECT_EQ(ws.viewmode, loaded);
  }
}

// Points set by hand belong to the pattern on which they were set.
TEST_F(Open, DropsManualPoints) {
  ws.nmanualbg = 3;
  OpenPattern(Make("good.xy", "1 2\n3 4\n"));
  EXPECT_EQ(ws.nmanualbg, 0);
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
    const std::string path = directory + cell[0];
    // A file that is not the one described says nothing about the reader.
    std::error_code missing;
    if (std::filesystem::file_size(path, missing) != std::stoull(cell[2])) continue;
    if (std::ranges::any_of(kOddFiles,
                            [&](auto name) { return cell[0].find(name) != cell[0].npos; }))
      continue;
    OpenPattern(path);
    const int n = ws.npts(1);
    ASSERT_EQ(n, std::stoi(cell[4]));
    EXPECT_NEAR(ws.xval(AxisTth, 1, 1), std::stof(cell[6]), 1e-5);
    EXPECT_NEAR(ws.xval(AxisTth, 1, n), std::stof(cell[7]), 3e-4);
    EXPECT_FLOAT_EQ(std::ranges::max(ws.yval.row(1).first(n)), std::stof(cell[11]));
  }
}

}  // namespace
