// Operations on the grid, and plain arithmetic on the pattern.
#include <gtest/gtest.h>

#include "modify/modify.h"
#include "modify/patterns.h"

namespace {

double Ramp(double x) { return 8 * x; }

// The intensities of the active slot move, those of slot 1 stay, though its grid is the new one.
TEST(ZeroShift, OfAnotherSlot) {
  PutPattern(20, 0.25f, 41, Ramp);
  std::copy_n(ws.yval.row(SlotInput).begin(), 41, ws.yval.row(SlotNet).begin());
  ws.plotmask = PlotNet;
  ws.zeroshift = 0.1f;
  ws.useorigsteps = 1;
  ZeroShift();
  EXPECT_EQ(ws.yval(SlotInput, 1), 160);
  EXPECT_NEAR(ws.yval(SlotNet, 1), 8 * 20.15, 1e-3);
}

TEST(Truncate, CutsEverySlotThatReachesOut) {
  PutPattern(10, 1, 11, Ramp);
  PutPoints(SlotBackground, {12, 13, 14}, {1, 2, 3});  // within: not touched
  PutPoints(SlotOverlay + 1, {9, 11, 12, 15, 16, 30}, {1, 2, 3, 4, 5, 6});
  PutPoints(SlotScratch, {40, 50}, {1, 2});
  ws.savestart = 12;
  ws.savestop = 16;
  Truncate();
  EXPECT_EQ(ws.npts(SlotInput), 5);
  EXPECT_EQ(ws.xval(AxisTth, SlotInput, 1), 12);
  EXPECT_EQ(ws.yval(SlotInput, 5), 128);
  EXPECT_EQ(ws.npts(SlotBackground), 3);
  EXPECT_EQ(ws.npts(SlotOverlay + 1), 3);
  EXPECT_EQ(ws.yval(SlotOverlay + 1, 3), 5);
  EXPECT_EQ(ws.npts(SlotScratch), 0);
}

void SetConversion(float from, float to, float start, float stop, float step) {
  ws.origwavelength = from;
  ws.newwavelength = to;
  ws.savestart = start;
  ws.savestop = stop;
  ws.savestep = step;
}

TEST(Convert, EndsWhereTheWavelengthDoesNotReach) {
  PutPattern(20, 0.05f, 2000, [](double) { return 77; });  // to 120 degrees
  SetConversion(0.7f, 1.4f, 0, 180, 0.1f);
  ConvertPattern();
  // sin theta doubles: at most 30 degrees of theta are left, which become 90.
  EXPECT_GT(ws.savestop, 170);
  EXPECT_LE(ws.savestop, 180);
  for (int i = 1; i <= ws.npts(1); ++i) ASSERT_NEAR(ws.yval(1, i), 77, 1e-3);
}

TEST(Convert, LeavesAPatternThatItCannotConvert) {
  const float settings[][5] = {{0, 1, 0, 90, 0.1f},      {1, -1, 0, 90, 0.1f}, {1, 1, -1, 90, 0.1f},
                               {1, 1, 0, 0, 0.1f},       {1, 1, 0, 90, 0},     {1, 1, 80, 90, 0.1f},
                               {1, 1, 0, 90, 1e30f},     {1, 1, 0, 10, 0.1f},  {1, 1, 25, 22, 0.1f},
                               {1e-30f, 1e30f, 0, 90, 1}};
  for (const auto& s : settings) {
    PutPattern(20, 0.25f, 41, Ramp);
    SetConversion(s[0], s[1], s[2], s[3], s[4]);
    ConvertPattern();
    EXPECT_EQ(ws.npts(1), 41) << s[2];
    EXPECT_EQ(ws.yval(1, 41), 240);
  }
}

TEST(Polynomial, AddsAndLifts) {
  PutPattern(0, 1, 5, [](double x) { return x == 4 ? -50 : 10; });
  const float coef[] = {1, -2, 3, 0, 0.5f};
  std::copy(std::begin(coef), std::end(coef), ws.polycoef.cells.begin());
  AddPolynomial();
  // Sums 11, 12.5, 27, 72.5 and 119: nothing below 0.
  const float sums[] = {11, 12.5f, 27, 72.5f, 119};
  for (int i = 1; i <= 5; ++i) EXPECT_NEAR(ws.yval(1, i), sums[i - 1], 1e-4);
  ws.scalefactor = 0;
  ScalePattern();
  EXPECT_EQ(ws.yval(1, 5), 0);
}

}  // namespace
