// The kernels hold no state and show nothing: several can run at once, and each tells its end.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <future>
#include <latch>
#include <limits>
#include <vector>

#include "background/background.h"
#include "crystal/chebyshev.h"
#include "crystal/matrix.h"
#include "crystal/spline.h"
#include "peaks/gaussmatch.h"
#include "peaks/peakprofile.h"

namespace {

using Values = std::vector<float>;

const FitWavelengths kCopper{1.54056f, 1.54439f, 0.5f};
const auto kGoOn = [](int, float) { return true; };

// A broad peak in the middle, and some unrest.
struct Pattern {
  explicit Pattern(int n) : x(n), y(n) {
    for (int i = 0; i < n; ++i) {
      const float u = static_cast<float>(i - n / 2) / 12;
      x[i] = 30 + 0.01f * static_cast<float>(i);
      y[i] = 100 + 1000 * std::exp(-u * u) + static_cast<float>(i * 7919 % 13);
    }
  }
  Values x, y;
};

Values Envelope(const Pattern& pattern) {
  Values y = pattern.y;
  BackgroundEnvelope(y, 61, 5);
  return y;
}

Values Curvatures(const Pattern& pattern) {
  Values y2(pattern.x.size());
  SplineSetup(pattern.x, pattern.y, NaturalEnd, NaturalEnd, y2);
  return y2;
}

Values Chebyshev(const Pattern& pattern) {
  Values coef(12);
  const ChebyshevFrame frame{pattern.x.front(), pattern.x.back(), 1};
  ChebyshevCycles(pattern.x, pattern.y, frame, coef, 3, kGoOn);
  return coef;
}

Values Inverse(const Pattern& pattern) {
  int order = static_cast<int>(std::sqrt(pattern.y.size()));
  Values a = pattern.y;
  for (int i = 0; i < order; ++i) a[i + order * i] += 5000;
  MatrixInverse(a.data(), order, order);
  return a;
}

Values PeakFit(const Pattern& pattern) {
  Values p(8), calc(pattern.x.size());
  PeakProfileFit(pattern.x, pattern.y, calc, kCopper, std::span<float, 8>(p), kGoOn);
  calc.insert(calc.end(), p.begin(), p.end());
  return calc;
}

Values Match(const Pattern& pattern) {
  const int middle = static_cast<int>(pattern.y.size()) / 2;
  const GaussianMatch match = GaussMatch(pattern.y, {middle, 20}, 0.01f);
  return {match.root, match.height};
}

TEST(Kernels, TwoAtOnceGiveTheBitsOfOneAlone) {
  const Pattern small(300), large(900);
  for (const auto kernel : {Envelope, Curvatures, Chebyshev, Inverse, PeakFit, Match}) {
    const Values ofsmall = kernel(small), oflarge = kernel(large);
    std::latch begun(1);
    std::atomic<bool> ended = false;
    std::future<int> other = std::async(std::launch::async, [&] {
      int wrong = 0;
      for (begun.count_down(); !ended;) wrong += kernel(small) != ofsmall;
      return wrong;
    });
    begun.wait();
    int wrong = 0;
    for (int i = 0; i < 200; ++i) wrong += kernel(large) != oflarge;
    ended = true;
    EXPECT_EQ(wrong + other.get(), 0);
  }
}

TEST(PeakProfileFit, TellsHowItEnded) {
  constexpr int n = 300;
  const auto [x, y] = Pattern(n);
  const auto fit = [](const Values& at, const Values& values, int last) {
    Values p(8), calc(n);
    return PeakProfileFit(at, values, calc, kCopper, std::span<float, 8>(p),
                          [=](int cycle, float) { return cycle < last; });
  };
  const FitResult stopped = fit(x, y, 2), done = fit(x, y, 999);
  EXPECT_EQ(stopped.end, FitEnd::Stopped);
  EXPECT_EQ(stopped.cycles, 2);
  EXPECT_EQ(done.end, FitEnd::Done);
  EXPECT_GT(done.cycles, 2);
  EXPECT_LT(done.rw, stopped.rw);
  EXPECT_EQ(fit(Values(n, 30), y, 999).end, FitEnd::NoInverse);  // a peak without width
  Values huge = y;
  huge[n / 2] = std::numeric_limits<float>::max();
  EXPECT_EQ(fit(x, huge, 999).end, FitEnd::Diverged);
  EXPECT_EQ(fit(x, x, 999).cycles, 0);  // the maximum at an end: no fit
}

}  // namespace
