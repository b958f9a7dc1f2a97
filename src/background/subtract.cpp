// The background taken off the pattern: the present one, or one made by the estimator.
#include <algorithm>
#include <string>

#include "background/background.h"
#include "background/curve.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

enum Scaling { ScaleMinimum = 1, ScaleDeviation, ScaleInterval };

// Slots 3 to `lastslot` take the two-theta of slot 2, and pattern minus background.
void StoreDifference(int lastslot) {
  for (int slot = SlotNet; slot <= lastslot; ++slot) {
    for (int i = 1; i <= ws.npts(SlotBackground); ++i) {
      ws.xval(AxisTth, slot, i) = ws.xval(AxisTth, SlotBackground, i);
      ws.yval(slot, i) = ws.yval(SlotInput, i) - ws.yval(SlotBackground, i);
    }
    ws.npts(slot) = ws.npts(SlotBackground);
  }
}

// Either way the next view has one curve.
Outcome SubtractIf(bool wanted) {
  if (wanted) {
    EndOverlayFit();
    StoreDifference(SlotRefined);
  }
  ws.plotmask = wanted ? PlotNet : PlotInput;
  return Outcome::Done;
}

// Percentage of the pattern's counts that are background.
float BackgroundPercentage() {
  float pattern = 0, background = 0;
  for (int i = 1; i <= ws.npts(SlotBackground); ++i) {
    pattern += ws.yval(SlotInput, i);
    background += ws.yval(SlotBackground, i);
  }
  return pattern > 0 ? 100.0f * background / pattern : 100.0f;
}

// Factor that fits the estimate to the pattern by `autosubscale`. Only points with an estimate
// above 0 count; without any, "Minimum" keeps the value it starts from.
float EstimateScale() {
  const float tolerance = 1.0f + ws.autosubdev / 100.0f;
  float lowest = 1.0e30f, pattern = 0, background = 0;
  for (int i = 1; i <= ws.npts(SlotInput); ++i) {
    const float y = ws.yval(SlotInput, i), b = ws.yval(SlotBackground, i);
    const float tth = ws.xval(AxisTth, SlotInput, i);
    if (!(b > 0)) continue;
    lowest = std::min(lowest, y / b);
    const bool counts = ws.autosubscale == ScaleDeviation
                            ? y / b <= tolerance
                            : tth >= ws.fullstart && tth <= ws.fullstop;
    if (!counts) continue;
    pattern += y;
    background += b;
  }
  return ws.autosubscale == ScaleMinimum ? lowest : ScaleOfSums(pattern, background);
}

}  // namespace

Outcome SubtractBackground(const Question& ask) {
  const std::string percentage = LeftAlign(RealField(BackgroundPercentage(), 8, 2));
  return SubtractIf(!ask ||
                    ask("Background Subtraction", "Background =" + percentage + "%. Subtract?"));
}

Outcome Autosubtract(const Question& ask) {
  const int n = ws.npts(SlotInput);
  const std::span<float> background = ws.yval.row(SlotBackground).first(n);
  std::copy_n(ws.yval.row(SlotInput).begin(), n, background.begin());
  BackgroundEnvelope(background, ws.autosubwindow, ws.autosubcycles);
  PutBackgroundOnInputGrid();
  const float scale = ws.estimatescale = EstimateScale();
  MultiplyBackground(scale);
  if (!ask) {
    StoreDifference(SlotNet);
    return Outcome::Done;
  }
  ws.plotmask = PlotInput + PlotBackground;
  return SubtractIf(ask("Background subtraction",
                        "scale = " + LeftAlign(RealField(scale, 9, 5)) + ".  Subtract now?"));
}
