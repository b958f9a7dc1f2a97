// Unit cells: volume and reciprocal metric against the inverse of the metric tensor, and the
// gradient of 1/d against differences, both in double precision.
#include <gtest/gtest.h>

#include <limits>

#include "crystal/laue.h"
#include "support/lattices.h"

namespace {

double Length(const Form& q, const Hkl& r) { return std::sqrt(At(q, r.h, r.k, r.l)); }

class Cells {
 public:
  // With edges of 4 to 12 angstrom, angles of 75 to 110 degrees, as the class forces them.
  UnitCell Next(int laueclass) {
    UnitCell cell;
    for (int k = 1; k <= 3; ++k) cell(k) = std::uniform_real_distribution<float>(4, 12)(random_);
    for (int k = 4; k <= 6; ++k) cell(k) = std::uniform_real_distribution<float>(75, 110)(random_);
    ForceCell(cell, laueclass);
    return cell;
  }
  Hkl Indices() {
    std::uniform_int_distribution<int> index(-9, 9);
    const Hkl r{index(random_), index(random_), index(random_)};
    return r.h == 0 && r.k == 0 && r.l == 0 ? Hkl{1, 2, 3} : r;
  }

 private:
  std::mt19937 random_{17};
};

TEST(Cell, VolumeAndLengthsAreThoseOfTheMetricTensor) {
  Cells cells;
  for (int laueclass = 1; laueclass <= kLaueClasses; ++laueclass)
    for (int n = 0; n < 20; ++n) {
      const UnitCell cell = cells.Next(laueclass);
      const Hkl r = cells.Indices();
      EXPECT_NEAR(CellVolume(cell) / VolumeOf(AsDouble(cell)), 1, 1e-5);
      const double length = Length(Reciprocal(AsDouble(cell)), r);
      EXPECT_NEAR(InverseD(ReciprocalMetric(cell), r) / length, 1, 1e-5);
      const auto quarter = SineMetric(cell);
      ASSERT_TRUE(quarter);
      EXPECT_NEAR(4 * QuadraticForm(*quarter, r) / (length * length), 1, 2e-5);
    }
}

void ExpectNoVolume(const UnitCell& cell) {
  SCOPED_TRACE(testing::PrintToString(cell.cells));
  EXPECT_FALSE(SineMetric(cell));
  EXPECT_EQ(CellVolume(cell), 0);
  EXPECT_EQ(InverseD(ReciprocalMetric(cell), {1, 2, 3}), 0);
  for (float g : CellGradient(1, PackHkl({1, 2, 3}), cell)) EXPECT_EQ(g, 0);
}

TEST(Cell, WithoutVolume) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (const UnitCell& cell : {UnitCell{{5, 5, 5, 60, 60, 130}}, UnitCell{{5, 5, 5, 0, 90, 90}},
                               UnitCell{{5, 5, 5, 120, 120, 120}}, UnitCell{{5, 5, 5, 180, 90, 90}},
                               UnitCell{{0, 5, 5, 90, 90, 90}}, UnitCell{{nan, 5, 5, 90, 90, 90}},
                               UnitCell{{5, 5, 5, 90, nan, 90}}})
    ExpectNoVolume(cell);
  // Flat: what rounding leaves of the volume has either sign.
  for (float alpha = 20; alpha < 90; ++alpha)
    for (float beta = alpha; beta < 100; ++beta)
      ExpectNoVolume({{5, 6, 7, alpha, beta, alpha + beta}});
}

TEST(Cell, WithoutReflection) {
  for (float g : CellGradient(1, PackHkl({}), {{5, 5, 5, 90, 90, 90}})) EXPECT_EQ(g, 0);
  EXPECT_EQ(InverseD({-1, -1, -1}, {1, 1, 1}), 0);
  EXPECT_FLOAT_EQ(TwoThetaOfSine(0.5f), 60);
  EXPECT_FLOAT_EQ(TwoThetaOfSine(1.5f), 180);
}

// The derivative of the length with respect to the direct constant k, as far as it comes by way of
// the reciprocal constants first to last.
double Difference(const Cell& cell, const Hkl& r, int k, int first, int last) {
  constexpr double step = 1e-4;
  double length[2];
  for (int side : {0, 1}) {
    Cell moved = cell;
    moved[k] += side == 0 ? -step : step;
    moved = CellOfForm(Reciprocal(moved));
    Cell reciprocal = CellOfForm(Reciprocal(cell));
    std::copy(&moved[first], &moved[last] + 1, &reciprocal[first]);
    length[side] = Length(Direct(reciprocal), r);
  }
  return (length[1] - length[0]) / (2 * step);
}

// By the edges as differences say. By the angles so as far as the reciprocal edges change; what the
// reciprocal angles do counts with the other sign and times their sines.
TEST(CellGradient, AgainstDifferences) {
  const bool anglefree[kLaueClasses] = {true,  true, true,  true,  false, false, true,  false,
                                        false, true, false, false, false, false, false, false};
  Cells cells;
  for (int laueclass = 1; laueclass <= kLaueClasses; ++laueclass)
    for (int n = 0; n < 50; ++n) {
      const UnitCell cell = cells.Next(laueclass);
      const Cell exact = AsDouble(cell), reciprocal = CellOfForm(Reciprocal(exact));
      const Hkl r = cells.Indices();
      const auto g = CellGradient(laueclass, PackHkl(r), cell);
      for (int k = 0; k < 6; ++k) {
        double expected = Difference(exact, r, k, 0, 2);
        for (int angle = 3; angle < 6; ++angle)
          expected -= std::sin(reciprocal[angle] * kDegree) * Difference(exact, r, k, angle, angle);
        if (k >= 3 && !anglefree[laueclass - 1]) expected = 0;
        EXPECT_NEAR(g[k], expected, 2e-6 + 1e-4 * std::fabs(expected))
            << "class " << laueclass << ", constant " << k + 1 << ": " << r.h << " " << r.k << " "
            << r.l << ", true " << Difference(exact, r, k, 0, 5);
      }
    }
}

}  // namespace
