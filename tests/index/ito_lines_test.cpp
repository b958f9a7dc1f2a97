// What follows from the lines: windows, tolerances, limits, pairs and probabilities, each against
// the formula in double precision.
#include <gtest/gtest.h>

#include <algorithm>

#include "index/itoproblems.h"

namespace {

// Lines at q of a list, with the tolerance card's columns 71-78 if wanted.
ReadResult ReadQ(const std::vector<double>& q, const std::string& tolg = "") {
  std::string parameters = kParameters;
  if (!tolg.empty()) (parameters.resize(70, ' '), parameters += tolg);
  return ReadOne(parameters + "\n\n" + LineCards(q));
}

double High(double q, double tolerance) { return QAt(TwoThetaAt(q) + tolerance); }

// The accuracy that the first 20 lines need, by the tolerance of the windows.
double Accuracy(const std::vector<double>& q, double tolerance) {
  double sum = 0;
  for (int i = 0; i < 20; ++i) sum += 2 * (High(q[i], tolerance) - q[i]);
  return tolerance * q[19] / 1000 / (sum / 40);
}

void ExpectWindows(const ItoProblem& problem, const std::vector<double>& q, double tolerance) {
  EXPECT_NEAR(problem.cards.tolg, tolerance, 1e-4 * tolerance);
  for (std::size_t i = 0; i < q.size(); ++i) {
    EXPECT_NEAR(problem.lines[i].high, High(q[i], tolerance), 0.005);
    EXPECT_NEAR(problem.lines[i].low, 2 * q[i] - High(q[i], tolerance), 0.005);
  }
}

TEST(ItoLines, AToleranceOfTheCardStands) {
  const auto q = EvenQ(25);
  const auto read = ReadQ(q, "  5.0000");
  ExpectWindows(read.problem, q, 0.05);
  const double accuracy = Accuracy(q, 0.05);
  EXPECT_TRUE(Holds(read.listing, WriteRecord<"('*   less than ',f8.3)">(accuracy)));
}

TEST(ItoLines, WithoutOneItFollowsTheLines) {
  const auto q = EvenQ(25);
  const double accuracy = Accuracy(q, 0.06);
  ASSERT_LT(2 * accuracy, 0.059);
  ExpectWindows(ReadQ(q).problem, q, 2 * accuracy);
  // Lines of a small cell, at high angles.
  const auto far = EvenQ(25, 2000, 500);
  ASSERT_GT(2 * Accuracy(far, 0.06), 0.06);
  ExpectWindows(ReadQ(far).problem, far, 0.06);
}

TEST(ItoLines, ATooLargeToleranceSkipsTheProblem) {
  const auto read = ReadQ(EvenQ(20), "  35000.");
  EXPECT_EQ(read.reading, ItoReading::Skip);
  EXPECT_TRUE(Holds(read.listing, "is too large"));
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
  const double degrees = TwoThetaAt(q[12]) - TwoThetaAt(q[11]);
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
  const auto& pairs = ReadQ(q).problem.combinations;
  std::vector<std::pair<float, float>> expected;
  for (int i = 0; i < 3; ++i)
    for (int j = i; j < 6; ++j)
      if (j < 5 || i > 0 || q[j] != 405.5) expected.emplace_back(q[i], q[j]);
  ASSERT_EQ(pairs.size(), expected.size());
  for (std::size_t i = 0; i < pairs.size(); ++i)
    EXPECT_EQ(std::pair(pairs[i].q1, pairs[i].q2), expected[i]);
}

TEST(ItoLines, ProbabilitiesOfTheTenthsOfTheRange) {
  const auto q = EvenQ(40);
  const auto read = ReadQ(q, "  1.0000");
  const double u = High(q[39], 0.01) / 10;
  EXPECT_NEAR(read.problem.binwidth, u, 1e-3);
  for (int bin = 1; bin <= 10; ++bin) {
    double sum = 0;
    for (double each : q)
      if (static_cast<int>(0.99 + each / u) == bin) sum += 2 * (High(each, 0.01) - each);
    EXPECT_NEAR(read.problem.probability[bin], sum / u * std::sqrt(bin), 2e-3 * std::sqrt(bin));
  }
  const auto crowded = ReadQ(q, "100.0000").problem.probability;
  EXPECT_EQ(crowded[10], 0.5f);
  std::vector<double> gap = EvenQ(19);
  gap.push_back(4000);
  EXPECT_EQ(ReadQ(gap).problem.probability[7], 0.0001f);
}

TEST(ItoLines, ValuesThatNoLineCanHaveAreIgnoredAndTold) {
  auto q = EvenQ(21);
  q.push_back(20000);  // beyond 180 degrees
  const auto read = ReadQ(q);
  EXPECT_EQ(read.problem.lines.size(), 21u);
  EXPECT_TRUE(Holds(read.listing, "20000.0000, it is ignored"));
  // A zero correction that moves the first lines below 0.
  const auto shifted = ReadOne(kParameters + "\n     -15.0\n" + LineCards(EvenQ(21, 100)));
  EXPECT_EQ(shifted.reading, ItoReading::Skip);
  for (const ItoLine& line : shifted.problem.lines) EXPECT_GT(line.twotheta, 0);
  // A wavelength for which there is none at all.
  EXPECT_TRUE(
      ReadOne("9004 0 0 0               9e30\n\n" + LineCards(EvenQ(21))).problem.lines.empty());
}

}  // namespace
