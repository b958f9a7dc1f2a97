// Lines and limits of a data set of TREOR90.
#include <gtest/gtest.h>

#include "index/treor/lines.h"
#include "index/treor/listing.h"
#include "index/treorsimulate.h"

namespace {

using treor::DataSet;

bool Read(DataSet& data, const std::string& cards) {
  WriteFile(data.dir.file("in"), cards);
  LineReader input(data.dir.file("in"));
  return ReadLines(input, data.search);
}

// The two-theta whose s is the given one.
double At(double s) { return 2 * std::asin(std::sqrt(s)) / treor::kRad; }

std::vector<TreorLine> LinesAt(const std::vector<double>& s) {
  std::vector<double> twotheta;
  for (const double each : s) twotheta.push_back(At(each));
  return treor::LinesOf(twotheta);
}

TEST(TreorLines, AreReadUpToABlankCard) {
  DataSet data;
  ASSERT_TRUE(Read(data, "   60.000000    one\n   30.0\n    90\n\n10.0\n"));
  ASSERT_EQ(data.search.all.size(), 3u);
  EXPECT_FLOAT_EQ(data.search.all[0].s, 0.0669873f) << "rising: sin(15) squared comes first";
  EXPECT_FLOAT_EQ(data.search.all[1].s, 0.25f);
  EXPECT_FLOAT_EQ(data.search.all[2].s, 0.5f);
  EXPECT_EQ(data.search.all[1].code, 25000);
  EXPECT_EQ(data.search.all[1].label, "one");
  EXPECT_EQ(data.Text(), "       60.000000\n       30.000000\n       90.000000\n");
}

TEST(TreorLines, OfMoreThan99TheRestIsPassedOver) {
  DataSet data;
  std::string cards;
  for (int i = 1; i <= 120; ++i) cards += std::to_string(i) + ".\n";
  ASSERT_TRUE(Read(data, cards + "0\n"));
  ASSERT_EQ(data.search.all.size(), 99u);
  EXPECT_NEAR(data.search.all.back().s, std::pow(std::sin(49.5 * treor::kRad), 2), 1e-6);
}

TEST(TreorLines, WithoutAnEndOrANumberAreInvalid) {
  for (const char* cards : {"", "10.0\n", "10.0\nten\n\n", "CHOICE=3,\n"}) {
    DataSet data;
    EXPECT_FALSE(Read(data, cards)) << cards;
  }
}

// Lines 1, 2 and 3 of no common multiple, with their orders among others.
const std::vector<double> kLines{0.010, 0.017, 0.023, 0.031, 0.04015, 0.0680, 0.0903, 0.11, 0.1603};

TEST(TreorLines, HigherOrdersAreNoneOfTheSearch) {
  DataSet data;
  data.search.all = LinesAt(kLines);
  PrepareLines(data.search);
  // 4 x 0.010 within 0.0002, 4 x 0.017 within 0.0004, 9 x 0.010 and 16 x 0.010 within 0.0004.
  EXPECT_EQ(data.search.all.size(), 9u);
  ASSERT_EQ(data.search.lines.size(), 5u);
  EXPECT_NEAR(data.search.lines[3].s, 0.031, 1e-6);
  EXPECT_NEAR(data.search.lines[4].s, 0.11, 1e-6);
  EXPECT_EQ(data.search.options.use, 5);
  EXPECT_EQ(data.search.options.iq, 2);
  const std::string text = data.Text();
  EXPECT_EQ(text.rfind(" LINE NUMBER=  5 SHOULD NOT BE INCLUDED IN THE TREOR", 0), 0u);
  EXPECT_NE(text.find(" SQ IS  4 TIMES SQ OF LINE NUMBER=  1\n"), text.npos);
  for (const char* order : {"=  6 SHOULD", "=  7 SHOULD", "=  9 SHOULD"})
    EXPECT_NE(text.find(order), text.npos) << "numbers are those of all lines";
}

TEST(TreorLines, HigherOrdersPutTheFirstRight) {
  DataSet data;
  data.search.options.idiv = 1;
  data.search.all = LinesAt(kLines);
  PrepareLines(data.search);
  EXPECT_NEAR(data.search.all[0].s, 0.1603 / 16, 1e-6) << "the highest order has the last word";
  EXPECT_NEAR(data.search.all[1].s, 0.0680 / 4, 1e-6);
  EXPECT_NEAR(data.search.all[2].s, 0.023, 1e-6) << "0.0903 is too far from 4 x 0.023";
}

TEST(TreorLines, CountOfTestLines) {
  std::vector<double> s;
  for (int i = 0; i < 30; ++i) s.push_back(0.101 + 0.005 * i);  // no orders among them
  struct Case {
    int use, iq;
    std::size_t lines;
    double factor;
    int wantuse, wantiq;
  };
  for (const Case& c :
       {Case{-1, -1, 30, 1, 19, 16}, Case{-1, -1, 12, 1, 12, 9}, Case{25, -1, 30, 1, 25, 22},
        Case{10, 4, 30, 1, 10, 4}, Case{50, -1, 30, 1, 30, 27}, Case{-1, -1, 0, 1, 0, -3},
        // 0.327 / 2 lies between the 13th and the 14th line.
        Case{-1, -1, 30, 2, 13, 10}, Case{15, 4, 30, 2, 13, 10}, Case{13, 4, 30, 2, 13, 4}}) {
    DataSet data;
    data.search.options.use = c.use;
    data.search.options.iq = c.iq;
    auto shorter = s;
    shorter.resize(c.lines);
    for (double& each : shorter) each *= c.factor;
    data.search.all = LinesAt(shorter);
    PrepareLines(data.search);
    EXPECT_EQ(data.search.options.use, c.wantuse) << c.use << " of " << c.lines;
    EXPECT_EQ(data.search.options.iq, c.wantiq) << c.use << " of " << c.lines;
  }
}

TEST(TreorLines, DifferencesThatComeUpMoreThanOnce) {
  DataSet data;
  data.search.all = LinesAt({0.02, 0.05, 0.08, 0.11});
  ListFailure(data.search);
  // 0.02 and four times it, 0.03 between all neighbours, 0.06 between the next but one.
  EXPECT_EQ(data.Text(),
            "\n PROGRAM FOR DIFFERENCE ANALYSIS\n NUMBER OF LINES USED=    4\n"
            "    0.020000    2\n     0.030000    3\n    0.060000    2\n"
            "\n NO SOLUTION ACCEPTED.....THINK!\n TEST FINISHED\n");
}

TEST(TreorLines, Codes) {
  EXPECT_EQ(LineCode(0.123454f), 12345);
  EXPECT_EQ(LineCode(0.123456f), 12346);
  EXPECT_LT(LineCode(1e30f), 1 << 30) << "sums of it are integers still";
  EXPECT_GT(LineCode(-1e30f), -(1 << 30));
}

TEST(TreorLines, Limits) {
  DataSet data;
  TreorOptions& o = data.search.options;
  o.wave = 2;
  o.cem = 10;
  o.vol = 100;
  o.mono = 120;
  o.dens = 2.0f;
  o.edens = 0.5f;
  o.molw = 60;
  SetLimits(data.search);
  const SearchLimits& l = data.search.limits;
  EXPECT_FLOAT_EQ(l.lambda6, 1.0f);
  EXPECT_FLOAT_EQ(l.amin, 0.01f) << "an edge of 10 angstrom at a wavelength of 2";
  EXPECT_FLOAT_EQ(l.hexamin, 0.04f / 3);
  EXPECT_FLOAT_EQ(l.testlimit, 1e-4f);
  EXPECT_EQ(l.d1, 20);
  EXPECT_EQ(l.d2, 40);
  EXPECT_EQ(l.ssqtl, 5000);
  EXPECT_NEAR(l.cos4, 1.0f, 1e-5f);
  // A molecule takes 60 / (0.6023 x 2.5) = 39.85 cubic angstrom at least: two stay below 100.
  ASSERT_EQ(l.density.size(), 2u);
  const double least = 2 * 60 / (0.6023 * 2.5), most = 2 * 60 / (0.6023 * 1.5);
  EXPECT_NEAR(l.density[1][0], 1 / (most * most), 1e-9);
  EXPECT_NEAR(l.density[1][1], 1 / (least * least), 1e-9);
  // An orthorhombic cell of the largest volume has the least product.
  const Constants c = treor::ConstantsOf({4, 5, 5, 90, 90, 90});
  const double toangstrom = 4 / (treor::kWave * treor::kWave);
  EXPECT_NEAR(c.a * c.b * c.c * std::pow(toangstrom, 3), l.testlimit / l.lambda6, 1e-8);
}

}  // namespace
