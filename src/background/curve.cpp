// The background curve in slot 2: what all routines that bring or scale one have in common.
#include "background/curve.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/slots.h"

void ResetBackgroundInterval() {
  ws.bgintstart = FirstTth(SlotBackground);
  ws.bgintend = LastTth(SlotBackground);
}

void PutBackgroundOnInputGrid() {
  ws.npts(SlotBackground) = ws.npts(SlotInput);
  std::ranges::copy(TthOf(SlotInput), TthOf(SlotBackground).begin());
  ResetBackgroundInterval();
}

float ScaleOfSums(float a, float b) {
  const float scale = a / b;
  return std::isfinite(scale) ? scale : 1.0f;
}

void MultiplyBackground(float factor) {
  constexpr float largest = std::numeric_limits<float>::max();
  for (float& y : IntensityOf(SlotBackground)) y = std::clamp(y * factor, -largest, largest);
}

bool ReportFitCycle(int cycle, float rw) {
  return WProgress(3, WriteRecord<"('Cycle ',i3,'  Rw 'f6.4)">(cycle, rw));
}
