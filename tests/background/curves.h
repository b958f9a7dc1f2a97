// Patterns for the tests of the Background menu.
#pragma once

#include <vector>

#include "workspace/workspace.h"

// Puts a curve on an even grid into a slot.
inline void PutCurve(int slot, float first, float step, const std::vector<float>& y) {
  ws.npts(slot) = static_cast<int>(y.size());
  for (int i = 1; i <= ws.npts(slot); ++i) {
    ws.xval(AxisTth, slot, i) = first + step * static_cast<float>(i - 1);
    ws.yval(slot, i) = y[i - 1];
  }
}
