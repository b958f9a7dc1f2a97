// The commands of the Modify menu on a full slot, redraws included. All should stay below 50 ms,
// and alpha2 stripping with the spline below 250 ms.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "modify/modify.h"
#include "toolkit/replay/transcript.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

constexpr float kStep = 0.007f;

void FillSlot() {
  ws.plotmask = PlotInput;
  ws.viewmode = 1;
  ws.npts(SlotInput) = MaxPoints;
  for (int i = 1; i <= MaxPoints; ++i) {
    ws.xval(AxisTth, SlotInput, i) = 5 + kStep * static_cast<float>(i);
    ws.yval(SlotInput, i) = 200 + static_cast<float>((i * 7919LL) % 53);
  }
}

template <class Setting>
void Time(benchmark::State& state, Outcome (*command)(), Setting setting) {
  for (auto _ : state) {
    state.PauseTiming();
    FillSlot();
    setting();
    state.ResumeTiming();
    command();
  }
}

void Strip(benchmark::State& state, int steps, int interpolation) {
  Time(state, Alpha2Strip, [=] { ws.a2steps = steps, ws.a2interp = interpolation; });
}

// Some hundred points lie between alpha2 and alpha1.
void StripFine(benchmark::State& state) {
  Time(state, Alpha2Strip, [] {
    for (int i = 1; i <= MaxPoints; ++i)
      ws.xval(AxisTth, SlotInput, i) = 110 + 0.002f * static_cast<float>(i);
    ws.a2steps = 4, ws.a2interp = 3;
  });
}

void Smooth(benchmark::State& state, int window) {
  Time(state, SmoothPattern, [=] { ws.smoothwindow = window; });
}

void Convert(benchmark::State& state, float step) {
  Time(state, ConvertPattern, [=] {
    ws.origwavelength = CuKalpha1;
    ws.newwavelength = 0.7093f;
    ws.savestart = 2;
    ws.savestop = 60;
    ws.savestep = step;
  });
}

#define PLAIN(name, command, ...) \
  BENCHMARK_CAPTURE(Time, name, command, [] { __VA_ARGS__; })->Unit(benchmark::kMillisecond)

PLAIN(autodivergence, Autodivergence);
PLAIN(cylinder, AbsorptionCylinder, ws.muR = 1.25f);
PLAIN(plate, AbsorptionPlate, ws.mut = 0.5f; ws.plateangle = 20);
PLAIN(lp, LpCorrect, ws.lpmode = 6);
PLAIN(zero_shift, ZeroShift, ws.zeroshift = 0.0123f; ws.useorigsteps = 1);
PLAIN(truncate, Truncate, ws.savestart = 10; ws.savestop = 120);
PLAIN(polynomial, AddPolynomial, ws.polycoef.fill(0.001f));
PLAIN(scale, ScalePattern, ws.scalefactor = 1.5f);
PLAIN(savitzky_golay, SavitzkyGolay, ws.sgwindow = 12);
PLAIN(chebyshev, ChebyshevFit, ws.chebyorder = 14);
BENCHMARK_CAPTURE(Convert, fine, 0.004f)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Convert, binned, 0.02f)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Smooth, narrow, 15)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Smooth, widest, MaxPoints)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Smooth, half, MaxPoints / 2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Strip, linear_of_9, 4, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Strip, spline_of_9, 4, 3)->Unit(benchmark::kMillisecond);
BENCHMARK(StripFine)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Strip, spline_of_25, 6, 3)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  replay::Redirect([](const std::string&) {}, [] { std::abort(); });
  WInitialise(1, argv);
  replay::NoInput();
  benchmark::RunSpecifiedBenchmarks();
}
