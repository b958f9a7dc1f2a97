// The symmetry of a lattice and its conventional cell, of lattices of all fourteen kinds.
#include "index/find/symmetry.h"

#include <gtest/gtest.h>

#include "index/find/simulate.h"

using namespace findtest;

namespace {

constexpr struct {
  std::size_t rotations, constants;
} kOfSystem[] = {{1, 6}, {2, 4}, {4, 3}, {8, 2}, {6, 2}, {12, 2}, {24, 1}};

// Each product of axes off by up to a share of their lengths.
Form Disturbed(Form form, double share, Random& random) {
  constexpr std::array<std::array<std::size_t, 2>, 6> kPairs = {
      {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {0, 2}, {1, 2}}};
  const Form exact = form;
  for (std::size_t i = 0; i < 6; ++i) {
    const auto [p, q] = kPairs[i];
    form[i] += (i < 3 ? 1 : 2) * std::sqrt(exact[p] * exact[q]) * Uniform(random, -share, share);
  }
  return form;
}

Cell ConventionalCell(const SymmetricLattice& lattice, char& centering) {
  const auto [letter, axes] = Conventional(lattice);
  centering = letter;
  EXPECT_GT(Determinant(AxesOf(axes)), 0.5);  // right-handed
  return CellOf(OnAxes(lattice.direct, AxesOf(axes)));
}

// The cell of a lattice that comes close to one given.
void ExpectCell(const SymmetricLattice& lattice, const Bravais& kind, const Cell& wanted,
                double tolerance) {
  char centering = 0;
  const Cell cell = ConventionalCell(lattice, centering);
  const bool monoclinic = kind.system == LatticeSystem::Monoclinic;
  EXPECT_EQ(centering, kind.centering);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(cell[i] / wanted[i], 1, tolerance) << i;
  EXPECT_TRUE(!monoclinic || cell[4] > 90);
  EXPECT_NEAR(std::sqrt(Determinant(DirectOf(cell)) / Determinant(DirectOf(wanted))), 1,
              3 * tolerance);
  // What the system fixes is there to the last digit.
  for (std::size_t i = 3; i < 6; ++i) {
    const bool fixed = wanted[i] == 90 || wanted[i] == 120;
    EXPECT_NEAR(cell[i], wanted[i], fixed ? 1e-6 : 100 * tolerance) << i;
  }
  for (std::size_t i : {1, 2})
    EXPECT_TRUE(wanted[0] != wanted[i] || std::abs(cell[0] - cell[i]) < 1e-9) << i;
  // The letter belongs to the cell: both give the lattice back.
  EXPECT_TRUE(IsSameLattice(ReducedPrimitive(cell, centering), Reduced(lattice.direct), 1e-6));
}

}  // namespace

// Exact lattices are those of their system at once; with errors they are so from a tolerance on.
TEST(Symmetry, IsTheWholeOneAndTheCellTheOneThatTheLatticeWasMadeOf) {
  Random random(11);
  for (const Bravais& kind : kBravais)
    for (int trial = 0; trial < 20; ++trial) {
      const double error = trial < 5 ? 0 : 1e-3;
      const Cell cell = RandomCell(kind, random);
      const Form primitive = Disturbed(ReducedPrimitive(cell, kind.centering), error, random);
      const Form reduced = Reduced(OnAxes(primitive, RandomBasis(random)));
      const auto lattices = SymmetriesOf(reduced);
      const auto found = std::ranges::find(lattices, kind.system, &SymmetricLattice::system);
      SCOPED_TRACE(testing::Message() << static_cast<int>(kind.system) << kind.centering << error);
      ASSERT_NE(found, lattices.end());
      EXPECT_EQ(found->group.size(), kOfSystem[static_cast<int>(kind.system)].rotations);
      ExpectCell(*found, kind, cell, error > 0 ? 3 * error : 1e-6);
      if (error == 0) {
        EXPECT_EQ(found, lattices.begin());
        EXPECT_TRUE(IsSameLattice(reduced, found->direct, 1e-6));
      }
      // Each one once, from the least tolerance on, and none but with fewer rotations before it.
      for (std::size_t i = 1; i < lattices.size(); ++i)
        EXPECT_GT(lattices[i].group.size(), lattices[i - 1].group.size());
    }
}

TEST(Symmetry, TheReciprocalFormIsASumOfTheConstants) {
  Random random(13);
  for (const Bravais& kind : kBravais) {
    const auto lattices = SymmetriesOf(ReducedPrimitive(RandomCell(kind, random), kind.centering));
    ASSERT_FALSE(lattices.empty());
    const auto& parameters = lattices.front().parameters;
    EXPECT_EQ(parameters.size(), kOfSystem[static_cast<int>(kind.system)].constants);
    const Form reciprocal = Reciprocal(lattices.front().direct);
    Form sum{};
    for (const Form& p : parameters) {
      for (const Form& other : parameters) EXPECT_NEAR(Dot(p, other), &p == &other, 1e-9);
      for (std::size_t i = 0; i < 6; ++i) sum[i] += Dot(reciprocal, p) * p[i];
    }
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(sum[i], reciprocal[i], 1e-9);
  }
}

TEST(Symmetry, LatticesAreTheSameWithinAToleranceOnly) {
  const Form lattice = Reduced(DirectOf({5, 6, 7, 94, 96, 98}));
  EXPECT_TRUE(IsSameLattice(lattice, Reduced(DirectOf({5.01, 6.01, 7.01, 94, 96, 98})), 0.005));
  EXPECT_FALSE(IsSameLattice(lattice, Reduced(DirectOf({5.02, 6, 7, 94, 96, 98})), 0.005));
  EXPECT_FALSE(IsSameLattice(lattice, Reduced(DirectOf({5, 6, 7, 94, 96.5, 98})), 0.005));
  // Equal edges, another angle.
  EXPECT_FALSE(IsSameLattice(lattice, Reduced(DirectOf({5, 6, 7, 86, 84, 82})), 0.005));
  // Two reductions of one lattice, on both sides of a boundary.
  EXPECT_TRUE(IsSameLattice(Reduced(DirectOf({5, 5.001, 7, 90.01, 96, 90})),
                            Reduced(DirectOf({5.001, 5, 7, 96, 89.99, 90})), 0.005));
}
