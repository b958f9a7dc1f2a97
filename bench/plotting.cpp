// Building the display list of a full pattern, and what scales and axes take of it.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "fullpattern.h"
#include "plot/penplot.h"
#include "plot/plot.h"
#include "toolkit/displaylist.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

void OpenScreen() {
  static char name[] = "bench";
  static char* arguments[] = {name, nullptr};
  WInitialise(1, arguments);
  WindowOpen(20, 20, 1536, 864, 0, "Quillagram");
  IGrInit("");
  IGrArea(0, 0, 1, 1);
  IGrUnits(0, 0, 1000, 1000);
}

// Arguments: switches, y axis.
void BM_Redraw(benchmark::State& state) {
  OpenScreen();
  FillFullPattern();
  ws.plotmask = static_cast<int>(state.range(0));
  ws.noverlay = ws.plotmask == PlotInput ? 0 : MaxOverlays;
  ws.yaxismode = static_cast<int>(state.range(1));
  for (auto _ : state) {
    RedrawView(1);
    IGrFinish();
  }
  state.counters["points"] = static_cast<double>(ScreenList().points.size());
}
BENCHMARK(BM_Redraw)
    ->Args({PlotInput, 1})
    ->Args({63, 1})
    ->Args({63, 2})
    ->Unit(benchmark::kMillisecond);

void BM_Axes(benchmark::State& state) {
  OpenScreen();
  for (auto _ : state) {
    IGrAreaClear();
    PlotInit();
    AxisTwoTheta(850, 5, 145, 850.0f / 140, 10, 15, "2|q");
    AxisLinear(850, 0, 7400, 850.0f / 7400, 10, 15, -270, "Counts");
  }
}
BENCHMARK(BM_Axes)->Unit(benchmark::kMicrosecond);

void BM_NiceRange(benchmark::State& state) {
  FillFullPattern();
  static float list[MaxPoints + 3];
  std::copy_n(ws.yval.row(SlotInput).data(), MaxPoints, list);
  for (auto _ : state) NiceRange(list, MaxPoints, 850);
}
BENCHMARK(BM_NiceRange)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
