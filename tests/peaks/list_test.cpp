// The peak list by hand and in files, as a user fills it.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "peaks/peaks.h"
#include "peaks/simulate.h"
#include "support/support.h"

namespace {

struct PeakList : testing::Test {
  PeakList() {
    FreshWorkspace();
    simulate::Load({.peaks = {simulate::Symmetric(50, 1000, 0.12)}});
  }
  TempDir dir;
};

TEST_F(PeakList, SavesFixedColumnsInOrder) {
  ws.npeaks = 2;
  const float rows[2][8] = {{50.1234f, 1520.26f, 0.12342f, 0.5f, 0.1f, 0.4f, 4060302, 8},
                            {7.5f, 99999.9f, 0.08f, -0.25f, 0, 0, 0, 0}};
  for (int j = 1; j <= 2; ++j)
    for (int field = 1; field <= 8; ++field) ws.peaks(field, j) = rows[j - 1][field - 1];
  const std::string file = dir.file("x y%s.pks"), full = dir.file("full.pks");
  std::filesystem::create_symlink("/dev/full", full);
  RunMenu(40094, "file \"" + file + "\"");
  EXPECT_EQ(ReadFile(file),
            "    7.500   99999.9   0.0800  -0.2500   0.0000   0.0000    0    0    0    1\n"
            "   50.123    1520.3   0.1234   0.5000   0.1000   0.4000    0    0    0    1\n");
  ws.editorpath = "edit -n";
  RunMenu(40104);  // asks for no file
  EXPECT_EQ(Events().back(), "command\tedit -n \"" + file + "\"");
  ws.npeaks = 1;
  RunMenu(40094, "file " + full);
  EXPECT_EQ(Events().back(),
            "box\tError\tError writing peak file\\n" + full + ": No space left on device");
  ClearPeaks();
  EXPECT_EQ(ws.peaks(pmult, 2), 0);
  RunMenu(40094);
  EXPECT_EQ(Events(), std::vector<std::string>{"box\tError\tNo peaks in list"});
}

// By its own width, and not beyond the pattern, at whose end all of it is shown.
TEST_F(PeakList, TheViewPansWhilePeaksArePicked) {
  const struct {
    float from, to;
    const char* button;
    float first, last;
  } table[] = {{30, 40, "<", 20, 30}, {12, 30, "<", 10, 12}, {10, 30, "<", 10, 90},
               {20, 30, ">", 30, 40}, {70, 85, ">", 85, 90}, {80, 90, ">", 10, 90}};
  for (const auto& row : table) {
    ws.viewxmin = ws.plotxmin = row.from, ws.viewxmax = ws.plotxmax = row.to;
    Answer(std::string("press ") + row.button + "\npress OK");
    ManualPeakSearch();
    EXPECT_NEAR(ws.viewxmin, row.first, 1e-4) << row.from << row.button;
    EXPECT_NEAR(ws.viewxmax, row.last, 1e-4) << row.from << row.button;
  }
}

TEST_F(PeakList, LoadsWhatIsThereAndEndsCleanly) {
  std::string lines;
  for (int i = 1; i <= 300; ++i) lines += std::to_string(i) + " 1 1\n";
  const struct {
    const char* name;
    std::string content;
    int rows;
    float last[8];  // fields of the last row
  } table[] = {
      {"indices", "2 3 .1 .5 .2 .6 1 -2 3 12\n", 1, {2, 3, .1f, .5f, .2f, .6f, 4139701, 12}},
      {"300 lines", lines, 200, {200, 1, 1, 0, 0, 0, 4020100, 0}},
      {"header", "   TwoTh  Int\n", 1, {77, 77, 77, 77, 77, 77, 77, 77}},
      {"blank line", "20 300\n  \n30 400\n", 1, {20, 300, 0, 0, 0, 0, 4020100, 0}},
      {"CRLF, no end", "20 300\r\n30 400", 2, {30, 400, 0, 0, 0, 0, 4020100, 0}},
      {"commas", "20,,0.1 , 0.5,,,,,1,2\n", 1, {20, 0, 0.1f, 0.5f, 0, 0, 4060100, 2}},
      {"letters", "20 300\nabc\n", 2, {0, 0, 0, 0, 0, 0, 4020100, 0}},
      {"too large", "20 300\n1e99 4\n", 1, {20, 300, 0, 0, 0, 0, 4020100, 0}},
      {"indices out of range", "20 1 1 1 1 1 100 0 0 1\n", 1, {20, 1, 1, 1, 1, 1, 0, 1}},
  };
  for (const auto& row : table) {
    ws.peaks.fill(77);
    WriteFile(dir.file("a.pks"), row.content);
    LoadPeaks(dir.file("a.pks"));
    EXPECT_EQ(ws.npeaks, row.rows) << row.name;
    for (int field = 1; field <= 8; ++field)
      EXPECT_EQ(ws.peaks(field, row.rows), row.last[field - 1]) << row.name << " " << field;
    EXPECT_EQ(ws.peaks(ptth, row.rows + 1), 77) << row.name;
    const std::vector<std::string> full = {"status\t3\tPeak list is full: 200 peaks"};
    EXPECT_EQ(Events(), row.rows == 200 ? full : std::vector<std::string>());
  }
  ws.plotmask = 1;
  WriteFile(dir.file("a.pks"), "");
  LoadPeaks(dir.file("a.pks"));
  EXPECT_EQ(ws.npeaks, 0);
  EXPECT_EQ(ws.plotmask, 1);
}

// One row of each kind; the e.s.d.s that a row has go with it.
TEST_F(PeakList, TellsWhereItsRowsAreFrom) {
  const auto origins = [] {
    const auto row = ws.peakorigin.row();
    return std::vector<int>(row.begin(), row.begin() + ws.npeaks);
  };
  const auto pick = [](const std::string& lines) {
    Answer(lines + "\npress OK");
    ManualPeakSearch();
  };
  const auto markfirst = [] {
    ws.peakfailed(1) = 1;
    for (int k = 1; k <= 3; ++k) ws.peakesd(k, 1) = 0.5f;
  };
  const auto esds = [](int row) {
    return ws.peakesd(1, row) + ws.peakesd(2, row) + ws.peakesd(3, row);
  };
  OnPeakSearch();
  markfirst();
  pick("mouse left 70 500\nmouse left 20 500");
  EXPECT_EQ(origins(), (std::vector<int>{PeakPicked, PeakSearched, PeakPicked}));
  EXPECT_EQ(ws.peakfailed(2), 1);
  EXPECT_EQ(esds(2), 1.5f);
  EXPECT_EQ(esds(1) + esds(3), 0);
  SinglePeakFit();  // of the row in the middle
  EXPECT_EQ(ws.peakorigin(2), PeakFitted);
  EXPECT_EQ(esds(2) + static_cast<float>(ws.peakfailed(2)), 0);

  // Where only positions close the gap, a row is of two peaks.
  ws.peakesd(1, 3) = 0.25f;
  markfirst();
  ws.plotmask = 1;
  pick("mouse right 50 500");
  EXPECT_EQ(origins(), (std::vector<int>{PeakPicked, PeakPicked}));
  EXPECT_EQ(esds(1), 1.5f);
  EXPECT_EQ(esds(2), 0);

  SavePeaks(dir.file("a.pks"));
  LoadPeaks(dir.file("a.pks"));
  EXPECT_EQ(origins(), (std::vector<int>{PeakLoaded, PeakLoaded}));
  EXPECT_EQ(esds(1) + static_cast<float>(ws.peakfailed(1)), 0);
  ClearPeaks();
  EXPECT_EQ(ws.peakorigin(1), 0);
  ws.npeaks = 2;
  RunMenu(40108, "file " + dir.file("a.fit"));
  RunMenu(40109, "file " + dir.file("a.fit"));  // without a fit before it none follows
  EXPECT_EQ(origins(), (std::vector<int>{PeakLoaded, PeakLoaded}));
}

}  // namespace
