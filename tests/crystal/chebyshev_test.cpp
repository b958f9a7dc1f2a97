// Chebyshev polynomials against their closed form, and fits that have no solution.
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

TEST(ChebyshevCycles, NothingWithoutAnInverse) {
  const auto silent = [](int, float) {};
  const std::vector<float> same(40, 20.0f), y{3, 1, 4, 1, 5, 9, 2, 6};
  std::vector<float> counts;
  for (int i = 0; i < 40; ++i) counts.push_back(100 + y[i % 8]);
  float coef[8] = {};
  EXPECT_FALSE(ChebyshevCycles({}, {}, {20, 60, 50}, coef, 1, silent));  // a matrix of zeros
  // All points at one place: 24 rounds with a near inverse of a singular matrix outgrow a real.
  EXPECT_FALSE(ChebyshevCycles(same, counts, {20, 20, 50}, coef, 24, silent));
  EXPECT_TRUE(ChebyshevCycles(same, counts, {20, 20, 50}, {}, 1, silent));  // no terms
}

}  // namespace
