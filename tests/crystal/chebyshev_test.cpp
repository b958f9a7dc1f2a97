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

TEST(ChebyshevCycles, TellsHowItEnded) {
  const std::vector<float> same(40, 20.0f), y{3, 1, 4, 1, 5, 9, 2, 6};
  std::vector<float> counts;
  for (int i = 0; i < 40; ++i) counts.push_back(100 + y[i % 8]);
  const auto fit = [](const std::vector<float>& at, const std::vector<float>& values,
                      std::span<float> coef, int cycles, int last) {
    return ChebyshevCycles(at, values, {20, 20, 50}, coef, cycles,
                           [=](int cycle, float) { return cycle < last; });
  };
  float coef[8] = {}, mean[1] = {};
  EXPECT_EQ(fit({}, {}, coef, 1, 99).end, FitEnd::NoInverse);  // a matrix of zeros
  // All points at one place: 24 rounds with a near inverse of a singular matrix outgrow a real.
  EXPECT_EQ(fit(same, counts, coef, 24, 99).end, FitEnd::Diverged);
  EXPECT_EQ(fit(same, counts, {}, 1, 99).end, FitEnd::Done);  // no terms
  // Stopped at the second round: what the first has found stays.
  const FitResult stopped = fit(same, counts, mean, 24, 2);
  EXPECT_EQ(stopped.end, FitEnd::Stopped);
  EXPECT_EQ(stopped.cycles, 2);
  EXPECT_FLOAT_EQ(mean[0], 103.875f);
  EXPECT_NEAR(stopped.rw, std::sqrt(6.609375) / 50, 1e-6);
}

}  // namespace
