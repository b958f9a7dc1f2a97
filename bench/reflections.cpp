// The reflections of a large orthorhombic cell to 150 degrees, which should take less than 15 ms,
// and of a huge triclinic one; and the plain loop over all indices, once for each time that the
// range is cut down.
//
// The counter "ratio" is how many times longer it takes than the plain loops.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <vector>

#include "crystal/laue.h"
#include "crystal/reflections.h"
#include "workspace/workspace.h"

namespace {

constexpr TthRange kRange{5, 150};

struct Sample {
  UnitCell cell;
  int laueclass;
};
const Sample kSamples[] = {{{{25, 25.5f, 26, 90, 90, 90}}, 5}, {{{70, 75, 80, 85, 95, 100}}, 1}};

std::size_t Reflections(const Sample& sample) {
  UnitCell cell = sample.cell;
  int centering = 1;
  float wavelength = CuKalpha1;
  return AssignReflections(cell, sample.laueclass, centering, kRange, wavelength)->size();
}

std::vector<int> PlainCodes(const Sample& sample, const Metric& q, float low, float high) {
  int most[3];
  for (int k = 0; k < 3; ++k)
    most[k] = std::min(99, static_cast<int>(3 * sample.cell(k + 1) * std::sqrt(high) + 0.5f));
  std::vector<int> codes;
  for (int h = -most[0]; h <= most[0]; ++h)
    for (int k = -most[1]; k <= most[1]; ++k)
      for (int l = -most[2]; l <= most[2]; ++l) {
        const float value = QuadraticForm(q, {h, k, l});
        if (value < low || value > high || (h == 0 && k == 0 && l == 0)) continue;
        codes.push_back(PackHkl(CanonicalIndices({h, k, l}, sample.laueclass)));
        if (codes.size() == 10000) return codes;
      }
  return codes;
}

[[gnu::noinline]] std::size_t PlainReflections(const Sample& sample) {
  const auto limit = [](float tth) {
    const float s = std::sin(tth / TwoRadToDeg) / CuKalpha1;
    return s * s;
  };
  const Metric q = *SineMetric(sample.cell);
  const float low = limit(kRange.low);
  float high = limit(kRange.high);
  std::vector<int> codes = PlainCodes(sample, q, low, high);
  while (codes.size() == 10000) {
    high = (low + high) / 2;
    codes = PlainCodes(sample, q, low, high);
  }
  std::ranges::sort(codes);
  return MergeCodes(codes).size();
}

template <class Routine>
double BestTime(Routine routine, const Sample& sample) {
  double best = 1e9;
  for (int r = 0; r < 20; ++r) {
    const std::clock_t start = std::clock();
    benchmark::DoNotOptimize(routine(sample));
    best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best;
}

void BM_PlainReflections(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(PlainReflections(kSamples[state.range(0)]));
}

void BM_Reflections(benchmark::State& state) {
  const Sample& sample = kSamples[state.range(0)];
  for (auto _ : state) benchmark::DoNotOptimize(Reflections(sample));
  state.counters["ratio"] = BestTime(Reflections, sample) / BestTime(PlainReflections, sample);
}

BENCHMARK(BM_PlainReflections)->ArgName("sample")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Reflections)->ArgName("sample")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
