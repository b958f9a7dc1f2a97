// The background estimator: a running mean that is never allowed above the curve.
#include <algorithm>
#include <vector>

#include "background/background.h"
#include "crystal/runningmeans.h"
#include "workspace/text.h"  // for nint

namespace {

constexpr int kLastWindow = 15;  // of the closing mean, whatever the window

// The curve goes nowhere above its mean. Whole runs of points first, which the compiler takes in
// vectors.
void Lower(float* __restrict curve, const float* __restrict mean, int n) {
  constexpr int run = 16;
  int i = 0;
  for (; i + run <= n; i += run)
    for (int j = 0; j < run; ++j) curve[i + j] = std::min(curve[i + j], mean[i + j]);
  for (; i < n; ++i) curve[i] = std::min(curve[i], mean[i]);
}

}  // namespace

void BackgroundEnvelope(std::span<float> y, int w, int cycles) {
  const int n = static_cast<int>(y.size());
  if (w > 0.9f * static_cast<float>(n)) w = nint(0.9f * static_cast<float>(n));
  if (w % 2 == 0) --w;
  if (w < 3) return;

  // The curve between copies of its first and last value as they are at first. The ends are wide
  // enough for the closing mean, which may be the wider of the two windows.
  const int half = (w - 1) / 2, lasthalf = (kLastWindow - 1) / 2;
  const int pad = std::max(half, lasthalf);
  const int blocks = RoundedToBlocks(n);
  std::vector<float> z(blocks + 2 * pad, y[n - 1]), mean(blocks);
  std::fill_n(z.begin(), pad, y[0]);

  std::ranges::copy(y, z.begin() + pad);
  for (int cycle = 1; cycle <= cycles; ++cycle) {
    RunningMeans(z.data() + pad - half, w, mean.data(), n);
    Lower(z.data() + pad, mean.data(), n);
  }
  RunningMeans(z.data() + pad - lasthalf, kLastWindow, mean.data(), n);
  std::copy_n(mean.begin(), n, y.begin());
}
