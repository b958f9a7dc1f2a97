// The map of a series of 2000 patterns of 3000 points: reading its files, drawing it, zooming it.
#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "inwindow.h"
#include "plot/freezoom.h"
#include "plot/guestview.h"
#include "series/picture.h"
#include "toolkit/qt/painter.h"
#include "workspace/workspace.h"

namespace {

constexpr QSize kCanvas(1536, 864);
constexpr int kRows = 2000, kPoints = 3000;

// Ten peaks that move with the number of the file; every file is a bit different.
float CountsAt(int row, float tth) {
  float counts = 100 + 20 * std::sin(0.01F * static_cast<float>(row) + tth);
  for (int k = 0; k < 10; ++k) {
    const float middle = 12 + 6 * static_cast<float>(k) - 0.0002F * static_cast<float>(row * k);
    const float off = (tth - middle) / 0.05F;
    counts += 10000 / static_cast<float>(k + 1) / (1 + off * off);
  }
  return counts;
}

float PlaceOf(int i) { return 10 + 0.02F * static_cast<float>(i); }

std::shared_ptr<const SeriesMap> Map() {
  static const auto known = [] {
    const auto map = std::make_shared<SeriesMap>();
    map->total = kRows;
    for (int i = 0; i < kPoints; ++i) map->tth.push_back(PlaceOf(i));
    for (int row = 0; row < kRows; ++row) {
      map->files.push_back(row + 1);
      for (const float tth : map->tth) map->counts.push_back(CountsAt(row, tth));
    }
    return map;
  }();
  return known;
}

SeriesPicture Picture(CountScale scale, SeriesKind kind) {
  SeriesPicture picture;
  picture.kind = kind;
  picture.title = "2000 patterns";
  picture.map = Map();
  picture.scale = scale;
  return picture;
}

void Paint(QImage& sheet, double density) {
  sheet.fill(Qt::white);
  QPainter painter(&sheet);
  PaintList(painter, ScreenList(), sheet.size(), density, Detail::PerColumn);
}

// Arguments: scale of the counts, kind of view, pixels of the screen to one of the window in
// hundredths. From new patterns or another scale to the picture.
void BM_Draw(benchmark::State& state) {
  const double density = static_cast<double>(state.range(2)) / 100;
  QImage sheet(kCanvas * density, QImage::Format_RGB32);
  const auto picture =
      Picture(static_cast<CountScale>(state.range(0)), static_cast<SeriesKind>(state.range(1)));
  ws.viewmode = GuestViewMode;
  for (auto _ : state) {
    ShowSeries(picture);
    RedrawView(1);
    Paint(sheet, density);
  }
}
BENCHMARK(BM_Draw)
    ->ArgsProduct({{0, 1, 2}, {1}, {100, 200}})
    ->ArgsProduct({{0}, {2}, {100}})
    ->Unit(benchmark::kMillisecond);

// Turns of the wheel in and out.
void BM_Zoom(benchmark::State& state) {
  const double density = static_cast<double>(state.range(1)) / 100;
  QImage sheet(kCanvas * density, QImage::Format_RGB32);
  ws.viewmode = GuestViewMode;
  ShowSeries(Picture(CountScale::Logarithm, static_cast<SeriesKind>(state.range(0))));
  RedrawView(1);
  int turn = 0;
  for (auto _ : state) {
    (turn % 2 ? ZoomX : ZoomY)({30, 900}, turn % 16 < 8 ? 1.0F : -1.0F);
    ++turn;
    RefreshView();
    Paint(sheet, density);
  }
}
BENCHMARK(BM_Zoom)->ArgsProduct({{1, 2}, {100, 200}})->Unit(benchmark::kMillisecond);

void BM_Read(benchmark::State& state) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("seriesmap" + std::to_string(std::rand()));
  std::filesystem::create_directory(folder);
  std::vector<std::string> files;
  for (int row = 0; row < kRows; ++row) {
    files.push_back(folder / (std::to_string(row) + ".xy"));
    std::ofstream file(files.back());
    for (int i = 0; i < kPoints; ++i)
      file << PlaceOf(i) << ' ' << std::round(CountsAt(row, PlaceOf(i))) << '\n';
  }
  for (auto _ : state) benchmark::DoNotOptimize(ReadSeriesMap(files, [](float) { return true; }));
  std::filesystem::remove_all(folder);
}
BENCHMARK(BM_Read)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) { RunInWindow(argc, argv, kCanvas); }
