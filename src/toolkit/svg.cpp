// A display list as an SVG file.
#include <cmath>
#include <cstdio>

#include "toolkit/common.h"
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

}  // namespace

std::string SvgText(const DisplayList& list, const std::string& title, float width, float height) {
  const PageMap map(list, width, height, false);
  const PageBox box = CoveredBox(list, map, width, height);
  const double boxwidth = box.x2 - box.x1, boxheight = box.y2 - box.y1;
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"";
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
  for (const Stroke& stroke : list.strokes) AppendStroke(out, list, stroke, map);
  for (const DrawnText& text : list.texts) AppendText(out, text, map);
  return out + "</g>\n</svg>\n";
}

bool WriteSvg(const DisplayList& list, const std::string& path, const std::string& title,
              float width, float height) {
  return WriteWholeFile(path, SvgText(list, title, width, height));
}
