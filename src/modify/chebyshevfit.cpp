// Chebyshev: a least-squares polynomial through the active pattern, stored as the background.
#include <algorithm>
#include <vector>

#include "background/curve.h"
#include "crystal/chebyshev.h"
#include "modify/modify.h"
#include "toolkit/toolkit.h"
#include "workspace/slots.h"

namespace {

constexpr int kMostTerms = 14;
static_assert(MaxChebyshev <= kChebyshevTerms);
// The fit is linear: the first round reaches the solution, the others refine its rounding.
constexpr int kCycles = 24;

void StoreBackground(std::span<const float> x, std::span<const float> coef,
                     const ChebyshevFrame& frame) {
  for (std::size_t i = 0; i < x.size(); ++i) {
    const float value = ChebyshevValue(coef, x[i], frame.xmin, frame.xmax);
    ws.xval(AxisTth, SlotBackground, i + 1) = x[i];
    ws.yval(SlotBackground, i + 1) = value;
  }
  ws.wavelen(SlotBackground) = ws.wavelen(SlotInput);
  ws.npts(SlotBackground) = ws.npts(SlotInput);
  ResetBackgroundInterval();
  ws.chebyused = static_cast<int>(coef.size());
  ws.chebyxmin = frame.xmin;
  ws.chebyxmax = frame.xmax;
  ws.chebycoef.fill(0);
  std::copy(coef.begin(), coef.end(), ws.chebycoef.cells.begin());
}

}  // namespace

// chebyorder terms, without one above the number of points. Rw is told relative to one intensity of
// slot 1, that of point order + 1.
Outcome ChebyshevFit() {
  ws.chebyorder = std::clamp(ws.chebyorder, 0, kMostTerms);
  const int slot = ActiveSlot();
  const std::span<const float> x = TthOf(slot), y = IntensityOf(slot);
  if (x.empty()) return Outcome::Idle;
  const ChebyshevFrame frame{x.front(), x.back(), ws.yval(SlotInput, ws.chebyorder + 1)};
  std::vector<float> coef(std::min<std::size_t>(ws.chebyorder, x.size()));
  const FitEnd end = ChebyshevCycles(x, y, frame, coef, kCycles, ReportFitCycle).end;
  if (end == FitEnd::Stopped) return Outcome::Cancelled;
  if (end != FitEnd::Done) {
    MessageBoxError("Error", "Matrix inversion error");
    return Outcome::Failed;
  }
  StoreBackground(x, coef, frame);
  ws.plotmarks |= PlotBackground;
  return Outcome::Done;
}
