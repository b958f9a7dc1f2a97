// The cards of ITO: fields, defaults, forms of lines, and what is told of unusable ones.
#include <gtest/gtest.h>

#include "index/itoproblems.h"

namespace {

std::vector<double> TwoThetas(const std::vector<double>& q) {
  std::vector<double> values;
  for (double each : q) values.push_back(TwoThetaAt(each));
  return values;
}

std::string Cards(const std::vector<double>& values, const std::string& second = "") {
  return kParameters + "\n" + second + "\n" + LineCards(values);
}

TEST(ItoCards, EveryFieldComesFromItsColumns) {
  const auto read = ReadOne(
      "9113 1-1 1 2.50 5.50   1.25000 021 2 4 5 7 0 5 3 1  123.4567    1.2345 4.5000 7\n"
      "   -0.0500       7.5      12.5\n\n\n\n");
  const ItoCards& c = read.problem.cards;
  EXPECT_EQ(c.title, "quartz");
  EXPECT_FALSE(c.manual);
  EXPECT_TRUE(c.features);
  EXPECT_TRUE(c.intensities);
  EXPECT_EQ(c.nsolmx, 3);
  EXPECT_EQ(c.nsyst, (std::array{1, -1, 1}));
  EXPECT_EQ(c.tol2, 2.5f);
  EXPECT_EQ(c.tol3, 5.5f);
  EXPECT_EQ(c.wavel, 1.25f);
  EXPECT_EQ(c.linco, 0);
  EXPECT_TRUE(c.zerocheck);
  EXPECT_EQ(c.print, 1);
  EXPECT_EQ(c.nq1, 2);
  EXPECT_EQ(c.nq2, 4);
  EXPECT_EQ(c.nz1, 5);
  EXPECT_EQ(c.nz2, 7);
  EXPECT_EQ(c.nr, 0);
  EXPECT_EQ(c.indat, 5);
  EXPECT_EQ(c.list, 3);
  EXPECT_EQ(c.test, 1);
  EXPECT_EQ(c.teststage, 7);
  EXPECT_EQ(c.wmol, 123.4567f);
  EXPECT_EQ(c.dobs, 1.2345f);
  EXPECT_FLOAT_EQ(c.tolg, 0.045f);
  EXPECT_EQ(c.zercor, -0.05f);
  EXPECT_EQ(c.prntmr, 7.5f);
  EXPECT_EQ(c.prntln, 12.5f);
}

TEST(ItoCards, BlankFieldsTakeTheirValues) {
  const ItoCards c = ReadOne("\n\n\n").problem.cards;
  EXPECT_TRUE(c.manual);
  EXPECT_FALSE(c.features);
  EXPECT_FALSE(c.intensities);
  EXPECT_FALSE(c.zerocheck);
  EXPECT_EQ((std::array{c.nsolmx, c.nq1, c.nq2, c.nz1, c.nz2, c.nr, c.indat, c.list, c.test,
                        c.teststage}),
            (std::array{4, 3, 6, 6, 6, 0, 5, 1, 0, 0}));
  EXPECT_EQ((std::array{c.tol2, c.tol3, c.wavel, c.prntmr, c.prntln}),
            (std::array{3.0f, 4.5f, 1.5406f, 4.0f, 14.0f}));
  EXPECT_FLOAT_EQ(c.tolg, 0.06f);
}

TEST(ItoCards, NumbersWithoutAPointAndLimitsInTheWrongOrder) {
  // 4 and 14 without a point are hundred-thousandths, and those are blank fields.
  const ItoCards c = ReadOne(
                         "9                                 7 5 9 2\n"
                         "      2000         4        14\n\n")
                         .problem.cards;
  EXPECT_EQ((std::array{c.zercor, c.prntmr, c.prntln}), (std::array{0.02f, 4.0f, 14.0f}));
  EXPECT_EQ((std::array{c.nq1, c.nq2, c.nz1, c.nz2}), (std::array{5, 7, 2, 9}));
  EXPECT_EQ(c.teststage, 0);
  EXPECT_EQ(
      ReadOne("9                                                1\n\n\n").problem.cards.teststage,
      99);
}

TEST(ItoCards, AllFormsGiveTheSameLines) {
  const auto q = EvenQ(22);
  std::vector<double> d;
  for (double each : q) d.push_back(100 / std::sqrt(each));
  const auto angles = ReadOne(Cards(TwoThetas(q))).problem, numbers = ReadOne(Cards(q)).problem,
             distances = ReadOne(Cards(d)).problem;
  for (const ItoProblem* each : {&angles, &numbers, &distances}) {
    ASSERT_EQ(each->lines.size(), q.size());
    for (std::size_t i = 0; i < q.size(); ++i) {
      EXPECT_NEAR(each->lines[i].q, q[i], 2e-4 * q[i]);
      EXPECT_NEAR(each->lines[i].twotheta, TwoThetaAt(q[i]), 2e-3);
    }
  }
}

TEST(ItoCards, TheZeroCorrectionIsAddedInEveryForm) {
  const auto q = EvenQ(20);
  std::vector<double> d, large;
  for (double each : q) d.push_back(100 / std::sqrt(each));
  const std::string zero = "      0.25";
  for (const auto& cards : {Cards(TwoThetas(q), zero), Cards(q, zero), Cards(d, zero)}) {
    const ItoLine line = ReadOne(cards).problem.lines[3];
    EXPECT_NEAR(line.twotheta, TwoThetaAt(q[3]) + 0.25, 2e-3);
    EXPECT_NEAR(line.q, QAt(TwoThetaAt(q[3]) + 0.25), 0.05);
  }
}

TEST(ItoCards, SeveralLinesToACardWithAndWithoutIntensities) {
  const auto q = EvenQ(20);
  std::string plain = kParameters + "\n\n", labelled = "9014" + kParameters.substr(4) + "\n\n";
  for (int i = 0; i < 20; ++i) {
    const bool last = i % 8 == 7 || i == 19;
    plain += WriteRecord<"(f10.5,a)">(q[i], last ? "\n" : "");
    labelled += WriteRecord<"(f7.3,a2,1x,a)">(q[i], i == 2 ? "vs" : "3 ", last ? "\n" : "");
  }
  for (const auto& cards : {plain, labelled}) {
    const auto read = ReadOne(cards + "\n");
    EXPECT_EQ(read.reading, ItoReading::Run);
    ASSERT_EQ(read.problem.lines.size(), 20u);
    EXPECT_EQ(read.problem.lines[9].q, 460.0f);
  }
  EXPECT_EQ(ReadOne(labelled + "\n").problem.lines[2].label, "vs");
  EXPECT_EQ(ReadOne(labelled + "\n").problem.lines[3].label, "3 ");
  EXPECT_EQ(ReadOne(plain + "\n").problem.lines[3].label, "  ");
}

TEST(ItoCards, LinesOutOfOrderNegativeAndTwice) {
  auto q = EvenQ(22);
  std::swap(q[10], q[15]);
  q[7] = -q[7];
  q[1] = q[0];
  const auto read = ReadOne(Cards(q));
  ASSERT_EQ(read.problem.lines.size(), 21u);
  for (int i = 1; i < 21; ++i) EXPECT_LE(read.problem.lines[i - 1].q, read.problem.lines[i].q);
  EXPECT_TRUE(Holds(read.listing, " the input value  100.00000 appears twice"));
  EXPECT_EQ(read.problem.eqtol, 0.5f);
}

TEST(ItoCards, TheFirstSixLinesDecideTheForm) {
  auto q = EvenQ(20);
  std::swap(q[4], q[5]);  // falls within them: taken as d, which no line has
  EXPECT_EQ(ReadOne(Cards(q)).problem.lines[0].q, 1e4f / (860 * 860));
  std::swap(q[4], q[5]);
  std::swap(q[5], q[6]);
  EXPECT_EQ(ReadOne(Cards(q)).problem.lines[0].q, 100.0f);
}

TEST(ItoCards, TwentyLinesAreNeededAndFortyUsed) {
  const auto few = ReadOne(Cards(EvenQ(19)));
  EXPECT_EQ(few.reading, ItoReading::Skip);
  EXPECT_EQ(few.problem.lines.size(), 19u);
  EXPECT_TRUE(Holds(few.listing, "the number of useful lines  is  19"));
  EXPECT_EQ(ReadOne(Cards(EvenQ(20))).reading, ItoReading::Run);
  for (int n : {40, 41, 191, 250}) {
    const auto lines = ReadOne(Cards(EvenQ(n))).problem.lines;
    ASSERT_EQ(lines.size(), 40u) << n;
    EXPECT_EQ(lines.back().q, 1660.0f);
  }
}

TEST(ItoCards, AtMost190LinesAreTaken) {
  auto q = EvenQ(191);
  q[189] = 99;
  q[190] = 98;
  EXPECT_EQ(ReadOne(Cards(q)).problem.lines[0].q, 99.0f);
}

TEST(ItoCards, CountedLines) {
  std::string cards = kParameters + std::string(15, ' ') + "1\n\n        21\n";
  for (int i = 0; i < 24; ++i)  // three more than counted
    cards += WriteRecord<"(f10.5,10x,a)">(100.0 + 40 * i, i % 4 == 3 ? "\n" : "");
  const auto read = ReadOne(cards);
  EXPECT_EQ(read.reading, ItoReading::Run);
  EXPECT_EQ(read.problem.lines.size(), 21u);
  EXPECT_EQ(read.problem.lines.back().q, 900.0f);
}

TEST(ItoCards, ProblemsFollowEachOtherUpToTheEnd) {
  const auto results = ReadProblems("one\n" + Cards(EvenQ(19)) + "two\n" + Cards(EvenQ(20)) +
                                    " end of it\nthree\n" + Cards(EvenQ(20)));
  ASSERT_EQ(results.size(), 3u);
  EXPECT_EQ(results[0].reading, ItoReading::Skip);
  EXPECT_EQ(results[1].reading, ItoReading::Run);
  EXPECT_EQ(results[1].problem.cards.title, "two");
  EXPECT_TRUE(Holds(results[2].listing, "\n1two\n"));
  EXPECT_EQ(ReadProblems("end\n").size(), 1u);
  EXPECT_EQ(ReadProblems("").size(), 1u);
}

TEST(ItoCards, CarriageReturnsAndLongTitlesDoNotMatter) {
  std::string cards = std::string(90, 't') + "\n" + Cards(EvenQ(20)) + "end\n", dos;
  for (char c : cards) dos += c == '\n' ? "\r\n" : std::string(1, c);
  const auto read = ReadProblems(dos);
  EXPECT_EQ(read[0].reading, ItoReading::Run);
  EXPECT_EQ(read[0].problem.cards.title, std::string(80, 't'));
}

TEST(ItoCards, AnUnreadableOrMissingCardEndsTheRunAndIsTold) {
  auto cards = Cards(EvenQ(20));
  const auto bad = ReadProblems("one\n" + cards.insert(cards.find("140.0"), "x") + "end\n");
  ASSERT_EQ(bad.size(), 1u);
  EXPECT_TRUE(Holds(bad[0].listing, "input line     5: a card that cannot be read"));
  EXPECT_TRUE(Holds(bad[0].listing, "x140.0000"));
  const auto cut = ReadProblems("one\n" + kParameters + "\n\n   10.0000\n");
  ASSERT_EQ(cut.size(), 1u);
  EXPECT_TRUE(Holds(cut[0].listing, "the input ends within a problem"));
}

TEST(ItoCards, CombinationsByHand) {
  const std::string parameters = kParameters + " 1\n\n" + LineCards(EvenQ(20));
  const auto read = ReadOne(parameters +
                            "    100.00    140.00\n    100.00    180.00     20.00\n"
                            "    100.00    140.00       .08     500.0\n"
                            "    100.00\n    100.00    100.00    200.00\n\n");
  EXPECT_EQ(read.reading, ItoReading::Run);
  const auto& c = read.problem.combinations;
  ASSERT_EQ(c.size(), 3u);  // without the lone line and the one that is no zone
  EXPECT_EQ((std::array{c[0].q1, c[0].q2, c[0].cross, c[0].quality}),
            (std::array{100.0f, 140.0f, 0.0f, 0.0f}));
  EXPECT_EQ((std::array{c[1].q2, c[1].cross}), (std::array{180.0f, 20.0f}));
  EXPECT_EQ((std::array{c[2].cross, c[2].quality}), (std::array{0.08f, 500.0f}));
  EXPECT_EQ(read.problem.cards.nq2, 20);
  EXPECT_TRUE(Holds(read.listing, "no lines or no zone"));
  std::string many;
  for (int i = 0; i < 39; ++i) many += "    100.00    140.00\n";
  EXPECT_EQ(ReadOne(parameters + many).problem.combinations.size(), 39u);
  EXPECT_EQ(ReadOne(parameters + many).reading, ItoReading::Run);  // without a blank card
}

TEST(ItoCards, TrialLattices) {
  const std::string start = kParameters + std::string(13, ' ') + "3\n\n" + LineCards(EvenQ(20));
  const auto read = ReadOne(start +
                            "     100.0      81.5      60.0      10.0      20.0      30.0\n"
                            "     100.0       5.0      60.0\n"
                            "     100.0      81.5      60.0     150.0\n");
  ASSERT_EQ(read.problem.trials.size(),
            1u);  // without the one of too long an edge and the one of no cell
  const Lattice& t = read.problem.trials[0];
  EXPECT_EQ((std::array{t.a, t.b, t.c, t.d, t.e, t.f}),
            (std::array{100.0f, 81.5f, 60.0f, 10.0f, 20.0f, 30.0f}));
  EXPECT_EQ(read.reading, ItoReading::Run);
  EXPECT_EQ(ReadOne(start + "\n\n\n").reading, ItoReading::Skip);
}

}  // namespace
