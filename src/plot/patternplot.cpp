// The pattern plot: all curves of the Workspace on one frame, in the units of the selected axis.
#include <algorithm>
#include <iterator>

#include "plot/dataposition.h"
#include "plot/legend.h"
#include "plot/structureticks.h"
#include "plot/views.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

struct Plot {
  PageLayout page = BeginPage();
  int primary = ActiveSlot();
  Range x{ws.viewxmin, ws.viewxmax}, y{ws.viewymin, ws.viewymax};
  float xfactor = ScaleOf(x, ws.plotwidth), yfactor = ScaleOf(y, ws.plotheight);

  float X(float value) const { return (value - x.lo) * xfactor; }
  float Y(float value) const { return (value - y.lo) * yfactor; }
};

constexpr const char* kXTitles[] = {"2|q", "d (A)", "Q (A\x9c-1\x9c)"};
constexpr float kFewDegrees = 5;  // below, fractions of a degree are labelled

void DrawFrame(const Plot& plot) {
  const float strip = 2 * plot.page.tick;
  SetPen(1, 2, colours::kBlack);
  Rectangle(0, 0, ws.plotwidth, ws.plotheight, 0);
  const float below = strip + StructureRoom();
  Rectangle(0, -below, ws.plotwidth, ws.plotheight + below, 0);
  SetPen(1, 1, colours::kBlack);

  MoveOrigin(0, -below);
  DrawPatternAxis(plot.page, plot.x, plot.xfactor);
  MoveOrigin(0, below);
  AxisLinear(ws.plotheight, plot.y.lo, plot.y.hi, plot.yfactor, plot.page.tick,
             plot.page.textheight, -270, LogarithmicY() ? "10log(Counts)" : "Counts");
}

void DrawGrid(const Plot& plot) {
  int count;
  float start, step;
  SetPen(1, 1, colours::kGrid);
  if (ws.xgrid == 1) {
    GridSteps(ws.plotwidth, plot.x.lo, plot.x.hi, count, start, step);
    for (int i = 0; i <= count; ++i)
      LineAt((step * static_cast<float>(i) + start) * plot.xfactor, 0, ws.plotheight, 90);
  }
  if (ws.ygrid == 1) {
    GridSteps(ws.plotheight, plot.y.lo, plot.y.hi, count, start, step);
    for (int i = 0; i <= count; ++i)
      LineAt(0, (step * static_cast<float>(i) + start) * plot.yfactor, ws.plotwidth, 0);
  }
}

// Draws a line from point to point where it lies between the floor and the top of the frame.
class CurvePen {
 public:
  explicit CurvePen(const Plot& plot) : plot_(plot) {}

  void To(float x, float y) {
    const bool inside = plot_.y.Holds(y);
    if (inside && inside_)
      PenDown(plot_.X(x), plot_.Y(y));
    else
      EnterOrLeave({x, y = std::clamp(y == y ? y : 0.0f, -kFar, kFar)});
    last_ = {x, y};
  }

 private:
  static constexpr float kFar = 1.0e38f;  // twice as much is a number still

  struct Point {
    float x, y;
  };

  void EnterOrLeave(Point to) {
    const float enter = plot_.y.Limit(last_.y), leave = plot_.y.Limit(to.y);
    const bool inside = leave == to.y;
    if (begun_ && (enter != leave || (inside_ && inside))) {
      if (!inside_) PenUp(Crossing(to, enter), plot_.Y(enter));
      PenDown(inside ? plot_.X(to.x) : Crossing(to, leave), plot_.Y(leave));
    } else if (inside) {
      PenUp(plot_.X(to.x), plot_.Y(to.y));
    }
    inside_ = inside;
    begun_ = true;
  }
  // Where the line to the next point passes this height.
  float Crossing(Point to, float y) const {
    return plot_.X(last_.x + (to.x - last_.x) * ((y - last_.y) / (to.y - last_.y)));
  }

  const Plot& plot_;
  Point last_{};
  bool inside_ = false, begun_ = false;
};

// The line from one point to the next at the end of the range that it passes.
DataPoint AtEnd(const Range& x, DataPoint in, DataPoint out) {
  const float end = out.x < x.lo ? x.lo : x.hi;
  return {end, in.y + (out.y - in.y) * ((end - in.x) / (out.x - in.x))};
}

// The points of a slot inside the x range, displaced. Between exact limits the curve goes on to the
// frame.
void DrawCurve(const Plot& plot, int slot, int n, const Range& x, float dx = 0, float dy = 0) {
  const auto xs = ws.xval.row(ws.xaxismode, slot), ys = ws.yval.row(slot);
  CurvePen pen(plot);
  const auto draw = [&](DataPoint at) { pen.To(at.x, ShownY(at.y)); };
  DataPoint last{};
  for (int i = 0; i < n; ++i) {
    const DataPoint at{xs[i] + dx, ys[i] + dy};
    const bool inside = x.Holds(at.x), passes = ws.viewexact && i > 0;
    if (inside && passes && !x.Holds(last.x)) draw(AtEnd(x, at, last));
    if (inside) draw(at);
    if (!inside && passes && x.Holds(last.x)) draw(AtEnd(x, last, at));
    last = at;
  }
}

void DrawOverlays(const Plot& plot) {
  for (int k = 1; k <= ws.noverlay; ++k) {
    const int slot = SlotOverlay + k - 1;
    const auto shift = static_cast<float>(k);
    SetPen(1, 1, colours::kOverlay[k - 1]);
    DrawCurve(plot, slot, ws.npts(slot), {ws.plotxmin, ws.plotxmax}, ws.displacex * shift,
              ws.displacey * shift);
  }
}

// Primary minus refined pattern, hanging from the floor of the plot. A fit of an overlay is one of
// slot 1, but need not begin with it.
void DrawResidual(const Plot& plot, const Range& x) {
  const int slot = ws.fitshown ? SlotInput : plot.primary, before = PointsBeforeFit();
  const auto xs = ws.xval.row(ws.xaxismode, SlotRefined), refined = ws.yval.row(SlotRefined),
             measured = ws.yval.row(slot).subspan(before);
  // Deep below the floor it ends at the edge of the drawing.
  const float edge = plot.yfactor > 0 ? plot.y.lo - ws.ploty0 / plot.yfactor : plot.y.lo;
  bool begun = false;
  for (int i = 0; i < std::min(ws.npts(SlotRefined), ws.npts(slot) - before); ++i) {
    if (!x.Holds(xs[i])) continue;
    const float difference = plot.y.Limit(measured[i]) - plot.y.Limit(refined[i]) + plot.y.lo;
    (begun ? PenDown : PenUp)(plot.X(xs[i]), plot.Y(std::max(edge, difference)));
    begun = true;
  }
}

// From the strip below the plot up to the primary curve.
void DrawPeakTicks(const Plot& plot, const Range& x) {
  const float strip = 2 * plot.page.tick;
  const int n = ws.npts(plot.primary);
  const auto xs = ws.xval.row(ws.xaxismode, plot.primary).first(n);
  const auto shown = [](float value) { return Range{ws.curvexmin, ws.curvexmax}.Holds(value); };
  const auto first = std::find_if(xs.begin(), xs.end(), shown);
  const auto last = std::find_if(xs.rbegin(), std::reverse_iterator(first), shown).base();
  if (first == last) return;
  const auto draw = [&](int j) {
    const float place = ShownX(ws.peaks(ptth, j));
    if (!(place > 0) || !x.Holds(place)) return;
    const int near = NearestIndex(place, &*first, static_cast<int>(last - first));
    const int point = static_cast<int>(first - xs.begin()) + near;
    const float top = plot.y.Limit(ShownY(ws.yval(plot.primary, point)));
    LineAt(plot.X(place), -strip, plot.Y(top) + strip, 90);
  };
  SetPen(1, 1, colours::kMagenta);
  for (int j = 1; j <= std::min(ws.npeaks, MaxPeaks); ++j) draw(j);
  if (ws.peakchosen < 1 || OnPaper()) return;
  SetPen(1, 3, colours::kBlue);
  draw(ws.peakchosen);
}

// Below the frame alone, over the ends of the peaks' ticks: what hides none belongs to no peak.
void DrawCellLines(const Plot& plot, const Range& x) {
  const float strip = 2 * plot.page.tick;
  SetPen(1, 2, colours::kBlue);
  for (int j = 1; j <= std::min(ws.ncelllines, MaxPeaks); ++j)
    if (const float place = ShownX(ws.celllines(j)); place > 0 && x.Holds(place))
      LineAt(plot.X(place), -strip, strip, 90);
}

void DrawManualPoints(const Plot& plot, const Range& x) {
  SetPen(1, 1, colours::kOrange);
  for (int j = 1; j <= std::min(ws.nmanualbg, MaxManualPoints); ++j) {
    const DataPoint at = ShownPosition({ws.manualbg(1, j), ws.manualbg(2, j)});
    if (at.x > 0 && x.Holds(at.x) && plot.y.Holds(at.y))
      Marker(7, plot.X(at.x), plot.Y(at.y), plot.page.scale * 20);
  }
}

void DrawCurves(const Plot& plot) {
  const Range x{ws.plotxmin, ws.plotxmax};
  DrawStructureSticks(x, plot.xfactor, plot.y, plot.yfactor);  // the curves stay in front of them
  SetPen(1, 1, colours::kBlack);
  DrawCurve(plot, plot.primary, ws.npts(plot.primary), {ws.curvexmin, ws.curvexmax});
  if (ws.plotmask & PlotBackground) {
    SetPen(1, 1, colours::kGreen);
    DrawCurve(plot, SlotBackground, ws.npts(SlotInput), x);
  }
  if (ws.fitshown == 0) DrawOverlays(plot);
  if (ws.fitshown == 1 || (ws.plotmask & PlotRefined)) {
    SetPen(1, 1, colours::kOrange);
    DrawCurve(plot, SlotRefined, ws.npts(SlotRefined), x);
    if (!LogarithmicY() && (ws.plotmask & PlotResidual)) {
      SetPen(1, 1, colours::kBrown);
      DrawResidual(plot, x);
    }
  }
  if (ws.plotmask & PlotPeaks) DrawPeakTicks(plot, x);
  DrawCellLines(plot, x);
  DrawStructureRows(plot.page, x, plot.xfactor, -2 * plot.page.tick);
  DrawManualPoints(plot, x);
}

Skyline SkylineOf(const Plot& plot) {
  Skyline curves;
  const auto take = [&](int slot, int n, float dx, float dy) {
    const auto xs = ws.xval.row(ws.xaxismode, slot), ys = ws.yval.row(slot);
    for (int i = 0; i < n; ++i) curves.Take(plot.X(xs[i] + dx), plot.Y(ShownY(ys[i] + dy)));
  };
  take(plot.primary, ws.npts(plot.primary), 0, 0);
  if (ws.plotmask & PlotBackground) take(SlotBackground, ws.npts(SlotInput), 0, 0);
  if (ws.fitshown == 1 || (ws.plotmask & PlotRefined))
    take(SlotRefined, ws.npts(SlotRefined), 0, 0);
  for (int k = 1; k <= ws.noverlay && ws.fitshown == 0; ++k)
    take(SlotOverlay + k - 1, ws.npts(SlotOverlay + k - 1), ws.displacex * static_cast<float>(k),
         ws.displacey * static_cast<float>(k));
  return curves;
}

void DrawLegend(const Plot& plot) {
  const Legend legend(plot.page, LegendRows());
  if (legend.empty()) return;
  if (const auto left = legend.Place(SkylineOf(plot))) legend.Draw(*left);
}

}  // namespace

// Between limits that are rounded the axis keeps to whole degrees.
void DrawPatternAxis(const PageLayout& page, const Range& x, float xfactor) {
  const bool degrees = ws.xaxismode == AxisTth, fine = ws.viewexact && x.hi - x.lo < kFewDegrees;
  if (degrees && !fine)
    AxisTwoTheta(ws.plotwidth, x.lo, x.hi, xfactor, page.tick, page.textheight, kXTitles[0]);
  else
    AxisLinear(ws.plotwidth, x.lo, x.hi, xfactor, page.tick, page.textheight, 0,
               kXTitles[ws.xaxismode - 1]);
}

void DrawPatternPlot() {
  if (ws.plotmask < 1) return;
  const Plot plot;
  MoveOrigin(ws.plotx0, ws.ploty0);
  if (ws.epsflag == 1) MoveOrigin(10, 0);
  DrawGrid(plot);  // under the frame, as its outer lines lie on it
  DrawFrame(plot);
  DrawCurves(plot);
  DrawLegend(plot);
  SetPen(1, 1, colours::kBlack);
  DrawName(ws.plotwidth - plot.page.scale * 10, ws.plotheight - plot.page.scale * 20, ws.stem20,
           std::max(plot.page.textheight, 1.4f * TextUnits * plot.page.scale), 0, 5);
  if (!OnPaper() || ws.epsflag == 1) return;
  MoveOrigin(0, -StructureRoom());
  DrawPlotHeader(plot.page);
}
