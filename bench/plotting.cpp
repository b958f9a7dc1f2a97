// Building the display list of a full pattern, and what scales and axes take of it.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

#include "plot/penplot.h"
#include "plot/plot.h"
#include "toolkit/displaylist.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

// 20000 points with every switch on, four overlays and full lists of peaks and manual points.
void FillWorkspace() {
  ws.viewmode = 1;
  ws.plotmask = 63;
  ws.noverlay = MaxOverlays;
  ws.xgrid = ws.ygrid = 1;
  for (int slot = 1; slot < MaxSlots; ++slot) {
    ws.npts(slot) = MaxPoints;
    if (slot >= SlotOverlay) ws.wavelen(slot) = CuKalpha1;
    for (int i = 1; i <= MaxPoints; ++i) {
      const float x = 5 + 0.007f * static_cast<float>(i);
      ws.xval(AxisTth, slot, i) = x;
      ws.yval(slot, i) =
          500 + 400 * std::sin(x * 7) + 20 * std::sin(x * 1000 * static_cast<float>(slot));
    }
  }
  ComputeXAxes();
  ws.npeaks = MaxPeaks;
  for (int j = 1; j <= MaxPeaks; ++j) ws.peaks(ptth, j) = 10 + 0.6f * static_cast<float>(j);
  ws.nmanualbg = MaxManualPoints;
  for (int j = 1; j <= MaxManualPoints; ++j) {
    ws.manualbg(1, j) = 10 + static_cast<float>(j);
    ws.manualbg(2, j) = 500;
  }
}

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
  FillWorkspace();
  ws.plotmask = static_cast<int>(state.range(0));
  if (ws.plotmask == PlotInput) ws.noverlay = 0;
  ws.yaxismode = static_cast<int>(state.range(1));
  for (auto _ : state) RedrawView(1);
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
  FillWorkspace();
  static float list[MaxPoints + 3];
  std::copy_n(ws.yval.row(SlotInput).data(), MaxPoints, list);
  for (auto _ : state) NiceRange(list, MaxPoints, 850);
}
BENCHMARK(BM_NiceRange)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
