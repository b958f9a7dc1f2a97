// Lorentz and polarisation corrections: eight factors of two-theta.
#include <algorithm>
#include <cmath>

#include "modify/common.h"
#include "modify/modify.h"

namespace {

float Sine(float degrees) { return std::sin(degrees / RadToDeg); }
float Cosine(float degrees) { return std::cos(degrees / RadToDeg); }

// The limits of two-theta keep the factors finite.
float AtLeastHalf(float tth) { return std::max(tth, 0.5f); }
float AtMost120(float tth) { return std::min(tth, 120.0f); }

float Polarisation(float tth) { return 0.5f * (Cosine(tth) * Cosine(tth)) + 0.5f; }
float SineTheta(float tth) { return Sine(0.5f * AtLeastHalf(tth)); }
float SineProduct(float tth) { return Sine(AtLeastHalf(tth)) * Sine(0.5f * AtLeastHalf(tth)); }
float Monochromator(float tth) { return Cosine(AtMost120(tth) - 45.0f); }

// Each correction stands for two modes: multiply, and divide.
constexpr float (*kCorrections[])(float tth) = {Polarisation, SineTheta, SineProduct,
                                                Monochromator};
constexpr int kModes = 2 * static_cast<int>(std::size(kCorrections));

}  // namespace

Outcome LpCorrect() {
  if (!RawOnlyCheck()) return Outcome::Failed;
  if (ws.lpmode < 1 || ws.lpmode > kModes) return Outcome::Idle;
  const auto correction = kCorrections[(ws.lpmode - 1) / 2];
  const bool divide = ws.lpmode % 2 == 0;
  const std::span<const float> tth = TthOf(SlotInput);
  const std::span<float> y = IntensityOf(SlotInput);
  for (std::size_t i = 0; i < y.size(); ++i) {
    const float factor = correction(tth[i]);
    SetIfFinite(y[i], y[i] * (divide ? 1.0f / factor : factor));
  }
  return Outcome::Done;
}
