// Peaks, points and pictures for other programs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "crystal/hklcode.h"
#include "peaks/peaklist.h"
#include "shell/copytext.h"
#include "shell/shell.h"
#include "support/support.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

using Cells = std::vector<std::string>;

std::vector<Cells> Table(const std::string& text) {
  std::vector<Cells> rows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream cells(line + '\t');
    rows.emplace_back();
    for (std::string cell; std::getline(cells, cell, '\t');) rows.back().push_back(cell);
  }
  return rows;
}

float Value(const std::string& cell) { return std::strtof(cell.c_str(), nullptr); }

// 101 points from 20 to 30 degrees, of 100 counts and a third.
class CopyText : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    std::string lines;
    for (int i = 0; i <= 100; ++i) lines += std::to_string(20 + 0.1 * i) + " 100.33333\n";
    WriteFile(dir.file("flat.xy"), lines);
  }
  void Load() {
    OpenFile(dir.file("flat.xy"));
    Events();
  }
  TempDir dir;
};

TEST_F(CopyText, PeaksHaveAllDigitsAndTheirIndices) {
  Load();
  EXPECT_EQ(HintOf(MenuCopyPeaks), "Needs peaks: search or pick them first");
  ws.npeaks = 3;
  const float place = 28.443001f;
  const struct {
    float tth, code;
  } rows[] = {{20.1f, 0},
              {place, static_cast<float>(PackHkl({1, -1, 12}))},
              {60, static_cast<float>(PackHkl({}))}};
  for (int j = 1; j <= 3; ++j) {
    ws.peaks(ptth, j) = rows[j - 1].tth;
    ws.peaks(pint, j) = 1e7f / 3;
    ws.peaks(pfwhm, j) = 0.1f;
    ws.peaks(phkl, j) = rows[j - 1].code;
    ws.peakindexed(j) = 1;
  }
  const auto table = Table(PeaksAsText());
  ASSERT_EQ(table.size(), 4u);
  for (const Cells& cells : table) EXPECT_EQ(cells.size(), 8u);
  EXPECT_EQ(table[0][1], "d (\u00c5)");
  EXPECT_EQ(Value(table[2][0]), place);
  EXPECT_EQ(Value(table[2][2]), 1e7f / 3);
  EXPECT_EQ(table[2][3], "0.1");
  EXPECT_EQ(Cells(table[2].begin() + 5, table[2].end()), (Cells{"1", "-1", "12"}));
  // Indices of no reflection, and 2 d sin 30 = lambda.
  for (const int row : {1, 3})
    EXPECT_EQ(Cells(table[row].begin() + 5, table[row].end()), (Cells{"", "", ""}));
  EXPECT_NEAR(Value(table[3][1]), 1.54056f, 1e-6f);
  RunMenu(MenuCopyPeaks);
  EXPECT_EQ(Events().back(), "status\t3\t3 peaks copied");
}

// The refined curve has the pattern's points, the background lies beside them by the last digit,
// one overlay is shorter.
TEST_F(CopyText, PointsInViewWithCurvesOfTheSameGrid) {
  Load();
  ws.npts(SlotRefined) = ws.npts(SlotInput);
  for (int i = 1; i <= ws.npts(SlotInput); ++i) ws.yval(SlotRefined, i) = static_cast<float>(i);
  ws.xval(AxisTth, SlotBackground, 7) += 1e-5f;
  ws.plotmask = PlotInput | PlotBackground | PlotRefined;
  ws.overlayname(1) = "/there/short.xy";
  ws.overlayname(2) = "/there/same.xy";
  ws.noverlay = 2;
  for (const int slot : {5, 6})
    std::ranges::copy(ws.xval.row(AxisTth, SlotInput), ws.xval.row(AxisTth, slot).begin());
  ws.npts(SlotOverlay) = 50;
  ws.npts(SlotOverlay + 1) = ws.npts(SlotInput);
  ws.xaxismode = AxisD;
  ws.curvexmin = ws.xval(AxisD, SlotInput, 31) - 1e-4f;
  ws.curvexmax = ws.xval(AxisD, SlotInput, 11) + 1e-4f;
  const auto table = Table(PointsAsText());
  EXPECT_EQ(table[0], (Cells{"2\u03b8 (\u00b0)", "d (\u00c5)", "Q (\u00c5\u207b\u00b9)",
                             "Pattern (counts)", "Refined pattern (counts)", "same (counts)"}));
  ASSERT_EQ(table.size(), 1u + 21u);
  EXPECT_EQ(table[1][0], "21");
  EXPECT_EQ(Value(table[1][3]), 100.33333f);
  EXPECT_EQ(table[1][4], "11");
  // d Q = 2 pi
  EXPECT_NEAR(Value(table[21][1]) * Value(table[21][2]), 6.283185f, 1e-5f);
  EXPECT_EQ(table[21][0], "23");
  ws.fitshown = 1;
  EXPECT_EQ(Table(PointsAsText())[0].back(), "Fitted pattern (counts)");
}

TEST_F(CopyText, NothingToCopyIsTold) {
  EXPECT_EQ(HintOf(MenuCopyPicture), "Needs a pattern: open one first");
  EXPECT_EQ(HintOf(MenuCopyPoints), "Needs the pattern on show: Plot > Full pattern");
  Load();
  EXPECT_EQ(HintOf(MenuCopyPicture) + HintOf(MenuCopyPoints), "");
  RunMenu(MenuCopyPicture);
  EXPECT_EQ(Events().front(), "copied\tpicture 1536x864");
  ws.curvexmin = ws.curvexmax = 20.05f;  // between two points
  RunMenu(MenuCopyPoints);
  EXPECT_EQ(Events(), Cells{"status\t3\tThere are no points in view"});
}

// The name asked for gets its extension; a file that was there stays when the new one fails.
TEST_F(CopyText, PicturesByName) {
  Load();
  const std::pair<int, const char*> rows[] = {
      {MenuSavePng, "\x89PNG\r\n"}, {MenuSaveSvg, "<?xml"}, {MenuSavePdf, "%PDF-"}};
  for (const auto& [id, start] : rows) {
    const std::string ending = std::string(FindCommand(id)->item.text).substr(1);
    RunMenu(id, "file " + dir.file("a.1"));
    EXPECT_TRUE(ReadFile(dir.file("a.1")).starts_with(start)) << start;
    RunMenu(id, "file " + dir.file("b"));
    EXPECT_TRUE(ReadFile(dir.file("b" + ending)).starts_with(start)) << start;
    Events();
    RunMenu(id, "file /nowhere/c");
    const auto events = Events();
    EXPECT_TRUE(events[0].ends_with("|*" + ending + "|\tflat" + ending)) << events[0];
    EXPECT_EQ(events[1],
              "box\tError\tCannot write /nowhere/c" + ending + ": No such file or directory");
  }
}

// What a file holds: after a load, a save of the pattern, or back at either of them by undo.
TEST_F(CopyText, ChangesAreKeptOrNot) {
  Load();
  EXPECT_TRUE(PointsAreKept());
  ws.npeaks = 1;
  RunMenu(MenuAxisQ);
  RunMenu(40124, "set 1161 1.2\npress OK");  // another wavelength
  EXPECT_TRUE(PointsAreKept());
  RunMenu(40060, "set 1032 2\npress OK");
  EXPECT_FALSE(PointsAreKept());
  RunMenu(MenuUndo);
  EXPECT_TRUE(PointsAreKept());
  RunMenu(MenuRedo);
  EXPECT_FALSE(PointsAreKept());
  RunMenu(MenuSavePattern, "set 1100 on\npress OK\nfile " + dir.file("background.xy"));
  EXPECT_FALSE(PointsAreKept());
  RunMenu(MenuSavePattern, "set 1098 on\npress OK\nfile /nowhere/a.xy");
  EXPECT_FALSE(PointsAreKept());
  RunMenu(MenuSavePattern, "set 1098 on\npress OK\nfile " + dir.file("saved.xy"));
  EXPECT_TRUE(PointsAreKept());
  RunMenu(40060, "set 1032 2\npress OK");
  EXPECT_FALSE(PointsAreKept());
  Load();
  EXPECT_TRUE(PointsAreKept());
  // The pattern of before is back, and so is what was known of it.
  RunMenu(MenuUndo);
  EXPECT_FALSE(PointsAreKept());
  RunMenu(MenuUndo);
  EXPECT_TRUE(PointsAreKept());
  // What a save has put in the place of these points can be taken back, but not in the file.
  RunMenu(40060, "set 1032 2\npress OK");
  RunMenu(MenuSavePattern, "press OK\nfile " + dir.file("saved.xy"));
  EXPECT_TRUE(PointsAreKept());
  RunMenu(MenuUndo);
  EXPECT_FALSE(PointsAreKept());
}

// Peaks that were made by hand or by a fit want a file, others can be had again.
TEST_F(CopyText, PeaksAreKeptOrNot) {
  Load();
  RelistPeaks(2, PeakSearched);
  EXPECT_TRUE(PeaksAreKept());
  NotePeak(2, PeakFitted);
  EXPECT_FALSE(PeaksAreKept());
  RunMenu(MenuSavePeaks, "file /nowhere/a.pks");
  EXPECT_FALSE(PeaksAreKept());
  const std::pair<int, std::string> saves[] = {
      {MenuSavePeaks, "file " + dir.file("a.pks")},
      {MenuSaveFit, "file " + dir.file("a.fit")},
      {MenuPeakTable, "press Save...\nfile " + dir.file("a.csv") + "\npress Close"}};
  for (const auto& [id, lines] : saves) {
    ws.peaks(ptth, AppendPeak(PeakPicked)) = static_cast<float>(id);
    EXPECT_FALSE(PeaksAreKept()) << id;
    RunMenu(id, lines);
    EXPECT_TRUE(PeaksAreKept()) << id;
  }
  std::swap(ws.peaks(ptth, 2), ws.peaks(ptth, 3));
  EXPECT_TRUE(PeaksAreKept()) << "sorted otherwise";
  ws.peaks(pfwhm, 2) += 0.01f;
  EXPECT_FALSE(PeaksAreKept());
}

}  // namespace
