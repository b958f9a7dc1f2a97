// A redraw of the window: building the display list of a full pattern and painting it.
#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>

#include "fullpattern.h"
#include "inwindow.h"
#include "plot/plot.h"
#include "toolkit/qt/painter.h"
#include "workspace/workspace.h"

namespace {

constexpr QSize kCanvas(1536, 864);

// Arguments: plot switches, overlays, pixels of the screen to one of the window in hundredths.
void BM_RedrawAndPaint(benchmark::State& state) {
  FillFullPattern();
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

int main(int argc, char** argv) { RunInWindow(argc, argv, kCanvas); }
