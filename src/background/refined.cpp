// The background polynomial of the last fit as the background curve, and the curve cleared.
#include <algorithm>

#include "background/background.h"
#include "background/curve.h"
#include "crystal/chebyshev.h"
#include "workspace/workspace.h"

// The polynomial holds from chebyxmin to chebyxmax; outside the background is 0.
Outcome RefinedBackground() {
  const std::span<const float> coef(ws.chebycoef.cells.data(),
                                    std::clamp(ws.chebyused, 0, MaxChebyshev));
  for (int i = 1; i <= ws.npts(SlotInput); ++i) {
    const float x = ws.xval(AxisTth, SlotInput, i);
    const bool outside = x < ws.chebyxmin || x > ws.chebyxmax;
    ws.yval(SlotBackground, i) =
        outside ? 0.0f : ChebyshevValue(coef, x, ws.chebyxmin, ws.chebyxmax);
  }
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
