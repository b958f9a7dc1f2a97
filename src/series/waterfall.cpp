// The waterfall: patterns as curves, each with its floor at the number of its file.
#include <algorithm>
#include <cmath>

#include "plot/dataposition.h"
#include "series/seriesframe.h"
#include "series/seriesviews.h"
#include "workspace/workspace.h"

namespace {

constexpr float kHighest = 0.25F;         // share of the frame for the strongest peak
constexpr std::size_t kMostCurves = 100;  // that are told apart in it

float HeightOfCurve(const SeriesShown& shown, float counts) {
  const float height = kHighest * (ws.viewymax - ws.viewymin);
  return height * ScaledCounts(shown.picture.scale, shown.counts, counts);
}

// Every so many rows of the map whose floors the frame shows.
struct DrawnRows {
  std::size_t step;
  std::vector<std::size_t> rows;
};

DrawnRows RowsToDraw(const SeriesMap& map) {
  // From below the frame as far as a peak reaches up into it.
  const Range y{ws.viewymin - kHighest * (ws.viewymax - ws.viewymin), ws.viewymax};
  const auto row = [&](float file) {
    return static_cast<std::size_t>(
        std::ranges::lower_bound(map.files, static_cast<int>(std::ceil(file))) - map.files.begin());
  };
  const std::size_t first = row(std::max(y.lo, 0.0F)), last = row(std::floor(y.hi) + 1);
  const std::size_t step = std::max<std::size_t>(1, (last - first + kMostCurves - 1) / kMostCurves);
  DrawnRows drawn{step, {}};
  for (std::size_t k = (first + step - 1) / step * step; k < last; k += step)
    drawn.rows.push_back(k);
  return drawn;
}

std::string NoteOf(const SeriesMap& map, std::size_t step) {
  if (step == 1) return map.note;
  return "one curve in " + std::to_string(step) + (map.note.empty() ? "" : "; ") + map.note;
}

// From dark to light, but for the lightest colours, which paper swallows.
int ColourOfRow(std::size_t row, std::size_t rows) {
  constexpr std::size_t kDark = 215;
  return static_cast<int>(MapColours()[1 + row * kDark / std::max<std::size_t>(rows, 1)]);
}

}  // namespace

std::optional<GuestView> WaterfallView(const SeriesShown& shown) {
  constexpr float kLeastPoints = 10, kLeastCurves = 2;
  const SeriesMap* map = shown.picture.map.get();
  if (!map || map->Columns() < 2) return {};
  const auto [left, right] = std::minmax({ShownX(map->tth.front()), ShownX(map->tth.back())});
  const float floors = static_cast<float>(map->total) + 0.5F;
  GuestView view;
  view.whole = {{left, right}, {0.5F, 0.5F + (floors - 0.5F) / (1 - kHighest)}};
  view.leastx = kLeastPoints * (right - left) / static_cast<float>(map->Columns());
  view.leasty = kLeastCurves;
  return view;
}

void DrawWaterfall(const SeriesShown& shown) {
  const SeriesFrame frame;
  const SeriesMap& map = *shown.picture.map;
  std::vector<float> xs;
  for (const float tth : map.tth) xs.push_back(ShownX(tth));
  const DrawnRows drawn = RowsToDraw(map);
  FramePen pen(frame);
  for (const std::size_t row : drawn.rows) {
    SetPen(1, 1, shown.picture.coloured ? ColourOfRow(row, map.Rows()) : colours::kBlack);
    const auto floor = static_cast<float>(map.files[row]);
    const std::span<const float> counts = map.Row(row);
    pen.Up();
    for (std::size_t i = 0; i < xs.size(); ++i)
      pen.To(xs[i], floor + HeightOfCurve(shown, counts[i]));
  }
  DrawSeriesAxes(frame, "", "File");
  DrawSeriesTitle(frame, shown.picture.title, NoteOf(map, drawn.step));
}

// The curve that passes nearest.
int WaterfallFileAt(const SeriesShown& shown, float x, float y) {
  const SeriesMap& map = *shown.picture.map;
  const std::size_t column = ColumnOfMap(map, x);
  int nearest = 0;
  float least = 0.02F * (ws.viewymax - ws.viewymin);
  for (const std::size_t row : RowsToDraw(map).rows) {
    const int file = map.files[row];
    const float at = static_cast<float>(file) + HeightOfCurve(shown, map.Row(row)[column]);
    if (!(std::abs(at - y) < least)) continue;
    least = std::abs(at - y);
    nearest = file;
  }
  return nearest;
}
