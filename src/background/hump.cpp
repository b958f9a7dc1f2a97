// "Amorphous hump": area and place of what the background curve has above a straight line.
#include <algorithm>

#include "background/background.h"
#include "toolkit/toolkit.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

struct Curve {
  std::span<const float> x, y;
};

Curve CurveWithin(float from, float to) {
  const std::span<const float> x = TthOf(SlotBackground), y = IntensityOf(SlotBackground);
  const auto first = std::ranges::lower_bound(x, from) - x.begin();
  const auto end = std::ranges::upper_bound(x, to) - x.begin();
  if (end <= first) return {};
  return {x.subspan(first, end - first), y.subspan(first, end - first)};
}

bool HoldsHump(const Curve& curve) {
  return curve.x.size() > 2 && std::ranges::any_of(curve.y, [](float y) { return y != 0; });
}

}  // namespace

// The line goes through the ends of the range, at which the hump should be over. The position is
// the center of gravity: the top of a broad hump is flat, and noise moves it.
Outcome MeasureHump() {
  const Curve curve = CurveWithin(ws.humpstart, ws.humpend);
  if (!HoldsHump(curve)) {
    MessageBoxError("Error", "There is no background curve between " +
                                 LeftAlign(RealField(ws.humpstart, 10, 2)) + " and " +
                                 LeftAlign(RealField(ws.humpend, 10, 2)) + " degrees");
    return Outcome::Failed;
  }
  const auto& [x, y] = curve;
  const float slope = (y.back() - y.front()) / (x.back() - x.front());
  float area = 0, moment = 0, before = 0;
  for (std::size_t i = 1; i < x.size(); ++i) {
    const float net = y[i] - y.front() - slope * (x[i] - x.front());
    const float piece = (x[i] - x[i - 1]) * (before + net) / 2;
    area += piece;
    moment += piece * (x[i] + x[i - 1]) / 2;
    before = net;
  }
  ws.humparea = area;
  // Where nothing is left there is no place either.
  const float position = moment / area;
  ws.humpposition = area > 0 && position >= x.front() && position <= x.back() ? position : 0;
  ws.plotmask = PlotInput + PlotBackground;
  return Outcome::Done;
}
