// The background scaled by a factor, or to the pattern within an interval.
#include <algorithm>

#include "background/background.h"
#include "background/curve.h"
#include "workspace/slots.h"

Outcome ScaleBackground() {
  MultiplyBackground(ws.bgscale);
  ws.plotmask |= PlotInput | PlotBackground;
  return Outcome::Done;
}

// Makes the sums of background and pattern over the interval equal. Their points are matched by
// number, not by two-theta. A background of 0 stays.
Outcome ScaleToInterval() {
  if (!(ws.bgintstart < ws.bgintend)) return Outcome::Done;
  ws.bgintstart = std::max(ws.bgintstart, FirstTth(SlotBackground));
  ws.bgintend = std::min(ws.bgintend, LastTth(SlotBackground));
  float pattern = 0, background = 0;
  for (int i = 1; i <= ws.npts(SlotBackground); ++i) {
    const float tth = ws.xval(AxisTth, SlotBackground, i);
    if (tth < ws.bgintstart || tth > ws.bgintend) continue;
    pattern += ws.yval(SlotInput, i);
    background += ws.yval(SlotBackground, i);
  }
  MultiplyBackground(ScaleOfSums(pattern, background));
  ws.plotmask |= PlotInput | PlotBackground;
  return Outcome::Done;
}
