// The path emitter behind the vector formats.
#include "toolkit/vectorpath.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>

#include "toolkit/common.h"
#include "toolkit/newfile.h"

namespace {

constexpr std::size_t LongestPath = 1000;  // points; old interpreters stop at 1500

void AppendPoint(std::string& out, const PageMap& map, DrawPoint p, const char* operation) {
  AppendNumbers(out, {map.X(p.x), map.Y(p.y)});
  out += operation;
}

void AppendColour(std::string& out, std::uint32_t colour, const char* operation) {
  for (int shift : {0, 8, 16}) AppendNumbers(out, {(colour >> shift & 255) / 255.0});
  out += operation;
}

// Changes of the pen since `before`.
void AppendPen(std::string& out, const Pen& pen, const Pen* before) {
  if (!before || before->colour != pen.colour) AppendColour(out, pen.colour, "RG\n");
  if (!before || before->width != pen.width) {
    AppendNumbers(out, {pen.width * ThinLine});
    out += "w\n";
  }
  if (before ? before->linetype == pen.linetype : pen.linetype == 0) return;
  out += '[';
  for (float length : DashPattern(pen.linetype)) AppendNumbers(out, {length * 2 * ThinLine});
  out += "] 0 d\n";
}

// A long stroke goes out in pieces that share a point.
void AppendStroke(std::string& out, std::span<const DrawPoint> points, const PageMap& map) {
  for (std::size_t begin = 0; begin + 1 < points.size(); begin += LongestPath - 1) {
    const std::size_t end = std::min(begin + LongestPath, points.size());
    AppendPoint(out, map, points[begin], "m\n");
    for (std::size_t i = begin + 1; i < end; ++i) AppendPoint(out, map, points[i], "l\n");
    out += "S\n";
  }
}

void AppendRaster(std::string& out, const Raster& raster, const PageMap& map,
                  const ImageOperators& image) {
  const KeptCells kept = CellsInWindow(raster);
  const DrawRect &window = raster.window, &place = kept.place;
  out += "q ";
  AppendNumbers(out, {map.X(window.x1), map.Y(window.y1), (window.x2 - window.x1) * map.xscale,
                      (window.y2 - window.y1) * map.yscale});
  out += "re W n ";
  AppendNumbers(out, {(place.x2 - place.x1) * map.xscale, 0, 0, (place.y2 - place.y1) * map.yscale,
                      map.X(place.x1), map.Y(place.y1)});
  out += "cm\n" + image(raster, kept.picture) + "Q\n";
}

// A text in parentheses in Latin-1, as both formats write it.
std::string Literal(std::string_view text) {
  std::string out = "(";
  for (char32_t c : Characters(text)) {
    const char byte = c >= 32 && c < 256 ? static_cast<char>(c) : '?';
    if (byte == '(' || byte == ')' || byte == '\\') out += '\\';
    out += byte;
  }
  return out + ")";
}

// Where the base line of a text begins and in what direction it runs.
struct BaseLine {
  BaseLine(const DrawnText& text, const PageMap& map) {
    size = text.height * std::abs(map.yscale);
    width = 0.55 * size * Characters(text.text).size();  // about right for a sans-serif letter
    const double angle = text.angle * std::numbers::pi / 180;
    dx = std::cos(angle);
    dy = map.yscale < 0 ? -std::sin(angle) : std::sin(angle);
    const double back = width * (text.alignment + 1) / 2;
    x = map.X(text.x) - back * dx;
    y = map.Y(text.y) - back * dy;
  }
  double size, width, dx, dy, x, y;
};

void AppendText(std::string& out, const DrawnText& text, const PageMap& map) {
  const BaseLine line(text, map);
  AppendColour(out += "BT ", text.colour, "rg /F1 ");
  AppendNumbers(out, {line.size});
  out += "Tf ";
  AppendNumbers(out, {line.dx, line.dy, -line.dy, line.dx, line.x, line.y});
  out += "Tm " + Literal(text.text) + " Tj ET\n";
}

}  // namespace

PageMap::PageMap(const DisplayList& list, float width, float height, bool upward) {
  const auto scale = [](double length, double units) { return units != 0 ? length / units : 0; };
  const DrawRect &area = list.area, &units = list.units;
  xunit = units.x1;
  yunit = units.y1;
  xstart = area.x1 * width;
  xscale = scale((area.x2 - area.x1) * width, units.x2 - units.x1);
  ystart = upward ? area.y1 * height : (1 - area.y1) * height;
  yscale = scale((area.y2 - area.y1) * height, units.y2 - units.y1) * (upward ? 1 : -1);
}

PageBox CoveredBox(const DisplayList& list, const PageMap& map, float width, float height) {
  if (list.strokes.empty() && list.texts.empty() && list.rasters.empty())
    return {0, 0, width, height};
  PageBox box{1e30, 1e30, -1e30, -1e30};
  const auto cover = [&](double x, double y, double reach) {
    box = {std::min(box.x1, x - reach), std::min(box.y1, y - reach), std::max(box.x2, x + reach),
           std::max(box.y2, y + reach)};
  };
  for (const Stroke& stroke : list.strokes)
    for (std::size_t i = 0; i < stroke.count; ++i) {
      const DrawPoint& p = list.points[stroke.first + i];
      cover(map.X(p.x), map.Y(p.y), stroke.pen.width * ThinLine / 2);
    }
  for (const Raster& raster : list.rasters) {
    cover(map.X(raster.window.x1), map.Y(raster.window.y1), 0);
    cover(map.X(raster.window.x2), map.Y(raster.window.y2), 0);
  }
  for (const DrawnText& text : list.texts) {
    const BaseLine line(text, map);
    for (double along : {0.0, line.width})  // the reach is that of tall letters, all around
      cover(line.x + along * line.dx, line.y + along * line.dy, 0.8 * line.size);
  }
  return box;
}

void AppendNumber(std::string& out, double value) {
  constexpr double furthest = 1e6;  // beyond any page
  value = std::isfinite(value) ? std::clamp(value, -furthest, furthest) : 0;
  char buffer[32];
  char* end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 3).ptr;
  while (end[-1] == '0') --end;
  if (end[-1] == '.') --end;
  const std::string_view text(buffer, end - buffer);
  out += text == "-0" ? "0" : text;
}

void AppendNumbers(std::string& out, std::initializer_list<double> values) {
  for (double value : values) {
    AppendNumber(out, value);
    out += ' ';
  }
}

std::string PathOperators(const DisplayList& list, const PageMap& map,
                          const ImageOperators& image) {
  std::string out = "1 J 1 j\n";
  out.reserve(list.points.size() * 18 + 1000);
  const Pen* before = nullptr;
  const auto appendraster = [&](const Raster& raster) { AppendRaster(out, raster, map, image); };
  const auto appendstroke = [&](const Stroke& stroke) {
    AppendPen(out, stroke.pen, before);
    before = &stroke.pen;
    AppendStroke(out, std::span(list.points).subspan(stroke.first, stroke.count), map);
  };
  ForEachDrawn(list, appendraster, appendstroke);
  for (const DrawnText& text : list.texts) AppendText(out, text, map);
  return out;
}

std::string HexColours(const LevelColours& colours) {
  constexpr const char* digits = "0123456789ABCDEF";
  std::string out;
  for (std::size_t level = 0; level < colours.size(); ++level) {
    const std::uint32_t colour = level == 0 ? 0xffffff : colours[level];
    for (const int shift : {4, 0, 12, 8, 20, 16}) out += digits[colour >> shift & 15];
  }
  return out;
}

char32_t NextCharacter(std::string_view text, std::size_t& at) {
  const std::size_t i = at;
  const unsigned char lead = text[i];
  const int more = lead >= 0xf0 ? 3 : lead >= 0xe0 ? 2 : lead >= 0xc2 ? 1 : 0;
  char32_t c = more ? lead & (0x3f >> more) : lead;
  int taken = 0;
  while (taken < more && i + taken + 1 < text.size() && (text[i + taken + 1] & 0xc0) == 0x80)
    c = c << 6 | (text[i + ++taken] & 0x3f);
  const bool whole = taken == more && c <= 0x10ffff && (c < 0xd800 || c > 0xdfff);
  at += whole ? more + 1 : 1;
  return whole ? c : lead;
}

std::u32string Characters(std::string_view text) {
  std::u32string out;
  for (std::size_t at = 0; at < text.size();) out += NextCharacter(text, at);
  return out;
}

bool WriteWholeFile(const std::string& path, const std::string& content) {
  NewFile file(path);
  file.Write(content.data(), content.size());
  const bool written = file.Keep();
  KeepFileReason(file.Reason());
  return written;
}
