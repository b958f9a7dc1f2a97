// Background points set with the mouse, and the curve through them.
#include <algorithm>
#include <cmath>
#include <vector>

#include "background/background.h"
#include "background/curve.h"
#include "crystal/chebyshev.h"
#include "crystal/spline.h"
#include "plot/dataposition.h"
#include "plot/plot.h"
#include "toolkit/toolkit.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

enum ManualDialog { DialogNumber = 128, ButtonFit = 1110 };

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
  ++ws.nmanualbg;
  ws.manualbg(1, ws.nmanualbg) = at.x;
  ws.manualbg(2, ws.nmanualbg) = at.y;
}

// Removes the first point of the list, not the nearest, that lies within the reach.
void RemovePoint(DataPoint at, DataPoint reach) {
  for (int i = 1; i <= ws.nmanualbg; ++i) {
    if (!(std::fabs(ws.manualbg(1, i) - at.x) < reach.x)) continue;
    if (!(std::fabs(ws.manualbg(2, i) - at.y) < reach.y)) continue;
    for (int field : {1, 2}) {
      float* row = ws.manualbg.row(field).data();
      std::copy(row + i, row + ws.nmanualbg, row + i - 1);
    }
    --ws.nmanualbg;
    return;
  }
}

void OnClick(const Message& mouse, DataPoint reach) {
  const DataPoint at = ToData(mouse.x, mouse.y);
  if (!InView(at)) return;
  if (mouse.value1 == MouseLeft) AddPoint(at);
  if (mouse.value1 == MouseRight) RemovePoint(at, reach);
}

// Handles clicks until a button is pressed, which it returns. A window closed meanwhile counts as
// Cancel, and the main loop closes it.
int SetPoints(DataPoint reach) {
  for (;;) {
    Message message;
    switch (WMessage(message)) {
      case MessageButton:
        return message.value1;
      case MessageClose:
        PostMessage(message);
        return ButtonCancel;
      case MessageMouseMove:
        ShowReadOuts(ToData(message.x, message.y));
        break;
      case MessageMouseDown:
        OnClick(message, reach);
        [[fallthrough]];
      case MessageExpose:
      case MessageResize:
        RedrawView(0);
    }
  }
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

// Half as many terms as there are points, fitted by least squares. False if that is stopped, or
// fails, with a message.
bool ChebyshevCurve(const PointList& points, std::span<const float> at, std::span<float> out) {
  ws.chebyorder = std::min(static_cast<int>(points.x.size()) / 2, kMostChebyshevTerms);
  float places[MaxChebyshev] = {};
  const std::span<float> coef(places, ws.chebyorder);
  const ChebyshevFrame frame{at.front(), at.back(), ws.yval(SlotInput, ws.chebyorder + 1)};
  const FitResult fit =
      ChebyshevCycles(points.x, points.y, frame, coef, kChebyshevCycles, ReportFitCycle);
  if (fit.end == FitEnd::Stopped) return false;
  if (fit.end != FitEnd::Done) {
    MessageBoxError("Error", "Matrix inversion error");
    return false;
  }
  ReportFitCycle(kChebyshevCycles + 1, fit.rw);
  for (std::size_t i = 0; i < at.size(); ++i)
    out[i] = ChebyshevValue(coef, at[i], frame.xmin, frame.xmax);
  return true;
}

// A kind of curve that the number of points does not allow becomes linear.
void ChooseAllowedCurve() {
  int& mode = ws.manualbgmode;
  if (mode < CurveLinear || mode > CurveChebyshev || ws.nmanualbg < 3) mode = CurveLinear;
  if (mode == CurveChebyshev && ws.nmanualbg < 4) mode = CurveLinear;
}

}  // namespace

// Clicks add and remove points until the dialog is closed: OK keeps the points for later, Cancel
// drops them, Fit draws the curve through them.
void ManualBackgroundDialog() {
  ws.plotmask = PlotInput;
  RedrawView(0);
  const DataPoint reach{(ws.viewxmax - ws.viewxmin) / 200, (ws.viewymax - ws.viewymin) / 200};
  WMessageEnable(MessageMouseDown, 1);
  WDialogUndefined(0, 0, 0);
  WDialogLoad(DialogNumber);
  WDialogShow(-1, -1, 0, SemiModeless);
  const int button = SetPoints(reach);
  WDialogUnload();
  if (button == ButtonFit) FitManualBackground();
  if (button == ButtonCancel) ws.nmanualbg = 0;
}

// Needs two points at least, also after those that lie together have become one. A fit uses the
// points up.
void FitManualBackground() {
  if (ws.nmanualbg < 2 || ws.npts(SlotInput) < 2) return;
  ChooseAllowedCurve();
  const PointList points = MergedPoints();
  if (points.x.size() < 2) return;
  const std::span<const float> at = TthOf(SlotInput);
  const std::span<float> out = ws.yval.row(SlotBackground).first(ws.npts(SlotInput));
  switch (ws.manualbgmode) {
    case CurveLinear:
      LinearCurve(points, at, out);
      break;
    case CurveSpline:
      SplineCurve(points, at, out);
      break;
    case CurveChebyshev:
      if (!ChebyshevCurve(points, at, out)) return;
  }
  PutBackgroundOnInputGrid();
  ws.plotmask = PlotInput + PlotBackground;
  ws.nmanualbg = 0;
}
