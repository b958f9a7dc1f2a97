// The cards of ITO: fields, defaults, forms of lines, and what is told of unusable ones.
#include <gtest/gtest.h>

#include "index/simulate.h"

namespace {

std::string Cards(const std::vector<double>& values, const std::string& second = "") {
  return kParameters + "\n" + second + "\n" + LineCards(values);
}

// 4 and 14 without a point are hundred-thousandths, and those are blank fields; limits in the wrong
// order change places.
TEST(ItoCards, FieldsComeFromTheirColumns) {
  const struct {
    const char* cards;
    std::array<bool, 4> flags;
    std::array<int, 14> whole;
    std::array<float, 9> real;
  } cases[] = {
      {"9113 1-1 1 2.50 5.50   1.25000 021 2 4 5 7 0 5 3 1  123.4567    1.2345 4.5000 7\n"
       "   -0.0500       7.5      12.5\n\n\n\n",
       {false, true, true, true},
       {3, 1, -1, 1, 0, 1, 2, 4, 5, 7, 0, 5, 3, 7},
       {2.5f, 5.5f, 1.25f, 123.4567f, 1.2345f, 0.01f * 4.5f, -0.05f, 7.5f, 12.5f}},
      {"\n\n\n",
       {true, false, false, false},
       {4, 0, 0, 0, 0, 0, 3, 6, 6, 6, 0, 5, 1, 0},
       {3, 4.5f, 1.5406f, 0, 0, 0.01f * 6, 0, 4, 14}},
      {"9                                 7 5 9 2       1\n      2000         4        14\n\n",
       {false, false, false, false},
       {4, 0, 0, 0, 0, 0, 5, 7, 2, 9, 0, 5, 1, 99},
       {3, 4.5f, 1.5406f, 0, 0, 0.01f * 6, 0.02f, 4, 14}},
  };
  for (const auto& each : cases) {
    const ItoCards c = ReadOne(each.cards).problem.cards;
    EXPECT_EQ((std::array{c.manual, c.features, c.intensities, c.zerocheck}), each.flags);
    EXPECT_EQ((std::array{c.nsolmx, c.nsyst[0], c.nsyst[1], c.nsyst[2], c.linco, c.print, c.nq1,
                          c.nq2, c.nz1, c.nz2, c.nr, c.indat, c.list, c.teststage}),
              each.whole);
    EXPECT_EQ(
        (std::array{c.tol2, c.tol3, c.wavel, c.wmol, c.dobs, c.tolg, c.zercor, c.prntmr, c.prntln}),
        each.real);
  }
}

// The zero correction is added in every form.
TEST(ItoCards, AllFormsGiveTheSameLines) {
  const auto q = EvenQ(22);
  std::vector<double> angles, d;
  for (double each : q) (angles.push_back(AngleAt(each)), d.push_back(100 / std::sqrt(each)));
  for (const double zero : {0.0, 0.25})
    for (const auto& form : {angles, q, d}) {
      const auto lines = ReadOne(Cards(form, WriteRecord<"(f10.2)">(zero))).problem.lines;
      ASSERT_EQ(lines.size(), q.size());
      for (std::size_t i = 0; i < q.size(); ++i) {
        EXPECT_NEAR(lines[i].twotheta, AngleAt(q[i]) + zero, 2e-3);
        EXPECT_NEAR(lines[i].q, QAt(AngleAt(q[i]) + zero), 2e-4 * q[i]);
      }
    }
}

TEST(ItoCards, SeveralLinesToACard) {
  const auto q = EvenQ(24);
  std::string plain = kParameters + "\n\n", labelled = "9014" + kParameters.substr(4) + "\n\n";
  for (int i = 0; i < 20; ++i) {
    const char* end = i % 8 == 7 || i == 19 ? "\n" : "";
    plain += WriteRecord<"(f10.5,a)">(q[i], end);
    labelled += WriteRecord<"(f7.3,a2,1x,a)">(q[i], i == 2 ? "vs" : "3 ", end);
  }
  std::string counted;  // as many as counted, and three more
  for (int i = 0; i < 24; ++i)
    counted += WriteRecord<"(f10.5,10x,a)">(q[i], i % 4 == 3 ? "\n" : "");
  const std::string head = With(46, "1") + "\n\n        ";
  for (const auto& [cards, n, label] : {std::tuple(plain + "\n", 20u, "  "),
                                        {labelled + "\n", 20u, "vs"},
                                        {head + "21\n" + counted, 21u, "  "},
                                        {head + "24\n" + counted, 24u, "  "}}) {
    const auto read = ReadOne(cards);
    EXPECT_EQ(read.reading, ItoReading::Run);
    ASSERT_EQ(read.problem.lines.size(), n);
    for (std::size_t i = 0; i < n; ++i) EXPECT_EQ(read.problem.lines[i].q, q[i]);
    EXPECT_EQ(read.problem.lines[2].label, label);
    for (const char* number : {"\n    1 ", "\n   20 "}) EXPECT_TRUE(Holds(read.listing, number));
  }
}

TEST(ItoCards, LinesInAnyOrder) {
  auto q = EvenQ(22);
  std::swap(q[10], q[15]);
  q[7] = -q[7];
  q[1] = q[0];
  auto read = ReadOne(Cards(q));
  ASSERT_EQ(read.problem.lines.size(), 21u);
  EXPECT_TRUE(std::ranges::is_sorted(read.problem.lines, {}, &ItoLine::q));
  EXPECT_TRUE(Holds(read.listing, " the input value  100.00000 appears twice"));
  EXPECT_EQ(read.problem.eqtol, 0.5f);
  q = EvenQ(20);
  std::swap(q[4], q[5]);  // falls within the first six: taken as d, which no line has
  EXPECT_FLOAT_EQ(ReadOne(Cards(q)).problem.lines[0].q, 1e4f / (860 * 860));
  std::swap(q[4], q[5]);
  std::swap(q[5], q[6]);
  EXPECT_EQ(ReadOne(Cards(q)).problem.lines[0].q, 100.0f);
}

TEST(ItoCards, TwentyLinesAreNeeded190TakenAndFortyUsed) {
  const auto few = ReadOne(Cards(EvenQ(19)));
  EXPECT_EQ(few.reading, ItoReading::Skip);
  EXPECT_EQ(few.problem.lines.size(), 19u);
  EXPECT_TRUE(Holds(few.listing, "the number of useful lines  is  19"));
  EXPECT_EQ(ReadOne(Cards(EvenQ(20))).reading, ItoReading::Run);
  auto many = EvenQ(191);
  EXPECT_EQ(ReadOne(Cards(many)).problem.lines.back().q, 1660.0f);
  many[189] = 99, many[190] = 98;
  const auto lines = ReadOne(Cards(many)).problem.lines;
  EXPECT_EQ(lines.size(), 40u);
  EXPECT_EQ(lines[0].q, 99.0f);
}

TEST(ItoCards, ProblemsFollowEachOtherUpToTheEnd) {
  const std::string cards = std::string(90, 't') + "\n" + Cards(EvenQ(19)) + "two\n" +
                            Cards(EvenQ(20)) + " end of it\nthree\n" + Cards(EvenQ(20));
  std::string dos;
  for (char c : cards) dos += c == '\n' ? "\r\n" : std::string(1, c);
  for (const std::string& input : {cards, dos}) {
    const auto results = ReadProblems(input);
    ASSERT_EQ(results.size(), 3u);
    EXPECT_EQ(results[0].reading, ItoReading::Skip);
    EXPECT_EQ(results[0].problem.cards.title, std::string(80, 't'));
    EXPECT_EQ(results[1].reading, ItoReading::Run);
    EXPECT_TRUE(Holds(results[2].listing, "\n1two\n"));
  }
  EXPECT_EQ(ReadProblems("end\n").size(), 1u);
  EXPECT_EQ(ReadProblems("").size(), 1u);
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
  const std::string start = kParameters + " 1\n\n" + LineCards(EvenQ(20));
  // Three, one of a lone line, one of a line that no angle has, and one that is no zone.
  const auto read = ReadOne(start +
                            "    100.00    140.00\n    100.00    180.00     20.00\n"
                            "    100.00    140.00       .08     500.0\n    100.00\n"
                            "    100.00  17000.00\n    100.00    100.00    200.00\n\n");
  EXPECT_EQ(read.reading, ItoReading::Run);
  const auto& c = read.problem.combinations;
  ASSERT_EQ(c.size(), 3u);
  EXPECT_EQ((std::array{c[0].q1, c[0].q2, c[0].cross, c[0].quality}),
            (std::array{100.0f, 140.0f, 0.0f, 0.0f}));
  EXPECT_EQ((std::array{c[1].q2, c[1].cross}), (std::array{180.0f, 20.0f}));
  EXPECT_EQ((std::array{c[2].cross, c[2].quality}), (std::array{0.08f, 500.0f}));
  EXPECT_EQ(read.problem.cards.nq2, 20);
  EXPECT_EQ(Count(read.listing, "no lines or no zone"), 3);
  std::string many;  // without a blank card
  for (int i = 0; i < 39; ++i) many += "    100.00    140.00\n";
  EXPECT_EQ(ReadOne(start + many).problem.combinations.size(), 39u);
  EXPECT_EQ(ReadOne(start + many).reading, ItoReading::Run);
}

TEST(ItoCards, TrialLattices) {
  const std::string start = With(44, "3") + "\n\n" + LineCards(EvenQ(20));
  // One, one of too long an edge, and one of no cell.
  const auto read = ReadOne(start +
                            "     100.0      81.5      60.0      10.0      20.0      30.0\n"
                            "     100.0       5.0      60.0\n"
                            "     100.0      81.5      60.0     150.0\n");
  ASSERT_EQ(read.problem.trials.size(), 1u);
  EXPECT_EQ(FormOf(read.problem.trials[0]), (Form{100, 81.5, 60, 10, 20, 30}));
  EXPECT_EQ(read.reading, ItoReading::Run);
  EXPECT_EQ(ReadOne(start + "\n\n\n").reading, ItoReading::Skip);
}

}  // namespace
