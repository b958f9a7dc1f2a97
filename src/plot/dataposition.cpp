// Positions on the axes on show, and their read-outs in the status bar.
#include "plot/dataposition.h"

#include <cmath>

#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

constexpr float kTwoPi = 6.283185f;
constexpr int kWavePart = 5;  // of the status bar

}  // namespace

float SpacingOf(float tth) { return (ws.axiswave * 0.5f) / std::sin(tth * 0.5f / RadToDeg); }

float ShownX(float tth) {
  if (ws.xaxismode == AxisTth) return tth;
  if (!(tth > 0)) return 0;
  const float d = SpacingOf(tth);
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

namespace {

// "d 2.5531 \u00c5", nothing for a value that there is not.
std::string Quantity(const char* sign, float value, int decimals, const char* unit) {
  if (!(value > 0) || !std::isfinite(value)) return "";
  return std::string(sign) + " " + std::string(Trim(RealField(value, 12, decimals))) + unit;
}

std::string WaveText() {
  if (!(ws.axiswave > 0)) return "\u03bb unknown";
  const bool assumed = ws.axiswave != ws.statedwave;
  return Quantity("\u03bb", ws.axiswave, 5, " \u00c5") + (assumed ? " (assumed)" : "");
}

std::string PositionText(float shownx) {
  const float tth = TwoThetaOf(shownx);
  float d = ws.xaxismode == AxisD ? shownx : kTwoPi / shownx;
  if (ws.xaxismode == AxisTth) d = SpacingOf(tth);
  std::string text;
  for (const std::string& quantity :
       {Quantity("2\u03b8", tth, 2, "\u00b0"), Quantity("d", d, 4, " \u00c5"),
        Quantity("Q", kTwoPi / d, 4, " \u00c5\u207b\u00b9"), WaveText()})
    text += (text.empty() || quantity.empty() ? "" : "  ") + quantity;
  return text;
}

}  // namespace

void RefreshWavelength() {
  const std::string shown = WStatusText(kWavePart), wave = WaveText();
  if (!shown.empty() && !shown.ends_with(wave)) WindowOutStatusBar(kWavePart, wave);
}

void ShowReadOuts(DataPoint at) {
  if (!InView(at)) return;
  WindowOutStatusBar(1, WriteRecord<"(a,f7.2)">("TwoTh", at.x));
  WindowOutStatusBar(2, WriteRecord<"(a,f10.0)">("Int", at.y));
  WindowOutStatusBar(kWavePart, PositionText(at.x));
}
