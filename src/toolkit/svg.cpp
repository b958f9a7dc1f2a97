// A display list as an SVG file.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "toolkit/common.h"
#include "toolkit/png.h"
#include "toolkit/vectorpath.h"

namespace {

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
    return;
  }
  const int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
  out += static_cast<char>((0xff00 >> (more + 1) & 0xff) | c >> (6 * more));
  for (int i = more - 1; i >= 0; --i) out += static_cast<char>(0x80 | (c >> (6 * i) & 0x3f));
}

std::string XmlText(std::string_view text) {
  std::string out;
  for (char32_t c : Characters(text)) {
    if (c == '&')
      out += "&amp;";
    else if (c == '<')
      out += "&lt;";
    else if (c >= ' ' && c != 0xfffe && c != 0xffff)
      AppendUtf8(out, c);
  }
  return out;
}

// #rrggbb
std::string ColourName(std::uint32_t colour) {
  char name[8];
  std::snprintf(name, sizeof name, "#%02x%02x%02x", colour & 255u, colour >> 8 & 255u,
                colour >> 16 & 255u);
  return name;
}

void AppendStroke(std::string& out, const DisplayList& list, const Stroke& stroke,
                  const PageMap& map) {
  out += "<path stroke=\"" + ColourName(stroke.pen.colour) + "\" stroke-width=\"";
  AppendNumber(out, stroke.pen.width * ThinLine);
  if (stroke.pen.linetype) out += "\" stroke-dasharray=\"";
  for (float length : DashPattern(stroke.pen.linetype)) AppendNumbers(out, {length * 2 * ThinLine});
  out += "\" d=\"M";
  for (std::size_t i = 0; i < stroke.count; ++i) {
    const DrawPoint& p = list.points[stroke.first + i];
    AppendNumbers(out, {map.X(p.x), map.Y(p.y)});
    if (i == 0) out += 'L';
  }
  out += "\"/>\n";
}

void AppendText(std::string& out, const DrawnText& text, const PageMap& map) {
  constexpr const char* anchors[] = {"start", "middle", "end"};
  out += "<text stroke=\"none\" fill=\"" + ColourName(text.colour) + "\" text-anchor=\"";
  out += anchors[text.alignment + 1];
  out += "\" font-family=\"sans-serif\" font-size=\"";
  AppendNumber(out, text.height * std::abs(map.yscale));
  out += "\" transform=\"translate(";
  AppendNumbers(out, {map.X(text.x), map.Y(text.y)});
  out += ") rotate(";
  AppendNumber(out, -text.angle);
  out += ")\">" + XmlText(text.text) + "</text>\n";
}

std::string Base64(std::string_view bytes) {
  constexpr std::string_view digits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    std::uint32_t word = 0;
    for (std::size_t i = at; i < at + 3; ++i)
      word = word << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u);
    for (const int shift : {18, 12, 6, 0}) out += digits[word >> shift & 63];
  }
  std::fill_n(out.rbegin(), (3 - bytes.size() % 3) % 3, '=');
  return out;
}

// Of a rectangle in user units.
void AppendPlace(std::string& out, const DrawRect& r, const PageMap& map) {
  const double corners[] = {map.X(r.x1), map.Y(r.y2), map.X(r.x2) - map.X(r.x1),
                            map.Y(r.y1) - map.Y(r.y2)};
  constexpr const char* names[] = {" x=\"", " y=\"", " width=\"", " height=\""};
  for (int i = 0; i < 4; ++i) {
    AppendNumber(out += names[i], corners[i]);
    out += '"';
  }
}

void AppendRaster(std::string& out, const Raster& raster, const PageMap& map, int number) {
  const std::string name = "cells" + std::to_string(number);
  const KeptCells kept = CellsInWindow(raster);
  const LevelPicture& picture = kept.picture;
  out += "<clipPath id=\"" + name + "\"><rect";
  AppendPlace(out, raster.window, map);
  out += "/></clipPath>\n<image clip-path=\"url(#" + name + ")\" preserveAspectRatio=\"none\"" +
         " image-rendering=\"optimizeSpeed\" style=\"image-rendering:pixelated\"";
  AppendPlace(out, kept.place, map);
  out += " xlink:href=\"data:image/png;base64," +
         Base64(PngBytes(picture.width, picture.height, picture.levels, raster.colours)) + "\"/>\n";
}

}  // namespace

std::string SvgText(const DisplayList& list, const std::string& title, float width, float height) {
  const PageMap map(list, width, height, false);
  const PageBox box = CoveredBox(list, map, width, height);
  const double boxwidth = box.x2 - box.x1, boxheight = box.y2 - box.y1;
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
      "version=\"1.1\" width=\"";
  AppendNumber(out, boxwidth);
  out += "pt\" height=\"";
  AppendNumber(out, boxheight);
  out += "pt\" viewBox=\"";
  AppendNumbers(out, {box.x1, box.y1, boxwidth});
  AppendNumber(out, boxheight);
  out += "\">\n<title>" + XmlText(title) + "</title>\n<rect fill=\"#ffffff\" x=\"";
  AppendNumber(out, box.x1);
  out += "\" y=\"";
  AppendNumber(out, box.y1);
  out +=
      "\" width=\"100%\" height=\"100%\"/>\n"
      "<g fill=\"none\" stroke-linejoin=\"round\" stroke-linecap=\"round\">\n";
  int rasters = 0;
  ForEachDrawn(
      list, [&](const Raster& raster) { AppendRaster(out, raster, map, ++rasters); },
      [&](const Stroke& stroke) { AppendStroke(out, list, stroke, map); });
  for (const DrawnText& text : list.texts) AppendText(out, text, map);
  return out + "</g>\n</svg>\n";
}

bool WriteSvg(const DisplayList& list, const std::string& path, const std::string& title,
              float width, float height) {
  return WriteWholeFile(path, SvgText(list, title, width, height));
}
