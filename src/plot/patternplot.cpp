// The pattern plot: all curves of the Workspace on one frame, in the units of the selected axis.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

#include "plot/page.h"
#include "plot/plot.h"
#include "plot/scales.h"
#include "toolkit/toolkit.h"
#include "workspace/slots.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr float kSmallestBand = 5.0f;  // counts

// A curve with the scale of NiceRange behind its points, as Polyline takes it.
struct Curve {
  float x[MaxPoints + 3], y[MaxPoints + 3];
  int n = 0;

  void Add(float px, float py) {
    if (n == MaxPoints) return;
    x[n] = px;
    y[n++] = py;
  }
};

struct Range {
  float lo, hi;
  bool Holds(float value) const { return value >= lo && value <= hi; }
  // What is not a number counts as 0.
  float Limit(float value) const {
    return std::max(lo, std::min(hi, value == value ? value : 0.0f));
  }
  void Widen(float value) {
    lo = std::min(lo, value);
    hi = std::max(hi, value);
  }
};

struct Plot {
  PageLayout page;
  int primary;        // slot
  bool band = false;  // the rubber band is the zoom
  Range x, y;         // of the view
  float xfactor = 0, yfactor = 0;

  float X(float value) const { return (value - x.lo) * xfactor; }
  float Y(float value) const { return (value - y.lo) * yfactor; }
};

// Static, as a redraw takes no memory of its own.
Curve primarycurve, curve;

bool Logarithmic() { return ws.yaxismode == 2; }

// Counts as the axis shows them; what has no logarithm stands at 0.
float Shown(float counts) {
  if (!Logarithmic()) return counts;
  return counts > 0 ? Log10(counts) : 0.0f;
}

bool BandIsZoom() {
  float height = ws.bandy2 - ws.bandy1;
  if (Logarithmic()) height = std::pow(10.0f, ws.bandy2) - std::pow(10.0f, ws.bandy1);
  return ws.bandx2 - ws.bandx1 > 10 * FirstStepOf(SlotInput) && height > kSmallestBand;
}

// The range to show before it is rounded: the band, the view, or everything.
void FindRange(Plot& plot) {
  const int n = ws.npts(plot.primary);
  plot.y = {1.0e30f, -1.0e30f};
  for (const float y : ws.yval.row(plot.primary).first(n)) plot.y.Widen(y);
  if (Logarithmic()) plot.y = {Shown(plot.y.lo), Shown(plot.y.hi)};

  plot.band = BandIsZoom();
  if (plot.band) {
    plot.x = {ws.bandx1, ws.bandx2};
    plot.y = {ws.bandy1, ws.bandy2};
  } else if (ws.viewxmin == 0 && ws.viewxmax == 0) {
    plot.x = {0, 0};
    if (n < 1) return;
    plot.x = {ws.xval(ws.xaxismode, plot.primary, 1), ws.xval(ws.xaxismode, plot.primary, n)};
    if (ws.xaxismode == AxisD) std::swap(plot.x.lo, plot.x.hi);
  } else {
    plot.x = {ws.viewxmin, ws.viewxmax};
    if (ws.viewymax != 0) plot.y = {ws.viewymin, ws.viewymax};
  }
}

// The points of a slot inside the x range, displaced, as counts on the axis inside the y range.
void Collect(Curve& out, int slot, int n, const Range& x, const Range& y, float dx = 0,
             float dy = 0) {
  const auto xs = ws.xval.row(ws.xaxismode, slot), ys = ws.yval.row(slot);
  out.n = 0;
  for (int i = 0; i < n; ++i)
    if (x.Holds(xs[i] + dx)) out.Add(xs[i] + dx, y.Limit(Shown(ys[i] + dy)));
}

// Widens the rounded y range to hold the points of a slot.
void WidenTo(Plot& plot, int slot, float dx, float dy) {
  const auto xs = ws.xval.row(ws.xaxismode, slot), ys = ws.yval.row(slot);
  for (int i = 0; i < ws.npts(slot); ++i)
    if (plot.x.Holds(xs[i] + dx)) plot.y.Widen(ys[i] + dy);
}

void RoundLimits(Plot& plot) {
  float limits[5] = {plot.y.lo, plot.y.hi};
  NiceRange(limits, 2, ws.plotheight);
  plot.y = {limits[2], limits[4]};
  plot.yfactor = limits[3];
}

void RoundYRange(Plot& plot) {
  const int n = primarycurve.n;
  NiceRange(primarycurve.y, n, ws.plotheight);
  plot.y = {primarycurve.y[n], primarycurve.y[n + 2]};
  plot.yfactor = primarycurve.y[n + 1];
  if (Logarithmic()) return;
  if (ws.noverlay > 0) {
    for (int k = 1; k <= ws.noverlay; ++k)
      WidenTo(plot, SlotOverlay + k - 1, ws.displacex * static_cast<float>(k),
              ws.displacey * static_cast<float>(k));
    RoundLimits(plot);
  }
  if (ws.plotmask & PlotBackground) {
    WidenTo(plot, SlotBackground, 0, 0);
    RoundLimits(plot);
  }
}

// To whole degrees, or hundredths on the d and Q axes.
void RoundXRange(Plot& plot) {
  const int n = primarycurve.n;
  NiceRange(primarycurve.x, n, ws.plotwidth);
  const float fine = ws.xaxismode == AxisTth ? 1.0f : 100.0f;
  plot.x = {std::floor(primarycurve.x[n] * fine + 0.001f) / fine,
            std::floor(primarycurve.x[n + 2] * fine + 0.999f) / fine};
}

// False after a message, with the view switched off so that it is not repeated at every redraw.
bool Complain(const char* text) {
  MessageBoxError("Error", text);
  ws.plotmask = 0;
  return false;
}

bool LayRanges(Plot& plot) {
  FindRange(plot);
  Collect(primarycurve, plot.primary, ws.npts(plot.primary), plot.x, plot.y);
  if (primarycurve.n < 2) return Complain("nstep = 0");
  RoundYRange(plot);
  RoundXRange(plot);
  if (plot.x.lo == plot.x.hi) return Complain("amin = amax");

  plot.xfactor = ws.plotwidth / (plot.x.hi - plot.x.lo);
  ws.viewxmin = plot.x.lo;
  ws.viewxmax = plot.x.hi;
  ws.viewymin = plot.y.lo;
  ws.viewymax = plot.y.hi;
  ws.xperunit = (plot.x.hi - plot.x.lo) / ws.plotwidth;
  ws.yperunit = (plot.y.hi - plot.y.lo) / ws.plotheight;
  if (!plot.band) {
    ws.plotxmin = plot.x.lo;
    ws.plotxmax = plot.x.hi;
  }
  return true;
}

void DrawFrame(const Plot& plot) {
  const float strip = 2 * plot.page.tick;
  SetPen(1, 2, colours::kBlack);
  Rectangle(0, 0, ws.plotwidth, ws.plotheight, 0);
  Rectangle(0, -strip, ws.plotwidth, ws.plotheight + strip, 0);
  SetPen(1, 1, colours::kBlack);

  MoveOrigin(0, -strip);
  if (ws.xaxismode == AxisTth)
    AxisTwoTheta(ws.plotwidth, plot.x.lo, plot.x.hi, plot.xfactor, plot.page.tick,
                 plot.page.textheight, "2|q");
  else
    AxisLinear(ws.plotwidth, plot.x.lo, plot.x.hi, plot.xfactor, plot.page.tick,
               plot.page.textheight, 0, ws.xaxismode == AxisD ? "d (A)" : "Q (A\x9c-1\x9c)");
  MoveOrigin(0, strip);
  AxisLinear(ws.plotheight, plot.y.lo, plot.y.hi, plot.yfactor, plot.page.tick,
             plot.page.textheight, -270, Logarithmic() ? "10log(Counts)" : "Counts");
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

// Colours tell the curves apart on the screen, dashes on paper.
void SetCurvePen(int style, int colour) { SetPen(ws.printflag == 1 ? style : 1, 1, colour); }

void DrawCurve(const Plot& plot, Curve& c) {
  c.x[c.n] = plot.x.lo;
  c.x[c.n + 1] = plot.xfactor;
  c.y[c.n] = plot.y.lo;
  c.y[c.n + 1] = plot.yfactor;
  Polyline(c.x, c.y, c.n);
}

void DrawOverlays(const Plot& plot) {
  static constexpr int kColour[MaxOverlays] = {colours::kOrange, colours::kMagenta, colours::kBrown,
                                               colours::kGreen};
  const PageLayout& page = plot.page;
  for (int k = 1; k <= ws.noverlay; ++k) {
    const int slot = SlotOverlay + k - 1;
    const auto shift = static_cast<float>(k);
    SetCurvePen(k + 1, kColour[k - 1]);
    Collect(curve, slot, ws.npts(slot), {ws.plotxmin, ws.plotxmax}, plot.y, ws.displacex * shift,
            ws.displacey * shift);
    DrawCurve(plot, curve);
    SetPen(1, 1, kColour[k - 1]);
    DrawText(ws.plotwidth - page.scale * 10,
             ws.plotheight - page.scale * 20 - page.textheight * 2 * shift,
             Field(FileStem(ws.overlayname(k)), 20), 1.2f * page.textheight, 0, 5);
  }
}

// Primary minus refined pattern, hanging from the floor of the plot.
void CollectResidual(const Plot& plot, const Range& x) {
  const auto xs = ws.xval.row(ws.xaxismode, SlotRefined), refined = ws.yval.row(SlotRefined),
             measured = ws.yval.row(plot.primary);
  // Deep below the floor it ends at the edge of the drawing.
  const float edge = plot.yfactor > 0 ? plot.y.lo - ws.ploty0 / plot.yfactor : plot.y.lo;
  curve.n = 0;
  for (int i = 0; i < std::min(ws.npts(SlotRefined), ws.npts(plot.primary)); ++i)
    if (x.Holds(xs[i]))
      curve.Add(xs[i],
                std::max(edge, plot.y.Limit(measured[i]) - plot.y.Limit(refined[i]) + plot.y.lo));
}

void DrawPeakTicks(const Plot& plot, const Range& x) {
  const float strip = 2 * plot.page.tick;
  SetPen(1, 1, colours::kMagenta);
  for (int j = 1; j <= std::min(ws.npeaks, MaxPeaks); ++j) {
    const float tth = ws.peaks(ptth, j);
    if (!(tth > 0) || !x.Holds(tth)) continue;
    const int near = NearestIndex(tth, primarycurve.x, primarycurve.n);
    LineAt(plot.X(tth), -strip, plot.Y(primarycurve.y[near - 1]) + strip, 90);
  }
}

void DrawManualPoints(const Plot& plot, const Range& x) {
  SetPen(1, 1, colours::kOrange);
  for (int j = 1; j <= std::min(ws.nmanualbg, MaxManualPoints); ++j) {
    const float px = ws.manualbg(1, j), py = Shown(ws.manualbg(2, j));
    if (px > 0 && x.Holds(px) && plot.y.Holds(py))
      Marker(7, plot.X(px), plot.Y(py), plot.page.scale * 20);
  }
}

void DrawCurves(const Plot& plot) {
  const Range x{ws.plotxmin, ws.plotxmax};
  SetPen(1, 1, colours::kBlack);
  DrawCurve(plot, primarycurve);
  if (ws.plotmask & PlotBackground) {
    SetCurvePen(2, colours::kGreen);
    Collect(curve, SlotBackground, ws.npts(SlotInput), x, plot.y);
    DrawCurve(plot, curve);
  }
  if (ws.noverlay > 0 && ws.fitshown == 0) DrawOverlays(plot);
  if (ws.fitshown == 1 || (ws.plotmask & PlotRefined)) {
    SetCurvePen(3, colours::kOrange);
    Collect(curve, SlotRefined, ws.npts(SlotRefined), x, plot.y);
    DrawCurve(plot, curve);
    if (!Logarithmic() && (ws.plotmask & PlotResidual)) {
      CollectResidual(plot, x);
      SetCurvePen(4, colours::kBrown);
      DrawCurve(plot, curve);
    }
  }
  if (ws.npeaks >= 1 && (ws.plotmask & PlotPeaks)) DrawPeakTicks(plot, x);
  if (ws.nmanualbg > 0) DrawManualPoints(plot, x);
}

}  // namespace

void DrawPatternPlot() {
  if (ws.viewmode == 0) return;
  UpdatePlotMenu();
  if (ws.plotmask < 1) return;
  Plot plot{.page = LayPage(), .primary = ActiveSlot(), .x = {}, .y = {}};
  MoveOrigin(ws.plotx0, ws.ploty0);
  if (!LayRanges(plot)) return;
  if (ws.epsflag == 1) MoveOrigin(10, 0);
  DrawGrid(plot);  // under the frame, as its outer lines lie on it
  DrawFrame(plot);
  DrawCurves(plot);
  SetPen(1, 1, colours::kBlack);
  DrawText(ws.plotwidth - plot.page.scale * 10, ws.plotheight - plot.page.scale * 20, ws.stem20,
           1.4f * plot.page.textheight, 0, 5);
  if (ws.printflag == 1 && ws.epsflag == 0) DrawPlotHeader(plot.page);
}
