// The way from a candidate to a solution, and what the listing says of it.
#include "index/treor/accept.h"

#include <gtest/gtest.h>

#include "index/listings.h"
#include "index/simulate.h"

namespace {

struct Accept : testing::Test {
  bool Try(const Cell& cell, CrystalSystem system, std::size_t n = 25) {
    data.search.options.wave = static_cast<float>(kWave);
    data.search.all = TreorLinesAt(Pattern(cell, n, 0.006));
    PrepareLines(data.search);
    const bool solved = AcceptCandidate(data.search, {system, ConstantsOf(cell, 1.001)});
    text = data.Text();
    if (solved) found = data.run.solutions.back().cell;
    return solved;
  }
  DataSet data;
  std::string text;
  UnitCell found;
};

// A block for the test, and once more with all lines.
TEST_F(Accept, BlocksAreReadFromTheListing) {
  const Cell& cell = kCells[5].cell;
  ASSERT_TRUE(Try(cell, CrystalSystem::Triclinic));
  WriteFile(data.dir.file("listing"), text);
  LineReader listing(data.dir.file("listing"));
  SolutionTable read;
  ASSERT_EQ(ReadTreorSolutions(listing, read), 2);
  for (int row = 1; row <= 2; ++row) {
    for (int k = 0; k < 6; ++k) EXPECT_NEAR(read(row, sola + k), cell[k], k < 3 ? 0.005 : 0.1);
    EXPECT_NEAR(read(row, solvolume), VolumeOf(cell), 0.5);
    EXPECT_EQ(read(row, solfom), data.run.solutions[row - 1].merit);
    EXPECT_GE(read(row, solfom), 20);
    EXPECT_EQ(read(row, solnix), 0);
  }
  EXPECT_TRUE(Holds(text, "*** REDUCED-CELL ***"));
}

// Also: lines taken out as higher orders come back for the last test.
TEST_F(Accept, EqualAxesGoOnAsCubic) {
  ASSERT_TRUE(Try(kCells[0].cell, CrystalSystem::Orthorhombic, 20));
  EXPECT_TRUE(Holds(text, "TEST OF CUBIC SYMMETRY"));
  EXPECT_TRUE(Holds(text, "SET KS=0 TO CHECK THE SOLUTION"));
  EXPECT_EQ(found(1), found(3));
  const auto deleted = static_cast<int>(data.search.all.size() - data.search.lines.size());
  ASSERT_GT(deleted, 1);
  EXPECT_TRUE(Holds(text, "ADD THE " + WriteRecord<"(i2)">(deleted) + " DELETED LINES"));
  EXPECT_TRUE(Holds(text, "TOTAL NUMBER OF LINES =   20"));
}

// The unique axis stands first in the candidate that is tetragonal; b is a times the root of 3
// where hexagonal axes of twice that a lie within; an acute beta is that of the same lattice.
class HigherSymmetry : public Accept, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(Of, HigherSymmetry, testing::Range(0, 4));
TEST_P(HigherSymmetry, IsThatOfTheSolution) {
  using enum CrystalSystem;
  const struct {
    Cell cell;
    CrystalSystem system;
    const char* told;
    Cell found;
  } cases[] = {
      {{7.93, 5.21, 5.21, 90, 90, 90}, Orthorhombic, "SET KS=0 AND THS=0", kCells[1].cell},
      {{5, 5 * std::sqrt(3.0), 4.17, 90, 90, 90},
       Orthorhombic,
       "TEST OF HEXAGONAL SYMMETRY",
       {10, 10, 4.17, 90, 90, 120}},
      {kCells[3].cell, Monoclinic, "", kCells[3].cell},
      {{5.43, 4.83, 8.14, 90, 72.42, 90}, Monoclinic, "REDUCED-CELL", kCells[4].cell},
  };
  const auto& c = cases[GetParam()];
  ASSERT_TRUE(Try(c.cell, c.system));
  EXPECT_TRUE(Holds(text, c.told));
  EXPECT_EQ(Holds(text, "REDUCED-CELL"), c.found[4] != 90);
  for (int k = 1; k <= 6; ++k) EXPECT_NEAR(found(k), c.found[k - 1], k > 3 ? 0.1 : 0.02) << k;
}

// An edge may be too long, or the volume too large.
TEST(AcceptLimits, OfATriclinicCell) {
  for (const auto& [cem, vol, accepted] :
       {std::tuple(7.0f, 200.0f, true), {6.5f, 200.0f, false}, {7.0f, 150.0f, false}}) {
    DataSet data;
    data.search.options.wave = static_cast<float>(kWave);
    data.search.options.cem = cem;
    data.search.options.vol = vol;
    data.search.all = TreorLinesAt(Pattern(kCells[5].cell, 25, 0.006));
    PrepareLines(data.search);
    EXPECT_EQ(AcceptCandidate(data.search, {CrystalSystem::Triclinic, ConstantsOf(kCells[5].cell)}),
              accepted)
        << cem << ' ' << vol;
  }
}

// At the limits: M as large as asked for passes, and lines left over up to NIX.
TEST(AcceptLimits, MeritAndLinesLeftOver) {
  const auto solved = [](int merit, int nix) {
    DataSet data;
    data.search.options.wave = static_cast<float>(kWave);
    data.search.options.merit = merit;
    data.search.options.nix = nix;
    auto twotheta = Pattern(kCells[4].cell, 30, 0.02);
    twotheta.insert(twotheta.begin() + 6, (twotheta[5] + twotheta[6]) / 2);
    data.search.all = data.search.lines = TreorLinesAt(twotheta);  // no higher orders out
    const TreorCandidate candidate{CrystalSystem::Monoclinic, ConstantsOf(kCells[4].cell)};
    const bool accepted = AcceptCandidate(data.search, candidate);
    EXPECT_GE(data.run.solutions.size(), 1u) << "listed all the same";
    return accepted ? data.run.solutions.back().merit : 0;
  };
  const int merit = solved(1, 1);
  ASSERT_GT(merit, 6);
  EXPECT_EQ(solved(merit, 1), merit);
  EXPECT_EQ(solved(merit + 1, 1), 0);
  EXPECT_EQ(solved(merit, 0), 0);
}

}  // namespace
