// The engine TREOR90 as a whole: files, data sets, stages, stops and bad cards.
#include <gtest/gtest.h>

#include "index/driver.h"
#include "index/simulate.h"
#include "support/smallfiles.h"

namespace {

// Lines of no lattice.
const std::vector<double> kForeign{11.3, 14.9, 17.0, 19.1, 20.2, 23.9, 25.1, 26.2, 28.8, 30.1, 31.7,
                                   33.4, 34.3, 36.9, 38.0, 40.6, 41.7, 43.1, 46.2, 47.4, 50.3};

std::string Cards(const std::vector<double>& twotheta, const std::string& control) {
  return "a title\n" + LineCards(twotheta) + control + "END*\n";
}

struct Engine : testing::Test {
  void Run(const std::string& cards, const EngineReport& report = {}) {
    run = {};
    run.report = report;
    WriteFile(dir.file("in"), cards);
    Treor90Engine(status, dir.file("in"), dir.file("out"), run);
    text = ReadFile(dir.file("out"));
  }
  int Times(const std::string& words) const { return Count(text, words); }
  bool Says(const std::string& words) const { return Holds(text, words); }
  void ExpectVolume(double volume) const {
    ASSERT_TRUE(run.solved);
    EXPECT_NEAR(run.solutions.back().volume, volume, 0.01 * volume);
  }
  TempDir dir;
  TreorRun run;
  int status = -1;
  std::string text;
};

TEST_F(Engine, SolvesOneCellOfEachSystem) {
  for (const auto& truth : kCells) {
    Run(Cards(Pattern(truth.cell, 25, 0.004, 0.03),
              "CHOICE=3,\nWAVE=1.54060,\nVOL=-2000,\nNIX=1,\nMERIT=10,\nD1=0.00020,\n"
              "D2=0.00040,\n"));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(run.nlines, 25);
    ExpectVolume(VolumeOf(truth.cell));
    EXPECT_TRUE(text.starts_with(" VERSION JANUARY 1990 \na title\n"));
    EXPECT_TRUE(Says("END OF INDEXING CALCULATIONS"));
    EXPECT_EQ(Says("IF YOU WANT TO LOOK FOR A BETTER SOLUTION"),
              run.solutions.back().unindexed == 0);
    EXPECT_TRUE(Says(" NUMBER OF CELLS WITH "));
  }
}

// A positive volume stays with right angles; a negative one goes in two steps, the triclinic zone
// between them. Keywords leave stages out.
TEST_F(Engine, StagesFollowTheVolumeAndTheKeywords) {
  const struct {
    const char* control;
    std::array<int, 4> upright;  // cubic, tetragonal, hexagonal, orthorhombic
    std::vector<std::pair<const char*, int>> others;
  } cases[] = {
      {"VOL=800,",
       {1, 1, 1, 1},
       {{"MONOCLINIC TEST *", 0},
        {"** TRICLINIC TEST", 0},
        {"PROGRAM FOR DIFFERENCE ANALYSIS", 1},
        {"NO SOLUTION ACCEPTED.....THINK!", 1}}},
      {"OMIT=1,VOL=300,", {0, 0, 0, 1}, {}},
      {"THS=0,VOL=300,", {1, 0, 0, 1}, {}},
      {"KS=0,OS1=0,MONO=-120,VOL=300,",
       {0, 1, 1, 0},
       {{"(020)-SEARCH\n", 0}, {"** MONOCLINIC TEST", 1}}},  // of the dominant zone
      {"VOL=-800,SELECT=8,",
       {2, 2, 2, 2},
       {{" ** MONOCLINIC TEST", 2},
        {"CUBIC TEST ********************* MAX. VOLUME=  400.", 1},
        {"CUBIC TEST ********************* MAX. VOLUME=  800.", 1},
        {"(020)-SEARCH\n", 1},
        {"END OF MONOCLINIC DOMINANT ZONE TEST", 2},
        {"SELECTED BASE LINES ( 8,1,2,3)", 1},
        {"SELECTED BASE LINES (1,2,3,4)", 1},
        {"MAX BETA ALLOWED=  135 DEG.", 2},
        {"END OF TRICLINIC TEST", 1},
        {"DIFFERENCE ANALYSIS", 0}}},
  };
  const char* const names[] = {"CUBIC", "TETRAGONAL", "HEXAGONAL", "ORTHORHOMBIC"};
  for (const auto& [control, upright, others] : cases) {
    SCOPED_TRACE(control);
    Run(Cards(kForeign, std::string("MERIT=99,") + control));
    EXPECT_FALSE(run.solved);
    for (int k = 0; k < 4; ++k)
      EXPECT_EQ(Times(std::string(" ** ") + names[k] + " TEST"), upright[k]) << names[k];
    for (const auto& [words, n] : others) EXPECT_EQ(std::min(Times(words), 2), n) << words;
  }
  EXPECT_LT(text.find("HEXAGONAL TEST"), text.find("ORTHORHOMBIC TEST"));
  EXPECT_LT(text.find("TRICLINIC DOMINANT ZONE"), text.rfind("MONOCLINIC TEST"));
}

// Two edges that agree to 1 % are tried as one, in vain.
TEST_F(Engine, ACellThatOnlyLooksTetragonalIsKept) {
  Run(Cards(Pattern({10.89, 10.79, 7.30, 90, 90, 90}, 25, 0.004, 0.03), "VOL=-2000,"));
  EXPECT_TRUE(Says("TEST OF TETRAGONAL SYMMETRY"));
  ExpectVolume(10.89 * 10.79 * 7.30);
}

// Where none is good enough, each search begins behind the candidate of the one before.
TEST_F(Engine, MonogamGoesOnBehindEachCandidate) {
  const Cell cell{7.13, 9.31, 11.24, 90, 104.2, 90};
  for (const char* merit : {"MERIT=999,IQ=18,", "MERIT=30,"}) {
    Run(Cards(Pattern(cell, 25, 0.004, 0.03),
              std::string("MONOGAM=1,MONO=120,VOL=1000,KS=0,THS=0,OS1=0,") + merit));
    if (merit[8] == '9') {
      EXPECT_FALSE(run.solved);
      EXPECT_GT(Times("SELECTED BASE LINES (1,2,3,4)"), 2);
      EXPECT_LE(Times("SELECTED BASE LINES (1,2,3,4)"), 101);
    } else {
      ExpectVolume(VolumeOf(cell));
    }
  }
}

TEST_F(Engine, ADensityThatNoNumberOfMoleculesHasLeavesNothing) {
  const auto lines = Pattern(kCells[0].cell, 22, 0.004);
  Run(Cards(lines, "DENS=5,MOLW=99999,"));
  EXPECT_FALSE(run.solved || Says("NOT REFINED"));
  Run(Cards(lines, "CHOICE=1,"));
  EXPECT_TRUE(run.solved);
  const std::string one = text;
  Run(Cards(lines, "CHOICE=4,"));
  EXPECT_EQ(text, one) << "of no effect";
}

TEST_F(Engine, DataSetsFollowOneAnother) {
  const auto lines = Pattern(kCells[0].cell, 20, 0.004);
  const std::string first = Cards(lines, "CONTINUE=1,");
  Run(first + Cards(lines, "") + Cards(lines, ""));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(run.datasets, 2);
  EXPECT_EQ(Times("a title\n"), 2);
  Run(first);
  EXPECT_EQ(status, 0) << "the promise of another one is no fault";
  EXPECT_EQ(run.datasets, 1);
  EXPECT_TRUE(run.complaints.empty());
  Run(first + "half a data set\n10.0\n");
  EXPECT_EQ(status, 2);
  EXPECT_FALSE(run.solutions.empty()) << "those of the first stay";
}

TEST_F(Engine, InvalidCardsAreTold) {
  for (const char* cards :
       {"", "title", "title\n10.0\n\nNOKEY=1,END*\n", "title\n\nEND", "t\nx\n"}) {
    Run(cards);
    EXPECT_EQ(status, 2) << cards;
    ASSERT_EQ(run.complaints.size(), 1u);
    EXPECT_EQ(run.complaints[0].caption, "PWINL Error");
    EXPECT_TRUE(Says(" **ERROR** PROGRAM CONTROL CARD INVALID.\n"));
  }
}

TEST_F(Engine, FilesThatFail) {
  const auto expect = [&](const char* in, const char* out, const char* told) {
    run = {};
    Treor90Engine(status, dir.file(in), dir.file(out), run);
    EXPECT_EQ(status, 1);
    ASSERT_EQ(run.complaints.size(), 1u);
    EXPECT_EQ(run.complaints[0].caption, "File Error");
    EXPECT_TRUE(run.complaints[0].text.starts_with(told)) << run.complaints[0].text;
  };
  expect("none", "out", "Error opening TREOR90 input file");
  EXPECT_EQ(ReadFile(dir.file("out")), "");
  WriteFile(dir.file("in"), Cards(kForeign, "VOL=100,"));
  expect("in", "no/out", "Error opening TREOR90 output file");
  const SmallFiles full(200);
  expect("in", "out", "Error writing TREOR90 output file");
}

// At every stage that the report tells of; once said no, it is not asked again, and no other data
// set begins.
TEST_F(Engine, StopLeavesTheListingSoFar) {
  std::vector<std::string> stages;
  const std::string control = "MERIT=99,VOL=-400,CONTINUE=1,",
                    cards = Cards(kForeign, control) + Cards(kForeign, "OMIT=1,VOL=50,");
  Run(Cards(kForeign, control), [&](const std::string& stage) {
    if (stages.empty() || stages.back() != stage) stages.push_back(stage);
    return true;
  });
  EXPECT_GE(stages.size(), 16u);
  for (const std::string& last : stages) {
    int after = 0;
    Run(cards, [&](const std::string& stage) { return (after += stage == last) == 0; });
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(run.stopped);
    EXPECT_EQ(run.datasets, 1);
    EXPECT_EQ(after, 1);
    EXPECT_TRUE(Says(" STOP LIMITS\n")) << last;
    EXPECT_EQ(Says("CUBIC TEST"), last != stages.front());
    EXPECT_FALSE(Says("NO SOLUTION ACCEPTED"));
    EXPECT_TRUE(Says(" NUMBER OF CELLS WITH "));
    EXPECT_FALSE(Says("END OF TRICLINIC TEST") && last != stages.back()) << last;
  }
}

// Nothing of this is a pattern: it ends, and well. A cell among so many is no fault; a search that
// does not end is one.
TEST_F(Engine, CardsWithoutSense) {
  std::vector<std::vector<double>> lists{std::vector(20, 25.0), std::vector(20, 360.0), {}};
  for (const double s : TrueLines({5.1, 7.3, 1.6, 90, 90, 90}, 0.22))  // h k 0 alone
    lists.back().push_back(TwoThetaOf(s));
  for (const int n : {0, 1, 5, 99, 100, 200}) {
    lists.emplace_back();
    for (int i = 1; i <= n; ++i) lists.back().push_back(0.8 * i);
  }
  for (const auto& lines : lists)
    for (const char* control :
         {"VOL=-300,", "VOL=0,MONO=130,TRIC=1,", "VOL=-1,", "VOL=-300,WAVE=0,",
          "VOL=-300,D1=0,D2=0,", "VOL=100,CEM=0,MONO=90,TRIC=1,", "VOL=-300,IQ=0,NIX=99,MERIT=0,",
          "VOL=-300,USE=3,SELECT=8,"}) {
      int left = 300;
      Run(Cards(lines, control), [&](const std::string&) { return --left > 0; });
      EXPECT_EQ(status, 0) << control;
      EXPECT_EQ(run.nlines, std::min<int>(static_cast<int>(lines.size()), 99));
      EXPECT_LE(run.solutions.size(), 100u);
    }
}

// A run that is stopped needs no advice.
TEST_F(Engine, FewLinesAreTold) {
  for (const auto& [n, goon, told] : {std::tuple(9, true, 1u), {9, false, 0u}, {10, true, 0u}}) {
    WriteFile(dir.file("in"), Cards({kForeign.begin(), kForeign.begin() + n}, "MERIT=99,VOL=300,"));
    const EngineEnd end =
        EngineOf(EngineTreor)
            .start(dir.file("in"), dir.file("out"), [go = goon](const std::string&) { return go; });
    EXPECT_EQ(end.run.stopped, !goon);
    EXPECT_EQ(end.run.complaints.size(), told) << n << goon;
  }
}

}  // namespace
