// Texts drawn with the stroke alphabets.
#include "plot/strokes.h"

#include <algorithm>
#include <cmath>

#include "plot/penplot.h"
#include "toolkit/toolkit.h"
#include "toolkit/vectorpath.h"   // for NextCharacter
#include "workspace/workspace.h"  // for RadToDeg

namespace {

constexpr float kGap = 0.25f;  // of the advance, left free behind a letter
constexpr float kScriptHeight = 0.8f;
constexpr float kSubscriptFall = 0.3f;

// The next character of a text as it is drawn.
struct Glyph {
  enum Kind { Char, Greek, Subscript, Superscript } kind;
  int code;
};

enum class Marks { Obeyed, Drawn };

// A character takes one place, whatever the number of its bytes.
Glyph NextGlyph(std::string_view text, std::size_t& at, Marks marks) {
  const char32_t c = NextCharacter(text, at);
  if (marks == Marks::Obeyed) {
    if (c == '$') return {Glyph::Subscript, 0};
    if (c == static_cast<unsigned char>(SuperscriptMark)) return {Glyph::Superscript, 0};
    if (c == '@') return {Glyph::Char, DegreeSign};
    if (c == '|' && at < text.size())
      return {Glyph::Greek, static_cast<int>(NextCharacter(text, at))};
  }
  return {Glyph::Char, static_cast<int>(c)};
}

// Letters live in a plane of their own, measured in units of letter height; turned by the text's
// angle and fitted to the shape of the area, it lies on the drawing with its origin at (x, y).
struct TextPlane {
  float x, y, xu, xv, yu, yv;

  TextPlane(float x0, float y0, float angle) : x(x0), y(y0) {
    const float c = std::cos(angle / RadToDeg), s = std::sin(angle / RadToDeg);
    const float glyphx = WInfoGrReal(GraphicsGlyphX), glyphy = WInfoGrReal(GraphicsGlyphY);
    xu = c * glyphx;
    xv = -s * glyphx;
    yu = s * glyphy;
    yv = c * glyphy;
  }
  void Up(float u, float v) const { PenUp(x + u * xu + v * xv, y + u * yu + v * yv); }
  void Down(float u, float v) const { PenDown(x + u * xu + v * xv, y + u * yu + v * yv); }
};

int ReadNumber(const char*& p) {
  while (*p == ' ' || *p == ',') ++p;
  const bool negative = *p == '-';
  if (negative) ++p;
  int value = 0;
  while (*p >= '0' && *p <= '9') value = 10 * value + (*p++ - '0');
  return negative ? -value : value;
}

// A shape with its origin at (u, v).
struct ShapePen {
  const TextPlane& plane;
  float u, v, unit;  // unit: a hundredth of the height
  bool down = false;

  void To(float x, float y) {
    down ? plane.Down(u + x * unit, v + y * unit) : plane.Up(u + x * unit, v + y * unit);
    down = true;
  }
  void Arc(const char*& p) {
    static constexpr float kStep = 15.0f / RadToDeg;
    float at[4];
    for (float& value : at) value = static_cast<float>(ReadNumber(p));
    const int from = ReadNumber(p), to = ReadNumber(p), way = to > from ? 1 : -1;
    for (int k = from; k != to + way; k += way)
      To(at[0] + at[2] * std::cos(static_cast<float>(k) * kStep),
         at[1] + at[3] * std::sin(static_cast<float>(k) * kStep));
  }
  void Draw(const char* shape) {
    for (const char* p = shape; *p;) {
      const char move = *p++;
      if (move == ' ') continue;
      if (move == 'M' || move == 'A') down = false;
      if (move == 'A' || move == 'a') {
        Arc(p);
        continue;
      }
      while (*p && !(*p == ' ' && p[1] >= 'A')) {
        const int x = ReadNumber(p), y = ReadNumber(p);
        To(static_cast<float>(x), static_cast<float>(y));
      }
    }
  }
};

// Share of the height by which a text with this anchor begins below (x, y).
float AnchorFall(int anchor) {
  if (anchor <= 3) return 0;
  return anchor >= 5 && anchor <= 7 ? 1.0f : 0.5f;
}

// Share of the width that lies to the left of (x, y).
float AnchorShare(int anchor) {
  static constexpr float kShare[] = {0, 0.5f, 1, 1, 1, 0.5f, 0, 0, 0.5f};
  return kShare[anchor - 1];
}

float WidthOf(std::string_view text, float height, Marks marks) {
  int n = 0;
  for (std::size_t at = 0; at < text.size();) n += NextGlyph(text, at, marks).kind <= Glyph::Greek;
  return n > 0 ? (static_cast<float>(n) * LetterAdvance - kGap) * height : 0.0f;
}

void DrawLetters(float x, float y, std::string_view text, float height, float angle, int anchor,
                 Marks marks) {
  if (!(height > 0)) height = DefaultTextHeight;
  if (anchor < 1 || anchor > 9) anchor = 1;
  const TextPlane plane(x, y, angle);
  float u = -AnchorShare(anchor) * WidthOf(text, height, marks);
  const float base = -AnchorFall(anchor) * height;
  int script = 0;  // -1 below, 1 above
  for (std::size_t at = 0; at < text.size();) {
    const Glyph glyph = NextGlyph(text, at, marks);
    if (glyph.kind >= Glyph::Subscript) {
      const int other = glyph.kind == Glyph::Subscript ? -1 : 1;
      script = script == other ? 0 : other;
      continue;
    }
    const float size = script ? kScriptHeight * height : height;
    float v = base;
    if (script > 0) v += (2 - kScriptHeight) * height / 2;
    if (script < 0) v -= kSubscriptFall * height;
    const float unit = size / 100;
    const Shape shape = glyph.kind == Glyph::Greek ? GreekShape(glyph.code) : CharShape(glyph.code);
    ShapePen{plane, u, v, unit}.Draw(shape.strokes);
    ShapePen{plane, u, v + static_cast<float>(shape.rise) * unit, unit}.Draw(shape.accent);
    u += LetterAdvance * size;
    plane.Up(u, v);
  }
}

}  // namespace

float TextWidth(std::string_view text, float height) {
  return WidthOf(text, height, Marks::Obeyed);
}

void DrawText(float x, float y, std::string_view text, float height, float angle, int anchor) {
  DrawLetters(x, y, text, height, angle, anchor, Marks::Obeyed);
}

float NameWidth(std::string_view name, float height) { return WidthOf(name, height, Marks::Drawn); }

void DrawName(float x, float y, std::string_view name, float height, float angle, int anchor) {
  DrawLetters(x, y, name, height, angle, anchor, Marks::Drawn);
}
