// Direct cells, special lattices and the zero check of ITO.
#include <gtest/gtest.h>

#include "index/ito/directcell.h"
#include "index/ito/speciallattices.h"
#include "index/ito/zerocheck.h"
#include "index/simulate.h"

namespace {

TEST(ItoDirectCell, ComesBackFromTheReciprocalMetric) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> edge(4, 20), angle(70, 115);
  for (int n = 0; n < 100; ++n) {
    const Cell cell{edge(random),  edge(random),  edge(random),
                    angle(random), angle(random), angle(random)};
    const auto [found, volume] = CellOfLattice(LatticeOfCell(cell));
    for (int k = 0; k < 6; ++k) EXPECT_NEAR(found(k + 1), cell[k], k < 3 ? 2e-4 * cell[k] : 0.01);
    EXPECT_NEAR(volume, VolumeOf(cell), 5e-4 * volume);
  }
  for (const Lattice& t : {Lattice{}, Lattice{100, 100, -100}, Lattice{100, 100, 100, 250},
                           Lattice{100, 100, 100, -190, 190, 190}}) {
    const auto [none, volume] = CellOfLattice(t);
    EXPECT_FALSE(volume > 0 || (none(1) > 0 && none(2) > 0 && none(3) > 0));
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
    EXPECT_TRUE(Holds(text, "a= 10.0000  c=  8.5373"));
    EXPECT_EQ(Count(text, "tetragonal"), 1) << text;
  }
  // Equal within the tolerance: told once.
  for (const Lattice& t : {Lattice{100, 100.3f, 137.2f}, {100, 137.2f, 100.3f}})
    EXPECT_EQ(Count(SpecialOf(t), "tetragonal"), 1);
  EXPECT_TRUE(Holds(SpecialOf({400, 100, 731}), " a freak. there is a ratio"));
  EXPECT_TRUE(Holds(SpecialOf({400, 100, 731}), "   4\n"));
  // Its own tolerance tells nothing about so small a base.
  EXPECT_EQ(SpecialOf({4, 137, 211}, 2.0f), "");
  // Within three times the tolerance it might be; what is probable is not told again, what is more
  // special is.
  const std::string wide = SpecialOf({100, 101.2f, 137}), both = SpecialOf({100, 100, 101.2f});
  EXPECT_TRUE(Holds(wide, "   might be") && !Holds(wide, " is probably"));
  EXPECT_EQ(SpecialOf({100, 101.6f, 137}), "");
  EXPECT_LT(both.find("tetragonal"), both.find("cubic"));
  EXPECT_EQ(SpecialOf({100, 100, 100, 30, 30, 30}), "");
  EXPECT_EQ(SpecialOf({-100, 100, 100}), "");
  // But for d and f it were rhombohedral.
  EXPECT_TRUE(Holds(SpecialOf({300, 100, 250, 0, 200, 0}), "rhombohedral"));
  EXPECT_EQ(SpecialOf({300, 100, 250, 30, 200, 30}), "");
}

// a = 5, c = 7: the constants of 1,0 and across it are 10000/25/3 and 10000/25, face centered.
TEST(ItoSpecialLattices, HexagonalInOrthogonalAxes) {
  const float r = 10000.0f / 75, third = 10000.0f / 49;
  for (const auto& [type, edge] : {std::pair(3.0f, 5), {2.0f, 5}, {5.0f, 5}, {6.0f, 10}}) {
    Lattice t{r, third, 3 * r, 0, 0, 0, 0, 0, type};
    if (type == 3) t = {3 * r, r, third, 0, 0, 0, 0, 0, type};
    EXPECT_TRUE(Holds(SpecialOf(t), "hexagonal"));
    EXPECT_TRUE(Holds(SpecialOf(t), WriteRecord<"('a=',f8.4,'  c=  7.0000')">(1.0 * edge)));
  }
}

// The lines of a cell with h00, 0k0 and 00l among the first, as they are seen with a shift of the
// zero; without it orders fit without a miss.
TEST(ItoZeroCheck, FindsTheShiftOfTheZero) {
  for (const double shift : {-0.07, 0.0, 0.05}) {
    ItoProblem problem;
    problem.cards.wavel = static_cast<float>(kWave);
    problem.cards.tolg = 0.02f;
    for (const double q : Values(FormOf(LatticeOfCell({10, 12, 15, 90, 90, 90})), 4, 4, 1e-3)) {
      const double seen = AngleAt(q) + shift;
      problem.lines.push_back(
          {static_cast<float>(QAt(seen)), 0, 0, static_cast<float>(seen), "  "});
      if (problem.lines.size() == 40) break;
    }
    const std::string text = ListingOf([&](Listing& listing) { ZeroCheck(problem, listing); });
    EXPECT_TRUE(Holds(text, "zero correction of " + WriteRecord<"(f5.2)">(-shift))) << text;
    EXPECT_TRUE(Holds(text, "shifts (x0.01)  -10   -9"));
    EXPECT_TRUE(Holds(text, "nr of fits"));
    const auto means = text.find("mean delta q");
    const auto column = static_cast<std::size_t>(10 + std::lround(-100 * shift));
    EXPECT_NEAR(std::stod(text.substr(means + 14 + 5 * column, 5)), 0, 0.02) << text;
  }
  ItoProblem none = ProblemAt(EvenQ(20, 1000, 10), 1);
  none.cards.wavel = static_cast<float>(kWave);
  none.cards.tolg = 0.02f;
  EXPECT_FALSE(
      Holds(ListingOf([&](Listing& listing) { ZeroCheck(none, listing); }), "zero correction"));
}

}  // namespace
