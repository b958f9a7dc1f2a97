// What the commands of the Modify menu share.
#include "modify/common.h"

#include <cmath>

#include "toolkit/toolkit.h"

bool RawOnlyCheck() {
  if (ActiveSlot() == SlotInput) return true;
  MessageBoxError("Error", "Should only be applied to raw data");
  return false;
}

void SetIfFinite(float& value, float result) {
  if (std::isfinite(result)) value = result;
}
