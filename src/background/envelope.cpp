// The background estimator: a running mean that is never allowed above the curve.
#include <algorithm>
#include <vector>

#include "background/background.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

// Two compilations of the hot loop, chosen when the program starts: one with eight lanes, and one
// that runs everywhere. Elsewhere the portable one alone, which is right too and merely slower.
#if defined(__x86_64__) && defined(__linux__) && defined(__GNUC__) && !defined(__clang__)
#define WIDE_LANES __attribute__((target_clones("avx2", "default"), optimize("O3")))
#else
#define WIDE_LANES
#endif

namespace {

constexpr int kBlock = 64;       // points summed side by side; a block of sums fits the registers
constexpr int kLastWindow = 15;  // of the closing mean, whatever the window

// mean[i] becomes the mean of z[i] to z[i+w-1] for i in [0, n), n being rounded up to whole blocks:
// z must hold n + w - 1 values and mean n, for the rounded n.
//
// Each sum has one accumulator and takes its terms in rising order, for their order decides the
// last digits; a sliding window or partial sums would give others. What is free is the order across
// points: a block of neighbours adds its k-th terms together, one lane a point. This hides the
// latency of the addition, to which a loop over one window at a time is bound.
WIDE_LANES void RunningMeans(const float* __restrict z, int w, float* __restrict mean, int n) {
  const float width = static_cast<float>(w);
  for (int i = 0; i < n; i += kBlock) {
    float sum[kBlock] = {};
    for (int k = 0; k < w; ++k)
      for (int j = 0; j < kBlock; ++j) sum[j] += z[i + j + k];
    for (int j = 0; j < kBlock; ++j) mean[i + j] = sum[j] / width;
  }
}

}  // namespace

void BackgroundEnvelope(float* y, int n, int w) {
  if (w > 0.9f * static_cast<float>(n)) w = nint(0.9f * static_cast<float>(n));
  if (w % 2 == 0) --w;
  if (w < 3) return;

  // The curve between copies of its first and last value as they are now. The ends are wide enough
  // for the closing mean, which may be the wider of the two windows.
  const int half = (w - 1) / 2, lasthalf = (kLastWindow - 1) / 2;
  const int pad = std::max(half, lasthalf);
  const int blocks = (n + kBlock - 1) / kBlock * kBlock;
  std::vector<float> z(blocks + 2 * pad, y[n - 1]), mean(blocks);
  std::fill_n(z.begin(), pad, y[0]);

  for (int cycle = 1; cycle <= ws.autosubcycles; ++cycle) {
    std::copy_n(y, n, z.begin() + pad);
    RunningMeans(z.data() + pad - half, w, mean.data(), n);
    for (int i = 0; i < n; ++i) y[i] = std::min(y[i], mean[i]);
  }
  std::copy_n(y, n, z.begin() + pad);
  RunningMeans(z.data() + pad - lasthalf, kLastWindow, mean.data(), n);
  std::copy_n(mean.begin(), n, y);
}
