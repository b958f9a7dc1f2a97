// Positions on the axes on show, and their read-outs in the status bar.
#include "plot/dataposition.h"

#include <cmath>

#include "toolkit/toolkit.h"
#include "workspace/record.h"

namespace {

constexpr float kTwoPi = 6.283185f;

}  // namespace

float ShownX(float tth) {
  if (ws.xaxismode == AxisTth) return tth;
  if (!(tth > 0)) return 0;
  const float d = (ws.axiswave * 0.5f) / std::sin(tth * 0.5f / RadToDeg);
  if (ws.xaxismode == AxisD) return d;
  return d > 0 ? kTwoPi / d : 0.0f;
}

float TwoThetaOf(float shownx) {
  if (ws.xaxismode == AxisTth) return shownx;
  if (!(shownx > 0)) return 0;
  const float d = ws.xaxismode == AxisD ? shownx : kTwoPi / shownx;
  const float sine = (ws.axiswave * 0.5f) / d;
  return sine < 1 ? TwoRadToDeg * std::asin(sine) : 0.0f;
}

DataPoint ShownPosition(DataPoint stored) { return {ShownX(stored.x), ShownY(stored.y)}; }

DataPoint StoredPosition(DataPoint shown) {
  const float counts = LogarithmicY() ? std::pow(10.0f, shown.y) : shown.y;
  return {TwoThetaOf(shown.x), counts};
}

void ShowReadOuts(DataPoint at) {
  if (!InView(at)) return;
  WindowOutStatusBar(1, WriteRecord<"(a,f7.2)">("TwoTh", at.x));
  WindowOutStatusBar(2, WriteRecord<"(a,f10.0)">("Int", at.y));
}
