// Lattices that are one, and such as are sub- or superlattices of each other.
#include "index/find/ranking.h"

#include <gtest/gtest.h>

#include "index/find/simulate.h"

using namespace findtest;

namespace {

Form Lattice(const Cell& cell, char centering = 'P') { return ReducedPrimitive(cell, centering); }

Assessment Likely(const Form& direct, double likelihood) {
  Assessment a;
  a.lattice.direct = direct;
  a.likelihood = likelihood;
  return a;
}

}  // namespace

TEST(Ranking, RelativesAreSubAndSuperlatticesOfIndexTwoToFour) {
  const Form lattice = Lattice({5, 6.2, 7.7, 90, 97, 90});
  for (const auto& [cell, centering, related] :
       {std::tuple{Cell{10, 6.2, 7.7, 90, 97, 90}, 'P', true},
        {{5, 12.4, 7.7, 90, 97, 90}, 'P', true},
        {{5, 6.2, 23.1, 90, 97, 90}, 'P', true},
        {{5, 18.6, 7.7, 90, 97, 90}, 'P', true},
        {{10, 12.4, 7.7, 90, 97, 90}, 'P', true},
        {{5, 24.8, 7.7, 90, 97, 90}, 'P', true},
        {{10, 12.4, 7.7, 90, 97, 90}, 'C', true},
        {{5, 6.2, 7.7, 90, 97, 90}, 'C', true},
        {{5, 31, 7.7, 90, 97, 90}, 'P', false},     // of index five
        {{15, 12.4, 7.7, 90, 97, 90}, 'P', false},  // six
        {{5, 6.2, 7.7, 90, 97, 90}, 'P', false},    // itself
        {{5, 12.8, 7.7, 90, 97, 90}, 'P', false},
        {{10, 6.2, 7.7, 90, 99, 90}, 'P', false}}) {
    EXPECT_EQ(AreRelatives(lattice, Lattice(cell, centering)), related) << cell[0] << centering;
    EXPECT_EQ(AreRelatives(Lattice(cell, centering), lattice), related) << cell[1] << centering;
  }
}

TEST(Ranking, OfEqualLatticesTheLikeliestRemains) {
  const Form one = Lattice({5, 6.2, 7.7, 94, 97, 99}), same = Lattice({5.01, 6.2, 7.7, 94, 97, 99}),
             other = Lattice({5.2, 6.2, 7.7, 94, 97, 99});
  const Ranking distinct = Distinct({Likely(one, 1), Likely(other, 2), Likely(same, 3)});
  ASSERT_EQ(distinct.size(), 2U);
  EXPECT_EQ(distinct[0].likelihood, 3);
  EXPECT_EQ(distinct[1].likelihood, 2);
  Ranking many;
  for (int i = 0; i < 60; ++i) many.push_back(Likely(Lattice({5 + 0.2 * i, 6, 7, 90, 90, 90}), i));
  EXPECT_EQ(Distinct(many).size(), kRanked);
}

class OfLines : public testing::Test {
 protected:
  void LinesOf(const Cell& cell, std::size_t most) {
    Random random(61);
    auto at = Positions(cell, 'P', most);
    AddErrors(at, 0.01, 0, random);
    lines = LinesAt(at);
  }
  Ranking Alone(const Cell& cell, char centering) const {
    Ranking ranking;
    AddAssessed(lines, Lattice(cell, centering), 0, kOnePhase, ranking);
    return ranking;
  }
  // The best of a lattice and its relatives.
  Form From(const Cell& cell, char centering) const {
    const auto each = [](std::size_t n, const std::function<void(std::size_t)>& work) {
      for (std::size_t i = 0; i < n; ++i) work(i);
    };
    return WithRelatives(lines, Alone(cell, centering), kOnePhase, each).at(0).lattice.direct;
  }
  std::vector<ObservedLine> lines;
};

// They explain the lines less well, and the lattice is found from any of them, also on a way back.
TEST_F(OfLines, TheLatticeIsFoundFromItsRelatives) {
  const Cell cell = {5.1, 6.3, 8.7, 90, 98, 90};
  LinesOf(cell, 30);
  const double likelihood = Alone(cell, 'P').at(0).likelihood;
  for (const auto& [relative, centering] : {std::pair{Cell{5.1, 12.6, 8.7, 90, 98, 90}, 'P'},
                                            {Cell{10.2, 6.3, 17.4, 90, 98, 90}, 'P'},
                                            {Cell{10.2, 6.3, 8.7, 90, 98, 90}, 'C'},
                                            {Cell{5.1, 6.3, 26.1, 90, 98, 90}, 'P'}}) {
    EXPECT_LT(Alone(relative, centering).at(0).likelihood, likelihood - 5) << relative[1];
    EXPECT_TRUE(IsSameLattice(From(relative, centering), Lattice(cell), 0.005)) << relative[1];
  }
}

// The positions of a hexagonal lattice are those of an orthorhombic one of half its volume, as the
// sums hh + hk + kk are the sums xx + 3 yy. Few lines may fit a more symmetric lattice nearly as
// well: if its positions are others, it stays behind.
TEST_F(OfLines, OfLatticesWithTheSamePositionsTheMoreSymmetricOneIsTheFirst) {
  const Cell hexagonal = {6, 6, 7.3, 90, 90, 120};
  LinesOf(hexagonal, 30);
  EXPECT_TRUE(
      IsSameLattice(From({3, 3 * std::sqrt(3), 7.3, 90, 90, 90}, 'P'), Lattice(hexagonal), 0.005));
  for (const Cell& cell : {Cell{5.1, 5.11, 7.9, 90, 90, 90}, {5.1, 6.3, 7.9, 90, 90.2, 90}}) {
    LinesOf(cell, 12);
    EXPECT_TRUE(IsSameLattice(From(cell, 'P'), Lattice(cell), 0.0015)) << cell[1];
  }
}
