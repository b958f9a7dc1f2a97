// Refinement on the lines, its e.s.d.s, and the likelihood.
#include "index/find/assess.h"

#include <gtest/gtest.h>

#include "index/find/simulate.h"

using namespace findtest;

namespace {

// A lattice and its constants off by half a thousandth.
struct Start {
  SymmetricLattice lattice;
  Form truth;  // the reciprocal form, on the axes of the lattice
};
Start StartOf(const Cell& cell, char centering, double factor = 1.0005) {
  const Form direct = ReducedPrimitive(cell, centering);
  Form off = direct;
  for (double& x : off) x *= factor;
  return {SymmetriesOf(off).front(), Reciprocal(direct)};
}

// By how many e.s.d.s constants and zero shift are off the truth.
std::vector<double> Deviations(const std::vector<ObservedLine>& lines, const Start& start,
                               const Assessment& a, double zero) {
  const auto covariance = CovarianceOf(lines, a);
  std::vector<double> deviations;
  if (covariance.empty()) return deviations;
  const auto& parameters = a.lattice.parameters;
  for (std::size_t i = 0; i < parameters.size(); ++i)
    deviations.push_back((Dot(a.reciprocal, parameters[i]) - Dot(start.truth, parameters[i])) /
                         std::sqrt(covariance[i][i]));
  deviations.push_back((a.zero - zero) / std::sqrt(covariance.back().back()));
  return deviations;
}

std::optional<Assessment> Assessed(const std::vector<ObservedLine>& lines, const Cell& cell,
                                   char centering) {
  return Assess(lines, StartOf(cell, centering, 1).lattice, RefinementStart::Rough, 0);
}

}  // namespace

TEST(Assess, RefinedConstantsAndZeroShiftAreOffByWhatTheirErrorsSay) {
  Random random(41);
  for (const Bravais& kind : kBravais) {
    double squares = 0;
    int number = 0;
    for (int trial = 0; trial < 60; ++trial) {
      const Cell cell = RandomCell(kind, random);
      auto at = LonePositions(cell, kind.centering, 30);
      AddErrors(at, 0.01, 0.03, random);
      const auto lines = LinesAt(at);
      const Start start = StartOf(cell, kind.centering);
      const auto a = Assess(lines, start.lattice, RefinementStart::Rough, 0);
      ASSERT_TRUE(a);
      EXPECT_TRUE(std::isfinite(a->likelihood));
      EXPECT_GE(a->hits + 2, static_cast<int>(lines.size()));
      EXPECT_GE(a->positions, a->hits);
      EXPECT_NEAR(a->zero, 0.03, 0.03);
      const auto deviations = Deviations(lines, start, *a, 0.03);
      ASSERT_EQ(deviations.size(), start.lattice.parameters.size() + 1);
      for (double d : deviations) {
        squares += d * d;
        ++number;
        EXPECT_LT(std::abs(d), 7);
      }
    }
    // Few lines of known scatter: somewhat more than 1.
    EXPECT_NEAR(std::sqrt(squares / number), 1.1, 0.45) << static_cast<int>(kind.system);
  }
}

TEST(Assess, ExactLinesGiveTheExactCellAndShift) {
  const Cell cell = {7.1, 5.3, 9.4, 90, 104, 90};
  auto at = LonePositions(cell, 'P', 40);
  for (double& x : at) x += 0.03;
  const Start start = StartOf(cell, 'P');
  const auto a = Assess(LinesAt(at), start.lattice, RefinementStart::Rough, 0.025);
  ASSERT_TRUE(a);
  EXPECT_NEAR(a->zero, 0.03, 1e-3);
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_NEAR(a->reciprocal[i], start.truth[i], 2e-5 * start.truth[2]) << i;
  // Direct and reciprocal form stay one lattice's.
  const Form again = Reciprocal(a->lattice.direct);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(again[i], a->reciprocal[i], 1e-12);
}

TEST(Assess, TheRightLatticeIsLikelierThanNone) {
  Random random(42);
  const Cell cell = {5.1, 6.3, 8.7, 90, 90, 90};
  auto at = Positions(cell, 'P', 30);
  AddErrors(at, 0.01, 0, random);
  const auto lines = LinesAt(at);
  const auto right = Assessed(lines, cell, 'P');
  ASSERT_TRUE(right);
  EXPECT_GT(right->likelihood, 10);
  // A foreign line costs its own chance of 1 in 100, and as all lines are denser 1 in 30 for each.
  auto more = at;
  more.push_back(at[20] + 0.5 * (at[21] - at[20]));
  const auto foreign = Assessed(LinesAt(more), cell, 'P');
  ASSERT_TRUE(foreign && foreign->hits == right->hits);
  EXPECT_NEAR(right->likelihood - foreign->likelihood, -std::log(0.01) + 1, 0.3);
  // Lines that lie anywhere make no lattice likely.
  std::vector<double> anywhere(30);
  for (double& x : anywhere) x = Uniform(random, 10, 80);
  const auto a = Assessed(LinesAt(anywhere), cell, 'P');
  EXPECT_TRUE(!a || a->likelihood < 0);
}

TEST(Assess, ALatticeThatExplainsTooFewLinesIsNone) {
  const std::vector<double> at = {10.5, 11.9, 13.3, 16.2, 19.1};
  EXPECT_FALSE(Assessed(LinesAt(at), {5.1, 6.3, 8.7, 90, 90, 90}, 'P'));
  EXPECT_FALSE(Assessed(LinesAt(at), {200, 200, 200, 90, 90, 90}, 'P'));
  // As many lines as unknowns leave no error to be told.
  const Cell cell = {5.1, 6.3, 8.7, 90, 90, 90};
  EXPECT_TRUE(Assessed(LinesAt(LonePositions(cell, 'P', 5)), cell, 'P'));
  EXPECT_FALSE(Assessed(LinesAt(LonePositions(cell, 'P', 4)), cell, 'P'));
}
