// The pattern that the drawing benchmarks draw.
#pragma once

#include <cmath>

#include "workspace/workspace.h"

// 60 peaks on a falling background.
inline float Calculated(float x) {
  const float place = std::fmod(x, 2.3f) - 1.1f;
  return 100 + 4000 / x + 9000 * std::exp(-place * place / 0.006f) * std::fabs(std::sin(x));
}

// A pattern of 20000 points with all that the switches of the Plot menu show, full lists of peaks
// and manual points, and overlays.
inline void FillFullPattern() {
  ws.viewmode = 1;
  ws.xgrid = ws.ygrid = 1;
  for (int slot = 1; slot < MaxSlots; ++slot) {
    ws.npts(slot) = MaxPoints;
    if (slot >= SlotOverlay) ws.wavelen(slot) = CuKalpha1;
  }
  for (int i = 1; i <= MaxPoints; ++i) {
    const float x = 5 + 0.007f * static_cast<float>(i);
    const float noise = std::sqrt(Calculated(x)) * std::sin(x * 100000);
    for (int slot = 1; slot < MaxSlots; ++slot) {
      ws.xval(AxisTth, slot, i) = x;
      ws.yval(slot, i) = Calculated(x) + noise;
    }
    ws.yval(SlotBackground, i) = 100 + 4000 / x;
    ws.yval(SlotNet, i) = Calculated(x) + noise - ws.yval(SlotBackground, i);
    ws.yval(SlotRefined, i) = Calculated(x);
  }
  ComputeXAxes();
  ws.npeaks = MaxPeaks;
  for (int j = 1; j <= MaxPeaks; ++j) ws.peaks(ptth, j) = 10 + 0.6f * static_cast<float>(j);
  ws.nmanualbg = MaxManualPoints;
  for (int j = 1; j <= MaxManualPoints; ++j) {
    ws.manualbg(1, j) = 10 + static_cast<float>(j);
    ws.manualbg(2, j) = 500;
  }
}
