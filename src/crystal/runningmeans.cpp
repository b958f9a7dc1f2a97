// Running means with the bits of the plain sums.
#include "crystal/runningmeans.h"

// Three compilations of the hot loop, chosen when the program starts: with sixteen lanes, with
// eight, and one that runs everywhere. Elsewhere the portable one alone, which is right too and
// merely slower.
#if defined(__x86_64__) && defined(__linux__) && defined(__GNUC__) && !defined(__clang__)
#define WIDE_LANES __attribute__((target_clones("avx512f", "avx2", "default"), optimize("O3")))
#else
#define WIDE_LANES
#endif

namespace {

constexpr int kBlock = 64;  // points summed side by side; a block of sums fits the registers

}  // namespace

int RoundedToBlocks(int n) { return (n + kBlock - 1) / kBlock * kBlock; }

// Each sum has one accumulator and takes its terms in rising order, for their order decides the
// last digits; a sliding window or partial sums would give others. What is free is the order across
// points: a block of neighbours adds its k-th terms together, one lane a point. This hides the
// latency of the addition, to which a loop over one window at a time is bound.
WIDE_LANES void RunningMeans(const float* __restrict z, int w, int divisor, float* __restrict mean,
                             int n) {
  const float count = static_cast<float>(divisor);
  for (int i = 0; i < n; i += kBlock) {
    float sum[kBlock] = {};
    for (int k = 0; k < w; ++k)
      for (int j = 0; j < kBlock; ++j) sum[j] += z[i + j + k];
    for (int j = 0; j < kBlock; ++j) mean[i + j] = sum[j] / count;
  }
}
