// The menu from a user's side: what is enabled when, what a pick leads to.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>

#include "patternfiles/patternfiles.h"
#include "plot/plot.h"
#include "shell/shell.h"
#include "support/support.h"
#include "toolkit/displaylist.h"
#include "workspace/menuids.h"
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

TEST_F(Menu, NoItemIsWithoutItsCommand) {
  for (const Command& command : Commands())
    EXPECT_TRUE(command.item.popup || command.IsBuilt()) << command.item.text;
}

TEST_F(Menu, ABlankRecentEntryIsNoFileType) {
  Pick(40024);
  EXPECT_EQ(Events(), (std::vector<std::string>{"box\tError\tUnrecognized file type"}));
}

// Whatever it changes, and whenever the drawing is made.
TEST_F(Menu, ACommandThatDoesNotDrawLeavesTheDrawing) {
  const auto rename = [](const Arguments&) {
    ws.stem20 = "other";
    return Outcome::Done;
  };
  const auto pick = [](Arguments&) {
    ws.stem20 = "third";
    Answer("plot \"" + ws.startdir + "asked.bmp\"\nfile\n");
    return Answered(!AskForPattern(1).empty());
  };
  LoadLine(dir);
  const auto drawn = ScreenList().points;
  IGrSaveImage(dir.file("line.bmp"));
  for (const bool undo : {false, true}) {
    ws.stem20 = "line";
    RedrawView(0);
    RunCommand({.item = {0, "Rename", 0}, .run = rename, .redraw = Redraw::None, .undo = undo});
    EXPECT_EQ(ScreenList().points, drawn);
    ws.stem20 = "line";
    RedrawView(0);
    RunCommand({.item = {0, "Rename", 0},
                .ask = pick,
                .run = rename,
                .redraw = Redraw::Keep,
                .undo = undo});
    EXPECT_EQ(ReadFile(dir.file("asked.bmp")), ReadFile(dir.file("line.bmp")));
    EXPECT_EQ(ScreenList().points, drawn);
  }
  RunCommand({.item = {0, "Rename", 0}, .run = rename, .redraw = Redraw::Keep, .undo = true});
  EXPECT_NE(ScreenList().points, drawn);
}

TEST_F(Menu, ChildWindowsCloseTheirGapAndStopAtFifty) {
  for (int k = 1; k <= 50; ++k) ASSERT_NE(OpenChild(), 0);
  Events();
  EXPECT_EQ(OpenChild(), 0);
  EXPECT_EQ(Events(), (std::vector<std::string>{"box\tWindow error\tMaximum child windows "
                                                "created.\\nPlease close one and try again."}));
  for (int k = 3; k <= 5; ++k) ws.childwin(k) = 100 + k;
  CloseChild(103);
  EXPECT_EQ(ws.nchild, 49);
  EXPECT_EQ(ws.childwin(3), 104);
  EXPECT_EQ(ws.childwin(4), 105);
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

// By the row of its item, and by what has been answered to it.
TEST_F(Menu, CommandsTellWhatTheyHaveDone) {
  std::ofstream file(dir.file("peak.xy"));
  for (int i = 0; i <= 1000; ++i)
    file << 20 + 0.02 * i << " " << 50 + 1000 * std::exp(-std::pow((i - 500) / 6.0, 2)) << "\n";
  file.close();
  OpenFile(dir.file("peak.xy"));
  const struct {
    int item, button;
    std::string told;
  } rows[] = {
      {MenuPeakSearch, 0, "1 peak found; next: Fit all peaks"},
      {MenuSearchOptions, ButtonOk, "Peak search options kept"},
      {MenuAutosubtract, ButtonCancel, "Autosubtract: scale 1.000, 25 cycles, not subtracted"},
      {MenuAutosubtract, ButtonOk, "Autosubtract: scale 1.000, 25 cycles"},
      {MenuAutosubtractOptions, ButtonOk, "Autosubtract options kept"},
      {MenuHump, ButtonOk, "No hump above the line between the ends"},
      {MenuSubtract, ButtonCancel, "Background not subtracted"},
      {MenuSubtract, ButtonOk, "Background subtracted"},
      {MenuFitPeak, ButtonCancel, "The fitted peak is not kept"},
      {MenuFitPeak, ButtonOk, "Fitted peak at 30.000 kept in the list"},
      {MenuFitPeakOptions, ButtonOk, "Peak fit options kept"},
      {MenuTruncate, ButtonOk, "1001 points, 20.00 to 40.00 degrees"},
      {MenuAxisLog, 0, "y-axis"},
      {MenuFitAllPeaks, 0, ""},
  };
  for (const auto& [item, button, told] : rows) {
    RunMenu(item, button ? "press " + std::to_string(button) : "");
    EXPECT_EQ(WhatIsDone(*FindCommand(item), {.button = button}), told) << item;
  }
  RunMenu(MenuUndo);
  EXPECT_EQ(WhatIsDone(*FindCommand(MenuUndo), {}), "Undone: Fit all peaks");
  RunMenu(MenuRedo);
  EXPECT_EQ(WhatIsDone(*FindCommand(MenuRedo), {}), "Done again: Fit all peaks");
  EXPECT_EQ(WhatIsDone(*FindCommand(MenuSavePng), {.path = "/a/b c.png"}), "Saved b c.png");
}

TEST_F(Menu, WavelengthsOfOverlaysNeedTheirOverlay) {
  LoadLine(dir);
  ws.noverlay = 2;
  RunMenu(40124, "press 2");
  const auto events = Events();
  for (const char* line :
       {"1166\tMulti-pattern 2\t0.00000\t1", "1167\tMulti-pattern 3\t0.00000\t0"})
    EXPECT_EQ(std::ranges::count(events, std::string("field\t") + line), 1) << line;
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

// Of several boxes the first one names file and reason; those of the command before do not count.
TEST_F(Menu, TheFirstBoxTellsWhyACommandFailed) {
  MessageBoxError("Error", "of before");
  WCommandEnded(true);
  EXPECT_EQ(WFirstComplaint(), "");
  MessageBoxError("Error", "Error writing xy file\na.xy: full");
  MessageBoxError("Error", "Error writing xy file");
  EXPECT_EQ(WFirstComplaint(), "Error writing xy file\na.xy: full");
  WCommandEnded(false);
}

}  // namespace
