// A redraw of the window: building the display list of a full pattern and painting it.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "plot/plot.h"
#include "toolkit/qt/painter.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

constexpr QSize kCanvas(1536, 864);

// 60 peaks on a falling background.
float Calculated(float x) {
  const float place = std::fmod(x, 2.3f) - 1.1f;
  return 100 + 4000 / x + 9000 * std::exp(-place * place / 0.006f) * std::fabs(std::sin(x));
}

// A pattern of 20000 points with all that the switches of the Plot menu show, full lists of peaks
// and manual points, and overlays.
void FillWorkspace() {
  ws.viewmode = 1;
  ws.xgrid = ws.ygrid = 1;
  for (int slot = 1; slot < MaxSlots; ++slot) {
    ws.npts(slot) = MaxPoints;
    if (slot >= SlotOverlay) ws.wavelen(slot) = CuKalpha1;
  }
  for (int i = 1; i <= MaxPoints; ++i) {
    const float x = 5 + 0.007f * static_cast<float>(i);
    const float noise = std::sqrt(Calculated(x)) * std::sin(x * 100000);
    for (int slot = 1; slot < MaxSlots; ++slot) {
      ws.xval(AxisTth, slot, i) = x;
      ws.yval(slot, i) = Calculated(x) + noise;
    }
    ws.yval(SlotBackground, i) = 100 + 4000 / x;
    ws.yval(SlotNet, i) = Calculated(x) + noise - ws.yval(SlotBackground, i);
    ws.yval(SlotRefined, i) = Calculated(x);
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

// Arguments: plot switches, overlays, pixels of the screen to one of the window in hundredths.
void BM_RedrawAndPaint(benchmark::State& state) {
  FillWorkspace();
  ws.plotmask = static_cast<int>(state.range(0));
  ws.noverlay = static_cast<int>(state.range(1));
  const double density = static_cast<double>(state.range(2)) / 100;
  QImage sheet(kCanvas * density, QImage::Format_RGB32);
  for (auto _ : state) {
    RedrawView(1);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    PaintList(painter, ScreenList(), sheet.size(), density, Detail::PerColumn);
  }
  state.counters["points"] = static_cast<double>(ScreenList().points.size());
}
BENCHMARK(BM_RedrawAndPaint)
    ->ArgsProduct({{PlotInput, 63}, {0}, {100, 125, 200}})
    ->ArgsProduct({{63}, {MaxOverlays}, {100, 200}})
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  benchmark::Initialize(&argc, argv);
  WInitialise(argc, argv);
  WindowOpen(20, 20, kCanvas.width(), kCanvas.height(), 0, "Quillagram");
  IGrInit("");
  IGrArea(0, 0, 1, 1);
  IGrUnits(0, 0, 1000, 1000);
  benchmark::RunSpecifiedBenchmarks();
  WindowClose();
}
