// What the commands of the Modify menu share, and the editor on the pattern's file.
#include "modify/slots.h"

#include <cmath>

#include "modify/modify.h"
#include "toolkit/toolkit.h"

float FirstStepOf(int slot) {
  return ws.npts(slot) < 2 ? 0.0f : ws.xval(AxisTth, slot, 2) - ws.xval(AxisTth, slot, 1);
}

bool RawOnlyCheck() {
  if (ActiveSlot() == SlotInput) return true;
  MessageBoxError("Error", "Should only be applied to raw data");
  return false;
}

void MultiplyIfFinite(float& value, float factor) {
  if (std::isfinite(factor)) value *= factor;
}

void EditData() {
  if (!ws.patternpath.empty()) IOsCommandOnFile(ws.editorpath, ws.patternpath);
}
