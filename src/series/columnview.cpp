// A column of a series' table against the number of the file or another column.
#include <algorithm>
#include <array>
#include <cmath>

#include "series/seriesframe.h"
#include "series/seriesviews.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

constexpr std::size_t kMostMarks = 1000;  // in the frame; of more each so many has one

double Along(const SeriesPicture& picture, std::size_t file) {
  if (picture.along.empty()) return static_cast<double>(file) + 1;
  return file < picture.along.values.size() ? picture.along.values[file] : NAN;
}

double EsdOf(const SeriesValues& values, std::size_t file) {
  const double esd = file < values.esds.size() ? values.esds[file] : 0;
  return std::isfinite(esd) ? esd : 0;
}

// Calls use(file, x, y) for each file with both values.
template <class Use>
void ForEachPoint(const SeriesPicture& picture, const SeriesValues& values, Use use) {
  for (std::size_t file = 0; file < values.values.size(); ++file) {
    const double x = Along(picture, file), y = values.values[file];
    if (std::isfinite(x) && std::isfinite(y)) use(file, x, y);
  }
}

// With a little room at both ends.
Range WithRoom(const Extremes& values) {
  constexpr float kRoom = 0.03F, kAlone = 0.001F;
  float room = kRoom * (values.high - values.low);
  if (!(room > 0)) room = values.low == 0 ? 1.0F : kAlone * std::abs(values.low);
  return {values.low - room, values.high + room};
}

struct Style {
  int marker, colour;
};
// Blue and orange are told apart by eyes that do not see red or green, and on grey paper.
constexpr Style kFirst{3, RgbColour(0, 84, 148)}, kSecond{6, RgbColour(213, 94, 0)};

// The bar of an e.s.d. with its two ends, as far as the frame shows it.
void DrawErrorBar(const SeriesFrame& frame, double x, double y, double esd) {
  const float end = 0.2F * frame.page.textheight * WInfoGrReal(GraphicsGlyphX) / frame.xfactor;
  FramePen pen(frame);
  pen.To(x, y - esd);
  pen.To(x, y + esd);
  for (const double at : {y - esd, y + esd}) {
    pen.Up();
    pen.To(x - end, at);
    pen.To(x + end, at);
  }
}

// One of so many rows in the frame has a mark.
std::size_t MarkStep(const SeriesFrame& frame, const SeriesPicture& picture) {
  std::size_t n = 0;
  ForEachPoint(picture, picture.column,
               [&](std::size_t, double x, double) { n += frame.x.Holds(static_cast<float>(x)); });
  return std::max<std::size_t>(1, (n + kMostMarks - 1) / kMostMarks);
}

// Lines only from a file to the next one, so that one that has failed leaves a gap.
void DrawValues(const SeriesFrame& frame, const SeriesPicture& picture, const SeriesValues& values,
                const Style& style, std::size_t step) {
  SetPen(1, 1, style.colour);
  FramePen pen(frame);
  std::size_t expected = 0;
  ForEachPoint(picture, values, [&](std::size_t file, double x, double y) {
    if (file != expected) pen.Up();
    pen.To(x, y);
    expected = file + 1;
  });
  ForEachPoint(picture, values, [&](std::size_t file, double x, double y) {
    const auto px = static_cast<float>(x), py = static_cast<float>(y);
    if (file % step != 0 || !frame.x.Holds(px)) return;
    if (const double esd = EsdOf(values, file); esd > 0) DrawErrorBar(frame, x, y, esd);
    if (frame.y.Holds(py))
      Marker(style.marker, frame.X(px), frame.Y(py), 0.5F * frame.page.textheight);
  });
}

// The names of both columns with their marks, in the upper left corner.
void DrawKey(const SeriesFrame& frame, const SeriesPicture& picture) {
  const float letters = frame.page.textheight, up = letters * WInfoGrReal(GraphicsGlyphY),
              along = letters * WInfoGrReal(GraphicsGlyphX);
  float y = ws.plotheight - 1.5F * up;
  for (const auto& [values, style] :
       {std::pair(&picture.column, kFirst), std::pair(&picture.second, kSecond)}) {
    SetPen(1, 1, style.colour);
    Marker(style.marker, along, y, 0.5F * letters);
    DrawName(2 * along, y, values->name, letters, 0, 8);
    y -= 1.8F * up;
  }
}

std::string NoteOf(std::size_t step) {
  return step == 1 ? "" : "marks at one row in " + std::to_string(step);
}

}  // namespace

std::optional<GuestView> ColumnView(const SeriesShown& shown) {
  constexpr float kLeast = 1e-4F;  // of the whole
  Extremes xs, ys;
  for (const SeriesValues* values : {&shown.picture.column, &shown.picture.second})
    ForEachPoint(shown.picture, *values, [&](std::size_t file, double x, double y) {
      const double esd = EsdOf(*values, file);
      xs.Take(static_cast<float>(x));
      ys.Take(static_cast<float>(y));
      // One value that is hardly known would make all others a line.
      if (esd < std::abs(y)) {
        ys.Take(static_cast<float>(y - esd));
        ys.Take(static_cast<float>(y + esd));
      }
    });
  if (!xs.any || !ys.any) return {};
  GuestView view;
  view.whole = {WithRoom(xs), WithRoom(ys)};
  view.leastx = kLeast * (view.whole.x.hi - view.whole.x.lo);
  view.leasty = kLeast * (view.whole.y.hi - view.whole.y.lo);
  return view;
}

void DrawColumn(const SeriesShown& shown) {
  const SeriesFrame frame;
  const SeriesPicture& picture = shown.picture;
  const std::size_t step = MarkStep(frame, picture);
  if (!picture.second.empty()) DrawValues(frame, picture, picture.second, kSecond, step);
  DrawValues(frame, picture, picture.column, kFirst, step);
  DrawSeriesAxes(frame, AlongName(picture), picture.column.name);
  if (!picture.second.empty()) DrawKey(frame, picture);
  DrawSeriesTitle(frame, picture.title, NoteOf(step));
}

// The nearest mark, as the eye sees it, within reach of a letter or two.
int ColumnFileAt(const SeriesShown& shown, float x, float y) {
  constexpr float kReach = 20;  // drawing units
  int nearest = 0;
  float least = kReach;
  for (const SeriesValues* values : {&shown.picture.column, &shown.picture.second})
    ForEachPoint(shown.picture, *values, [&](std::size_t file, double px, double py) {
      const float away = std::hypot((static_cast<float>(px) - x) / ws.xperunit,
                                    (static_cast<float>(py) - y) / ws.yperunit);
      if (!(away < least)) return;
      least = away;
      nearest = static_cast<int>(file) + 1;
    });
  return nearest;
}
