// Direct cells, special lattices and the zero check of ITO.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "index/ito/directcell.h"
#include "index/ito/speciallattices.h"
#include "index/ito/zerocheck.h"
#include "index/itoproblems.h"

namespace {

TEST(ItoDirectCell, ComesBackFromTheReciprocalMetric) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> edge(4, 20), angle(70, 115);
  for (int n = 0; n < 100; ++n) {
    const UnitCell cell{
        {edge(random), edge(random), edge(random), angle(random), angle(random), angle(random)}};
    const auto [found, volume] = CellOfLattice(ReciprocalOf(cell));
    for (int k = 1; k <= 3; ++k) EXPECT_NEAR(found(k), cell(k), 2e-4 * cell(k));
    for (int k = 4; k <= 6; ++k) EXPECT_NEAR(found(k), cell(k), 0.01);
    EXPECT_NEAR(volume, CellVolume(cell), 5e-4 * volume);
  }
}

TEST(ItoDirectCell, OfNoLatticeIsNoNumber) {
  for (const Lattice& t : {Lattice{}, Lattice{100, 100, -100}, Lattice{100, 100, 100, 250},
                           Lattice{100, 100, 100, -190, 190, 190}}) {
    const auto [cell, volume] = CellOfLattice(t);
    EXPECT_FALSE(volume > 0);
    EXPECT_FALSE(cell(1) > 0 && cell(2) > 0 && cell(3) > 0);
  }
}

TEST(ItoDirectCell, TellsZOrTheDensityOfOneUnit) {
  const auto put = [](float wmol, float dobs) {
    ItoCards cards;
    cards.wmol = wmol;
    cards.dobs = dobs;
    // 5 by 8 by 10 angstrom.
    return ListingOf([&](Listing& listing) { PutDirectCell({400, 156.25f, 100}, cards, listing); });
  };
  const std::string cell = "     5.000    8.000   10.000   90.000   90.000   90.000      400.00\n";
  EXPECT_EQ(put(0, 2), cell);
  // 120.5 g/mol in 400 cubic angstrom are 0.5 g/cm^3.
  EXPECT_EQ(put(120.5f, 0), cell + "+" + std::string(68, ' ') + "   dcalc=z*  0.5000\n");
  EXPECT_TRUE(Holds(put(120.5f, 1.9f), "   z= 4   dx= 2.0000   dobs= 1.9000\n"));
  EXPECT_TRUE(Holds(put(120.5f, 2.1f), "   z= 4"));
  EXPECT_TRUE(Holds(put(120.5f, 0.2f), "   z= 1"));
  EXPECT_TRUE(Holds(put(1e-1f + 1e-3f, 1e30f), "   z=**"));
}

std::string SpecialOf(const Lattice& t, float eqtol = 0.5f) {
  return ListingOf([&](Listing& listing) { SpecialLattices(t, eqtol, listing); });
}

TEST(ItoSpecialLattices, EqualAndMultipleConstants) {
  EXPECT_EQ(SpecialOf({100, 137, 211}), "");
  EXPECT_TRUE(Holds(SpecialOf({100, 100, 100}), " cubic"));
  EXPECT_TRUE(Holds(SpecialOf({200, 100, 200}), " cubic"));
  for (const Lattice& t : {Lattice{100, 100, 137.2f}, {100, 137.2f, 100}, {137.2f, 100, 100}}) {
    const std::string text = SpecialOf(t);
    EXPECT_TRUE(Holds(text, " is probably"));
    EXPECT_TRUE(Holds(text, " tetragonal"));
    EXPECT_TRUE(Holds(text, "a= 10.0000  c=  8.5373"));
    EXPECT_EQ(text.find("tetragonal"), text.rfind("tetragonal")) << text;
  }
  // Equal within the tolerance: told once, with the edge of the first.
  for (const Lattice& t : {Lattice{100, 100.3f, 137.2f}, {100, 137.2f, 100.3f}}) {
    const std::string text = SpecialOf(t);
    EXPECT_EQ(text.find("tetragonal"), text.rfind("tetragonal")) << text;
  }
  EXPECT_TRUE(Holds(SpecialOf({400, 100, 731}), " a freak. there is a ratio"));
  EXPECT_TRUE(Holds(SpecialOf({400, 100, 731}), "   4\n"));
  // Its own tolerance tells nothing about so small a base.
  EXPECT_EQ(SpecialOf({4, 137, 211}, 2.0f), "");
}

TEST(ItoSpecialLattices, HexagonalInOrthogonalAxes) {
  // a = 5, c = 7: the constants of 1,0 and across it are 10000/25/3 and 10000/25, face centered.
  const float r = 10000.0f / 75, third = 10000.0f / 49;
  EXPECT_TRUE(Holds(SpecialOf({3 * r, r, third, 0, 0, 0, 0, 0, 3}), "hexagonal"));
  EXPECT_TRUE(Holds(SpecialOf({3 * r, r, third, 0, 0, 0, 0, 0, 3}), "a=  5.0000  c=  7.0000"));
  EXPECT_TRUE(Holds(SpecialOf({r, third, 3 * r, 0, 0, 0, 0, 0, 2}), "a=  5.0000  c=  7.0000"));
  EXPECT_TRUE(Holds(SpecialOf({r, third, 3 * r, 0, 0, 0, 0, 0, 5}), "a=  5.0000  c=  7.0000"));
  EXPECT_TRUE(Holds(SpecialOf({r, third, 3 * r, 0, 0, 0, 0, 0, 6}), "a= 10.0000  c=  7.0000"));
}

TEST(ItoSpecialLattices, WiderToleranceSaysMightBe) {
  const std::string text = SpecialOf({100, 101.2f, 137});
  EXPECT_FALSE(Holds(text, " is probably"));
  EXPECT_TRUE(Holds(text, "   might be"));
  EXPECT_EQ(SpecialOf({100, 101.6f, 137}), "");
  // What is probable already is not told again, what is more special is.
  const std::string both = SpecialOf({100, 100, 101.2f});
  EXPECT_LT(both.find("tetragonal"), both.find("cubic"));
}

using Vector = std::array<double, 3>;

double Dot(const Vector& u, const Vector& v) { return u[0] * v[0] + u[1] * v[1] + u[2] * v[2]; }

// The lattice of three reciprocal vectors.
Lattice ReciprocalOf(const std::array<Vector, 3>& v) {
  const auto q = [&](int i, int j) {
    return static_cast<float>((i == j ? 1 : 2) * Dot(v[i], v[j]));
  };
  return {q(0, 0), q(1, 1), q(2, 2), q(1, 2), q(2, 0), q(0, 1)};
}

// Reciprocal vector h k l of a hexagonal cell, in units in which its square is q.
Vector Hexagonal(double h, double k, double l, double a, double c) {
  const double edge = 100 * 2 / (std::sqrt(3.0) * a);
  return {edge * (h + k / 2), edge * k * std::sqrt(3.0) / 2, 100 * l / c};
}

TEST(ItoSpecialLattices, RhombohedralInReducedMonoclinicAxes) {
  using Plane = std::array<Vector, 2>;  // two shortest points of the mirror plane
  const struct {
    double ratio;  // c/a
    Plane plane;
  } cases[] = {{0.3, {{{1.5, -1.5, 0}, {0.5, -0.5, 1}}}},
               {0.7, {{{0.5, -0.5, 1}, {1, -1, -1}}}},
               {1.8, {{{0.5, -0.5, 1}, {0.5, -0.5, -2}}}},
               {5.5, {{{0.5, -0.5, 1}, {0, 0, 3}}}}};
  constexpr double a = 6;
  for (const auto& each : cases) {
    const double c = a * each.ratio;
    const auto vector = [&](const Vector& hkl) { return Hexagonal(hkl[0], hkl[1], hkl[2], a, c); };
    std::array<Vector, 3> axes{vector({0.5, 0.5, 0}), vector(each.plane[0]), vector(each.plane[1])};
    const std::string expected =
        WriteRecord<"(' probably x should be',f10.2,'  and a ',f8.4)">(4e4 / 3 / (a * a), a);
    std::array order{0, 1, 2};
    do {
      Lattice t = ReciprocalOf({axes[order[0]], axes[order[1]], axes[order[2]]});
      t.type = 3;
      const std::string text = SpecialOf(t);
      EXPECT_TRUE(Holds(text, " rhombohedral")) << each.ratio;
      EXPECT_TRUE(Holds(text, expected)) << text;
      EXPECT_TRUE(Holds(text, WriteRecord<"('  z=',f9.2)">(1e4 / (c * c))));
      EXPECT_TRUE(Holds(text, WriteRecord<"('  c=',f7.4)">(c)));
      t.type = 6;
      EXPECT_FALSE(Holds(SpecialOf(t), "probably x should be"));
      (order[0] == 0 ? t.a : order[1] == 0 ? t.b : t.c) += 6;
      EXPECT_EQ(SpecialOf(t), "") << each.ratio;
      std::ranges::for_each(axes[1], [](double& v) { v = -v; });
    } while (std::ranges::next_permutation(order).found);
  }
}

TEST(ItoSpecialLattices, ATriclinicLatticeIsNone) {
  EXPECT_EQ(SpecialOf({100, 100, 100, 30, 30, 30}), "");
  EXPECT_EQ(SpecialOf({-100, 100, 100}), "");
  // But for d and f it were rhombohedral.
  EXPECT_TRUE(Holds(SpecialOf({300, 100, 250, 0, 200, 0}), "rhombohedral"));
  EXPECT_EQ(SpecialOf({300, 100, 250, 30, 200, 30}), "");
}

// The lines of a cell with edges of 10, 12 and 15 angstrom, h00, 0k0 and 00l among them, as they
// are seen with a shift of the zero.
ItoProblem Shifted(double shift) {
  ItoProblem problem;
  problem.cards.wavel = static_cast<float>(kWave);
  problem.cards.tolg = 0.02f;
  std::vector<double> q;
  for (int h = 0; h <= 4; ++h)
    for (int k = 0; k <= 4; ++k)
      for (int l = 0; l <= 4; ++l)
        if (h + k + l > 0) q.push_back(1e4 * (h * h / 100.0 + k * k / 144.0 + l * l / 225.0));
  std::ranges::sort(q);
  for (int i = 0; i < 40; ++i) {
    const double seen = TwoThetaAt(q[i]) + shift;
    problem.lines.push_back({static_cast<float>(QAt(seen)), 0, 0, static_cast<float>(seen), "  "});
  }
  return problem;
}

TEST(ItoZeroCheck, FindsTheShiftOfTheZero) {
  for (const double shift : {-0.07, 0.0, 0.05}) {
    const std::string text =
        ListingOf([&](Listing& listing) { ZeroCheck(Shifted(shift), listing); });
    EXPECT_TRUE(Holds(text, "zero correction of " + WriteRecord<"(f5.2)">(-shift))) << text;
    EXPECT_TRUE(Holds(text, "shifts (x0.01)  -10   -9"));
    EXPECT_TRUE(Holds(text, "nr of fits"));
    EXPECT_TRUE(Holds(text, "mean delta q"));
  }
}

}  // namespace
