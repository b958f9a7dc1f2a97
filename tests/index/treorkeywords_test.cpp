// Control lines of TREOR90.
#include <gtest/gtest.h>

#include "index/treor/keywords.h"
#include "support/support.h"

namespace {

bool Read(const std::string& cards, TreorOptions& options) {
  const TempDir dir;
  WriteFile(dir.file("in"), cards);
  LineReader input(dir.file("in"));
  return ReadKeywords(input, options);
}

TEST(TreorKeywords, ReachTheirFields) {
  TreorOptions o;
  ASSERT_TRUE(
      Read("CHOICE=3,\nWAVE=1.54056,\nVOL=-2000,\nNIX=0,\nMERIT=12,\nD1=0.00020,\nD2=.0004,\n"
           "OH1=1,OS3=9,KL=5,THS=7,MH4=3,MS1=6, M O N O = 130.7 , CEM=30,USE=2.9E1,\n"
           "IQ=11,SSQTL=4D-2,TRIC=1,KS=-3,OK2=1000,CONTINUE=1,END*IGNORED\nNIX=7,\n",
           o));
  EXPECT_EQ(o.wave, 1.54056f);
  EXPECT_EQ(o.vol, -2000.0f);
  EXPECT_EQ(o.nix, 0);
  EXPECT_EQ(o.merit, 12);
  EXPECT_EQ(o.d1, 0.0002f);
  EXPECT_EQ(o.d2, 0.0004f);
  EXPECT_EQ(o.ssqtl, 0.04f);
  EXPECT_EQ(o.orthorhombic(1).h, 1);
  EXPECT_EQ(o.orthorhombic(3).sum, 9);
  EXPECT_EQ(o.cubic.l, 5);
  EXPECT_EQ(o.tetragonal.sum, 7);
  EXPECT_EQ(o.monoclinic(4).h, 3);
  EXPECT_EQ(o.monoclinic(1).sum, 6);
  EXPECT_EQ(o.mono, 130) << "an integer keyword cuts";
  EXPECT_EQ(o.cem, 30.0f);
  EXPECT_EQ(o.use, 29);
  EXPECT_EQ(o.iq, 11);
  EXPECT_EQ(o.tric, 1);
  EXPECT_EQ(o.resume, 1);
  EXPECT_EQ(o.cubic.sum, 0) << "no index is below 0";
  EXPECT_EQ(o.orthorhombic(2).k, 99) << "nor out of reach";
}

TEST(TreorKeywords, DefaultsStayAndTheLastValueCounts) {
  TreorOptions o;
  ASSERT_TRUE(Read("NIX=5,NIX=2,END*", o));
  EXPECT_EQ(o.nix, 2);
  EXPECT_EQ(o.merit, 10);
  EXPECT_EQ(o.vol, 2000.0f);
  EXPECT_EQ(o.monoclinic(3).sum, 3);
  ASSERT_TRUE(Read("END*", o));
}

TEST(TreorKeywords, GoOnOnTheNextCardAndEndWithColumn80) {
  TreorOptions o;
  ASSERT_TRUE(Read("MER\nIT=\n14,END*", o));
  EXPECT_EQ(o.merit, 14);
  ASSERT_TRUE(Read(std::string(80, ' ') + "MERIT=15,\nEND*", o));
  EXPECT_EQ(o.merit, 14);
}

TEST(TreorKeywords, InvalidCards) {
  for (const char* cards : {"",
                            "NIX=1,",
                            "NIX=1",
                            "NIX=1END*",
                            "NIX=1\nEND*",
                            "NIX1,END*",
                            "NIX=,END*",
                            "=1,END*",
                            ",END*",
                            "NIX=ONE,END*",
                            "NIX=**,END*",
                            "nix=1,END*",
                            "NOSUCHKEY=1,END*",
                            "NIXX=1,END*",
                            "NIX=1=2,END*",
                            "ABCDEFGHIJK=1,END*",
                            "NIX=0000000000000001,END*",
                            "NIX=1;MERIT=10;VOL=-2000;END*",
                            "VOL=*****,END*",
                            "NIX=1e99,END*"}) {
    TreorOptions o;
    EXPECT_FALSE(Read(cards, o)) << cards;
  }
}

}  // namespace
