// Background points set with the mouse, and the curve through them.
#include <algorithm>
#include <cmath>
#include <vector>

#include "background/background.h"
#include "background/curve.h"
#include "crystal/chebyshev.h"
#include "crystal/spline.h"
#include "plot/beside.h"
#include "plot/dataposition.h"
#include "plot/plot.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

using namespace controls;

enum ManualDialog { DialogNumber = 128, ButtonFit = 1110 };

constexpr Control kControls[] = {
    Label(1114, "Left-click to add point.   Right-click to remove point"),
    Ok,
    Cancel,
    Press(ButtonFit, "Fit"),
};
constexpr DialogResource kDialog{DialogNumber, "Set manuel background", kControls};

enum Curve { CurveLinear = 1, CurveSpline, CurveChebyshev };
constexpr float kMergeDistance = 0.1f;  // degrees; nearer points are one
constexpr int kChebyshevCycles = 6;
constexpr int kMostChebyshevTerms = 14;

// ---- Setting points ----

void AddPoint(DataPoint at) {
  if (ws.nmanualbg >= MaxManualPoints) {
    WindowOutStatusBar(3, "Point list is full");
    return;
  }
  const DataPoint stored = StoredPosition(at);
  ++ws.nmanualbg;
  ws.manualbg(1, ws.nmanualbg) = stored.x;
  ws.manualbg(2, ws.nmanualbg) = stored.y;
}

// Removes the first point of the list, not the nearest, that is seen within the reach.
void RemovePoint(DataPoint at, DataPoint reach) {
  for (int i = 1; i <= ws.nmanualbg; ++i) {
    const DataPoint seen = ShownPosition({ws.manualbg(1, i), ws.manualbg(2, i)});
    if (!(std::fabs(seen.x - at.x) < reach.x && std::fabs(seen.y - at.y) < reach.y)) continue;
    for (int field : {1, 2}) {
      float* row = ws.manualbg.row(field).data();
      std::copy(row + i, row + ws.nmanualbg, row + i - 1);
    }
    --ws.nmanualbg;
    return;
  }
}

void OnClick(const Message& mouse) {
  const DataPoint at = ToData(mouse.x, mouse.y);
  if (!InView(at)) return;
  if (mouse.value1 == MouseLeft) AddPoint(at);
  if (mouse.value1 == MouseRight) RemovePoint(at, PickReach());
}

// ---- The curve ----

struct PointList {
  std::vector<float> x, y;
};

// The points by rising two-theta, each run of points that lie together as the first of them.
PointList MergedPoints() {
  RowSort(&ws.manualbg(1, 1), MaxManualPoints, 2, ws.nmanualbg, 1);
  PointList points;
  for (int i = 1; i <= ws.nmanualbg; ++i) {
    const float x = ws.manualbg(1, i);
    if (i > 1 && std::fabs(x - points.x.back()) < kMergeDistance) continue;
    points.x.push_back(x);
    points.y.push_back(ws.manualbg(2, i));
  }
  return points;
}

// Straight lines from point to point; the first and the last line go on past the ends. The line
// moves on by one at most from one value to the next, so sparse values may lag behind.
void LinearCurve(const PointList& points, std::span<const float> at, std::span<float> out) {
  const std::vector<float>&x = points.x, &y = points.y;
  std::size_t k = 1;
  for (std::size_t i = 0; i < at.size(); ++i) {
    if (at[i] > x[k] && k + 1 < x.size()) ++k;
    const float slope = (y[k] - y[k - 1]) / (x[k] - x[k - 1]);
    const float intercept = y[k - 1] - x[k - 1] * slope;
    out[i] = at[i] * slope + intercept;
  }
}

void SplineCurve(const PointList& points, std::span<const float> at, std::span<float> out) {
  std::vector<float> y2(points.x.size());
  SplineSetup(points.x, points.y, NaturalEnd, NaturalEnd, y2);
  SplineEval(points.x, points.y, y2, at, out);
}

// Half as many terms as there are points, fitted by least squares.
Outcome ChebyshevCurve(const PointList& points, std::span<const float> at, std::span<float> out) {
  const int order = std::min(static_cast<int>(points.x.size()) / 2, kMostChebyshevTerms);
  float places[MaxChebyshev] = {};
  const std::span<float> coef(places, order);
  const ChebyshevFrame frame{at.front(), at.back(), ws.yval(SlotInput, order + 1)};
  const FitResult fit =
      ChebyshevCycles(points.x, points.y, frame, coef, kChebyshevCycles, ReportFitCycle);
  if (fit.end == FitEnd::Stopped) return Outcome::Cancelled;
  if (fit.end != FitEnd::Done) {
    MessageBoxError("Error", "Matrix inversion error");
    return Outcome::Failed;
  }
  ReportFitCycle(kChebyshevCycles + 1, fit.rw);
  for (std::size_t i = 0; i < at.size(); ++i)
    out[i] = ChebyshevValue(coef, at[i], frame.xmin, frame.xmax);
  ws.chebyorder = order;
  return Outcome::Done;
}

// A kind of curve that the number of points does not allow becomes linear.
void ChooseAllowedCurve() {
  int& mode = ws.manualbgmode;
  if (mode < CurveLinear || mode > CurveChebyshev || ws.nmanualbg < 3) mode = CurveLinear;
  if (mode == CurveChebyshev && ws.nmanualbg < 4) mode = CurveLinear;
}

}  // namespace

// Clicks add and remove points until the dialog is closed: OK keeps the points for later, Cancel
// drops them and leaves the view as it was, Fit draws the curve through them. A fit that fails or
// is stopped leaves the dialog open: the points are work of the user's hands.
Outcome ManualBackgroundDialog() {
  const PatternData before = ws;
  const PerPattern options = ws;
  ws.plotmask = PlotInput;
  RefreshView();
  WMessageEnable(MessageMouseDown, 1);
  WRegisterDialogs({&kDialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(DialogNumber);
  const int button = RunBeside(DialogNumber, [](const Message& message) {
    if (message.type == MessageMouseDown) OnClick(message);
    if (message.type != MessageButton) return true;
    return message.value1 == ButtonFit && FitManualBackground() != Outcome::Done;
  });
  WDialogUnload();
  if (button != ButtonCancel) return Outcome::Done;
  static_cast<PatternData&>(ws) = before;
  static_cast<PerPattern&>(ws) = options;
  ws.nmanualbg = 0;
  return Outcome::Idle;
}

// Needs two points at least, also after those that lie together have become one. A fit uses the
// points up.
Outcome FitManualBackground() {
  if (ws.nmanualbg < 2 || ws.npts(SlotInput) < 2) return Outcome::Done;
  ChooseAllowedCurve();
  const PointList points = MergedPoints();
  if (points.x.size() < 2) return Outcome::Done;
  const std::span<const float> at = TthOf(SlotInput);
  const std::span<float> out = ws.yval.row(SlotBackground).first(ws.npts(SlotInput));
  Outcome outcome = Outcome::Done;
  if (ws.manualbgmode == CurveLinear) LinearCurve(points, at, out);
  if (ws.manualbgmode == CurveSpline) SplineCurve(points, at, out);
  if (ws.manualbgmode == CurveChebyshev) outcome = ChebyshevCurve(points, at, out);
  if (outcome != Outcome::Done) return outcome;
  PutBackgroundOnInputGrid();
  ws.plotmask = PlotInput + PlotBackground;
  ws.nmanualbg = 0;
  return Outcome::Done;
}
