// The map: counts as colours, with the files one above the other.
#include <algorithm>
#include <cmath>

#include "plot/dataposition.h"
#include "series/seriesframe.h"
#include "series/seriesviews.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

// The bar of colours beside the frame, in drawing units of the screen: the gap, its width, and the
// room of its numbers.
constexpr float kGap = 18, kBar = 22, kNumbers = 60;

// Equal steps of counts, or of their logarithm, so that the numbers beside it stand evenly.
void DrawBar(const SeriesFrame& frame, const SeriesShown& shown) {
  constexpr int kSteps = 256;
  const CountScale scale = shown.picture.scale;
  const bool logarithm = scale == CountScale::Logarithm;
  const Range& counts = shown.counts;
  const Range bar = logarithm ? Range{Log10(counts.lo), Log10(counts.hi)} : counts;
  const LevelTable levels(scale, counts);
  const auto cells = std::make_shared<RasterCells>();
  cells->columns = 1;
  cells->rows = kSteps;
  for (int i = 0; i < kSteps; ++i) {
    const float value = bar.lo + (bar.hi - bar.lo) * static_cast<float>(i) / (kSteps - 1);
    cells->levels.push_back(levels.Of(logarithm ? std::pow(10.0F, value) : value));
  }
  const PageLayout& page = frame.page;
  const float left = ws.plotwidth + page.scale * kGap, width = page.scale * kBar;
  const DrawRect place{ws.plotx0 + left, ws.ploty0, ws.plotx0 + left + width,
                       ws.ploty0 + ws.plotheight};
  IGrRaster(cells, MapColours(), place, place);
  SetPen(1, 1, colours::kBlack);
  Rectangle(left, 0, width, ws.plotheight, 0);
  MoveOrigin(left + width, 0);
  AxisLinear(ws.plotheight, bar.lo, bar.hi, ScaleOf(bar, ws.plotheight), page.tick / 2,
             page.textheight, 90, "");
  MoveOrigin(-left - width, 0);
  const std::string title = logarithm ? "10log(Counts)" : "Counts";
  const float room = page.scale * (kBar + kNumbers) / WInfoGrReal(GraphicsGlyphX);
  DrawText(left, ws.plotheight + 0.6F * page.textheight * WInfoGrReal(GraphicsGlyphY), title,
           FittingHeight(title, room, page.textheight), 0, 1);
}

}  // namespace

std::optional<GuestView> MapView(const SeriesShown& shown) {
  constexpr float kLeastColumns = 10, kLeastRows = 2;
  const auto& [cells, x, y, rows] = shown.cells;
  if (!cells) return {};
  GuestView view;
  view.whole = {x, y};
  view.leastx = kLeastColumns * (x.hi - x.lo) / static_cast<float>(cells->columns);
  view.leasty = kLeastRows * (y.hi - y.lo) / static_cast<float>(cells->rows);
  view.roomright = kGap + kBar + kNumbers - 50;  // the margin of all plots
  return view;
}

void DrawMap(const SeriesShown& shown) {
  const SeriesFrame frame;
  const auto& [cells, x, y, rows] = shown.cells;
  const auto place = [&](const Range& r, const Range& s) {
    return DrawRect{ws.plotx0 + frame.X(r.lo), ws.ploty0 + frame.Y(s.lo), ws.plotx0 + frame.X(r.hi),
                    ws.ploty0 + frame.Y(s.hi)};
  };
  IGrRaster(cells, MapColours(), place(x, y), place(frame.x, frame.y));
  DrawSeriesAxes(frame, "", AlongName(shown.picture));
  DrawBar(frame, shown);
  DrawSeriesTitle(frame, shown.picture.title, shown.picture.map->note);
}

int MapFileAt(const SeriesShown& shown, float, float y) {
  const MapCells& cells = shown.cells;
  const float share = (y - cells.y.lo) / (cells.y.hi - cells.y.lo);
  const auto n = static_cast<float>(cells.rows.size());
  const int row = cells.rows[static_cast<std::size_t>(std::clamp(share * n, 0.0F, n - 1))];
  return row < 0 ? 0 : shown.picture.map->files[static_cast<std::size_t>(row)];
}
