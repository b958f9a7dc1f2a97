// Zero shift: moves the pattern along two-theta, on a new grid or on the one it has.
#include <cmath>
#include <vector>

#include "crystal/spline.h"
#include "modify/modify.h"
#include "workspace/slots.h"

namespace {

constexpr float kOnGrid = 1e-07f;  // degrees; a smaller remainder is a whole number of steps

std::vector<float> Grid(float start, float step, int n) {
  std::vector<float> x(n);
  for (int i = 0; i < n; ++i) x[i] = step * static_cast<float>(i) + start;
  return x;
}

// Takes y, whose grid now starts at x0, back to the grid of which the shift is the remainder, by a
// spline, from one step further up. One point is lost, and x0 becomes the start that results.
void ShiftOnGrid(float& x0, float shift, float dx, std::vector<float>& y) {
  const int n = static_cast<int>(y.size());
  const std::vector<float> x = Grid(x0, dx, n), old = y;
  std::vector<float> y2(n);
  SplineSetup(x, old, NaturalEnd, NaturalEnd, y2);
  x0 = dx + x0 - shift;
  y.resize(n - 1);
  SplineEval(x, old, y2, Grid(x0, dx, n - 1), y);
}

}  // namespace

// Slot 1 gives the grid and takes the new one, whatever slot is active; only the intensities that a
// spline has moved are those of the active slot.
Outcome ZeroShift() {
  const int n = ws.npts(SlotInput);
  const float dx = FirstStepOf(SlotInput);
  const float rest = std::fmod(ws.zeroshift, dx);
  float x0 = ws.zeroshift + ws.xval(AxisTth, SlotInput, 1);
  if (ws.useorigsteps == 1 && n > 1 && std::fabs(rest) >= kOnGrid) {
    const std::span<float> active = ws.yval.row(ActiveSlot());
    std::vector<float> y(active.begin(), active.begin() + n);
    ShiftOnGrid(x0, rest, dx, y);
    --ws.npts(SlotInput);
    std::copy(y.begin(), y.end(), active.begin());
  }
  const std::vector<float> x = Grid(x0, dx, ws.npts(SlotInput));
  std::copy(x.begin(), x.end(), TthOf(SlotInput).begin());
  ws.zeroshift = 0;
  return Outcome::Done;
}
