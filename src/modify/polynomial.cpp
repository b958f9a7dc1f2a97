// Plain arithmetic on intensities: adding a polynomial of two-theta, and scaling.
#include <algorithm>

#include "crystal/matrix.h"  // for PowerBasis
#include "modify/common.h"
#include "modify/modify.h"

namespace {

constexpr int kTerms = decltype(ws.polycoef)::kExtent[0];

void AddTo(std::span<float> y, std::span<const float> tth) {
  for (std::size_t i = 0; i < y.size(); ++i) {
    float power[kTerms], sum = 0;
    PowerBasis(tth[i], power);
    for (int k = 0; k < kTerms; ++k) sum += ws.polycoef.cells[k] * power[k];
    SetIfFinite(y[i], y[i] + sum);
  }
}

}  // namespace

// Afterwards a pattern that goes below 0 is lifted until its lowest point lies there.
Outcome AddPolynomial() {
  const int slot = ActiveSlot();
  const std::span<float> y = IntensityOf(slot);
  const bool given = std::ranges::any_of(ws.polycoef.cells, [](float c) { return c != 0; });
  if (given) AddTo(y, TthOf(slot));
  float lowest = 1e30f;
  for (float value : y) lowest = std::min(lowest, value);
  if (lowest < 0)
    for (float& value : y) SetIfFinite(value, value - lowest);
  return Outcome::Done;
}

Outcome ScalePattern() {
  if (ws.scalefactor == 1) return Outcome::Idle;
  for (float& value : IntensityOf(ActiveSlot())) SetIfFinite(value, value * ws.scalefactor);
  return Outcome::Done;
}
