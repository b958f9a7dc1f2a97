// What the peak table tells of rows of every origin.
#include <gtest/gtest.h>

#include <cmath>

#include "crystal/hklcode.h"
#include "peaks/peaklist.h"
#include "peaks/peaktable.h"
#include "peaks/simulate.h"
#include "support/support.h"

namespace {

using Cells = std::vector<std::string>;

struct PeakTable : testing::Test {
  PeakTable() {
    FreshWorkspace();
    simulate::Load({.points = 401, .background = 100});
    ws.yval.row(SlotBackground)[200] = 90;  // at 14 degrees
  }
  // A row with indices whose right side is a Lorentzian of 0.2 degrees and whose left one a
  // Gaussian of 0.1: of an area of 10 it has the height 20 l r / (l + r) = 47.6, with l = 9.394 and
  // r = 3.183, the heights of the two of an area of 1.
  static void AddRow(float tth, PeakOrigin origin, float side = 0.2f, float sideshape = 1) {
    const float fields[] = {
        tth, 10, 0.15f, 0.5f, side, sideshape, static_cast<float>(PackHkl({1, 0, -2})), 6};
    ++ws.npeaks;
    for (int field = ptth; field <= pmult; ++field) ws.peaks(field, ws.npeaks) = fields[field - 1];
    NotePeak(ws.npeaks, PeakLoaded);
    NotePeak(ws.npeaks, origin);
  }
};

// Fields that an earlier list has left in a row are not told.
TEST_F(PeakTable, TellsWhatIsKnownOfARow) {
  const struct {
    PeakOrigin origin;
    float side;
    Cells cells;  // from the area on
  } table[] = {
      {PeakSearched, 0.2f, {"", "-80.0", "0.1500", "", "", "", "searched"}},
      {PeakPicked, 0.2f, {"", "", "", "", "", "", "picked"}},
      {PeakFitted, 0.2f, {"10.0", "47.6", "0.1500", "0.500", "1 0 -2", "6", "fitted"}},
      {PeakFitted, 0.3f, {"10.0", "", "0.1500", "0.500", "1 0 -2", "6", "fitted"}},  // one side
      {PeakFitted, 0, {"10.0", "", "0.1500", "0.500", "1 0 -2", "6", "fitted"}},
      {PeakCalculated, 0.2f, {"10.0", "47.6", "0.1500", "0.500", "1 0 -2", "6", "calculated"}},
      {PeakLoaded, 0.2f, {"10.0", "47.6", "0.1500", "0.500", "1 0 -2", "6", "loaded"}},
      {PeakLoaded, 0, {"", "-80.0", "0.1500", "", "1 0 -2", "6", "loaded"}},
      {PeakIndexed, 0.2f, {"", "", "", "", "1 0 -2", "6", "calculated"}},
  };
  for (const auto& row : table) {
    ws.npeaks = 0;
    AddRow(14, row.origin, row.side);
    const Cells cells = PeakCells(1);
    // 0.77028 / sin(7 deg.)
    EXPECT_EQ(Cells(cells.begin(), cells.begin() + 3), (Cells{"1", "14.0000", "6.32054"}));
    EXPECT_EQ(Cells(cells.begin() + 3, cells.end()), row.cells);
  }
  // The left side, which a fit of the whole pattern keeps, gives the same height.
  ws.npeaks = 0;
  AddRow(14, PeakFitted, 0.1f, 0);
  EXPECT_EQ(PeakCells(1)[ColumnHeight - 1], "47.6");
  // A fit adds no indices to a row that had none of its own.
  RelistPeaks(1, PeakSearched);
  NotePeak(1, PeakFitted);
  EXPECT_EQ(PeakCells(1)[ColumnHkl - 1] + PeakCells(1)[ColumnMultiplicity - 1], "");
}

TEST_F(PeakTable, GivesErrorsAndNothingForWhatIsNoNumber) {
  AddRow(14, PeakFitted);
  NotePeak(1, PeakFitted, {0.0004f, 0.25f, 0.0019f});
  ws.peakfailed(1) = 1;
  EXPECT_EQ(PeakCells(1), (Cells{"1", "14.0000(4)", "6.32054", "10.0(3)", "47.6", "0.1500(19)",
                                 "0.500", "1 0 -2", "6", "fitted, not converged"}));
  const int rows[] = {1};
  const std::string heads =
      "No.,2theta (deg.),e.s.d. (deg.),d (A),area (counts deg.),e.s.d. (counts deg.),"
      "height (counts),FWHM (deg.),e.s.d. (deg.),shape,h,k,l,multiplicity,origin,fit";
  const auto text = PeakLines(rows, ',');
  ASSERT_EQ(text.size(), 2u);
  EXPECT_EQ(text[0], heads);
  EXPECT_TRUE(text[1].starts_with("1,14,0.0004,6.3205")) << text[1];
  EXPECT_TRUE(text[1].ends_with(",0.15,0.0019,0.5,1,0,-2,6,fitted,not converged")) << text[1];

  ws.npeaks = 0;
  AddRow(0, PeakFitted, 0.3f);  // nothing is left for the other side
  ws.peaks(pint, 1) = NAN;
  ws.peaks(pfwhm, 1) = INFINITY;
  ws.peaks(phkl, 1) = 1e30f;
  EXPECT_EQ(PeakCells(1), (Cells{"1", "0.0000", "", "", "", "", "0.500", "", "", "fitted"}));
  EXPECT_EQ(PeakLines(rows, '\t')[1], "1\t0\t\t\t\t\t\t\t\t0.5\t\t\t\t\tfitted\t");
}

TEST_F(PeakTable, SortsByAnyColumnWithBlanksLast) {
  for (const float tth : {12.0f, 13.0f, 14.0f, 15.0f}) AddRow(tth, PeakFitted);
  NotePeak(2, PeakPicked);
  const float widths[] = {0.2f, 0, 0.1f, 0}, h[] = {2, 0, -1, 1};
  for (int j = 1; j <= 4; ++j) {
    ws.peaks(pfwhm, j) = widths[j - 1];
    ws.peaks(phkl, j) = static_cast<float>(PackHkl({static_cast<int>(h[j - 1]), 0, 5 - j}));
  }
  using Rows = std::vector<int>;
  EXPECT_EQ(PeaksBy(ColumnTth), (Rows{1, 2, 3, 4}));
  EXPECT_EQ(PeaksBy(-ColumnTth), (Rows{4, 3, 2, 1}));
  EXPECT_EQ(PeaksBy(ColumnD), (Rows{4, 3, 2, 1}));
  EXPECT_EQ(PeaksBy(ColumnFwhm), (Rows{3, 1, 2, 4}));
  EXPECT_EQ(PeaksBy(-ColumnFwhm), (Rows{1, 3, 2, 4}));
  EXPECT_EQ(PeaksBy(ColumnHkl), (Rows{3, 4, 1, 2}));
  EXPECT_EQ(PeaksBy(ColumnOrigin), (Rows{2, 1, 3, 4}));
}

}  // namespace
