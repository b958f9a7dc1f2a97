// Corrections of raw data: what they must bring back, and what they refuse.
#include <gtest/gtest.h>

#include "modify/modify.h"
#include "modify/patterns.h"

namespace {

TEST(Corrections, RefuseWhatIsNotRaw) {
  for (const auto command :
       {Autodivergence, Alpha2Strip, AbsorptionCylinder, AbsorptionPlate, LpCorrect}) {
    PutPattern(20, 0.1f, 50, [](double) { return 100; });
    ws.plotmask = PlotNet;
    ws.muR = ws.mut = 1;
    command();
    EXPECT_EQ(Events(), (Lines{"box\tError\tShould only be applied to raw data"}));
    EXPECT_EQ(ws.yval(SlotInput, 50), 100);
  }
}

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

// None may fall over a pattern of no points or of one, or a first point at 0.
TEST(Corrections, SurviveShortPatterns) {
  for (const auto command :
       {Autodivergence, Alpha2Strip, AbsorptionCylinder, AbsorptionPlate, LpCorrect})
    for (int n : {0, 1, 2}) {
      PutPattern(0, 0.5f, n, [](double) { return 100; });
      ws.muR = ws.mut = 1;
      ws.lpmode = 4;
      ws.a2interp = 3;
      command();
      for (int i = 1; i <= n; ++i) EXPECT_TRUE(std::isfinite(ws.yval(SlotInput, i)));
    }
}

TEST(Autodivergence, UndoesTheOpeningOfTheSlits) {
  PutPattern(10, 0.5f, 201,
             [](double x) { return 1000 * (std::sin(0.1947787 + 0.0153201 * x / 2) - 0.19355); });
  Autodivergence();
  for (int i = 1; i <= 201; ++i) EXPECT_NEAR(ws.yval(SlotInput, i), 1000, 0.01);
  EXPECT_EQ(ws.divergenceenabled, 0);
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
// takes 0.4917 of its height off where 0.5 are to go: 42 counts stay.
TEST(Alpha2Strip, SplineFollowsANarrowLineOnAFineGrid) {
  const auto line = [](double x) { return 50 + 5000 * Gaussian(x, 115, 0.015); };
  PutPattern(114, 0.002f, 1000, [&](double x) {
    const double origin = 2 / Degrees(1) * std::asin(0.997504 * std::sin(Degrees(x / 2)));
    return line(x) + 0.5 * line(origin);
  });
  ws.a2interp = 3;
  EXPECT_LT(Strip(line), 45);
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

// A flat plate's intensity is the integral over the depth of the absorption on the ways in and out.
TEST(AbsorptionPlate, UndoesTheIntegralOverTheDepth) {
  const double mut = 1.3, tilt = 20;
  PutPattern(2, 0.5f, 140, [=](double x) {
    const double in = std::cos(Degrees(tilt)), out = std::cos(Degrees(x - tilt));
    double sum = 0;
    for (int k = 0; k < 1000; ++k) {
      const double depth = (k + 0.5) / 1000;
      sum += std::exp(-mut * (depth / in + (1 - depth) / out));
    }
    return 1e6 * sum / 1000;
  });
  const float atplate = ws.yval(SlotInput, 37);  // two-theta 20
  ws.mut = mut;
  ws.plateangle = tilt;
  AbsorptionPlate();
  // The factor is 1 at the last point less than a step from the plate's angle, which is its own.
  for (int i = 1; i <= 140; ++i) {
    const bool borrowed = i >= 76 && i <= 78;  // around two-theta 40, from the point before
    EXPECT_NEAR(ws.yval(SlotInput, i) / atplate, 1, borrowed ? 0.03 : 0.003) << i;
  }
  // Where no beam leaves the plate nothing is left; parameters without a meaning change nothing.
  PutPattern(60, 1, 92, [](double) { return 100; });
  ws.mut = 1;
  ws.plateangle = 60;
  AbsorptionPlate();
  EXPECT_EQ(ws.yval(SlotInput, 1), 100);
  EXPECT_EQ(ws.yval(SlotInput, 92), 0);  // two-theta 151, behind the edge of the plate
  ws.plateangle = 90.1f;
  AbsorptionPlate();
  EXPECT_EQ(ws.yval(SlotInput, 1), 100);
}

TEST(LpCorrect, EightFactors) {
  const auto cosine = [](double x) { return std::cos(Degrees(x)); };
  const auto sine = [](double x) { return std::sin(Degrees(x)); };
  for (float x : {0.2f, 0.7f, 31.0f, 90.0f, 119.0f, 150.0f}) {
    const double low = std::max(0.5, static_cast<double>(x)), high = std::min<double>(x, 120);
    const double factors[] = {0.5 + 0.5 * cosine(x) * cosine(x), sine(low / 2),
                              sine(low / 2) * sine(low), cosine(high - 45)};
    for (int mode = 1; mode <= 8; ++mode) {
      PutPattern(x, 1, 1, [](double) { return 1000; });
      ws.lpmode = mode;
      LpCorrect();
      const double factor = factors[(mode - 1) / 2];
      const double expected = 1000 * (mode % 2 ? factor : 1 / factor);
      EXPECT_NEAR(ws.yval(SlotInput, 1), expected, 2e-5 * expected) << x << " mode " << mode;
    }
  }
}

}  // namespace
