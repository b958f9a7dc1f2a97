// The background curve in slot 2: what all routines that bring or scale one have in common.
#include "background/curve.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "workspace/workspace.h"

float FirstTth(int slot) { return ws.npts(slot) > 0 ? ws.xval(AxisTth, slot, 1) : 0.0f; }

float LastTth(int slot) { return ws.npts(slot) > 0 ? ws.xval(AxisTth, slot, ws.npts(slot)) : 0.0f; }

void ResetBackgroundInterval() {
  ws.bgintstart = FirstTth(SlotBackground);
  ws.bgintend = LastTth(SlotBackground);
}

void PutBackgroundOnInputGrid() {
  ws.npts(SlotBackground) = ws.npts(SlotInput);
  std::copy_n(ws.xval.row(AxisTth, SlotInput).begin(), ws.npts(SlotInput),
              ws.xval.row(AxisTth, SlotBackground).begin());
  ResetBackgroundInterval();
}

float ScaleOfSums(float a, float b) {
  const float scale = a / b;
  return std::isfinite(scale) ? scale : 1.0f;
}

void MultiplyBackground(float factor) {
  constexpr float largest = std::numeric_limits<float>::max();
  for (float& y : ws.yval.row(SlotBackground).first(ws.npts(SlotBackground)))
    y = std::clamp(y * factor, -largest, largest);
}
