// Peak search, single peak fit and fit of all peaks. The search of a full slot should stay below
// 30 ms, the fit of 400 points below 5 ms and that of 20000 below 200 ms, or near it when it finds
// no rest; the fit of 100 peaks on 5500 points below 300 ms.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <vector>

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

// Peaks in pairs, 10000 and 5000 counts high, in alpha1 and alpha2, with the noise of counts. The
// list has them on the points, and a step high. Returns the first position.
double FillPairs(int peaks, int points, double step, double distance) {
  const double fwhm = 5 * step, start = 10, every = points * step / (peaks / 2);
  const auto height = [&](double d) {
    const double u = 2 * d / fwhm;
    return 0.5 * std::exp2(-u * u) + 0.5 / (1 + u * u);
  };
  const auto alpha2 = [](double x) {
    return TwoRadToDeg * std::asin(std::sin(x / 2 / RadToDeg) * CuKalpha2 / CuKalpha1);
  };
  std::mt19937 random(1);
  ws.npts(SlotInput) = points;
  ws.scanwave = {{CuKalpha1, CuKalpha2, 0.5f}};
  std::vector<double> y(points, 300.0);
  ws.npeaks = peaks;
  for (int j = 1; j <= peaks; ++j) {
    const double place = start + every * ((j - 1) / 2 + 0.4) + (j % 2 ? 0 : distance * fwhm);
    const double top = j % 2 ? 10000 : 5000;
    for (int i = 0; i < points; ++i) {
      const double x = start + step * i;
      y[i] += top * (height(x - place) + 0.5 * height(x - alpha2(place)));
    }
    ws.peaks(ptth, j) = static_cast<float>(start + step * (std::round((place - start) / step) + 1));
  }
  for (int i = 0; i < points; ++i) {
    ws.xval(AxisTth, SlotInput, i + 1) = static_cast<float>(start + step * i);
    ws.yval(SlotInput, i + 1) = static_cast<float>(std::poisson_distribution<int>(y[i])(random));
  }
  return start + every * 0.4;
}

// 100 peaks on the pattern of a usual measurement, and a full list on a full slot whose peaks hang
// together; with what the first peaks of the pairs are off by, in steps and in e.s.d.s.
void BM_FitAllPeaks(benchmark::State& state) {
  const int peaks = static_cast<int>(state.range(0)), points = static_cast<int>(state.range(1));
  const double step = points == MaxPoints ? 0.005 : 0.02;
  const double first = FillPairs(peaks, points, step, static_cast<double>(state.range(2)) / 10);
  const PeakTables list = ws;
  for (auto _ : state) {
    static_cast<PeakTables&>(ws) = list;
    FitAllPeaks();
  }
  double off = 0, squares = 0;
  for (int j = 1; j <= peaks; j += 2) {
    const double d = ws.peaks(ptth, j) - first - points * step / (peaks / 2) * ((j - 1) / 2);
    off += std::fabs(d) / step / (peaks / 2);
    squares += d * d / (ws.peakesd(1, j) * ws.peakesd(1, j)) / (peaks / 2);
  }
  state.counters["steps"] = off;
  state.counters["esds"] = std::sqrt(squares);
  state.counters["failed"] = static_cast<double>(std::ranges::count(ws.peakfailed.row(), 1));
}
BENCHMARK(BM_FitAllPeaks)
    ->ArgNames({"peaks", "points", "tenths"})
    ->Args({100, 5500, 12})
    ->Args({100, 5500, 40})
    ->Args({200, 5500, 40})
    ->Args({200, MaxPoints, 12})
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  replay::Redirect([](const std::string&) {}, [] { std::abort(); });
  WInitialise(1, argv);
  benchmark::RunSpecifiedBenchmarks();
}
