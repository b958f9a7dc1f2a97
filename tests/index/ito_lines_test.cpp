// What follows from the lines: windows, tolerances, limits, pairs and probabilities, each against
// the formula in double precision.
#include <gtest/gtest.h>

#include "index/simulate.h"

namespace {

// Lines at q of a list, with the tolerance card's columns 71-78.
ReadResult ReadQ(const std::vector<double>& q, const std::string& tolg = "") {
  return ReadOne(With(71, tolg) + "\n\n" + LineCards(q));
}

double High(double q, double tolerance) { return QAt(AngleAt(q) + tolerance); }

// The accuracy that the first 20 lines need, by the tolerance of the windows.
double Accuracy(const std::vector<double>& q, double tolerance) {
  double sum = 0;
  for (int i = 0; i < 20; ++i) sum += 2 * (High(q[i], tolerance) - q[i]);
  return tolerance * q[19] / 1000 / (sum / 40);
}

// That of the card stands; without one it is twice the accuracy, but no more than 0.06, as for the
// lines of a small cell at high angles.
TEST(ItoLines, WindowsFollowTheTolerance) {
  const auto q = EvenQ(25), far = EvenQ(25, 2000, 500);
  const double accuracy = Accuracy(q, 0.06);
  ASSERT_TRUE(2 * accuracy < 0.059 && 2 * Accuracy(far, 0.06) > 0.06);
  for (const auto& [lines, tolg, tolerance] :
       {std::tuple(q, "  5.0000", 0.05), {q, "", 2 * accuracy}, {far, "", 0.06}}) {
    const auto read = ReadQ(lines, tolg);
    EXPECT_NEAR(read.problem.cards.tolg, tolerance, 1e-4 * tolerance);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      EXPECT_NEAR(read.problem.lines[i].high, High(lines[i], tolerance), 0.005);
      EXPECT_NEAR(read.problem.lines[i].low, 2 * lines[i] - High(lines[i], tolerance), 0.005);
    }
    EXPECT_TRUE(Holds(read.listing, WriteRecord<"('*   less than ',f8.3)">(
                                        Accuracy(lines, *tolg ? tolerance : 0.06))));
  }
  const auto wide = ReadQ(EvenQ(20), "  35000.");
  EXPECT_EQ(wide.reading, ItoReading::Skip);
  EXPECT_TRUE(Holds(wide.listing, "is too large"));
}

TEST(ItoLines, EqualValuesFollowTheClosestPair) {
  auto q = EvenQ(24);
  EXPECT_FLOAT_EQ(ReadQ(q).problem.eqtol, 0.8f);  // 40 apart
  q[12] = q[11] + 5;
  EXPECT_NEAR(ReadQ(q).problem.eqtol, 5.0 / 8, 1e-5);
  EXPECT_FALSE(Holds(ReadQ(q).listing, "are close"));
  q[12] = q[11] + 1.25;
  const auto read = ReadQ(q);
  EXPECT_FLOAT_EQ(read.problem.eqtol, 0.5f);
  const double degrees = AngleAt(q[12]) - AngleAt(q[11]);
  EXPECT_TRUE(Holds(read.listing,
                    "lines 12 and 13 are close:   1.25 in q," + WriteRecord<"(f7.3)">(degrees)));
  EXPECT_TRUE(Holds(read.listing, "differ less than 0.5"));
  // Sparse lines: the twentieth at 10000, all more than 8 x 5 apart.
  EXPECT_FLOAT_EQ(ReadQ(EvenQ(20, 500, 500)).problem.eqtol, 5.0f);
}

TEST(ItoLines, TheFirstLineLimitsTheCell) {
  auto q = EvenQ(20);
  q[0] = 34.1;
  const auto read = ReadQ(q);
  EXPECT_EQ(read.reading, ItoReading::Run);
  EXPECT_NEAR(read.problem.abclimit, 34.1 / 17, 1e-6);
  EXPECT_TRUE(Holds(read.listing, WriteRecord<"(f9.2)">(100 / std::sqrt(34.1 / 17))));
  q[0] = 33.9;
  EXPECT_EQ(ReadQ(q).reading, ItoReading::Skip);
}

TEST(ItoLines, PairsOfTheFirstLinesWithoutSecondOrders) {
  auto q = EvenQ(23);
  q.erase(q.begin() + 5, q.begin() + 8);
  q[5] = 405.5;  // within 6 of four times the first
  std::vector<std::pair<float, float>> expected, found;
  for (int i = 0; i < 3; ++i)
    for (int j = i; j < 6; ++j)
      if (j < 5 || i > 0) expected.emplace_back(q[i], q[j]);
  for (const LineCombination& pair : ReadQ(q).problem.combinations)
    found.emplace_back(pair.q1, pair.q2);
  EXPECT_EQ(found, expected);
}

// Beyond 180 degrees, below 0 by a zero correction, and all by their wavelength.
TEST(ItoLines, ValuesThatNoLineCanHaveAreIgnoredAndTold) {
  auto q = EvenQ(21);
  q.push_back(20000);
  const auto read = ReadQ(q);
  EXPECT_EQ(read.problem.lines.size(), 21u);
  EXPECT_TRUE(Holds(read.listing, "20000.0000, it is ignored"));
  const auto shifted = ReadOne(kParameters + "\n     -15.0\n" + LineCards(EvenQ(21)));
  EXPECT_EQ(shifted.reading, ItoReading::Skip);
  for (const ItoLine& line : shifted.problem.lines) EXPECT_GT(line.twotheta, 0);
  EXPECT_TRUE(ReadOne(With(25, "9e30  ") + "\n\n" + LineCards(q)).problem.lines.empty());
}

}  // namespace
