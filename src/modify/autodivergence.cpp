// Intensities taken with automatic divergence slits as fixed slits would give them.
#include <cmath>

#include "modify/common.h"
#include "modify/modify.h"

// The constants are those of the slit drive, the argument of the sine is in radians. The factor is
// infinite where the slit closes, near two-theta 0; such a point stays as it is.
Outcome Autodivergence() {
  if (!RawOnlyCheck()) return Outcome::Failed;
  const std::span<const float> tth = TthOf(SlotInput);
  const std::span<float> y = IntensityOf(SlotInput);
  for (std::size_t i = 0; i < y.size(); ++i) {
    const float theta = 0.5f * tth[i];
    SetIfFinite(y[i], y[i] * (1.0f / (-0.19355f + std::sin(0.1947787f + 0.0153201f * theta))));
  }
  ws.divergenceenabled = 0;
  return Outcome::Done;
}
