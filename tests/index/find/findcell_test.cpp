// The whole search: lists of lines as they are measured, sources beside it, odd lists, and stop.
#include "index/find/findcell.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <limits>
#include <sstream>
#include <thread>

#include "index/find/ranking.h"
#include "index/find/simulate.h"

using namespace findtest;

namespace {

using enum LatticeSystem;

// A list of lines of a phase: one in seven lost, errors of 0.01 degrees, and a foreign line.
struct Phase {
  const char* name;
  Bravais lattice;
  Condition there;
};
void PrintTo(const Phase& phase, std::ostream* out) { *out << phase.name; }
const Phase kPhases[] = {
    {"Cubic", {Cubic, 'I'}, [](int, int, int) { return true; }},
    {"Hexagonal", {Hexagonal, 'P'}, [](int h, int k, int l) { return h || k || l % 2 == 0; }},
    {"Rhombohedral",
     {Rhombohedral, 'R'},
     [](int h, int k, int l) { return (h && k && h + k) || l % 2 == 0; }},
    {"Tetragonal", {Tetragonal, 'P'}, [](int h, int k, int l) { return l || (h + k) % 2 == 0; }},
    {"Orthorhombic",
     {Orthorhombic, 'P'},
     [](int h, int k, int l) { return (h || (k + l) % 2 == 0) && (l || h % 2 == 0); }},
    {"Monoclinic",
     {Monoclinic, 'P'},
     [](int h, int k, int l) { return (k || l % 2 == 0) && (h || l || k % 2 == 0); }},
    {"Triclinic", {Triclinic, 'P'}, [](int, int, int) { return true; }},
};

struct Simulated {
  Cell cell;
  FindCellTask task;
};
Simulated SimulationOf(const Phase& phase, unsigned seed) {
  Random random(seed);
  const Cell cell = RandomCell(phase.lattice, random);
  std::vector<double> at;
  for (double x : Positions(cell, phase.lattice.centering, 35, phase.there))
    if (random() % 7 != 0) at.push_back(x);
  AddErrors(at, 0.01, 0, random);
  at.push_back(Uniform(random, at[5], at.back()));
  return {cell, {LinesAt(at), kWave, {}, 2}};
}

Form LatticeOf(const FoundCell& cell) { return ReducedPrimitive(cell.cell, cell.centering); }

// What holds of each table.
void ExpectSound(const FoundCells& found, const FindCellTask& task) {
  EXPECT_LE(found.cells.size(), kMostFound);
  for (std::size_t i = 0; i < found.cells.size(); ++i) {
    const FoundCell& c = found.cells[i];
    for (double x : {c.volume, c.zero, c.zeroesd, c.likelihood, c.m20, c.f20, c.f20error})
      EXPECT_TRUE(std::isfinite(x)) << i;
    for (double x : c.esd) EXPECT_TRUE(std::isfinite(x) && x >= 0) << i;
    EXPECT_GT(c.volume, 0);
    EXPECT_LT(std::abs(c.zero), 0.15);
    EXPECT_NEAR(c.volume / std::sqrt(Determinant(DirectOf(c.cell))), 1, 1e-6);
    EXPECT_LE(c.indexed, c.positions);
    EXPECT_EQ(c.unindexed.size() + static_cast<std::size_t>(c.indexed), task.lines.size());
    for (int n : c.unindexed) EXPECT_TRUE(n >= 1 && n <= static_cast<int>(task.lines.size()));
    EXPECT_FALSE(c.origins.empty());
    const auto relative = [&](const FoundCell& better) {
      return AreRelatives(LatticeOf(c), LatticeOf(better));
    };
    const auto above = std::span(found.cells).first(i);
    const auto first = std::ranges::find_if(above, relative);
    EXPECT_EQ(c.relativeof, first == above.end() ? -1 : first - above.begin()) << i;
    for (std::size_t j = 0; j < i; ++j)
      EXPECT_FALSE(IsSameLattice(LatticeOf(c), LatticeOf(found.cells[j]), 0.005)) << i << " " << j;
  }
}

// All that a table says, to the last bit.
std::string TextOf(const FoundCells& found) {
  std::ostringstream text;
  text << std::hexfloat << static_cast<int>(found.end) << '\n';
  for (const FoundCell& c : found.cells) {
    text << static_cast<int>(c.system) << c.centering;
    for (double x : c.cell) text << ' ' << x;
    for (double x : c.esd) text << ' ' << x;
    for (double x : {c.volume, c.zero, c.zeroesd, c.likelihood, c.m20, c.f20, c.f20error})
      text << ' ' << x;
    text << ' ' << c.f20lines << ' ' << c.indexed << ' ' << c.positions;
    for (int n : c.unindexed) text << ' ' << n;
    for (const std::string& origin : c.origins) text << ' ' << origin;
    text << ' ' << c.relativeof << c.tie << '\n';
  }
  return text.str();
}

CellSource Proposing(const char* name, const std::vector<ProposedCell>& cells) {
  return {name, [cells](const std::function<bool()>&) { return cells; }};
}

bool IsCell(const FoundCell& found, const Simulated& s, const Phase& phase) {
  if (found.system != phase.lattice.system || found.centering != phase.lattice.centering)
    return false;
  for (std::size_t i = 0; i < 6; ++i)
    if (std::abs(found.cell[i] / s.cell[i] - 1) > 2e-3) return false;
  return true;
}

class OfPhase : public testing::TestWithParam<Phase> {};
INSTANTIATE_TEST_SUITE_P(FindCells, OfPhase, testing::ValuesIn(kPhases),
                         [](const auto& phase) { return phase.param.name; });

}  // namespace

TEST_P(OfPhase, TheRightLatticeIsTheFirst) {
  Simulated s = SimulationOf(GetParam(), 51);
  s.task.sources = {Proposing("Right", {{s.cell, GetParam().lattice.centering}})};
  const FoundCells found = FindCells(s.task);
  EXPECT_EQ(found.end, FindCellEnd::Done);
  ExpectSound(found, s.task);
  ASSERT_FALSE(found.cells.empty());
  const FoundCell& best = found.cells.front();
  EXPECT_TRUE(IsCell(best, s, GetParam())) << TextOf(found);
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_LE(std::abs(best.cell[i] - s.cell[i]), 4 * best.esd[i] + 1e-9) << i;
    EXPECT_LT(best.esd[i], 0.05) << i;
  }
  EXPECT_LE(std::abs(best.zero), 4 * best.zeroesd);
  EXPECT_GE(best.indexed, static_cast<int>(s.task.lines.size()) - 1);
  EXPECT_GT(best.m20, 10);
  EXPECT_EQ(best.origins, (std::vector<std::string>{"Right", "Search"}));
  EXPECT_EQ(best.relativeof, -1);
}

TEST(FindCells, ALargeZeroShiftIsFoundWithTheLattice) {
  const Phase& phase = kPhases[4];
  Simulated s = SimulationOf(phase, 57);
  std::vector<double> at;
  for (const ObservedLine& line : s.task.lines) at.push_back(line.tth - 0.1);
  s.task.lines = LinesAt(at);
  const FoundCells found = FindCells(s.task);
  ASSERT_FALSE(found.cells.empty());
  EXPECT_TRUE(IsCell(found.cells.front(), s, phase)) << TextOf(found);
  EXPECT_NEAR(found.cells.front().zero, -0.1, 0.02);
}

TEST(FindCells, TwoPhasesHalfAndHalfAreFoundOneAfterTheOther) {
  const Phase &orthorhombic = kPhases[4], &hexagonal = kPhases[1];
  const Simulated one = SimulationOf(orthorhombic, 58), other = SimulationOf(hexagonal, 59);
  std::vector<double> both, rest;
  for (const Simulated& s : {one, other})
    for (const ObservedLine& line : s.task.lines) both.push_back(line.tth);
  FindCellTask task{LinesAt(both), kWave, {}, 2};
  const FoundCells first = FindCells(task);
  ExpectSound(first, task);
  ASSERT_FALSE(first.cells.empty());
  const bool isone = IsCell(first.cells.front(), one, orthorhombic);
  EXPECT_TRUE(isone || IsCell(first.cells.front(), other, hexagonal)) << TextOf(first);
  for (int number : first.cells.front().unindexed)
    rest.push_back(task.lines[static_cast<std::size_t>(number - 1)].tth);
  const FoundCells second = FindCells({LinesAt(rest), kWave, {}, 2});
  ASSERT_FALSE(second.cells.empty());
  EXPECT_TRUE(isone ? IsCell(second.cells.front(), other, hexagonal)
                    : IsCell(second.cells.front(), one, orthorhombic))
      << TextOf(second);
}

TEST(FindCells, TheTableIsTheSameWithAnyNumberOfThreads) {
  Simulated s = SimulationOf(kPhases[1], 52);
  s.task.sources = {Proposing("A", {{s.cell, 'P'}}),
                    Proposing("B", {{{9, 9, 9, 90, 90, 90}, ' '}})};
  std::vector<std::string> texts;
  for (int threads : {1, 2, 3}) {
    s.task.threads = threads;
    texts.push_back(TextOf(FindCells(s.task)));
  }
  EXPECT_EQ(texts[0], texts[1]);
  EXPECT_EQ(texts[0], texts[2]);
}

TEST(FindCells, SourcesAreNamedWhereTheyAreRightAndRubbishDoesNoHarm) {
  const Phase& phase = kPhases[3];
  Simulated s = SimulationOf(phase, 53);
  const double nan = std::numeric_limits<double>::quiet_NaN(), inf = 1 / 0.0;
  Cell near = s.cell;
  near[0] *= 1.0005;
  near[1] = near[0];
  s.task.sources = {Proposing("Right", {{{4, 4, 4, 90, 90, 90}, 'P'}, {near, ' '}}),
                    Proposing("Wrong", {{{7.77, 8.88, 9.99, 90, 90, 90}, 'P'}}),
                    Proposing("Rubbish", {{{nan, nan, nan, nan, nan, nan}, 'P'},
                                          {{5, 5, 5, 90, nan, 90}, ' '},
                                          {{0, 0, 0, 0, 0, 0}, ' '},
                                          {{0, 5, 5, 90, 90, 90}, 'P'},
                                          {{-5, -5, -5, 90, 90, 90}, 'I'},
                                          {{5, 6, 7, -90, -90, 400}, 'F'},
                                          {{inf, 5, 5, 90, 90, 90}, 'P'},
                                          {{1e200, 1e200, 1e-200, 90, 90, 90}, 'P'},
                                          {{1e-9, 1e-9, 1e-9, 90, 90, 90}, 'P'},
                                          {{1e-5, 1e-5, 1e5, 90, 90, 90}, 'P'},
                                          {{5, 6, 7, 60, 60, 120}, 'P'},  // flat
                                          {{5, 6, 7, 20, 30, 120}, ' '},  // of no such angles
                                          {{5, 6, 7, 90, 90, 180}, 'R'},
                                          {{5, 6, 7, 90, 90, 0.01}, 'x'}}),
                    Proposing("None", {})};
  const FoundCells found = FindCells(s.task);
  ExpectSound(found, s.task);
  ASSERT_FALSE(found.cells.empty());
  EXPECT_TRUE(IsCell(found.cells.front(), s, phase)) << TextOf(found);
  EXPECT_EQ(found.cells.front().origins, (std::vector<std::string>{"Right", "Search"}));
}

// Lines of a layered crystal that tell the height of its layers and nothing else.
TEST(FindCells, ConstantsThatNoLineTellsMakeNoCell) {
  Random random(60);
  std::vector<double> at;
  for (int l = 1; l <= 30; ++l) at.push_back(2 * std::asin(kWave * l / 2 / 60) / kRad);
  AddErrors(at, 0.005, 0, random);
  at.push_back(23.456);
  const FindCellTask task{LinesAt(at), kWave, {}, 2};
  const FoundCells found = FindCells(task);
  ExpectSound(found, task);
  for (const FoundCell& cell : found.cells)
    for (std::size_t i = 0; i < 3; ++i)
      EXPECT_TRUE(cell.esd[i] > 0 && cell.esd[i] < cell.cell[i] / 10) << TextOf(found);
}

TEST(FindCells, OfOddListsHasASoundTableOrNone) {
  const FindCellTask edges{LinesAt({0.1, 0.2, 12, 23, 34, 45, 56, 67, 178, 179.9}), kWave, {}, 2};
  const FoundCells found = FindCells(edges);
  EXPECT_EQ(found.end, FindCellEnd::Done);
  ExpectSound(found, edges);
  for (const auto& at :
       {std::vector<double>{}, {10, 20, 30, 40, 50}, std::vector<double>(30, 25.5)}) {
    const FoundCells none = FindCells({LinesAt(at), kWave, {}, 2});
    EXPECT_EQ(none.end, FindCellEnd::TooFewLines);
    EXPECT_TRUE(none.cells.empty());
  }
  const Cell cubic = {5.5, 5.5, 5.5, 90, 90, 90};
  const FoundCells least = FindCells({LinesAt(Positions(cubic, 'F', kLeastLines)), kWave, {}, 2});
  EXPECT_EQ(least.end, FindCellEnd::Done);
  EXPECT_FALSE(least.cells.empty());
}

TEST(FindCells, TellsHowFarItIsAndStopsWhenAsked) {
  const Simulated s = SimulationOf(kPhases[4], 56);
  double before = 0;
  bool told = false;
  const FoundCells whole = FindCells(s.task, [&](double done, const FoundCell* best) {
    EXPECT_TRUE(done >= 0 && done <= 1);
    before = done;
    told = told || (best && best->volume > 0 && std::isfinite(best->likelihood));
    return true;
  });
  EXPECT_EQ(before, 1);
  EXPECT_TRUE(told);
  EXPECT_FALSE(whole.cells.empty());

  // A source that goes on until it is told to stop.
  Simulated stopped = s;
  std::atomic<bool> heard = false;
  stopped.task.sources = {{"Long", [&](const std::function<bool()>& stop) {
                             const auto end =
                                 std::chrono::steady_clock::now() + std::chrono::seconds(60);
                             while (!(heard = stop()) && std::chrono::steady_clock::now() < end)
                               std::this_thread::sleep_for(std::chrono::milliseconds(1));
                             return std::vector<ProposedCell>{{s.cell, 'P'}};
                           }}};
  int reports = 0;
  const FoundCells early = FindCells(stopped.task, [&](double, const FoundCell*) {
    ++reports;
    return false;
  });
  EXPECT_EQ(early.end, FindCellEnd::Stopped);
  EXPECT_EQ(reports, 1);
  EXPECT_TRUE(heard);
  ExpectSound(early, stopped.task);
}
