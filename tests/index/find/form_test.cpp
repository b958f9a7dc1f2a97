// Forms: the reciprocal one, and the reduced one of a lattice on whatever axes it comes.
#include "index/find/form.h"

#include <gtest/gtest.h>

#include "index/find/simulate.h"

using namespace findtest;

namespace {

void ExpectSame(const Form& form, const Form& wanted, double tolerance) {
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(form[i], wanted[i], tolerance) << i;
}

// Reduced axes are the shortest ones: none shorter than a, none across a shorter than b, none
// across their plane shorter than c. The angles are all acute or none is.
void ExpectReduced(const Form& f) {
  const double e = 1e-4 * f[0];
  EXPECT_TRUE(f[0] <= f[1] + e && f[1] <= f[2] + e);
  for (int h = -2; h <= 2; ++h)
    for (int k = -2; k <= 2; ++k)
      for (int l = -2; l <= 2; ++l) {
        if (h == 0 && k == 0 && l == 0) continue;
        EXPECT_GE(Value(f, {h, k, l}), (l != 0 ? f[2] : k != 0 ? f[1] : f[0]) - e);
      }
  EXPECT_TRUE((f[3] > 0 && f[4] > 0 && f[5] > 0) || (f[3] <= 0 && f[4] <= 0 && f[5] <= 0));
}

// Also those that a face or the space diagonal would be as short as an axis: of these the form has
// to be one and the same.
void ExpectOneReducedForm(const Form& direct, Random& random) {
  const Form reduced = Reduced(direct);
  ExpectReduced(reduced);
  EXPECT_NEAR(Determinant(reduced) / Determinant(direct), 1, 1e-9);
  for (int trial = 0; trial < 20; ++trial)
    ExpectSame(Reduced(OnAxes(direct, RandomBasis(random))), reduced, 2e-5 * reduced[2]);
}

}  // namespace

TEST(Forms, ReciprocalTwiceIsTheFormAndOfRightAnglesTheInverseSquares) {
  Random random(1);
  for (const Bravais& kind : kBravais) {
    const Form direct = DirectOf(RandomCell(kind, random));
    ExpectSame(Reciprocal(Reciprocal(direct)), direct, 1e-9);
    EXPECT_NEAR(Determinant(direct) * Determinant(Reciprocal(direct)), 1, 1e-9);
  }
  ExpectSame(Reciprocal({4, 16, 64, 0, 0, 0}), {0.25, 0.0625, 0.015625, 0, 0, 0}, 1e-15);
  // Hexagonal: 4/3 (hh + hk + kk) / aa + ll / cc
  ExpectSame(Reciprocal(DirectOf({2, 2, 5, 90, 90, 120})), {1. / 3, 1. / 3, 0.04, 1. / 3, 0, 0},
             1e-12);
  // Monoclinic: 2 hl cos(beta*) / (a c sin^2 beta)
  const double s = std::sin(100 * kRad), c = std::cos(100 * kRad);
  ExpectSame(Reciprocal(DirectOf({4, 5, 8, 90, 100, 90})),
             {1 / (16 * s * s), 0.04, 1 / (64 * s * s), 0, -2 * c / (32 * s * s), 0}, 1e-12);
}

TEST(Forms, OnOtherAxesAVectorKeepsItsLength) {
  Random random(2);
  const Form direct = DirectOf({5, 6, 7, 81, 93, 104});
  const Axes axes = RandomBasis(random), back = Inverse(axes);
  const Form other = OnAxes(direct, axes);
  ExpectSame(OnAxes(other, back), direct, 1e-9);
  // The vector 1 2 3 of the new axes.
  std::array<int, 3> v;
  for (std::size_t i = 0; i < 3; ++i)
    v[i] = static_cast<int>(axes[0][i] + 2 * axes[1][i] + 3 * axes[2][i]);
  EXPECT_NEAR(Value(other, {1, 2, 3}), Value(direct, {v[0], v[1], v[2]}), 1e-9);
}

TEST(Reduction, RandomLatticesHaveOneFormOnWhateverAxes) {
  Random random(3);
  for (const Bravais& kind : kBravais)
    for (int trial = 0; trial < 5; ++trial)
      ExpectOneReducedForm(
          OnAxes(DirectOf(RandomCell(kind, random)), PrimitiveAxes(kind.centering)), random);
  for (int trial = 0; trial < 100; ++trial) {
    const auto edge = [&] { return Uniform(random, 3, 20); };
    const auto angle = [&] { return Uniform(random, 65, 115); };
    const Form direct = DirectOf({edge(), edge(), edge(), angle(), angle(), angle()});
    if (Determinant(direct) > 0) ExpectOneReducedForm(direct, random);
  }
}

// The published reduced forms of lattices on the boundaries, for an edge of 4 or 6.
TEST(Reduction, LatticesOnTheBoundariesHaveTheirPublishedForms) {
  struct Known {
    Cell cell;
    char centering;
    Form reduced;
  };
  const double cosine = std::cos(75 * kRad);
  for (const auto& [cell, centering, reduced] :
       {Known{{4, 4, 4, 90, 90, 90}, 'P', {16, 16, 16, 0, 0, 0}},
        Known{{4, 4, 4, 90, 90, 90}, 'F', {8, 8, 8, 8, 8, 8}},
        Known{{4, 4, 4, 90, 90, 90}, 'I', {12, 12, 12, -8, -8, -8}},
        Known{{4, 4, 6, 90, 90, 120}, 'P', {16, 16, 36, -16, 0, 0}},
        Known{{6, 6, 4, 90, 90, 120}, 'P', {16, 36, 36, 0, 0, -36}},
        Known{{4, 4, 4, 60, 60, 60}, 'P', {16, 16, 16, 16, 16, 16}},
        Known{{4, 4, 4, 75, 75, 75}, 'P', {16, 16, 16, 32 * cosine, 32 * cosine, 32 * cosine}},
        Known{{4, 4, 4, 109.471220634, 109.471220634, 109.471220634},
              'P',
              {16, 16, 16, -32. / 3, -32. / 3, -32. / 3}},
        Known{{4, 4, 6, 90, 90, 90}, 'I', {16, 16, 17, 0, -16, -16}},
        Known{{4, 6, 8, 90, 90, 90}, 'C', {13, 13, 64, -10, 0, 0}}}) {
    const Form direct = OnAxes(DirectOf(cell), PrimitiveAxes(centering));
    Random random(4);
    ExpectSame(Reduced(direct), reduced, 1e-6);
    ExpectOneReducedForm(direct, random);
  }
}
