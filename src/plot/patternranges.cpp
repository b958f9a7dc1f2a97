// The ranges of the pattern plot: the part of the data that its frame shows.
#include "plot/patternranges.h"

#include <cmath>

#include "plot/dataposition.h"
#include "plot/page.h"
#include "plot/structureticks.h"
#include "plot/views.h"
#include "workspace/slots.h"

namespace {

constexpr float kSmallestBand = 5.0f;  // counts

struct View {
  int primary;  // slot
  Range x{0, 0}, y{1.0e30f, -1.0e30f};
  bool band = false;   // the rubber band is the zoom
  bool exact = false;  // the limits are drawn as they are
};

bool BandIsZoom() {
  float height = ws.bandy2 - ws.bandy1;
  if (LogarithmicY()) height = std::pow(10.0f, ws.bandy2) - std::pow(10.0f, ws.bandy1);
  return ws.bandx2 - ws.bandx1 > 10 * FirstStepOf(SlotInput) && height > kSmallestBand;
}

// Everything, before it is rounded.
View WholeView() {
  View view{.primary = ActiveSlot()};
  for (const float y : IntensityOf(view.primary)) view.y.Widen(y);
  view.y = {ShownY(view.y.lo), ShownY(view.y.hi)};
  const int n = ws.npts(view.primary);
  if (n < 1) return view;
  view.x = {ws.xval(ws.xaxismode, view.primary, 1), ws.xval(ws.xaxismode, view.primary, n)};
  if (ws.xaxismode == AxisD) std::swap(view.x.lo, view.x.hi);
  return view;
}

// What to show before it is rounded: the band, the view, or everything.
View FindView() {
  View view = WholeView();
  view.band = BandIsZoom();
  if (view.band) {
    view.x = {ws.bandx1, ws.bandx2};
    view.y = {ws.bandy1, ws.bandy2};
  } else if (ws.viewxmin != 0 || ws.viewxmax != 0) {
    view.exact = ws.viewexact != 0;
    view.x = {ws.viewxmin, ws.viewxmax};
    if (view.exact || ws.viewymax != 0) view.y = {ws.viewymin, ws.viewymax};
  }
  return view;
}

// Widens the y range to hold the points of a slot, displaced.
void WidenTo(View& view, int slot, float dx, float dy) {
  const auto xs = ws.xval.row(ws.xaxismode, slot), ys = ws.yval.row(slot);
  for (int i = 0; i < ws.npts(slot); ++i)
    if (view.x.Holds(xs[i] + dx)) view.y.Widen(ys[i] + dy);
}

// The linear axis has room for the other curves too.
void MakeRoom(View& view) {
  if (ws.noverlay > 0) {
    for (int k = 1; k <= ws.noverlay; ++k)
      WidenTo(view, SlotOverlay + k - 1, ws.displacex * static_cast<float>(k),
              ws.displacey * static_cast<float>(k));
    view.y = Rounded(view.y.lo, view.y.hi);
  }
  if (ws.plotmask & PlotBackground) {
    WidenTo(view, SlotBackground, 0, 0);
    view.y = Rounded(view.y.lo, view.y.hi);
  }
}

// To whole degrees, or hundredths on the d and Q axes.
Range RoundedX(const Extremes& x) {
  const Range nice = Rounded(x.low, x.high);
  const float fine = ws.xaxismode == AxisTth ? 1.0f : 100.0f;
  return {std::floor(nice.lo * fine + 0.001f) / fine, std::floor(nice.hi * fine + 0.999f) / fine};
}

// The points of the primary curve inside the x range, their y limited to the y range.
struct Points {
  int n = 0;
  Extremes x, y;

  explicit Points(const View& view) {
    const auto xs = ws.xval.row(ws.xaxismode, view.primary), ys = ws.yval.row(view.primary);
    for (int i = 0; i < ws.npts(view.primary); ++i) {
      if (!view.x.Holds(xs[i])) continue;
      ++n;
      x.Take(xs[i]);
      y.Take(view.y.Limit(ShownY(ys[i])));
    }
  }
};

// Outward, to what the frame shows. Returns why that cannot be drawn, or null.
const char* Round(View& view) {
  const Points points(view);
  if (points.n < 2) return "nstep = 0";
  view.y = Rounded(points.y.low, points.y.high);
  if (!LogarithmicY()) MakeRoom(view);
  view.x = RoundedX(points.x);
  return view.x.lo == view.x.hi ? "amin = amax" : nullptr;
}

// For rows below the frame.
void LeaveRoomBelow(float height) {
  ws.ploty0 += height;
  ws.plotheight -= height;
}

ViewComplaint Undrawable(const char* why) {
  ws.plotmask = 0;
  return {"Error", why};
}

// Writes the view as it is drawn back for the mouse and the next redraw.
void Keep(const View& view) {
  ws.viewxmin = view.x.lo;
  ws.viewxmax = view.x.hi;
  ws.viewymin = view.y.lo;
  ws.viewymax = view.y.hi;
  ws.viewexact = view.exact;
  ws.xperunit = (view.x.hi - view.x.lo) / ws.plotwidth;
  ws.yperunit = (view.y.hi - view.y.lo) / ws.plotheight;
  if (view.band) return;
  ws.plotxmin = view.x.lo;
  ws.plotxmax = view.x.hi;
}

}  // namespace

std::optional<PatternFrame> FullFrame() {
  View view = WholeView();
  if (Round(view)) return {};
  return PatternFrame{view.x, view.y};
}

bool ViewCanBeLaid() {
  View view = FindView();
  return view.exact || !Round(view);
}

ViewComplaint LayPatternPlot() {
  UpdatePlotMenu();
  if (ws.plotmask < 1) return {};
  LayPage();
  LeaveRoomBelow(StructureRoom());
  View view = FindView();
  const Range curve = view.x;
  const char* complaint = view.exact ? nullptr : Round(view);
  if (complaint) return Undrawable(complaint);
  ws.curvexmin = curve.lo;
  ws.curvexmax = curve.hi;
  Keep(view);
  return {};
}

void PutExactView(const Range& x, const Range& y) {
  ws.viewxmin = x.lo;
  ws.viewxmax = x.hi;
  ws.viewymin = y.lo;
  ws.viewymax = y.hi;
  ws.viewexact = 1;
  ws.bandx1 = ws.bandx2 = ws.bandy1 = ws.bandy2 = 0;
}
