// The menu from a user's side: what is enabled when, what a pick leads to.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "patternfiles/patternfiles.h"
#include "shell/shell.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

// A straight pattern of n points from 10 degrees up in steps of 0.02.
void LoadLine(const TempDir& dir, int n = 1001) {
  const std::string path = dir.file("line.xy");
  std::ofstream file(path);
  for (int i = 0; i < n; ++i) file << 10 + 0.02 * i << " " << 100 + i << "\n";
  file.close();
  OpenFile(path);
}

class Menu : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    ws.startdir = dir.path() + "/";
    ReadConfiguration();
    SetMenuLoaded(0);
  }
  void Pick(int id) { OnMenu(id, quitflag); }
  TempDir dir;
  int quitflag = 0;
};

// What an entry of the empty program brings up is cancelled.
std::string CancelOf(int id) {
  const int about[] = {40026, 40008}, dialogs[] = {40038, 40124};
  const int selectors[] = {40201, 40011, 40004, 40010, 40012, 40013,
                           40014, 40015, 40016, 40141, 40140, 40205};
  const auto holds = [id](const auto& list) { return std::ranges::count(list, id) > 0; };
  return holds(about) ? "press 1" : holds(dialogs) ? "press 2" : holds(selectors) ? "file" : "";
}

TEST_F(Menu, EveryEntryTwiceOnAnEmptyProgram) {
  for (int round = 0; round < 2; ++round)
    for (const Command& command : Commands()) {
      const MenuRow& row = command.item;
      bool enabled = !row.popup;
      for (int id = row.id; id != 0; id = FindCommand(id)->item.parent)
        enabled = enabled && WMenuGetState(id, MenuEnabled);
      if (!enabled) continue;
      Answer(CancelOf(row.id));
      Pick(row.id);
      Events();
    }
  EXPECT_EQ(quitflag, 1);
  EXPECT_EQ(ws.npts(1), 0);
}

TEST_F(Menu, WhatNeedsAPatternFollowsTheFirstLoad) {
  const int items[] = {40030, 40033, 40069, 40102, 40019, 40118, 40009, 40003, 40005};
  for (int id : items) EXPECT_EQ(WMenuGetState(id, MenuEnabled), 0) << id;
  OpenFile(dir.file("missing.xy"));
  for (int id : items) EXPECT_EQ(WMenuGetState(id, MenuEnabled), 0) << id;
  EXPECT_EQ(ws.viewmode, 0);
  LoadLine(dir);
  for (int id : items) EXPECT_EQ(WMenuGetState(id, MenuEnabled), 1) << id;
  for (int id : {40119, 40133, 40114, 40035})  // no command behind them
    EXPECT_EQ(WMenuGetState(id, MenuEnabled), 0) << id;
}

TEST_F(Menu, SelectorsOfferTheFormatOfTheirRow) {
  const struct {
    int id;
    const char* filter;
  } rows[] = {{40011, "|*.xy|"},    {40004, "|*.gdf|"}, {40010, "|*.txt|"},
              {40012, "|*.uxd|"},   {40013, "|*.cif|"}, {40014, "|*.cif|"},
              {40015, "|*.xrdml|"}, {40016, "|*.udf|"}, {40141, "|*.chi|"}};
  for (const auto& row : rows) {
    Answer("file");
    Pick(row.id);
    const auto events = Events();
    ASSERT_FALSE(events.empty());
    EXPECT_TRUE(events[0].starts_with(std::string("select\tOpen pattern file\t") + row.filter))
        << events[0];
    EXPECT_EQ(ws.plotmask + ws.viewmode + ws.filetype, 0);  // cancelled: as before
  }
}

TEST_F(Menu, AxisAndGridItemsKeepTheirMarksOverALoad) {
  LoadLine(dir);
  Pick(40127);
  Pick(40131);
  Pick(40100);
  EXPECT_EQ(ws.xaxismode, 2);
  EXPECT_EQ(ws.yaxismode, 2);
  LoadLine(dir);
  EXPECT_EQ(ws.xaxismode, 1);
  EXPECT_EQ(ws.xgrid, 0);
  EXPECT_EQ(WMenuGetState(40126, MenuChecked), 0);
  EXPECT_EQ(WMenuGetState(40127, MenuChecked), 1);
  EXPECT_EQ(WMenuGetState(40131, MenuChecked), 1);
  EXPECT_EQ(WMenuGetState(40100, MenuChecked), 1);
}

TEST_F(Menu, PlotSwitchesForgetTheZoomAndGridsKeepIt) {
  LoadLine(dir);
  ws.viewxmin = 12;
  ws.viewxmax = 15;
  Pick(40101);
  EXPECT_EQ(ws.viewxmax, 15);
  Pick(40017);
  EXPECT_EQ(ws.plotmask, 1 + 32);
  EXPECT_EQ(WMenuGetState(40017, MenuChecked), 1);
  EXPECT_EQ(ws.viewxmax, 30);
}

TEST_F(Menu, ABlankRecentEntryIsNoFileType) {
  Pick(40024);
  EXPECT_EQ(Events(), (std::vector<std::string>{"box\tError\tUnrecognized file type"}));
}

TEST_F(Menu, KeysPageAndZoomWithinThePattern) {
  LoadLine(dir);  // 10 to 30
  const struct {
    int key;
    float min, max, newmin, newmax;
  } cases[] = {
      {KeyLeft, 20, 24, 16, 20},  {KeyLeft, 11, 15, 10, 11},  {KeyLeft, 10, 14, 10, 30},
      {KeyRight, 20, 24, 24, 28}, {KeyRight, 24, 28, 28, 30}, {KeyRight, 26, 30, 10, 30},
      {KeyUp, 20, 24, 18, 26},    {KeyUp, 10, 14, 10, 16},    {KeyDown, 20, 24, 21, 23},
  };
  for (const auto& c : cases) {
    ws.viewxmin = c.min;
    ws.viewxmax = c.max;
    OnKey(c.key);
    EXPECT_EQ(ws.viewxmin, c.newmin) << c.key << " " << c.min;
    EXPECT_EQ(ws.viewxmax, c.newmax) << c.key << " " << c.min;
  }
}

TEST_F(Menu, BandsWorkInBothDirectionsAndReadOutsNameThePosition) {
  LoadLine(dir);
  const std::string open = "open " + dir.file("line.xy") + "\n";
  const std::string get = "get viewxmin\nget viewxmax\nget bandx1\n";
  const ReplayRun right = RunReplay(open + "drag 15 200 20 900\n" + get, dir.path());
  const ReplayRun left = RunReplay(open + "drag 20 900 15 200\n" + get, dir.path());
  EXPECT_EQ(right.status, 0);
  EXPECT_EQ(std::count(right.lines.begin(), right.lines.end(), "value\tviewxmin\t15"), 1);
  EXPECT_EQ(std::count(right.lines.begin(), right.lines.end(), "value\tviewxmax\t20"), 1);
  EXPECT_EQ(std::vector(right.lines.end() - 3, right.lines.end()),
            std::vector(left.lines.end() - 3, left.lines.end()));

  Events();
  const auto [x, y] = PlotPosition(15, 350);
  OnMouse({MessageMouseMove, 0, 0, x, y, RootWindow});
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"status\t1\tTwoTh  15.00", "status\t2\tInt      350."}));
}

TEST_F(Menu, ChildWindowsCloseTheirGapAndStopAtFifty) {
  for (int k = 1; k <= 50; ++k) ASSERT_NE(OpenChild(), 0);
  Events();
  EXPECT_EQ(OpenChild(), 0);
  EXPECT_EQ(Events(), (std::vector<std::string>{"box\tWindow error\tMaximum child windows "
                                                "created.\\nPlease close one and try again."}));
  const int third = ws.childwin(3), fourth = ws.childwin(4);
  CloseChild(third);
  EXPECT_EQ(ws.nchild, 49);
  EXPECT_EQ(ws.childwin(3), fourth);
}

// The line of a fit belongs to its pattern; a strict transcript ends at the first failed command,
// and a cancelled one is none.
TEST_F(Menu, FitTextsAndFailedCommands) {
  LoadLine(dir);
  WindowOutStatusBar(3, "Cycle   7  Rw .0123");
  RunMenu(40205, "file");
  EXPECT_EQ(WStatusText(3), "Cycle   7  Rw .0123");
  LoadLine(dir);
  EXPECT_EQ(WStatusText(3), "");
  const std::string lines =
      "open " + dir.file("line.xy") + "\nmenu 40060\npress Cancel\nopen none.xy\nget npts(1)\n";
  const ReplayRun lenient = RunReplay(lines, dir.path());
  EXPECT_EQ(lenient.status, 0);
  EXPECT_EQ(lenient.lines.back(), "value\tnpts(1)\t1001");
  const ReplayRun strict = RunReplay(lines, dir.path(), {"--strict"});
  EXPECT_EQ(strict.status, 1);
  EXPECT_EQ(strict.lines.back(), "error\t4\tthe command failed");
}

TEST_F(Menu, FieldsByName) {
  ws.npts(3) = 7;
  ws.xval(1, 2, 6) = 0.1f;
  ws.patternstem = "a b";
  EXPECT_EQ(FieldText("npts"), "0\t0\t7\t0\t0\t0\t0\t0\t0");
  EXPECT_EQ(FieldText("xval(1,2,5:6)"), "0\t0.100000001");
  EXPECT_EQ(FieldText("patternstem"), "a b");
  ws.gdfhead(3) = "3";
  EXPECT_EQ(FieldText("gdfhead(1:4)"), "\t\t3\t");
  for (const char* wrong :
       {"nothing", "npts(0)", "npts(10)", "npts(1", "npts(1,1)", "npts()", "npts(2:1)", "npts(1,)",
        "xval(1,1)", "xval(1,,1)", "patternstem(1)", "npts(1)x"})
    EXPECT_FALSE(FieldText(wrong)) << wrong;
}

}  // namespace
