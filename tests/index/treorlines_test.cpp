// Lines and limits of a data set of TREOR90, and its control lines.
#include <gtest/gtest.h>

#include "index/simulate.h"
#include "index/treor/keywords.h"
#include "index/treor/listing.h"

namespace {

bool ReadInto(DataSet& data, const std::string& cards) {
  WriteFile(data.dir.file("in"), cards);
  LineReader input(data.dir.file("in"));
  return ReadLines(input, data.search);
}

// Rising, up to a blank card; of more than 99 the rest is passed over.
TEST(TreorLines, AreReadUpToABlankCard) {
  DataSet data;
  ASSERT_TRUE(ReadInto(data, "   60.000000    one\n   30.0\n    90\n\n10.0\n"));
  ASSERT_EQ(data.search.all.size(), 3u);
  for (int i = 0; i < 3; ++i)
    EXPECT_FLOAT_EQ(data.search.all[i].s, std::pow(std::sin((i + 1) * 15 * kDegree), 2));
  EXPECT_EQ(data.search.all[1].code, 25000);
  EXPECT_EQ(data.search.all[1].label, "one");
  EXPECT_EQ(data.Text(), "       60.000000\n       30.000000\n       90.000000\n");
  DataSet many;
  std::string cards;
  for (int i = 1; i <= 120; ++i) cards += std::to_string(i) + ".\n";
  ASSERT_TRUE(ReadInto(many, cards + "0\n"));
  ASSERT_EQ(many.search.all.size(), 99u);
  EXPECT_NEAR(many.search.all.back().s, std::pow(std::sin(49.5 * kDegree), 2), 1e-6);
  for (const char* invalid : {"", "10.0\n", "10.0\nten\n\n", "CHOICE=3,\n"}) {
    DataSet bad;
    EXPECT_FALSE(ReadInto(bad, invalid)) << invalid;
  }
}

// Lines 1, 2 and 3 of no common multiple, with their orders among others: 4 x 0.010 within 0.0002,
// 4 x 0.017 within 0.0004, 9 x 0.010 and 16 x 0.010 within 0.0004.
TEST(TreorLines, HigherOrdersAreNoneOfTheSearch) {
  for (const int idiv : {0, 1}) {
    DataSet data;
    data.search.options.idiv = idiv;
    for (const double s : {0.010, 0.017, 0.023, 0.031, 0.04015, 0.0680, 0.0903, 0.11, 0.1603})
      data.search.all.push_back(LineAt(s));
    PrepareLines(data.search);
    const auto& all = data.search.all;
    ASSERT_EQ(all.size(), 9u);
    EXPECT_NEAR(all[0].s, idiv ? 0.1603 / 16 : 0.010, 1e-6) << "the highest has the last word";
    EXPECT_NEAR(all[1].s, 0.017, 1e-6);
    EXPECT_NEAR(all[2].s, 0.023, 1e-6) << "0.0903 is too far from 4 x 0.023";
    ASSERT_EQ(data.search.lines.size(), 5u);
    EXPECT_NEAR(data.search.lines[3].s, 0.031, 1e-6);
    EXPECT_NEAR(data.search.lines[4].s, 0.11, 1e-6);
    EXPECT_EQ(data.search.options.use, 5);
    EXPECT_EQ(data.search.options.iq, 2);
    const std::string text = data.Text();
    EXPECT_TRUE(Holds(text, " SQ IS  4 TIMES SQ OF LINE NUMBER=  1\n"));
    for (const char* n : {"5", "6", "7", "9"})  // among all lines
      EXPECT_TRUE(Holds(text, " LINE NUMBER=  " + std::string(n) + " SHOULD NOT BE INCLUDED"));
  }
}

TEST(TreorLines, CountOfTestLines) {
  struct Case {
    int use, iq, lines;
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
    for (int i = 0; i < c.lines; ++i)  // no orders among them
      data.search.all.push_back(LineAt(c.factor * (0.101 + 0.005 * i)));
    PrepareLines(data.search);
    EXPECT_EQ(data.search.options.use, c.wantuse) << c.use << " of " << c.lines;
    EXPECT_EQ(data.search.options.iq, c.wantiq) << c.use << " of " << c.lines;
  }
}

TEST(TreorLines, DifferencesThatComeUpMoreThanOnce) {
  DataSet data;
  for (const double s : {0.02, 0.05, 0.08, 0.11}) data.search.all.push_back(LineAt(s));
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
  // An edge of 10 angstrom at a wavelength of 2; an orthorhombic cell of 100 has the least product.
  EXPECT_FLOAT_EQ(l.lambda6, 1.0f);
  EXPECT_FLOAT_EQ(l.amin, 0.01f);
  EXPECT_FLOAT_EQ(l.hexamin, 0.04f / 3);
  EXPECT_FLOAT_EQ(l.testlimit, 1e-4f);
  EXPECT_EQ((std::array{l.d1, l.d2, l.ssqtl}), (std::array{20, 40, 5000}));
  EXPECT_NEAR(l.cos4, 1.0f, 1e-5f);
  // A molecule takes 60 / (0.6023 x 2.5) = 39.85 cubic angstrom at least: two stay below 100.
  ASSERT_EQ(l.density.size(), 2u);
  const double least = 2 * 60 / (0.6023 * 2.5), most = 2 * 60 / (0.6023 * 1.5);
  EXPECT_NEAR(l.density[1][0], 1 / (most * most), 1e-9);
  EXPECT_NEAR(l.density[1][1], 1 / (least * least), 1e-9);
}

// ---- Control lines ----

bool Read(const std::string& cards, TreorOptions& options) {
  const TempDir dir;
  WriteFile(dir.file("in"), cards);
  LineReader input(dir.file("in"));
  return ReadKeywords(input, options);
}

TEST(TreorKeywords, ReachTheirFields) {
  TreorOptions o;
  ASSERT_TRUE(
      Read("CHOICE=3,\nWAVE=1.54056,\nVOL=-2000,\nNIX=5,NIX=0,\nMER\nIT=\n12,\nD1=0.00025,\n"
           "OH1=1,OS3=9,KL=5,THS=7,MH4=3,MS1=6, M O N O = 130.7 , CEM=30,USE=2.9E1,D2=.0005,\n" +
               std::string(80, ' ') +
               "MERIT=15,\n"  // behind the end of a card
               "IQ=11,SSQTL=4D-2,TRIC=1,KS=-3,OK2=1000,CONTINUE=1,END*IGNORED\nNIX=7,\n",
           o));
  EXPECT_EQ((std::array{o.wave, o.vol, o.d1, o.d2, o.ssqtl, o.cem}),
            (std::array{1.54056f, -2000.0f, 0.00025f, 0.0005f, 0.04f, 30.0f}));
  EXPECT_EQ((std::array{o.nix, o.merit, o.use, o.iq, o.tric, o.resume}),
            (std::array{0, 12, 29, 11, 1, 1}));
  EXPECT_EQ((std::array{o.orthorhombic(1).h, o.orthorhombic(3).sum, o.cubic.l, o.tetragonal.sum,
                        o.monoclinic(4).h, o.monoclinic(1).sum}),
            (std::array{1, 9, 5, 7, 3, 6}));
  EXPECT_EQ(o.mono, 130) << "an integer keyword cuts";
  EXPECT_EQ(o.cubic.sum, 0) << "no index is below 0";
  EXPECT_EQ(o.orthorhombic(2).k, 99) << "nor out of reach";
  EXPECT_EQ(o.monoclinic(3).sum, 3) << "not given";
}

TEST(TreorKeywords, InvalidCards) {
  std::vector<std::string> invalid{"", "NIX=1,", "NIX=1"};
  for (const std::string fields :
       {"NIX=1", "NIX=1\n", "NIX1,", "NIX=,", "=1,", ",", "NIX=ONE,", "NIX=**,", "nix=1,",
        "NIXX=1,", "NOSUCHKEY=1,", "NIX=1=2,", "ABCDEFGHIJK=1,", "VOL=*****,", "NIX=1e99,",
        "NIX=0000000000000001,", "NIX=1;MERIT=10;VOL=-2000;"})
    invalid.push_back(fields + "END*");
  for (const std::string& cards : invalid) {
    TreorOptions o;
    EXPECT_FALSE(Read(cards, o)) << cards;
  }
}

}  // namespace
