// Peak search and single peak fit. The search of a full slot should stay below
// 30 ms, the fit of 400 points below 5 ms and that of 20000 below 200 ms, or near it when it finds
// no rest.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>

#include "peaks/peaks.h"
#include "toolkit/replay/transcript.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

// Gaussian peaks every `distance` degrees on a background with counting noise of a kind.
void FillSlot(int points, float start, float step, float distance, float fwhm) {
  ws.viewmode = ws.plotmask = 1;
  ws.npts(SlotInput) = points;
  for (int i = 1; i <= points; ++i) {
    const float x = start + step * static_cast<float>(i - 1);
    const float u = 2 * (std::fmod(x - start, distance) - distance / 2) / fwhm;
    ws.xval(AxisTth, SlotInput, i) = x;
    ws.yval(SlotInput, i) =
        200 + 5000 * std::exp2(-u * u) + static_cast<float>((i * 7919LL) % 53) - 26;
  }
  ws.viewxmin = ws.plotxmin = start;
  ws.viewxmax = ws.plotxmax = start + step * static_cast<float>(points);
}

void BM_Search(benchmark::State& state) {
  FillSlot(MaxPoints, 5, 0.005f, 2, 0.1f);
  ws.pkmaxfwhm = state.range(0) ? 1.0f : 0.4f;
  for (auto _ : state) OnPeakSearch();
}
BENCHMARK(BM_Search)->ArgName("broad")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_SinglePeakFit(benchmark::State& state) {
  const int points = static_cast<int>(state.range(0));
  FillSlot(points, 28, 4.0f / static_cast<float>(points), 4, 0.12f);
  ws.scanwave = {{CuKalpha1, CuKalpha2, state.range(1) ? 0.5f : 0.0f}};
  for (auto _ : state) SinglePeakFit();
}
BENCHMARK(BM_SinglePeakFit)
    ->ArgNames({"points", "alpha2"})
    ->ArgsProduct({{400, MaxPoints}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

// Two broad humps fitted as one peak: it takes all 200 cycles of both passes, the longest there is.
void BM_LongestFit(benchmark::State& state) {
  FillSlot(MaxPoints, 5, 0.005f, 50, 20);
  ws.scanwave = {{CuKalpha1, CuKalpha2, 0.5f}};
  for (auto _ : state) SinglePeakFit();
}
BENCHMARK(BM_LongestFit)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  replay::Redirect([](const std::string&) {}, [] { std::abort(); });
  WInitialise(1, argv);
  benchmark::RunSpecifiedBenchmarks();
}
