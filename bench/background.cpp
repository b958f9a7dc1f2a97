// The operations of the Background menu on a full slot. All should stay below 50 ms.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "background/background.h"
#include "toolkit/replay/transcript.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

void FillSlots() {
  for (int slot : {SlotInput, SlotBackground}) {
    ws.npts(slot) = MaxPoints;
    for (int i = 1; i <= MaxPoints; ++i) {
      ws.xval(AxisTth, slot, i) = 5 + 0.007f * static_cast<float>(i);
      ws.yval(slot, i) = 200 + static_cast<float>((i * 7919LL) % 53);
    }
  }
  ws.autosubcycles = 25;
  ws.chebyused = MaxChebyshev;
  ws.chebyxmin = 5;
  ws.chebyxmax = 145;
  ws.bgscale = 1;
  ws.bgintstart = ws.cryststart = 10;
  ws.bgintend = ws.crystend = 140;
}

std::string SaveName() { return std::filesystem::temp_directory_path() / "quillagram-bench.xy"; }

template <class Operation>
void Time(benchmark::State& state, Operation operation) {
  for (auto _ : state) {
    state.PauseTiming();
    FillSlots();
    state.ResumeTiming();
    operation();
  }
}

bool Agree(const std::string&, const std::string&) { return true; }

void FitPoints(int mode) {
  ws.manualbgmode = mode;
  for (ws.nmanualbg = 0; ws.nmanualbg < MaxManualPoints;) {
    ++ws.nmanualbg;
    ws.manualbg(1, ws.nmanualbg) = 5 + 1.4f * static_cast<float>(ws.nmanualbg);
    ws.manualbg(2, ws.nmanualbg) = 200;
  }
  FitManualBackground();
}

BENCHMARK_CAPTURE(Time, autosubtract, [] { Autosubtract(Agree); });
BENCHMARK_CAPTURE(Time, subtract, [] { SubtractBackground(Agree); });
BENCHMARK_CAPTURE(Time, refined, RefinedBackground);
BENCHMARK_CAPTURE(Time, scale, ScaleBackground);
BENCHMARK_CAPTURE(Time, scale_to_interval, ScaleToInterval);
BENCHMARK_CAPTURE(Time, crystallinity, Crystallinity);
BENCHMARK_CAPTURE(Time, save, [] { SaveBackground(SaveName()); });
BENCHMARK_CAPTURE(Time, from_file, [] { BackgroundFromFile(SaveName()); });
BENCHMARK_CAPTURE(Time, clear, ClearBackground);
BENCHMARK_CAPTURE(Time, manual_linear, [] { FitPoints(1); });
BENCHMARK_CAPTURE(Time, manual_spline, [] { FitPoints(2); });
BENCHMARK_CAPTURE(Time, manual_chebyshev, [] { FitPoints(3); });

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  replay::Redirect([](const std::string&) {}, [] { std::abort(); });
  WInitialise(1, argv);
  replay::NoInput();
  ws.viewmode = ws.filetype = 1;
  FillSlots();
  SaveBackground(SaveName());
  benchmark::RunSpecifiedBenchmarks();
  std::filesystem::remove(SaveName());
}
