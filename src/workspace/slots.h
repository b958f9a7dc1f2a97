// The points in use of a slot.
#pragma once

#include <algorithm>
#include <span>

#include "workspace/workspace.h"

inline std::span<float> TthOf(int slot) { return ws.xval.row(AxisTth, slot).first(ws.npts(slot)); }
inline std::span<float> IntensityOf(int slot) { return ws.yval.row(slot).first(ws.npts(slot)); }

// First and last two-theta; 0 for an empty slot.
inline float FirstTth(int slot) { return ws.npts(slot) > 0 ? TthOf(slot).front() : 0.0f; }
inline float LastTth(int slot) { return ws.npts(slot) > 0 ? TthOf(slot).back() : 0.0f; }

// Step of the first two points; 0 for fewer.
inline float FirstStepOf(int slot) {
  return ws.npts(slot) < 2 ? 0.0f : TthOf(slot)[1] - TthOf(slot)[0];
}

// Whether the first n points of a slot have the two-theta values of all points of another.
inline bool OnGridOf(int primary, int slot, int n) {
  return n == ws.npts(primary) &&
         std::ranges::equal(TthOf(primary), ws.xval.row(AxisTth, slot).first(n));
}

// Points of slot 1 in front of the curve in slot 4, which a fit of an overlay begins where both
// patterns do; 0 when no such fit stands.
inline int PointsBeforeFit() {
  if (ws.fitshown == 0) return 0;
  const float first = FirstTth(SlotRefined) - FirstStepOf(SlotRefined) / 2;
  return static_cast<int>(
      std::ranges::count_if(TthOf(SlotInput), [=](float x) { return x < first; }));
}
