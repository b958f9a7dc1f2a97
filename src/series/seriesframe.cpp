// The frame that the views of a series have in common.
#include "series/seriesframe.h"

#include <algorithm>
#include <cmath>

#include "plot/views.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

SeriesFrame::SeriesFrame()
    : page(BeginPage()),
      x{ws.viewxmin, ws.viewxmax},
      y{ws.viewymin, ws.viewymax},
      xfactor(ScaleOf(x, ws.plotwidth)),
      yfactor(ScaleOf(y, ws.plotheight)) {
  MoveOrigin(ws.plotx0, ws.ploty0);
}

namespace {

// Cuts the part [from, to] of a way from a to b down to where it lies in the range; false if it
// does not.
bool Cut(double a, double b, const Range& range, double& from, double& to) {
  if (a == b) return a >= range.lo && a <= range.hi;
  double enter = (range.lo - a) / (b - a), leave = (range.hi - a) / (b - a);
  if (enter > leave) std::swap(enter, leave);
  from = std::max(from, enter);
  to = std::min(to, leave);
  return from <= to;
}

}  // namespace

void FramePen::To(double x, double y) {
  if (!std::isfinite(x) || !std::isfinite(y)) return Up();
  double from = 0, to = 1;
  if (begun_ && Cut(x_, x, frame_.x, from, to) && Cut(y_, y, frame_.y, from, to)) {
    // At an end the point itself, to the bit, so that the line goes on from there.
    const auto at = [](double a, double b, double share) {
      return static_cast<float>(share == 1 ? b : a + (b - a) * share);
    };
    const auto draw = [&](auto pen, double share) {
      pen(frame_.X(at(x_, x, share)), frame_.Y(at(y_, y, share)));
    };
    draw(PenUp, from);
    draw(PenDown, to);
  }
  x_ = x;
  y_ = y;
  begun_ = true;
}

void DrawSeriesTitle(const SeriesFrame& frame, const std::string& title, const std::string& note) {
  const float letters = frame.page.textheight, up = letters * WInfoGrReal(GraphicsGlyphY);
  const float room = ws.plotwidth / WInfoGrReal(GraphicsGlyphX);
  SetPen(1, 1, colours::kBlack);
  const auto write = [&](const std::string& text, float share, int anchor) {
    DrawName(anchor == 1 ? 0 : ws.plotwidth, ws.plotheight + 0.6F * up, text,
             FittingHeight(text, share * room, letters), 0, anchor);
  };
  write(title, note.empty() ? 1.0F : 0.48F, 1);
  write(note, 0.48F, 3);
}

void DrawSeriesAxes(const SeriesFrame& frame, const std::string& xname, const std::string& yname) {
  const PageLayout& page = frame.page;
  const float letters = 1.2F * page.textheight;
  SetPen(1, 2, colours::kBlack);
  Rectangle(0, 0, ws.plotwidth, ws.plotheight, 0);
  SetPen(1, 1, colours::kBlack);
  if (xname.empty())
    DrawPatternAxis(page, frame.x, frame.xfactor);
  else
    AxisLinear(ws.plotwidth, frame.x.lo, frame.x.hi, frame.xfactor, page.tick, page.textheight, 0,
               "");
  AxisLinear(ws.plotheight, frame.y.lo, frame.y.hi, frame.yfactor, page.tick, page.textheight, -270,
             "");
  // Below and beside the labels, as far as the margin goes.
  const float away = 2 * page.tick + 2 * page.textheight;
  const float below = std::min(away, 8 * page.tick - letters * WInfoGrReal(GraphicsGlyphY)),
              beside = std::min(away, 10 * page.tick - letters * WInfoGrReal(GraphicsGlyphX));
  const auto fitting = [&](const std::string& name, float length, int glyph) {
    return FittingHeight(name, length / WInfoGrReal(glyph), letters);
  };
  DrawName(ws.plotwidth / 2, -below, xname, fitting(xname, ws.plotwidth, GraphicsGlyphX), 0, 6);
  DrawName(-beside, ws.plotheight / 2, yname, fitting(yname, ws.plotheight, GraphicsGlyphY), 90, 2);
}
