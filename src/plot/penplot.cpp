// Pen, origin, lines and markers.
#include "plot/penplot.h"

#include <cmath>

#include "toolkit/toolkit.h"
#include "workspace/record.h"     // for DateTimeStamp
#include "workspace/workspace.h"  // for RadToDeg

namespace {

struct Plotter {
  float plotfactor = 1, scalefactor2 = 1;
  float penx = 0, peny = 0;  // as drawn
  float originx = 0, originy = 0;

  float Scale() const { return plotfactor * scalefactor2; }
};

Plotter plotter;

}  // namespace

void PlotInit() {
  plotter = Plotter{};
  IGrColourModel(24);
}

void SetPen(int style, float width, int colour) {
  static constexpr int kLineType[] = {0, 2, 1, 3, 4};
  IGrLineType(style >= 1 && style <= 5 ? kLineType[style - 1] : 0);
  IGrLineWidth(width);
  IGrColourN(colour);
}

void MoveOrigin(float dx, float dy) {
  plotter.originx += dx;
  plotter.originy += dy;
}

namespace {

void MovePen(float x, float y) {
  if (x != KeepPosition) plotter.penx = plotter.Scale() * (plotter.originx + x);
  if (y != KeepPosition) plotter.peny = plotter.Scale() * (plotter.originy + y);
}

}  // namespace

void PenUp(float x, float y) {
  MovePen(x, y);
  IGrMoveTo(plotter.penx, plotter.peny);
}

void PenDown(float x, float y) {
  MovePen(x, y);
  IGrLineTo(plotter.penx, plotter.peny);
}

void PenPosition(float& x, float& y) {
  x = plotter.penx / plotter.Scale() - plotter.originx;
  y = plotter.peny / plotter.Scale() - plotter.originy;
}

void LineAt(float x, float y, float length, float angle) {
  if (length == 0) length = DefaultTickLength;
  PenUp(x, y);
  PenDown(x + length * std::cos(angle / RadToDeg), y + length * std::sin(angle / RadToDeg));
}

void Rectangle(float x, float y, float w, float h, float angle) {
  const float c = std::cos(angle / RadToDeg), s = std::sin(angle / RadToDeg);
  PenUp(x, y);
  PenDown(x + w * c, y + w * s);
  PenDown(x + w * c - h * s, y + w * s + h * c);
  PenDown(x - h * s, y + h * c);
  PenDown(x, y);
}

namespace {

// Draws around a marker's centre, in units that keep its shape in an area of any shape.
struct MarkerPen {
  float x, y;
  float glyphx = WInfoGrReal(GraphicsGlyphX), glyphy = WInfoGrReal(GraphicsGlyphY);

  void Up(float dx, float dy) const { PenUp(x + dx * glyphx, y + dy * glyphy); }
  void Down(float dx, float dy) const { PenDown(x + dx * glyphx, y + dy * glyphy); }
  void Line(float x1, float y1, float x2, float y2) const {
    Up(x1, y1);
    Down(x2, y2);
  }
  void Arc(float radius, int step) const {
    Up(radius, 0);
    for (int angle = step; angle <= 360; angle += step)
      Down(radius * std::cos(static_cast<float>(angle) / RadToDeg),
           radius * std::sin(static_cast<float>(angle) / RadToDeg));
  }
};

}  // namespace

void Marker(int kind, float x, float y, float size) {
  const MarkerPen pen{x, y};
  const float r = size / 2;
  PenUp(x, y);
  switch (kind) {
    case 1:
      pen.Up(-r, -r);
      pen.Down(r, -r);
      pen.Down(r, r);
      pen.Down(-r, r);
      pen.Down(-r, -r);
      break;
    case 2: {
      const float base = size / 1.732051f;
      pen.Up(-base, -size / 3);
      pen.Down(base, -size / 3);
      pen.Down(0, size * 2 / 3);
      pen.Down(-base, -size / 3);
      break;
    }
    case 3:
      pen.Arc(size / 1.772453f, 10);
      break;
    case 4:
      pen.Arc(size / 1.772453f, 60);
      break;
    case 5:
      pen.Arc(size / 1.41421f, 90);
      break;
    case 6:
      pen.Line(-r, -r, r, r);
      pen.Line(-r, r, r, -r);
      break;
    case 7:
      pen.Line(-r, 0, r, 0);
      pen.Line(0, -r, 0, r);
      break;
    case 8:
      pen.Line(-r, 0, r, 0);
      break;
    case 9:
      pen.Line(0, -r, 0, r);
      break;
    default:
      break;
  }
}

std::string DateTimeStamp() {
  const int date = IOsDate(), time = IOsTime();
  return WriteRecord<"(i4.4,'-',i2.2,'-',i2.2,3x,i2.2,':',i2.2)">(
      date / 10000, date / 100 % 100, date % 100, time / 10000, time / 100 % 100);
}
