// Calculated positions, the lines that lie on them, and the figures of merit of both.
#include "index/find/positions.h"

#include <gtest/gtest.h>

#include "index/find/merit.h"
#include "index/find/simulate.h"

using namespace findtest;

namespace {

// Two-theta of lines of a primitive cubic cell of 6 angstrom, by h^2 + k^2 + l^2.
std::vector<double> Cubic(const std::vector<int>& sums) {
  std::vector<double> positions;
  for (int n : sums) positions.push_back(2 * std::asin(std::sqrt(n) / 12 * kWave) / kRad);
  return positions;
}

Assessment OfCubic(double zero = 0) {
  Assessment a;
  a.reciprocal = Reciprocal(DirectOf({6, 6, 6, 90, 90, 90}));
  a.zero = zero;
  return a;
}

std::vector<std::size_t> Sizes(const MatchedPositions& m) {
  std::vector<std::size_t> sizes;
  for (const CalculatedPosition& p : m.positions) sizes.push_back(m.At(p).size());
  return sizes;
}

}  // namespace

TEST(LinesOfAList, WidthsAreMendedAndErrorsAreThoseOfTheFitWithinReason) {
  const std::vector<PeakOfList> peaks = {{40, 1, 0.1, 0.001}, {20, 1, 0, 0},
                                         {30, 1, 0.14, 0},    {50, 1, 5, 0.01},
                                         {60, 1, 0.14, 0.5},  {60.0001, 1, 1, 1}};
  const auto lines = ObservedLines(peaks, kWave);
  ASSERT_EQ(lines.size(), 5U);  // the last one is there twice
  const std::array<double, 5> tth = {20, 30, 40, 50, 60}, width = {0.14, 0.14, 0.1, 0.14, 0.14},
                              error = {0.02, 0.02, std::hypot(0.001, 0.002),
                                       std::hypot(0.01, 0.0028), 0.02};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(lines[i].tth, tth[i]);
    EXPECT_DOUBLE_EQ(lines[i].width, width[i]);
    EXPECT_DOUBLE_EQ(lines[i].error, error[i]);
    EXPECT_NEAR(lines[i].q, std::pow(2 * std::sin(tth[i] / 2 * kRad) / kWave, 2), 1e-12);
    const double h = 1e-4;
    EXPECT_NEAR(lines[i].slope,
                (QOfTwoTheta(tth[i] + h, kWave) - QOfTwoTheta(tth[i] - h, kWave)) / (2 * h), 1e-9);
  }
}

TEST(Positions, EachHasAtMostOneLineAndEachLineOnePosition) {
  Random random(21);
  for (const Bravais& kind : kBravais) {
    const Cell cell = RandomCell(kind, random);
    auto at = Positions(cell, kind.centering, 40);
    AddErrors(at, 0.01, 0.02, random);
    const std::size_t own = at.size();
    for (int foreign = 0; foreign < 20; ++foreign) at.push_back(Uniform(random, 10, at.back()));
    const auto lines = LinesAt(at);
    const auto m = MatchLines(lines, Reciprocal(ReducedPrimitive(cell, kind.centering)), 0.02);
    std::vector<int> used(lines.size());
    std::size_t next = 0;
    int hits = 0;
    for (const CalculatedPosition& p : m.positions) {
      EXPECT_EQ(p.begin, next);  // every reflection in one position
      next = p.end;
      ASSERT_LT(p.begin, p.end);
      EXPECT_DOUBLE_EQ(p.spread, m.reflections[p.end - 1].q - m.reflections[p.begin].q);
      if (p.line < 0) continue;
      ++hits;
      EXPECT_EQ(++used[static_cast<std::size_t>(p.line)], 1);
      const ObservedLine& line = lines[static_cast<std::size_t>(p.line)];
      EXPECT_LE(std::abs(DeviationOf(line, p.q, 0.02)), 0.06 + p.spread / 2 / line.slope);
    }
    EXPECT_EQ(next, m.reflections.size());
    EXPECT_EQ(m.hits, hits);
    EXPECT_GE(hits, static_cast<int>(own) - 4);
  }
}

TEST(Positions, ReflectionsAreOneOfEachTwoOppositesUpToTheLastLine) {
  // To 20.5 of the sum of squares: half of the 1 + ... + 24 points of the first 20 shells.
  const auto lines = LinesAt(Cubic({1, 20}), 0.02);
  const auto m = MatchLines(lines, OfCubic().reciprocal, 0);
  const std::vector<std::size_t> wanted = {3,  6, 4,  3,  12, 12, 6,  15, 12,
                                           12, 4, 12, 24, 3,  24, 18, 12, 12};
  EXPECT_EQ(Sizes(m), wanted);
  EXPECT_EQ(m.hits, 2);
  EXPECT_EQ(m.positions.front().line, 0);
  EXPECT_EQ(m.positions.back().line, 1);
}

TEST(Positions, TwoLinesInAClusterPartIt) {
  // 001 at 17.66, 100 and 010 at 17.73 degrees, of lines 0.2 degrees wide.
  const Form reciprocal = Reciprocal(DirectOf({5, 5, 5.02, 90, 90, 90}));
  const double first = 2 * std::asin(kWave / 10.04) / kRad, other = 2 * std::asin(0.15406) / kRad;
  const auto one = MatchLines(LinesAt({first + 0.02, 23}, 0.2), reciprocal, 0);
  EXPECT_EQ(Sizes(one).front(), 3U);
  EXPECT_EQ(one.positions.front().line, 0);
  for (double zero : {0.0, 0.05}) {
    const auto two = MatchLines(LinesAt({first + zero, other + zero, 23}, 0.2), reciprocal, zero);
    EXPECT_EQ(Sizes(two)[0], 1U);
    EXPECT_EQ(Sizes(two)[1], 2U);
    EXPECT_EQ(two.positions[0].line, 0);
    EXPECT_EQ(two.positions[1].line, 1);
  }
  // Both beyond the cluster, or to its sides but too far away: they tell nothing apart.
  for (const auto& [low, high] : {std::pair{other + 0.01, other + 0.05},
                                  {first - 0.01, other + 0.13},
                                  {first - 0.13, other + 0.13}})
    EXPECT_EQ(Sizes(MatchLines(LinesAt({low, high, 23}, 0.2), reciprocal, 0))[0], 3U) << low;
}

TEST(Positions, OfTwoLinesTheNearerOneAndOfTwoPositionsTheNearerOne) {
  const auto at = Cubic({1, 2, 3});
  const auto lines = LinesAt({at[0] - 0.05, at[0] + 0.03, at[1] - 0.07, at[2]}, 0.1);
  const auto m = MatchLines(lines, OfCubic().reciprocal, 0);
  EXPECT_EQ(m.positions[0].line, 1);
  EXPECT_EQ(m.positions[1].line, -1);  // beyond six tenths of a width
  EXPECT_EQ(m.positions[2].line, 3);
  EXPECT_EQ(m.hits, 2);
}

TEST(Positions, ALatticeWithTooManyReflectionsOrNoneHasNone) {
  const auto lines = LinesAt({10, 50, 90});
  for (const Form& direct : {DirectOf({60, 60, 60, 90, 90, 90}), Form{1, 1, 1, 2, 2, 2}, Form{}})
    EXPECT_TRUE(MatchLines(lines, Reciprocal(direct), 0).positions.empty());
  EXPECT_TRUE(MatchLines(lines, OfCubic().reciprocal, 1e6).positions.empty());
}

// A small volume has few reflections, unless they all lie on a row.
TEST(Positions, ALatticeLikeANeedleHasNone) {
  const auto lines = LinesAt({10, 50, 90});
  const Form reciprocal = Reciprocal(DirectOf({1e-3, 1e-3, 1e5, 90, 90, 90}));
  EXPECT_LE(MatchLines(lines, reciprocal, 0).reflections.size(), 6000U);
}

TEST(Merit, IsThatOfThePapersWorkedOutByHand) {
  // Lines off by a hundredth of a degree to either side; 6 and 7, which does not exist, are not
  // among them: seven positions to 8.
  auto at = Cubic({1, 2, 3, 5, 8});
  for (std::size_t i = 0; i < at.size(); ++i) at[i] += i % 2 ? -0.01 : 0.01;
  at.push_back(25);  // a foreign line
  double dq = 0;
  for (std::size_t i = 0; i < 5; ++i)
    dq += 0.01 * std::sin(at[i] * kRad) * 2 / (kWave * kWave) * kRad / 5;
  for (double zero : {0.0, 0.04}) {
    auto shifted = at;
    for (double& x : shifted) x += zero;
    const FiguresOfMerit merit = MeritOf(LinesAt(shifted), OfCubic(zero));
    EXPECT_EQ(merit.possible, 7);
    EXPECT_NEAR(merit.f20error, 0.01, 5e-5);
    EXPECT_NEAR(merit.f20, 5 / (0.01 * 7), 0.5);
    EXPECT_NEAR(merit.m20, 8. / 36 / (2 * dq * 7), 1);
  }
}

// Not only those below what has been measured for it.
TEST(Merit, ThePositionOfTheLastLineIsAPossibleOne) {
  auto at = Cubic({1, 2, 3, 4, 5, 6, 8});
  for (double& x : at) x -= 0.01;
  EXPECT_EQ(MeritOf(LinesAt(at), OfCubic()).possible, 7);
}

TEST(Merit, CountsTheFirstTwentyLinesOnly) {
  const std::vector<int> sums = {1,  2,  3,  4,  5,  6,  8,  9,  10, 11, 12, 13,
                                 14, 16, 17, 18, 19, 20, 21, 22, 24, 25, 26};
  auto at = Cubic(sums);
  for (std::size_t i = 0; i < at.size(); ++i) at[i] += i < 20 ? 0.01 : 0.05;
  const FiguresOfMerit merit = MeritOf(LinesAt(at), OfCubic());
  EXPECT_EQ(merit.possible, 20);
  EXPECT_NEAR(merit.f20error, 0.01, 2e-5);
  EXPECT_NEAR(merit.f20, 100, 0.2);
  // Lines on their positions to the last digit, and none at all.
  const FiguresOfMerit exact = MeritOf(LinesAt(Cubic({1, 2, 3})), OfCubic());
  EXPECT_TRUE(std::isfinite(exact.m20) && exact.m20 > 1000 && exact.possible == 3);
  const FiguresOfMerit none = MeritOf(LinesAt({11, 22, 24}), OfCubic());
  EXPECT_TRUE(none.m20 == 0 && none.f20 == 0 && none.f20error == 0);
}
