// The background polynomial of the last fit as the background curve, and the curve cleared.
#include <algorithm>

#include "background/background.h"
#include "background/curve.h"
#include "crystal/chebyshev.h"
#include "workspace/workspace.h"

float RefinedBackgroundAt(float tth) {
  const std::span<const float> coef(ws.chebycoef.cells.data(),
                                    std::clamp(ws.chebyused, 0, MaxChebyshev));
  const bool outside = tth < ws.chebyxmin || tth > ws.chebyxmax;
  return outside ? 0.0f : ChebyshevValue(coef, tth, ws.chebyxmin, ws.chebyxmax);
}

Outcome RefinedBackground() {
  for (int i = 1; i <= ws.npts(SlotInput); ++i)
    ws.yval(SlotBackground, i) = RefinedBackgroundAt(ws.xval(AxisTth, SlotInput, i));
  PutBackgroundOnInputGrid();
  ws.plotmask |= PlotBackground;
  return Outcome::Done;
}

// The number of points in slot 2 stays.
Outcome ClearBackground() {
  std::ranges::fill(ws.yval.row(SlotBackground), 0.0f);
  ws.chebycoef.fill(0);
  ws.bgcoef.fill(0);
  ws.nmanualbg = 0;
  ws.plotmask = PlotInput;
  return Outcome::Done;
}
