// The cycles of the fit of one profile, and how they end.
#include "peaks/peakprofile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

using Values = std::vector<float>;

TEST(PeakProfileFit, TellsHowItEnded) {
  constexpr int n = 300;
  Values x(n), y(n), calc(n);
  for (int i = 0; i < n; ++i) {  // a broad peak in the middle, and some unrest
    const float u = static_cast<float>(i - n / 2) / 12;
    x[i] = 30 + 0.01f * static_cast<float>(i);
    y[i] = 100 + 1000 * std::exp(-u * u) + static_cast<float>(i * 7919 % 13);
  }
  y[0] = 40;  // ends of different height
  const auto fit = [&](const Values& at, const Values& values, int last) {
    Values p(8);
    return PeakProfileFit(at, values, calc, {1.54056f, 1.54439f, 0}, std::span<float, 8>(p),
                          [=](int cycle, float) { return cycle < last; });
  };
  const auto rw = [&] {
    double residual = 0, total = 0;
    for (int i = 0; i < n; ++i) residual += std::pow(y[i] - calc[i], 2), total += y[i] * y[i];
    return std::sqrt(residual / total);
  };
  const FitResult first = fit(x, y, 1);
  EXPECT_EQ(first.end, FitEnd::Stopped);
  EXPECT_EQ(first.cycles, 1);
  EXPECT_NEAR(first.rw, rw(), 1e-5);
  // It starts from a profile half Lorentzian and as wide as the peak, with 1 / 0.8 of the area of a
  // box above the mean of both ends, on the line between them.
  const auto top = std::max_element(y.begin(), y.end()) - y.begin();
  const float line = y[0] + (y[n - 1] - y[0]) * (x[top] - x[0]) / (x[n - 1] - x[0]);
  const float height = (std::sqrt(std::log(2.0) / M_PI) + 1 / M_PI) / 0.8;
  EXPECT_NEAR(calc[top], line + (y[top] - (y[0] + y[n - 1]) / 2) * height, 1);
  // A side that does not fall to half of the height is as wide as the points are, 100 and 99.
  Values step(n, 900);
  step[100] = 1000;
  std::fill(step.begin() + 200, step.end(), 0.0f);
  for (int half : {200, 99}) {
    fit(x, step, 1);
    const double ends = 450 + 450 * (half == 200 ? 1 - 400 / 299.0 : -1 + 198 / 299.0);
    EXPECT_NEAR(calc[half], ends + 550 * height / 2, 1) << half;
    std::ranges::reverse(step);
  }
  const FitResult done = fit(x, y, 999);
  EXPECT_EQ(done.end, FitEnd::Done);
  EXPECT_GT(done.cycles, 2);
  EXPECT_LT(done.rw, first.rw);
  EXPECT_NEAR(done.rw, rw(), 1e-5);
  EXPECT_EQ(fit(Values(n, 30), y, 999).end, FitEnd::NoInverse);  // a peak without width
  Values huge = y;
  huge[top] = std::numeric_limits<float>::max();
  EXPECT_EQ(fit(x, huge, 999).end, FitEnd::Diverged);
  EXPECT_EQ(fit(x, x, 999).cycles, 0);  // the maximum at an end: no fit
}

}  // namespace
