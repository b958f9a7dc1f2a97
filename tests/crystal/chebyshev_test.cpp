// Chebyshev polynomials against their closed form, and the fit of a curve that is one.
#include "crystal/chebyshev.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

TEST(ChebyshevBasis, IsTheCosineOfTheMultipleAngle) {
  for (float x : {10.0f, 12.5f, 40.0f, 77.7f, 90.0f}) {
    float t[15];
    ChebyshevBasis(t, x, 10, 90);
    const double angle = std::acos(std::clamp((x - 50.0) / 40.0, -1.0, 1.0));
    for (int k = 0; k < 15; ++k) EXPECT_NEAR(t[k], std::cos(k * angle), 2e-5) << x << " " << k;
  }
  float t[3];
  ChebyshevBasis(t, 7, 7, 7);  // no length: its lower end
  EXPECT_EQ(t[1], -1);
  EXPECT_EQ(t[2], 1);
}

TEST(ChebyshevCycles, ReachTheSolutionInTheFirstRound) {
  const float given[] = {500, -80, 30, -7};
  const ChebyshevFrame frame{20, 60, 50};
  std::vector<float> x, y;
  for (int i = 0; i <= 400; ++i) {
    x.push_back(20 + 0.1f * static_cast<float>(i));
    y.push_back(ChebyshevValue(given, x.back(), 20, 60));
  }
  float coef[4] = {};
  std::vector<int> cycles;
  std::vector<float> rws;
  const auto report = [&](int cycle, float rw) {
    cycles.push_back(cycle);
    rws.push_back(rw);
  };
  const auto final = ChebyshevCycles(x, y, frame, coef, 3, report);
  ASSERT_TRUE(final);
  for (int k = 0; k < 4; ++k) EXPECT_NEAR(coef[k], given[k], 1e-3);
  EXPECT_EQ(cycles, (std::vector{1, 2, 3}));
  // At first the residual is the curve; the denominator takes the one intensity for every point.
  double squares = 0;
  for (float v : y) squares += static_cast<double>(v) * v;
  EXPECT_NEAR(rws[0], std::sqrt(squares / (401 * 50.0 * 50.0)), 1e-3);
  EXPECT_LT(rws[1], 1e-4);
  EXPECT_LT(*final, 1e-4);

  EXPECT_TRUE(ChebyshevCycles(x, y, frame, {}, 1, report));       // no terms
  EXPECT_FALSE(ChebyshevCycles({}, {}, frame, coef, 1, report));  // a matrix of zeros
}

}  // namespace
