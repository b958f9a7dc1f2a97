// Corrections of raw data: what they must bring back, and what they refuse.
#include <gtest/gtest.h>

#include "modify/modify.h"
#include "modify/patterns.h"

namespace {

// Counts and steps at which slopes, curvatures, sums and products outgrow a real.
TEST(Corrections, KeepHugeCountsFinite) {
  const auto settings = [] {
    ws.lpmode = 6;
    ws.a2interp = 3;
    ws.a2steps = 4;
    ws.a2ratio = 1e30f;
    ws.zeroshift = 0.0007f;
    ws.useorigsteps = 1;
    ws.polycoef.fill(-9e29f);
    ws.scalefactor = 1e20f;
  };
  for (const auto command :
       {Autodivergence, Alpha2Strip, LpCorrect, ZeroShift, AddPolynomial, ScalePattern}) {
    PutPattern(150, 0.0005f, 200, [](double x) { return x < 150.03 ? 9e37 : -1e37; });
    settings();
    for (int times = 0; times < 3; ++times) command();
    for (int i = 1; i <= 200; ++i) ASSERT_TRUE(std::isfinite(ws.yval(SlotInput, i))) << i;
  }
}

// None may fall over a pattern of no points or of one, or a first point at 0, and all leave alone
// what is not raw.
TEST(Corrections, TakeRawPatternsOfAnyLength) {
  for (const auto command :
       {Autodivergence, Alpha2Strip, AbsorptionCylinder, AbsorptionPlate, LpCorrect})
    for (const int n : {0, 1, 2, 50}) {
      PutPattern(0, 0.5f, n, [](double) { return 100; });
      ws.muR = ws.mut = 1;
      ws.lpmode = 4;
      ws.a2interp = 3;
      if (n == 50) ws.plotmask = PlotNet;
      command();
      for (int i = 1; i <= n; ++i) EXPECT_TRUE(std::isfinite(ws.yval(SlotInput, i)));
      EXPECT_EQ(Events(),
                n < 50 ? Lines{} : Lines{"box\tError\tShould only be applied to raw data"});
      EXPECT_TRUE(n < 50 || ws.yval(SlotInput, 50) == 100);
    }
}

constexpr double kPeaks[] = {25, 50, 80, 115};

// Widths grow with the spread of wavelengths, as the distance of the two lines does.
double Peak(double x, double centre) {
  return 5000 * Gaussian(x, centre, 0.08 + 0.1 * std::tan(Degrees(centre / 2)));
}

double Alpha1(double x) {
  double y = 60;
  for (double peak : kPeaks) y += Peak(x, peak);
  return y;
}

// With alpha2 at a share of the intensity: a peak moves to the angle of the longer wavelength.
double Doublet(double x, double ratio) {
  double y = 60 * (1 + ratio);
  for (double peak : kPeaks) {
    const double sine = std::sin(Degrees(peak / 2)) * CuKalpha2 / CuKalpha1;
    const double second = 2 * std::asin(sine) * 180 / M_PI;
    y += Peak(x, peak) + ratio * Peak(x, second);
  }
  return y;
}

// The furthest that a pattern is from what it should be after the stripping.
double Strip(const std::function<double(double)>& alpha1) {
  Alpha2Strip();
  double worst = 0;
  for (int i = 1; i <= ws.npts(SlotInput); ++i)
    worst =
        std::max(worst, std::fabs(ws.yval(SlotInput, i) - alpha1(ws.xval(AxisTth, SlotInput, i))));
  return worst;
}

TEST(Alpha2Strip, LeavesAlpha1) {
  for (float ratio : {0.5f, 0.25f})
    for (int steps : {1, 2, 3, 4})
      for (int interpolation : {1, 2, 3})
        for (float step : {0.01f, 0.02f}) {
          PutPattern(20, step, 2 + nint(105 / step), [=](double x) { return Doublet(x, ratio); });
          ws.a2steps = steps;
          ws.a2interp = interpolation;
          ws.a2ratio = ratio == 0.5f ? -1 : ratio;  // -1 counts as 0.5
          EXPECT_LT(Strip(Alpha1), 0.08 * ratio * 5000)
              << ratio << " " << steps << " " << interpolation << " " << step;
          EXPECT_EQ(ws.a2ratio, ratio);
          EXPECT_EQ(ws.alpha2enabled, 0);
        }
}

// A line of a few points, with 220 points between alpha1 and alpha2. The main component of the set
// takes 0.4917 of its height off where 0.5 are to go: 42 counts stay. Points far in front of
// alpha1 have no part in it, whatever they hold.
TEST(Alpha2Strip, SplineFollowsANarrowLineOnAFineGrid) {
  const auto line = [](double x) { return 50 + 5000 * Gaussian(x, 115, 0.015); };
  float top[2];
  for (const bool wild : {false, true}) {
    PutPattern(114, 0.002f, 1000, [&](double x) {
      const double origin = 2 / Degrees(1) * std::asin(0.997504 * std::sin(Degrees(x / 2)));
      return line(x) + 0.5 * line(origin);
    });
    if (wild) ws.yval(SlotInput, 1) = 3e38f;
    ws.a2interp = 3;
    ws.a2start = 300;
    const double furthest = Strip(line);
    EXPECT_TRUE(wild || furthest < 45) << furthest;
    top[wild] = ws.yval(SlotInput, 501);
  }
  EXPECT_EQ(top[0], top[1]);
}

TEST(Alpha2Strip, StartsWithAShareAndStopsAtOne) {
  // The unfilled sets take nothing off but lift to 1; the points at the start lose their share.
  PutPattern(20, 0.02f, 30, [](double x) { return x < 20.39 ? 150 : 0.25; });
  ws.a2steps = 6;
  ws.a2interp = 3;
  ws.a2start = 8;
  ws.a2ratio = 0.25f;
  Alpha2Strip();
  EXPECT_EQ(ws.yval(SlotInput, 8), 120);
  EXPECT_EQ(ws.yval(SlotInput, 9), 150);
  EXPECT_EQ(ws.yval(SlotInput, 30), 1);
  EXPECT_EQ(ws.npts(SlotInput), 30);
}

}  // namespace
