// Overlays for the tests of the menu "Multiple patterns".
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "modify/patterns.h"

using Curve = std::function<double(double)>;

// Puts y(x) on an even grid into an overlay, opened from "NAME.xy".
inline void PutOverlay(int k, const std::string& name, float first, float step, int n,
                       const Curve& y) {
  const int slot = SlotOverlay + k - 1;
  ws.noverlay = std::max(ws.noverlay, k);
  ws.overlayitems = 1;
  ws.overlayname(k) = name + ".xy";
  ws.wavelen(slot) = CuKalpha1;
  PutGrid(slot, first, step, n, y);
  ComputeSlotAxes(slot, ws.wavelen(slot));
}

// The boxes since the last call.
inline Lines Boxes() {
  Lines boxes = Events();
  std::erase_if(boxes, [](const std::string& event) { return !event.starts_with("box"); });
  return boxes;
}
