// The background estimator at its defaults against the plain loop of the same rule, in one run.
//
// The counter "ratio" of BM_Envelope is how many times faster it is than the plain loop.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <span>
#include <vector>

#include "background/background.h"

namespace {

constexpr int kPoints = 20000;
constexpr int kWindow = 201, kCycles = 25;

std::vector<float> Pattern() {
  std::vector<float> y(kPoints);
  for (int i = 0; i < kPoints; ++i)
    y[i] = 200 + 80 * std::sin(i * 0.0007f) + (i % 400 < 30 ? 900 : 0) + (i * 7919LL) % 53;
  return y;
}

// For the defaults only: an odd window above 15 and below nine tenths of the pattern.
[[gnu::noinline]] void PlainEnvelope(std::span<float> y, int w, int cycles) {
  const int n = static_cast<int>(y.size()), m = (w - 1) / 2;
  std::vector<float> z(n + 2 * m, y[n - 1]);
  std::fill_n(z.begin(), m, y[0]);
  for (int cycle = 0; cycle < cycles; ++cycle) {
    std::ranges::copy(y, z.begin() + m);
    for (int i = 0; i < n; ++i) {
      float s = 0;
      for (int k = 0; k < w; ++k) s += z[i + k];
      y[i] = std::min(y[i], s / static_cast<float>(w));
    }
  }
  std::ranges::copy(y, z.begin() + m);
  for (int i = 0; i < n; ++i) {
    float s = 0;
    for (int k = -7; k <= 7; ++k) s += z[m + i + k];
    y[i] = s / 15;
  }
}

// Seconds of processor time, the best of some rounds.
template <class Routine>
double BestTime(Routine routine, int rounds) {
  double best = 1e9;
  for (int r = 0; r < rounds; ++r) {
    std::vector<float> y = Pattern();
    const std::clock_t start = std::clock();
    routine(y, kWindow, kCycles);
    best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    benchmark::DoNotOptimize(y.data());
  }
  return best;
}

template <class Routine>
void Time(benchmark::State& state, Routine routine) {
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<float> y = Pattern();
    state.ResumeTiming();
    routine(y, kWindow, kCycles);
  }
}

void BM_PlainEnvelope(benchmark::State& state) { Time(state, PlainEnvelope); }

void BM_Envelope(benchmark::State& state) {
  Time(state, BackgroundEnvelope);
  state.counters["ratio"] = BestTime(PlainEnvelope, 5) / BestTime(BackgroundEnvelope, 20);
}

BENCHMARK(BM_PlainEnvelope)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Envelope)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
