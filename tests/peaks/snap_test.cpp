// A place that snaps to the top of the peak it is near to.
#include "peaks/snap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

struct Curve {
  std::vector<float> x, y;
};

// Points at 0, 1, 2 ... times the step, which grows by `stretch` of itself all along.
Curve Sample(int n, double step, double stretch, double (*height)(double)) {
  Curve curve;
  double x = 0;
  for (int i = 0; i < n; ++i, x += step * (1 + stretch * i)) {
    curve.x.push_back(static_cast<float>(x));
    curve.y.push_back(static_cast<float>(height(x)));
  }
  return curve;
}

TEST(Snap, GoesToTheVertexOfAParabola) {
  const auto parabola = [](double x) { return 500 - 2000 * (x - 0.4137) * (x - 0.4137); };
  for (double stretch : {0.0, 0.03}) {
    const Curve curve = Sample(41, 0.02, stretch, parabola);
    for (float near : {0.41f, 0.33f, 0.52f})
      EXPECT_NEAR(SnapToMaximum(curve.x, curve.y, near), 0.4137, 2e-5) << near << " " << stretch;
  }
}

TEST(Snap, StaysWhereThereIsNoTop) {
  Curve curve = Sample(41, 0.02, 0, [](double x) { return 500 - 100 * std::fabs(x - 0.4); });
  EXPECT_NEAR(SnapToMaximum(curve.x, curve.y, 0.2f), 0.4, 1e-6);    // ten points
  EXPECT_EQ(SnapToMaximum(curve.x, curve.y, 0.18f), 0.18f);         // eleven
  EXPECT_EQ(SnapToMaximum(curve.x, curve.y, 5.0f), 5.0f);           // behind the end
  curve.y[16] = 497;                                                // between those at 18 and 19
  EXPECT_NEAR(SnapToMaximum(curve.x, curve.y, 0.27f), 0.32, 0.01);  // stops at the first top
  curve.y[19] = curve.y[20];
  EXPECT_NEAR(SnapToMaximum(curve.x, curve.y, 0.42f), 0.39, 1e-5);  // between two of one height
  curve.y[18] = curve.y[20];
  EXPECT_EQ(SnapToMaximum(curve.x, curve.y, 0.42f), 0.42f);  // a plateau
  const Curve ramp = Sample(6, 0.02, 0, [](double x) { return x; });
  EXPECT_EQ(SnapToMaximum(ramp.x, ramp.y, 0.07f), 0.07f);
  const Curve fall = Sample(6, 0.02, 0, [](double x) { return -x; });
  EXPECT_EQ(SnapToMaximum(fall.x, fall.y, 0.03f), 0.03f);
  EXPECT_EQ(SnapToMaximum({}, {}, 0.03f), 0.03f);
  const std::vector<float> bad(5, std::numeric_limits<float>::quiet_NaN());
  EXPECT_EQ(SnapToMaximum(bad, bad, 0.03f), 0.03f);
}

// A point or two of noise on the way up do not hold it.
TEST(Snap, WalksOverNoise) {
  Curve curve = Sample(41, 0.02, 0, [](double x) { return 500 - 2000 * (x - 0.4) * (x - 0.4); });
  curve.y[15] += 10;  // higher than the next, lower than the one behind
  EXPECT_NEAR(SnapToMaximum(curve.x, curve.y, 0.28f), 0.4, 1e-5);
}

}  // namespace
