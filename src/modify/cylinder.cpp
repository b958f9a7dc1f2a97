// Absorption in a cylindrical sample, normalised to 1 at theta 90.
#include <algorithm>
#include <array>
#include <span>

#include "crystal/spline.h"
#include "modify/common.h"
#include "modify/cylindertable.h"
#include "modify/modify.h"
#include "toolkit/toolkit.h"
#include "workspace/text.h"

namespace {

constexpr int kCurvePoints = 901;  // theta from 0 to 90 in steps of 0.1

// The parabola through three points (x0, f0) to (x2, f2) at x, in Newton's form.
float Parabola(const float (&at)[3], const float (&f)[3], float x) {
  const auto [x0, x1, x2] = at;
  const auto [f0, f1, f2] = f;
  const float c =
      ((f2 - f0) * (x1 - x0) - (f1 - f0) * (x2 - x0)) / ((x2 - x1) * (x2 - x0) * (x1 - x0));
  return (x - x1) * (x - x0) * c + (x - x0) * (f1 - f0) / (x1 - x0) + f0;
}

// The last of the three rows to interpolate with.
int LastRow(float muR) {
  int k = 2;
  while (k < kCylinderRows - 1 && muR > CylinderRow(k)) ++k;
  return k;
}

// A* at two-theta x, by a parabola through the three nearest points of the curve.
float AbsorptionAt(std::span<const float> curve, float x) {
  const int n = std::clamp(nint(0.5f * 10.0f * x) + 1, 2, kCurvePoints - 1);
  const auto node = [](int i) { return 0.2f * static_cast<float>(i - 1); };
  return Parabola({node(n - 1), node(n), node(n + 1)},
                  {1.0f / curve[n - 2], 1.0f / curve[n - 1], 1.0f / curve[n]}, x);
}

}  // namespace

bool CylinderAbsorptionCurve(float muR, std::span<float> curve) {
  const int k = LastRow(muR);
  const float row[3] = {CylinderRow(k - 2), CylinderRow(k - 1), CylinderRow(k)};
  std::array<float, kCylinderColumns> theta, value, y2;
  for (int j = 0; j < kCylinderColumns; ++j) {
    theta[j] = 5.0f * static_cast<float>(j);
    value[j] =
        Parabola(row, {CylinderTable[k - 2][j], CylinderTable[k - 1][j], CylinderTable[k][j]}, muR);
  }
  SplineSetup(theta, value, NaturalEnd, NaturalEnd, y2);
  std::array<float, kCurvePoints> at;
  for (int n = 0; n < kCurvePoints; ++n) at[n] = 0.1f * static_cast<float>(n);
  SplineEval(theta, value, y2, at, curve);
  for (float& c : curve.first(kCurvePoints)) c = 1.0f / c;
  return !(muR > CylinderRow(kCylinderRows - 1));
}

Outcome AbsorptionCylinder() {
  if (!RawOnlyCheck()) return Outcome::Failed;
  std::array<float, kCurvePoints> curve;
  if (!CylinderAbsorptionCurve(ws.muR, curve))
    MessageBoxError("Warning", "mu*R above tabulated values");
  const std::span<const float> tth = TthOf(SlotInput);
  const std::span<float> y = IntensityOf(SlotInput);
  for (std::size_t i = 0; i < y.size(); ++i)
    SetIfFinite(y[i], y[i] * (AbsorptionAt(curve, tth[i]) * curve[kCurvePoints - 1]));
  return Outcome::Done;
}
