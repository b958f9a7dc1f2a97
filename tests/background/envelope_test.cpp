// The background estimator against the plain loop, and against what it must do to known curves.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "background/background.h"

namespace {

// The rule point by point, with ends clamped instead of padded.
std::vector<float> PlainEnvelope(std::vector<float> y, int w, int cycles) {
  const int n = static_cast<int>(y.size());
  const int limit = static_cast<int>(std::lround(0.9 * n));
  if (w > 0.9 * n) w = limit;
  if (w % 2 == 0) --w;
  if (w < 3) return y;
  const float before = y.front(), behind = y.back();
  const auto mean = [&](const std::vector<float>& from, int i, int width) {
    float s = 0;
    for (int k = i - width / 2; k <= i + width / 2; ++k)
      s += k < 0 ? before : k >= n ? behind : from[k];
    return s / static_cast<float>(width);
  };
  for (int cycle = 0; cycle < cycles; ++cycle) {
    const std::vector<float> from = y;
    for (int i = 0; i < n; ++i) y[i] = std::min(y[i], mean(from, i, w));
  }
  const std::vector<float> from = y;
  for (int i = 0; i < n; ++i) y[i] = mean(from, i, 15);
  return y;
}

std::vector<float> Envelope(std::vector<float> y, int w, int cycles) {
  BackgroundEnvelope(y, w, cycles);
  return y;
}

TEST(Envelope, EqualsThePlainLoopBitForBit) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> counts(-20, 5000);
  for (int cycles : {0, 1, 3})
    for (int n : {1, 2, 3, 4, 7, 15, 63, 64, 65, 100, 127, 128, 129, 1001})
      for (int w : {-5, 0, 2, 3, 4, 5, 9, 13, 14, 15, 16, 64, 89, 200, 201, 2000}) {
        std::vector<float> y(n);
        for (float& value : y) value = counts(random);
        const std::vector<float> fast = Envelope(y, w, cycles), plain = PlainEnvelope(y, w, cycles);
        ASSERT_EQ(std::memcmp(fast.data(), plain.data(), n * sizeof(float)), 0)
            << n << " points, window " << w << ", cycles " << cycles;
      }
}

// A broad hump with narrow peaks on it, as a glassy sample gives. 25 means of 4.02 degrees widen a
// Gaussian of sigma 20 by a variance of 25 * 4.02^2 / 12 = 33.7, which takes 1 - 20 / sqrt(433.7)
// or 4 percent off its top of 600: 3 percent of the hump with its floor. Peaks leave no trace.
TEST(Envelope, FollowsAHumpUnderPeaks) {
  const int n = 7000;
  std::vector<float> hump(n), y(n);
  for (int i = 0; i < n; ++i) {
    const float tth = 10 + 0.02f * i;
    hump[i] = 200 + 600 * std::exp(-(tth - 60) * (tth - 60) / (2 * 20 * 20));
    y[i] = hump[i];
    for (float at : {32.0f, 44.5f, 61.0f, 75.5f, 98.0f})
      y[i] += 4000 * std::exp(-(tth - at) * (tth - at) / (2 * 0.05f * 0.05f));
  }
  const std::vector<float> out = Envelope(y, 201, 25);
  for (int i = 0; i < n; ++i) {
    EXPECT_LT(out[i], 1.005f * hump[i]) << i;
    EXPECT_GT(out[i], 0.965f * hump[i]) << i;
  }
}

}  // namespace
