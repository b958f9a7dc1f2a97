// The engine TREOR90 as a whole: files, data sets, stages, stops and bad cards.
#include <gtest/gtest.h>

#include "index/treorsimulate.h"
#include "support/smallfiles.h"

namespace {

using treor::Cards, treor::kCells, treor::Pattern;

constexpr const char* kDefaults =
    "CHOICE=3,\nWAVE=1.54060,\nVOL=-2000,\nNIX=1,\nMERIT=10,\nD1=0.00020,\nD2=0.00040,\nEND*";

struct Engine : testing::Test {
  void Run(const std::string& cards) {
    WriteFile(dir.file("in"), cards);
    Treor90Engine(status, dir.file("in"), dir.file("out"), run);
    text = ReadFile(dir.file("out"));
  }
  std::size_t Count(const std::string& words) const {
    std::size_t n = 0;
    for (std::size_t at = 0; (at = text.find(words, at)) != text.npos; ++at) ++n;
    return n;
  }
  bool Says(const std::string& words) const { return Count(words) > 0; }
  TempDir dir;
  TreorRun run;
  int status = -1;
  std::string text;
};

TEST_F(Engine, SolvesOneCellOfEachSystem) {
  for (const auto& truth : kCells) {
    run = {};
    Run(Cards(Pattern(truth.cell, 25, 0.004, 0.03), kDefaults));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(run.nlines, 25);
    ASSERT_TRUE(run.solved) << static_cast<int>(truth.system);
    const auto volume =
        CellVolume({static_cast<float>(truth.cell[0]), static_cast<float>(truth.cell[1]),
                    static_cast<float>(truth.cell[2]), static_cast<float>(truth.cell[3]),
                    static_cast<float>(truth.cell[4]), static_cast<float>(truth.cell[5])});
    EXPECT_NEAR(run.solutions.back().volume, volume, 0.01f * volume);
    EXPECT_TRUE(text.rfind(" VERSION JANUARY 1990 \na title\n", 0) == 0);
    EXPECT_TRUE(Says("END OF INDEXING CALCULATIONS"));
    EXPECT_EQ(Says("IF YOU WANT TO LOOK FOR A BETTER SOLUTION"),
              run.solutions.back().unindexed == 0);
    EXPECT_TRUE(Says(" NUMBER OF CELLS WITH "));
  }
}

// Lines of no lattice.
const std::vector<double> kForeign{11.3, 14.9, 17.0, 19.1, 20.2, 23.9, 25.1, 26.2, 28.8, 30.1, 31.7,
                                   33.4, 34.3, 36.9, 38.0, 40.6, 41.7, 43.1, 46.2, 47.4, 50.3};

TEST_F(Engine, PositiveVolumeStaysWithRightAngles) {
  Run(Cards(kForeign, "MERIT=99,VOL=800,END*"));
  EXPECT_FALSE(run.solved);
  for (const char* system : {"CUBIC", "TETRAGONAL", "HEXAGONAL", "ORTHORHOMBIC"})
    EXPECT_EQ(Count(" ** " + std::string(system) + " TEST"), 1u);
  EXPECT_FALSE(Says("MONOCLINIC TEST *"));
  EXPECT_FALSE(Says("** TRICLINIC TEST"));
  EXPECT_LT(text.find("HEXAGONAL TEST"), text.find("ORTHORHOMBIC TEST"));
  EXPECT_TRUE(Says("PROGRAM FOR DIFFERENCE ANALYSIS"));
  EXPECT_TRUE(Says("NO SOLUTION ACCEPTED.....THINK!"));
}

TEST_F(Engine, NegativeVolumeGoesInTwoSteps) {
  Run(Cards(kForeign, "MERIT=99,VOL=-800,END*"));
  for (const char* system : {"CUBIC", "TETRAGONAL", "HEXAGONAL", "ORTHORHOMBIC", "MONOCLINIC"})
    EXPECT_EQ(Count(" ** " + std::string(system) + " TEST"), 2u) << system;
  EXPECT_EQ(Count("CUBIC TEST ********************* MAX. VOLUME=  400."), 1u);
  EXPECT_EQ(Count("CUBIC TEST ********************* MAX. VOLUME=  800."), 1u);
  EXPECT_EQ(Count("(020)-SEARCH\n"), 1u) << "with the first volume only";
  EXPECT_EQ(Count("END OF MONOCLINIC DOMINANT ZONE TEST"), 2u);
  EXPECT_TRUE(Says("MAX BETA ALLOWED=  135 DEG."));
  EXPECT_LT(text.find("TRICLINIC DOMINANT ZONE"), text.rfind("MONOCLINIC TEST"))
      << "the triclinic zone comes between the two";
  EXPECT_EQ(Count("END OF TRICLINIC TEST"), 1u);
  EXPECT_FALSE(Says("DIFFERENCE ANALYSIS"));
}

TEST_F(Engine, KeywordsLeaveStagesOut) {
  Run(Cards(kForeign, "OMIT=1,MERIT=99,VOL=300,END*"));
  EXPECT_FALSE(Says("CUBIC TEST") || Says("TETRAGONAL TEST") || Says("HEXAGONAL TEST"));
  EXPECT_TRUE(Says("ORTHORHOMBIC TEST"));
  run = {};
  Run(Cards(kForeign, "KS=0,OS1=0,MONO=-120,MERIT=99,VOL=300,END*"));
  EXPECT_FALSE(Says("CUBIC TEST") || Says("ORTHORHOMBIC TEST") || Says("(020)-SEARCH\n"));
  EXPECT_TRUE(Says("TETRAGONAL TEST"));
  EXPECT_EQ(Count("** MONOCLINIC TEST"), 1u) << "of the dominant zone";
}

// Two edges that agree to 1 % are tried as one, in vain.
TEST_F(Engine, ACellThatOnlyLooksTetragonalIsKept) {
  Run(Cards(Pattern({10.89, 10.79, 7.30, 90, 90, 90}, 25, 0.004, 0.03), kDefaults));
  EXPECT_TRUE(Says("TEST OF TETRAGONAL SYMMETRY"));
  ASSERT_TRUE(run.solved);
  EXPECT_NEAR(run.solutions.back().volume, 10.89 * 10.79 * 7.30, 3);
}

// None is ever good enough: each search begins behind the candidate of the one before.
TEST_F(Engine, MonogamGoesOnBehindEachCandidate) {
  Run(Cards(Pattern({7.13, 9.31, 11.24, 90, 104.2, 90}, 25, 0.004, 0.03),
            "MONOGAM=1,MONO=120,VOL=1000,KS=0,THS=0,OS1=0,MERIT=999,IQ=18,END*"));
  EXPECT_FALSE(run.solved);
  const std::size_t searches = Count("SELECTED BASE LINES (1,2,3,4)");
  EXPECT_GT(searches, 2u);
  EXPECT_LE(searches, 101u);
  Run(Cards(Pattern({7.13, 9.31, 11.24, 90, 104.2, 90}, 25, 0.004, 0.03),
            "MONOGAM=1,MONO=120,VOL=1000,KS=0,THS=0,OS1=0,MERIT=30,END*"));
  ASSERT_TRUE(run.solved);
  EXPECT_NEAR(run.solutions.back().volume, 723.3, 3);
}

TEST_F(Engine, ADensityThatNoNumberOfMoleculesHasLeavesNothing) {
  const auto lines = Pattern(kCells[0].cell, 22, 0.004);
  Run(Cards(lines, "DENS=5,MOLW=99999,END*"));
  EXPECT_FALSE(run.solved || Says("NOT REFINED"));
  Run(Cards(lines, "END*"));
  EXPECT_TRUE(run.solved);
}

TEST_F(Engine, SelectedLinesAreThoseOfTheFirstVolume) {
  Run(Cards(kForeign, "SELECT=8,MERIT=99,VOL=-300,END*"));
  EXPECT_EQ(Count("SELECTED BASE LINES ( 8,1,2,3)"), 1u);
  EXPECT_EQ(Count("SELECTED BASE LINES (1,2,3,4)"), 1u);
}

TEST_F(Engine, ChoiceIsWithoutEffect) {
  const auto lines = Pattern(kCells[1].cell, 22, 0.004);
  Run(Cards(lines, "CHOICE=1,END*"));
  const std::string one = text;
  Run(Cards(lines, "CHOICE=4,END*"));
  EXPECT_EQ(text, one);
  EXPECT_TRUE(run.solved);
}

TEST_F(Engine, DataSetsFollowOneAnother) {
  const auto lines = Pattern(kCells[0].cell, 20, 0.004);
  const std::string first = Cards(lines, "CONTINUE=1,END*");
  Run(first + Cards(lines, "END*") + Cards(lines, "END*"));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(run.datasets, 2);
  EXPECT_EQ(Count("a title\n"), 2u);
  run = {};
  Run(first);
  EXPECT_EQ(status, 0) << "the promise of another one is no fault";
  EXPECT_EQ(run.datasets, 1);
  EXPECT_TRUE(run.complaints.empty());
  run = {};
  Run(first + "half a data set\n10.0\n");
  EXPECT_EQ(status, 2);
  EXPECT_FALSE(run.solutions.empty()) << "those of the first stay";
}

TEST_F(Engine, InvalidCardsAreTold) {
  for (const char* cards :
       {"", "title", "title\n10.0\n\nNOKEY=1,END*\n", "title\n\nEND", "t\nx\n"}) {
    run = {};
    Run(cards);
    EXPECT_EQ(status, 2) << cards;
    ASSERT_EQ(run.complaints.size(), 1u);
    EXPECT_EQ(run.complaints[0].caption, "PWINL Error");
    EXPECT_TRUE(Says(" **ERROR** PROGRAM CONTROL CARD INVALID.\n"));
  }
}

TEST_F(Engine, FilesThatFail) {
  Treor90Engine(status, dir.file("none"), dir.file("out"), run);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(ReadFile(dir.file("out")), "");
  WriteFile(dir.file("in"), Cards(kForeign, "VOL=100,END*"));
  Treor90Engine(status, dir.file("in"), dir.file("no/out"), run);
  EXPECT_EQ(status, 1);
  {
    const SmallFiles full(200);
    Treor90Engine(status, dir.file("in"), dir.file("out"), run);
  }
  EXPECT_EQ(status, 1);
  ASSERT_EQ(run.complaints.size(), 3u);
  const char* texts[] = {"Error opening TREOR90 input file", "Error opening TREOR90 output file",
                         "Error writing TREOR90 output file"};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(run.complaints[i].caption, "File Error");
    EXPECT_EQ(run.complaints[i].text.rfind(texts[i], 0), 0u) << run.complaints[i].text;
  }
}

// Stops at every stage that the report tells of, and after some more calls of it.
TEST_F(Engine, StopLeavesTheListingSoFar) {
  std::vector<std::string> stages;
  run.report = [&](const std::string& stage) {
    if (stages.empty() || stages.back() != stage) stages.push_back(stage);
    return true;
  };
  const std::string cards = Cards(kForeign, "MERIT=99,VOL=-400,END*");
  Run(cards);
  EXPECT_GE(stages.size(), 16u);
  for (const std::string& last : stages) {
    run = {};
    std::size_t after = 0;
    run.report = [&](const std::string& stage) {
      after += stage == last;
      return after == 0;
    };
    Run(cards);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(run.stopped);
    EXPECT_EQ(after, 1u) << "once said no, it is not asked again";
    EXPECT_TRUE(Says(" STOP LIMITS\n")) << last;
    EXPECT_FALSE(Says("END OF TRICLINIC TEST") && last != stages.back()) << last;
  }
}

TEST_F(Engine, StopIsNoFailure) {
  run.report = [](const std::string&) { return false; };
  Run(Cards(kForeign, "VOL=800,CONTINUE=1,END*") + Cards(kForeign, "END*"));
  EXPECT_EQ(run.datasets, 1) << "nor does the next data set begin";
  EXPECT_FALSE(Says("CUBIC TEST"));
  EXPECT_FALSE(Says("NO SOLUTION ACCEPTED"));
  EXPECT_TRUE(Says(" NUMBER OF CELLS WITH "));
}

// Nothing of this is a pattern: it ends, and well.
TEST_F(Engine, CardsWithoutSense) {
  std::vector<double> many;
  for (int i = 1; i <= 200; ++i) many.push_back(0.8 * i);
  const auto first = [&](int n) { return std::vector<double>(many.begin(), many.begin() + n); };
  std::vector<double> zone;  // h k 0 alone
  for (const double s : treor::TrueLines({5.1, 7.3, 1.6, 90, 90, 90}, 0.22))
    zone.push_back(2 * std::asin(std::sqrt(s)) / treor::kRad);
  const std::vector<std::vector<double>> lists{first(0),
                                               first(1),
                                               first(5),
                                               first(99),
                                               first(100),
                                               first(200),
                                               std::vector<double>(20, 25.0),
                                               std::vector<double>(20, 360.0),
                                               zone};
  for (const auto& lines : lists)
    for (const char* control :
         {"VOL=-300,", "VOL=0,MONO=130,TRIC=1,", "VOL=-1,", "VOL=-300,WAVE=0,",
          "VOL=-300,D1=0,D2=0,", "VOL=100,CEM=0,MONO=90,TRIC=1,", "VOL=-300,IQ=0,NIX=99,MERIT=0,",
          "VOL=-300,USE=3,SELECT=8,"}) {
      run = {};
      // A cell among so many is no fault; a search that does not end is one.
      int left = 300;
      run.report = [&](const std::string&) { return --left > 0; };
      Run(Cards(lines, std::string(control) + "END*"));
      EXPECT_EQ(status, 0) << control;
      EXPECT_EQ(run.nlines, std::min<int>(static_cast<int>(lines.size()), 99));
      EXPECT_LE(run.solutions.size(), 100u);
    }
}

}  // namespace
