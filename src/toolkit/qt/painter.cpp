// Painting of a display list.
#include "toolkit/qt/painter.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "toolkit/common.h"
#include "toolkit/raster.h"

namespace {

constexpr double kFarthest = 1e6;      // beyond this the rasteriser's arithmetic ends
constexpr std::size_t kCurve = 500;    // a stroke of more points is a curve, not a letter or frame
constexpr double kNoise = 4;           // pixels by pen width; lower noise is drawn as lines
constexpr double kFine = 2;            // pixels by pen width from where steps of one are not seen
constexpr double kLevel = 0.25;        // pixels
constexpr std::size_t kStraight = 16;  // and one of up to so many may be part of a frame or grid

using Points = std::vector<QPointF>;

Points PlacesOf(const DisplayList& list, const Stroke& stroke, const Mapping& mapping) {
  Points places;
  places.reserve(stroke.count);
  for (const DrawPoint& point : std::span(list.points).subspan(stroke.first, stroke.count)) {
    const QPointF at = mapping.Place(point);  // a number, as those of the list are
    places.emplace_back(std::clamp(at.x(), -kFarthest, kFarthest),
                        std::clamp(at.y(), -kFarthest, kFarthest));
  }
  return places;
}

// What is seen of a curve on a screen.
struct Thinned {
  Points places;                // of each column of pixels the first, lowest, highest and last
  std::vector<QRectF> columns;  // columns filled by noise, where lines would cover each other
  std::vector<QLineF> lines;    // and the lines between all other places
};

// Points [begin, end) lie in one column. Up and down in it by far more than its range is noise.
bool IsNoise(const Points& places, std::size_t begin, std::size_t end, double range, double width) {
  double way = 0;
  for (std::size_t i = begin + 1; i < end; ++i) way += std::abs(places[i].y() - places[i - 1].y());
  return range > kNoise / width && (way > 1.5 * range || width >= kFine);
}

Thinned ThinByColumn(const Points& places, double width) {
  Thinned seen;
  bool wasnoise = false;
  for (std::size_t begin = 0, end; begin < places.size(); begin = end) {
    const double column = std::floor(places[begin].x());
    const auto holds = [column](double x) { return x >= column && x < column + 1; };
    std::size_t low = begin, high = begin;
    for (end = begin; end < places.size() && holds(places[end].x()); ++end) {
      if (places[end].y() < places[low].y()) low = end;
      if (places[end].y() > places[high].y()) high = end;
    }
    double top = places[low].y(), bottom = places[high].y();
    const bool noise = IsNoise(places, begin, end, bottom - top, width);
    const auto add = [&](std::size_t i, bool line) {
      if (line && !seen.places.empty()) seen.lines.emplace_back(seen.places.back(), places[i]);
      seen.places.push_back(places[i]);
    };
    if (noise && wasnoise) {
      top = std::min(top, seen.places.back().y());
      bottom = std::max(bottom, seen.places.back().y());
    }
    if (noise)
      seen.columns.emplace_back(column + 0.5 - width / 2, top - width / 2, width,
                                bottom - top + width);
    // Of what is nearly level its end is enough.
    if (bottom - top < kLevel) {
      add(end - 1, !noise || !wasnoise);
      wasnoise = noise;
      continue;
    }
    std::array<std::size_t, 4> shown = {begin, std::min(low, high), std::max(low, high), end - 1};
    add(begin, !noise || !wasnoise);
    const auto last = std::unique(shown.begin(), shown.end());
    for (auto i = shown.begin() + 1; i != last; ++i) add(*i, !noise);
    wasnoise = noise;
  }
  return seen;
}

// The pieces of a polyline that are seen through a dash pattern.
std::vector<QLineF> Dashed(const Points& places, std::span<const float> dashes, double thin) {
  std::vector<QLineF> lines;
  std::size_t phase = 0;
  double left = dashes[0] * thin;
  for (std::size_t i = 1; i < places.size(); ++i) {
    const QLineF whole(places[i - 1], places[i]);
    const double length = whole.length();
    const auto seen = [&](double from, double to) {
      if (phase % 2 == 0)
        lines.emplace_back(whole.pointAt(from / length), whole.pointAt(to / length));
    };
    double from = 0;
    for (; length - from > left; left = dashes[phase] * thin) {
      seen(from, from + left);
      from += left;
      phase = (phase + 1) % dashes.size();
    }
    if (length > from) seen(from, length);
    left -= length - from;
  }
  return lines;
}

// Puts upright and level lines on whole pixels, where they are sharp; false if there are others.
bool Sharpen(Points& places, double width) {
  for (std::size_t i = 1; i < places.size(); ++i)
    if (std::abs(places[i].x() - places[i - 1].x()) > 1e-3 &&
        std::abs(places[i].y() - places[i - 1].y()) > 1e-3)
      return false;
  const double half = std::lround(width) % 2 == 1 ? 0.5 : 0.0;
  const auto snap = [half](double at) { return std::round(at - half) + half; };
  for (QPointF& place : places) place = QPointF(snap(place.x()), snap(place.y()));
  return true;
}

QColor ColourOf(std::uint32_t colour) {
  return QColor(colour & 255, colour >> 8 & 255, colour >> 16 & 255);
}

// A wide polyline of thousands of points is one shape whose outline takes long to fill. Single
// lines with square ends look the same and are quick, and whole columns quicker still.
void PaintCurve(QPainter& painter, QPen pen, const Points& places, std::span<const float> dashes,
                double thin) {
  Thinned seen = ThinByColumn(places, pen.widthF());
  pen.setCapStyle(dashes.empty() ? Qt::SquareCap : Qt::FlatCap);
  if (!dashes.empty()) {
    seen.lines = Dashed(seen.places, dashes, thin);
    seen.columns.clear();
  }
  painter.setPen(pen);
  painter.drawLines(seen.lines.data(), static_cast<int>(seen.lines.size()));
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(Qt::NoPen);
  painter.setBrush(pen.color());
  painter.drawRects(seen.columns.data(), static_cast<int>(seen.columns.size()));
  painter.setBrush(Qt::NoBrush);
  painter.setRenderHint(QPainter::Antialiasing);
}

void PaintUpright(QPainter& painter, QColor colour, const Points& places, double width) {
  const double whole = std::round(width), half = whole / 2;
  for (std::size_t i = 1; i < places.size(); ++i) {
    const QRectF line = QRectF(places[i - 1], places[i]).normalized();
    painter.fillRect(line.adjusted(-half, -half, half, half).toRect(), colour);
  }
}

void PaintStroke(QPainter& painter, const Stroke& stroke, Points places, double thin,
                 Detail detail) {
  const double width = std::max(0.1f, stroke.pen.width) * thin;
  const std::span<const float> dashes = DashPattern(stroke.pen.linetype);
  QPen pen(ColourOf(stroke.pen.colour), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  if (detail == Detail::PerColumn && places.size() > kCurve)
    return PaintCurve(painter, pen, places, dashes, thin);
  if (detail == Detail::PerColumn && places.size() <= kStraight) {
    pen.setWidthF(std::max(1.0, width));
    // Without the search for partly covered pixels, of which there are none.
    if (Sharpen(places, pen.widthF()) && dashes.empty())
      return PaintUpright(painter, pen.color(), places, pen.widthF());
  }
  if (!dashes.empty()) {
    QList<qreal> pattern;
    for (const float length : dashes) pattern.append(length * thin / pen.widthF());
    pen.setCapStyle(Qt::FlatCap);
    pen.setDashPattern(pattern);
  }
  painter.setPen(pen);
  painter.drawPolyline(places.data(), static_cast<int>(places.size()));
}

// Keeps no reference to the picture.
QImage ImageOf(const LevelPicture& picture, const LevelColours& colours) {
  std::array<QRgb, std::tuple_size_v<LevelColours>> shown{};
  for (std::size_t level = 1; level < shown.size(); ++level)
    shown[level] = ColourOf(colours[level]).rgba();
  QImage image(picture.width, picture.height, QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < picture.height; ++y) {
    auto* pixel = reinterpret_cast<QRgb*>(image.scanLine(y));
    const std::uint8_t* level = &picture.levels[std::size_t(y) * picture.width];
    for (int x = 0; x < picture.width; ++x) *pixel++ = shown[*level++];
  }
  return image;
}

void PaintCells(QPainter& painter, const Raster& raster, const Mapping& mapping) {
  const auto rect = [&](const DrawRect& r) {
    return QRectF(mapping.Place({r.x1, r.y2}), mapping.Place({r.x2, r.y1}));
  };
  const KeptCells kept = CellsInWindow(raster);
  painter.save();
  painter.setClipRect(rect(raster.window));
  painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
  painter.drawImage(rect(kept.place), ImageOf(kept.picture, raster.colours));
  painter.restore();
}

void PaintPixels(QPainter& painter, const Raster& raster, const Mapping& mapping, QSizeF target) {
  const QPointF topleft = mapping.Place({raster.place.x1, raster.place.y2}),
                bottomright = mapping.Place({raster.place.x2, raster.place.y1});
  const PixelPicture pixels =
      PixelsInWindow(raster, {topleft.x(), topleft.y(), bottomright.x(), bottomright.y()},
                     static_cast<int>(target.width()), static_cast<int>(target.height()));
  painter.drawImage(pixels.left, pixels.top, ImageOf(pixels.picture, raster.colours));
}

void PaintText(QPainter& painter, const DrawnText& text, const Mapping& mapping) {
  QFont font = QGuiApplication::font();
  const double pixels = std::abs(text.height * mapping.YScale());
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
  const QString shown = QString::fromStdString(text.text);
  const double length = QFontMetricsF(font, painter.device()).horizontalAdvance(shown);
  painter.save();
  painter.setFont(font);
  painter.setPen(ColourOf(text.colour));
  painter.translate(mapping.Place({text.x, text.y}));
  painter.rotate(-text.angle);
  painter.drawText(QPointF(-length * (text.alignment + 1) / 2, 0), shown);
  painter.restore();
}

}  // namespace

Mapping::Mapping(const DisplayList& list, QSizeF target) {
  const auto span = [](float from, float to) { return from == to ? 1.0 : double(to) - from; };
  const DrawRect &area = list.area, &units = list.units;
  kx_ = (area.x2 - area.x1) * target.width() / span(units.x1, units.x2);
  ky_ = -(area.y2 - area.y1) * target.height() / span(units.y1, units.y2);
  x0_ = area.x1 * target.width() - units.x1 * kx_;
  y0_ = (1.0 - area.y1) * target.height() - units.y1 * ky_;
}

DrawPoint Mapping::Units(QPointF place) const {
  const auto from = [](double at, double scale) { return scale == 0 ? 0 : at / scale; };
  return {static_cast<float>(from(place.x() - x0_, kx_)),
          static_cast<float>(from(place.y() - y0_, ky_))};
}

void PaintList(QPainter& painter, const DisplayList& list, QSizeF target, double thin,
               Detail detail) {
  const Mapping mapping(list, target);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  const auto paintraster = [&](const Raster& raster) {
    if (detail == Detail::PerColumn)
      PaintPixels(painter, raster, mapping, target);
    else
      PaintCells(painter, raster, mapping);
  };
  const auto paintstroke = [&](const Stroke& stroke) {
    PaintStroke(painter, stroke, PlacesOf(list, stroke, mapping), thin, detail);
  };
  ForEachDrawn(list, paintraster, paintstroke);
  for (const DrawnText& text : list.texts) PaintText(painter, text, mapping);
}
