// Absorption in a cylinder against closed forms, direct integration and printed values.
#include <gtest/gtest.h>

#include <array>

#include "modify/modify.h"
#include "modify/patterns.h"

namespace {

std::array<float, 901> Curve(float muR) {
  std::array<float, 901> curve;
  CylinderAbsorptionCurve(muR, curve);
  return curve;
}

// Modified Bessel function I minus modified Struve function L, of order 0 or 1, by their series.
long double BesselMinusStruve(int order, long double z) {
  long double bessel = order ? z / 2 : 1;
  long double struve = (order ? z * z / 3 : z) * 2 / std::acos(-1.0L);
  long double sum = bessel - struve;
  for (int k = 1; k < 300; ++k) {
    bessel *= z * z / 4 / (k * (k + order));
    struve *= z * z / 4 / ((k + 0.5L) * (k + order + 0.5L));
    sum += bessel - struve;
  }
  return sum;
}

// At theta 0 and 90 the mean over the section has closed forms.
TEST(CylinderCurve, EndsAreTheClosedForms) {
  for (int row = 1; row <= 80; ++row) {
    if (row == 5) continue;  // stands as printed
    const long double muR = row / 10.0L, z = 2 * muR;
    const long double forward = 2 * (BesselMinusStruve(0, z) - BesselMinusStruve(1, z) / z);
    const long double backward = BesselMinusStruve(1, 4 * muR) / (2 * muR);
    const auto curve = Curve(row / 10.0f);
    EXPECT_NEAR(curve[0] / forward, 1, 2e-5) << muR;
    EXPECT_NEAR(curve[900] / backward, 1, 2e-5) << muR;
  }
  EXPECT_NEAR(1 / Curve(21)[900], 67, 1);  // above the tables pi muR, and a little more
}

// The mean over a square grid of points in the section, way by way.
double Transmission(double muR, double theta) {
  const double c = std::cos(Degrees(2 * theta)), s = std::sin(Degrees(2 * theta));
  const auto way = [](double x, double y, double dx, double dy) {  // from the rim along (dx, dy)
    const double along = x * dx + y * dy;
    return along + std::sqrt(along * along + 1 - x * x - y * y);
  };
  constexpr int half = 400;
  double sum = 0, points = 0;
  for (int i = -half; i < half; ++i)
    for (int j = -half; j < half; ++j) {
      const double x = (i + 0.5) / half, y = (j + 0.5) / half;
      if (x * x + y * y >= 1) continue;
      sum += std::exp(-muR * (way(x, y, 1, 0) + way(x, y, -c, -s)));
      ++points;
    }
  return sum / points;
}

TEST(CylinderCurve, ObliqueAnglesAreTheMeanOverTheSection) {
  const double cases[][2] = {{0.3, 45}, {1, 20}, {2.7, 65}, {4, 85}, {6, 35}, {11, 50}};
  for (const auto& [muR, theta] : cases)
    EXPECT_NEAR(Curve(muR)[nint(10 * theta)] / Transmission(muR, theta), 1, 2e-3)
        << muR << " " << theta;
}

TEST(AbsorptionCylinder, OfNothingIsOneBeyondTheTablesToo) {
  PutPattern(0, 0.05f, 3700, [](double) { return 100; });  // to 185 degrees
  ws.muR = 0;
  AbsorptionCylinder();
  for (int i = 1; i <= 3700; ++i) ASSERT_NEAR(ws.yval(SlotInput, i), 100, 1e-3);
}

}  // namespace
