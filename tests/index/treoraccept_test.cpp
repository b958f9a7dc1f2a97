// The way from a candidate to a solution, and what the listing says of it.
#include "index/treor/accept.h"

#include <gtest/gtest.h>

#include <sstream>

#include "index/treorsimulate.h"

namespace {

using treor::Cell, treor::DataSet, treor::kCells;

const std::vector<std::string> LinesOfText(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

struct Accept : testing::Test {
  bool Try(const Cell& cell, CrystalSystem system, std::size_t lines = 25) {
    data.search.options.wave = static_cast<float>(treor::kWave);
    data.search.all = treor::LinesOf(treor::Pattern(cell, lines, 0.006));
    PrepareLines(data.search);
    const bool solved = AcceptCandidate(data.search, {system, treor::ConstantsOf(cell, 1.001)});
    text = data.Text();
    return solved;
  }
  bool Says(const std::string& words) const { return text.find(words) != text.npos; }
  DataSet data;
  std::string text;
};

// As readers of the listing do it: by columns.
TEST_F(Accept, BlockStandsInItsColumns) {
  ASSERT_TRUE(Try(kCells[5].cell, CrystalSystem::Triclinic));
  const auto lines = LinesOfText(text);
  int blocks = 0;
  for (std::size_t i = 0; i + 3 < lines.size(); ++i) {
    if (lines[i].rfind("   A =", 0) != 0) continue;
    ++blocks;
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_NEAR(std::stod(lines[i + k].substr(6, 10)), kCells[5].cell[k], 0.005);
      EXPECT_NEAR(std::stod(lines[i + k].substr(37, 10)), kCells[5].cell[k + 3], 0.1);
      EXPECT_GT(std::stod(lines[i + k].substr(16, 10)), 0) << "deviation";
    }
    EXPECT_EQ(lines[i + 1].substr(0, 6), "   B =");
    EXPECT_EQ(lines[i + 2].substr(0, 6), "   C =");
    EXPECT_NEAR(std::stod(lines[i + 3].substr(21, 10)), 159.7, 0.5);
    while (i < lines.size() && lines[i].rfind(" M-TEST=", 0) != 0) ++i;
    ASSERT_LT(i, lines.size()) << "each block has its own";
    const TreorSolution& solution = data.run.solutions[static_cast<std::size_t>(blocks - 1)];
    EXPECT_EQ(std::stoi(lines[i].substr(8, 5)), solution.merit);
    EXPECT_GE(solution.merit, 20);
    EXPECT_EQ(lines[i].substr(13, 23), " UNINDEXED IN THE TEST=");
    EXPECT_EQ(std::stoi(lines[i].substr(36, 5)), 0);
  }
  EXPECT_EQ(blocks, 2) << "the test, and once more with all lines";
  EXPECT_TRUE(Says("*** REDUCED-CELL ***"));
}

TEST_F(Accept, TableOfLines) {
  ASSERT_TRUE(Try(kCells[3].cell, CrystalSystem::Orthorhombic));
  const auto lines = LinesOfText(text);
  const auto header = std::ranges::find_if(
      lines, [](const std::string& line) { return line.rfind("    H   K   L SST-OBS", 0) == 0; });
  ASSERT_NE(header, lines.end());
  // The longest axis gives the first line.
  const std::string row = header[1];
  EXPECT_EQ(row.substr(0, 13), "    0   1   0");
  EXPECT_NEAR(std::stod(row.substr(13, 9)), std::pow(treor::kWave / (2 * 5.39), 2), 1e-4);
  EXPECT_NEAR(std::stod(row.substr(22, 9)), std::pow(treor::kWave / (2 * 5.39), 2), 1e-4);
  EXPECT_NEAR(std::stod(row.substr(41, 8)), 16.433, 0.02);
  EXPECT_NEAR(std::stod(row.substr(49, 8)), 16.433, 0.02);
  EXPECT_NEAR(std::stod(row.substr(57, 8)), 5.39, 0.01);
}

TEST_F(Accept, EqualAxesGoOnWithHigherSymmetry) {
  ASSERT_TRUE(Try(kCells[0].cell, CrystalSystem::Orthorhombic, 20));
  EXPECT_TRUE(Says("TEST OF CUBIC SYMMETRY"));
  EXPECT_TRUE(Says("SET KS=0 TO CHECK THE SOLUTION"));
  EXPECT_EQ(data.run.solutions.back().cell(1), data.run.solutions.back().cell(3));
}

TEST_F(Accept, TwoEqualAxesAreTetragonal) {
  // The unique axis stands first in the candidate.
  ASSERT_TRUE(Try({7.93, 5.21, 5.21, 90, 90, 90}, CrystalSystem::Orthorhombic));
  EXPECT_TRUE(Says("TEST OF TETRAGONAL SYMMETRY"));
  EXPECT_NEAR(data.run.solutions.back().cell(2), 5.21, 0.01);
  EXPECT_NEAR(data.run.solutions.back().cell(3), 7.93, 0.01);
  EXPECT_TRUE(Says("SET KS=0 AND THS=0"));
}

TEST_F(Accept, AxesOfARectangleInAHexagonAreHexagonal) {
  // b is a times the root of 3: 1/a^2 three times 1/b^2, and the hexagonal a twice that of here.
  const double a = 5.0;
  ASSERT_TRUE(Try({a, a * std::sqrt(3.0), 4.17, 90, 90, 90}, CrystalSystem::Orthorhombic));
  EXPECT_TRUE(Says("TEST OF HEXAGONAL SYMMETRY"));
  EXPECT_NEAR(data.run.solutions.back().cell(1), 2 * a, 0.01);
  EXPECT_EQ(data.run.solutions.back().cell(6), 120.0f);
}

TEST_F(Accept, MonoclinicWithoutACrossTermIsOrthorhombic) {
  ASSERT_TRUE(Try(kCells[3].cell, CrystalSystem::Monoclinic));
  EXPECT_EQ(data.run.solutions.back().cell(5), 90.0f);
  EXPECT_FALSE(Says("*** REDUCED-CELL ***"));
}

TEST_F(Accept, AcuteBetaIsTheSameLattice) {
  ASSERT_TRUE(Try({5.43, 4.83, 8.14, 90, 72.42, 90}, CrystalSystem::Monoclinic));
  EXPECT_NEAR(data.run.solutions.back().cell(5), 107.58, 0.1);
}

TEST_F(Accept, LinesTakenOutComeBackForTheLastTest) {
  ASSERT_TRUE(Try(kCells[0].cell, CrystalSystem::Cubic, 20));
  const auto deleted = data.search.all.size() - data.search.lines.size();
  ASSERT_GT(deleted, 1u);
  EXPECT_TRUE(Says("ADD THE " + WriteRecord<"(i2)">(static_cast<int>(deleted)) + " DELETED LINES"));
  EXPECT_TRUE(Says("TOTAL NUMBER OF LINES =   20"));
}

// At the limits: M as large as asked for passes, and lines left over up to NIX.
TEST(AcceptLimits, MeritAndLinesLeftOver) {
  const auto solved = [](int merit, int nix) {
    DataSet data;
    data.search.options.wave = static_cast<float>(treor::kWave);
    data.search.options.merit = merit;
    data.search.options.nix = nix;
    auto twotheta = treor::Pattern(kCells[4].cell, 30, 0.02);
    twotheta.push_back((twotheta[5] + twotheta[6]) / 2);
    std::ranges::sort(twotheta);
    data.search.all = data.search.lines = treor::LinesOf(twotheta);  // no higher orders out
    const TreorCandidate candidate{CrystalSystem::Monoclinic, treor::ConstantsOf(kCells[4].cell)};
    const bool accepted = AcceptCandidate(data.search, candidate);
    EXPECT_GE(data.run.solutions.size(), 1u) << "listed all the same";
    return accepted ? data.run.solutions.back().merit : 0;
  };
  const int merit = solved(1, 1);
  ASSERT_GT(merit, 6);
  EXPECT_EQ(solved(merit, 1), merit);
  EXPECT_EQ(solved(merit + 1, 1), 0);
  EXPECT_EQ(solved(merit, 0), 0);
}

}  // namespace
