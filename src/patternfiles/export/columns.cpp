// The curves that belong to the pattern, and its overlays.
#include "patternfiles/export/columns.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "background/background.h"
#include "workspace/slots.h"

namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

// A curve that is 0 everywhere is none.
std::vector<float> UnlessBlank(std::vector<float> values) {
  if (std::ranges::all_of(values, [](float value) { return value == 0; })) values.clear();
  return values;
}

// A fit leaves 0 where it does not reach.
std::vector<float> WhereFitted(std::vector<float> values) {
  values = UnlessBlank(std::move(values));
  std::ranges::replace(values, 0.0f, kNone);
  return values;
}

std::vector<float> RefinedPolynomial() {
  std::vector<float> values(ws.npts(SlotInput));
  std::ranges::transform(TthOf(SlotInput), values.begin(), RefinedBackgroundAt);
  return WhereFitted(std::move(values));
}

}  // namespace

std::vector<float> CopyOf(std::span<const float> values) { return {values.begin(), values.end()}; }

// The points of slot 2 may be those of an earlier pattern: only what is drawn, or has been taken
// off or refined in what is drawn, is known to belong to this one.
std::vector<float> ShownBackground() {
  const bool drawn = ws.plotmask & (PlotBackground | PlotNet);
  const bool refined = ws.fitnpar > 0 && ws.plotmask & PlotResidual;
  const int n = ws.npts(SlotInput);
  if (!drawn && refined && ws.chebyused > 0) return RefinedPolynomial();
  if ((!drawn && !refined) || !OnGridOf(SlotInput, SlotBackground, n)) return {};
  return UnlessBlank(CopyOf(ws.yval.row(SlotBackground).first(n)));
}

// That of an overlay begins where both patterns do.
std::vector<float> ShownCalculated() {
  if (ws.fitshown == 0 && !(ws.plotmask & (PlotRefined | PlotResidual))) return {};
  if (ws.fitshown == 0 && !OnGridOf(SlotInput, SlotRefined, ws.npts(SlotRefined))) return {};
  std::vector<float> values(ws.npts(SlotInput));
  const auto before = std::min(values.size(), static_cast<std::size_t>(PointsBeforeFit()));
  const auto fitted = IntensityOf(SlotRefined);
  std::copy_n(fitted.begin(), std::min(fitted.size(), values.size() - before),
              values.begin() + static_cast<std::ptrdiff_t>(before));
  return WhereFitted(std::move(values));
}

bool HasCounts() {
  return std::ranges::all_of(IntensityOf(SlotInput),
                             [](float y) { return y >= 0 && y == std::floor(y); });
}

std::vector<int> OverlaysApart() {
  std::vector<int> apart;
  for (int k = 1; k <= ws.noverlay; ++k) {
    const int slot = SlotOverlay + k - 1;
    if (!OnGridOf(SlotInput, slot, ws.npts(slot))) apart.push_back(k);
  }
  return apart;
}
