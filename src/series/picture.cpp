// What is seen of a series.
#include "series/picture.h"

#include <tuple>

#include "plot/dataposition.h"
#include "plot/penplot.h"  // for NearestIndex
#include "series/seriesviews.h"
#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

SeriesShown shown;
// Of the cells: the x axis on show and its wavelength.
std::pair<int, float> cellsaxis{};

struct SeriesViewKind {
  std::optional<GuestView> (*view)(const SeriesShown&);
  void (*draw)(const SeriesShown&);
  int (*fileat)(const SeriesShown&, float, float);
};

// From SeriesKind::Map on.
constexpr SeriesViewKind kKinds[] = {{MapView, DrawMap, MapFileAt},
                                     {WaterfallView, DrawWaterfall, WaterfallFileAt},
                                     {ColumnView, DrawColumn, ColumnFileAt}};

const SeriesViewKind& Kind() { return kKinds[static_cast<int>(shown.picture.kind) - 1]; }

void LayCells() {
  const auto& [kind, title, map, scale, coloured, along, column, second] = shown.picture;
  shown.cells = {};
  if (!map || map->tth.empty()) return;
  shown.counts = CountRange(*map, scale);
  if (kind == SeriesKind::Map)
    shown.cells = CellsOfMap(*map, along.values, LevelTable(scale, shown.counts));
}

// Two-theta and the file, or the two values; with the counts of a map.
void ReadOutSeries(float x, float y) {
  const SeriesPicture& picture = shown.picture;
  const bool columns = picture.kind == SeriesKind::Column;
  const int file = Kind().fileat(shown, x, y);
  WindowOutStatusBar(1, columns ? AllDigits(x) : WriteRecord<"(a,f7.2)">("TwoTh", TwoThetaOf(x)));
  WindowOutStatusBar(2, file > 0 ? "File " + std::to_string(file) : "");
  if (columns) WindowOutStatusBar(5, picture.column.name + " " + AllDigits(y));
  if (columns || file == 0) return;
  for (std::size_t row = 0; row < picture.map->Rows(); ++row)
    if (picture.map->files[row] == file)
      WindowOutStatusBar(
          5, "Counts " + AllDigits(picture.map->Row(row)[ColumnOfMap(*picture.map, x)]));
}

std::optional<GuestView> View() {
  const std::pair axis(ws.xaxismode, ws.axiswave);
  if (cellsaxis != axis) LayCells();
  cellsaxis = axis;
  std::optional<GuestView> view = Kind().view(shown);
  if (!view) return view;
  view->axes = static_cast<int>(shown.picture.kind);
  view->draw = [] { Kind().draw(shown); };
  view->readout = ReadOutSeries;
  return view;
}

bool ShowsAll() {
  const auto view = Guest();
  return view && ws.viewxmin <= view->whole.x.lo && ws.viewxmax >= view->whole.x.hi &&
         ws.viewymin <= view->whole.y.lo && ws.viewymax >= view->whole.y.hi;
}

// What the limits of a view belong to.
auto AxesOf(const SeriesPicture& picture) {
  return std::tie(picture.map, picture.along.name, picture.column.name);
}

}  // namespace

void ShowSeries(const SeriesPicture& picture) {
  // A view of all that there is grows with it.
  if (ShowsAll()) ForgetGuestZoom(static_cast<int>(shown.picture.kind));
  const bool otheraxes = AxesOf(picture) != AxesOf(shown.picture);
  shown.picture = picture;
  LayCells();
  if (otheraxes)
    for (int axes = 1; axes <= MostGuestAxes; ++axes) ForgetGuestZoom(axes);
  InviteGuest(View);
}

const SeriesPicture& ShownSeries() { return shown.picture; }

int SeriesRowAt(float x, float y) {
  const DataPoint at = ToData(x, y);
  return Guest() && InView(at) ? Kind().fileat(shown, at.x, at.y) : 0;
}

std::string AlongName(const SeriesPicture& picture) {
  return picture.along.empty() ? "File" : picture.along.name;
}

std::size_t ColumnOfMap(const SeriesMap& map, float shownx) {
  const int n = static_cast<int>(map.Columns());
  return static_cast<std::size_t>(NearestIndex(TwoThetaOf(shownx), map.tth.data(), n)) - 1;
}
