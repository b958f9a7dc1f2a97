// Absorption in a flat plate in transmission, inclined to the beam.
#include <cmath>
#include <vector>

#include "modify/common.h"
#include "modify/modify.h"

namespace {

// Correction for a beam that leaves at an angle of cosine c to the plate's normal and came in at
// one of cosine c0. For equal angles, where the formula is 0 / 0, its limit.
float PlateFactor(float mut, float c0, float c) {
  const float in = std::exp(-mut / c0), out = std::exp(-mut / c);
  const float factor = out == in ? c0 / (mut * in) : (1.0f - c0 / c) / (out - in);
  return std::isfinite(factor) ? factor : 0.0f;
}

struct PlateFactors {
  std::vector<float> factor;  // 0 where no beam leaves the plate
  std::size_t reference = 0;  // the point at the plate's angle, to which all are normalised
};

PlateFactors FactorsOf(std::span<const float> tth, float dx, float c0) {
  PlateFactors f{std::vector<float>(tth.size())};
  for (std::size_t i = 0; i < tth.size(); ++i) {
    const float x = tth[i];
    if (dx > std::fabs(x - ws.plateangle)) f.reference = i;
    const float c = std::cos((x - ws.plateangle) / RadToDeg);
    if (!(c > 0)) continue;
    // Near two-theta = 2 a the formula is 0 / 0 and the point before stands in.
    const bool equalangles = dx >= std::fabs(x - 2.0f * ws.plateangle);
    f.factor[i] = equalangles && i > 0 ? f.factor[i - 1] : PlateFactor(ws.mut, c0, c);
  }
  return f;
}

}  // namespace

Outcome AbsorptionPlate() {
  if (!RawOnlyCheck()) return Outcome::Failed;
  const float c0 = std::cos(ws.plateangle / RadToDeg);
  if (!(ws.mut > 0) || !(c0 > 0)) return Outcome::Idle;
  const std::span<float> y = IntensityOf(SlotInput);
  const PlateFactors f = FactorsOf(TthOf(SlotInput), FirstStepOf(SlotInput), c0);
  for (std::size_t i = 0; i < y.size(); ++i)
    SetIfFinite(y[i], y[i] * (f.factor[i] / f.factor[f.reference]));
  return Outcome::Done;
}
