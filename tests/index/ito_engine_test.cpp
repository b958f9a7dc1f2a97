// The engine ITO from cards to listing.
#include <gtest/gtest.h>

#include <thread>

#include "index/ito/latticefit.h"
#include "index/listings.h"
#include "index/simulate.h"
#include "support/smallfiles.h"

namespace {

struct Result {
  ItoRun run;
  std::string listing;
  SolutionTable solutions;
  int nsolutions = 0;
  float First(int field) const { return solutions(1, field); }
};

Result RunIto(const std::string& input, const EngineReport& report = {}) {
  const TempDir directory;
  const std::string in = directory.file("ito.inp"), out = directory.file("ito.out");
  WriteFile(in, input);
  Result result;
  result.run.report = report;
  int status = -1;
  ItoEngine(status, in, out, result.run);
  EXPECT_EQ(status, 0);
  result.listing = ReadFile(out);
  LineReader reader(out);
  result.nsolutions = ReadItoSolutions(reader, result.solutions);
  return result;
}

struct Crystal {
  const char* name;
  Cell cell;
  int type = TypeP;
};
const Crystal kOrthorhombic{"orthorhombic", {7.12, 9.43, 11.87, 90, 90, 90}};
const Crystal kMonoclinic{"monoclinic", {7.12, 9.43, 11.87, 90, 103.4, 90}};
const Crystal kTriclinic{"triclinic", {7.12, 8.43, 9.87, 97.2, 101.4, 93.1}};
const Crystal kCentred{"centred", {9.12, 12.43, 8.87, 90, 90, 90}, TypeC};
const Crystal kInner{"body centred", {9.12, 12.43, 8.87, 90, 90, 90}, TypeI};
const Crystal kTetragonal{"tetragonal", {7.12, 7.12, 9.87, 90, 90, 90}};
const Crystal kShort{"one short axis", {3.91, 11.43, 16.87, 90, 90, 90}};

std::vector<double> LinesOf(const Crystal& crystal) {
  return LinesOf(LatticeOfCell(crystal.cell),
                 [&](const Hkl& r) { return TypeAllows(crystal.type, r); });
}

std::string Problem(const std::vector<double>& lines, const std::string& parameters = kParameters,
                    const std::string& second = "") {
  return "title\n" + parameters + "\n" + second + "\n" + LineCards(lines);
}
std::string Problem(const Crystal& crystal) { return Problem(LinesOf(crystal)); }
const std::string kFew = Problem(std::vector<double>{100, 200, 300});

std::string TrialCard(const Lattice& x) {
  return WriteRecord<"(6f10.4)">(x.a, x.b, x.c, x.d, x.e, x.f) + "\n";
}

void ExpectFirst(const Result& result, const Crystal& crystal) {
  ASSERT_GT(result.nsolutions, 0) << crystal.name;
  Cell cell;
  for (int k = 0; k < 6; ++k) cell[k] = result.First(sola + k);
  EXPECT_NEAR(result.First(solvolume), VolumeOf(crystal.cell), 2e-3 * VolumeOf(crystal.cell))
      << crystal.name;
  EXPECT_TRUE(Indexes(LatticeOfCell(cell), LinesOf(crystal), 0.5)) << crystal.name;
  EXPECT_EQ(result.First(solnix), 20);
  EXPECT_GT(result.First(solfom), 20);
}

TEST(ItoEngine, ExactLinesGiveTheLattice) {
  for (const Crystal& crystal :
       {kOrthorhombic, kMonoclinic, kTriclinic, kCentred, kInner, kShort}) {
    const Result result = RunIto(Problem(crystal));
    ExpectFirst(result, crystal);
    EXPECT_TRUE(result.run.complaints.empty());
    EXPECT_LE(result.nsolutions, 4);
    EXPECT_EQ(Holds(result.listing, "zone-finding is restarted"), crystal.name == kShort.name);
  }
}

// Twice the same gives one solution.
TEST(ItoEngine, TrialLatticesAreOnlyRefined) {
  Lattice start = LatticeOfCell(kTriclinic.cell);
  start.a += 0.1f, start.e += 0.1f;
  const Result result = RunIto(Problem(LinesOf(kTriclinic), With(43, " 3")) + TrialCard(start) +
                               TrialCard({100, 200, 300}) + TrialCard(start));
  ExpectFirst(result, kTriclinic);
  EXPECT_EQ(result.nsolutions, 1);
  EXPECT_FALSE(Holds(result.listing, "zones that have been found"));
  EXPECT_TRUE(Holds(result.listing, "not enough lines indexed"));
  EXPECT_TRUE(
      Holds(result.listing, "\n0solution  2 is not printed, it is the same as solution  1\n"));
}

TEST(ItoEngine, ZonesByHandEnterTheSearch) {
  const Lattice x = LatticeOfCell(kTriclinic.cell);
  std::string cards;
  for (const auto& [a, b, f] : {std::tuple(x.a, x.b, x.f), {x.a, x.c, x.e}})
    cards += WriteRecord<"(3f10.2,f10.1)">(a, b, f, 123456.5f) + "\n";
  const Result result = RunIto(Problem(LinesOf(kTriclinic), With(31, " 1")) + cards + "\n");
  ExpectFirst(result, kTriclinic);
  EXPECT_EQ(Count(result.listing, "    123456.5"), 6);  // of the cards, found, and selected
}

// By the number of angles that are not right. A wanted system has windows twice as wide.
TEST(ItoEngine, CrystalSystemsArePreferred) {
  const std::pair<const char*, std::array<bool, 3>> cases[] = {
      {" 0 0 0", {true, true, true}},   {" 1 0 0", {true, false, false}},
      {" 1-1 0", {true, false, false}}, {" 0 1 0", {false, true, false}},
      {"-1 0 0", {false, true, true}},  {" 0 0 1", {false, false, true}},
      {"-1-1-1", {false, false, false}}};
  for (const auto& [wishes, allowed] : cases) {
    const Result result = RunIto(Problem(LinesOf(kOrthorhombic), With(5, wishes)));
    if (allowed[0]) ExpectFirst(result, kOrthorhombic);
    for (int row = 1; row <= result.nsolutions; ++row) {
      int oblique = 0;
      for (const int angle : {solalpha, solbeta, solgamma})
        oblique += result.solutions(row, angle) != 90;
      EXPECT_TRUE(allowed[std::min(oblique, 2)]) << wishes;
    }
    EXPECT_EQ(Count(result.listing, "not wanted"), std::ranges::count(std::string(wishes), '-'));
  }
  for (const double off : {-1.5, 2.5})
    for (const char* wish : {" 0", " 1"}) {
      auto q = LinesOf(kOrthorhombic);
      q[9] = QAt(AngleAt(q[9]) + off * 0.02);
      const std::string parameters = With(71, "  2.0000", With(43, " 1", With(5, wish)));
      const Result result =
          RunIto(Problem(q, parameters) + TrialCard(LatticeOfCell(kOrthorhombic.cell)));
      EXPECT_EQ(result.First(solnix), off < 0 && wish[1] == '1' ? 20 : 19) << off << wish;
    }
}

TEST(ItoEngine, TheListingHoldsWhatTheCardsAskFor) {
  const auto run = [&](std::size_t column, const char* field, const std::string& second = "") {
    return RunIto(Problem(LinesOf(kTetragonal), With(column, field), second));
  };
  const auto [engine, text, table, n] = run(47, " 2");
  // Of two solutions, and of all lines.
  EXPECT_EQ(Count(text, "\n0twotheta     d       q       h    k    l\n"), 3);
  for (const char* part : {"c       d       e       f    hits  pedigree\n", " tetragonal",
                           "d       e       f   lines   merit    type  pedigree\n",
                           "the best solution is now used to try and index all lines."})
    EXPECT_TRUE(Holds(text, part)) << part;
  for (const auto& [column, mark] : {std::pair(33, "mean delta q"), {34, "in standard form"}}) {
    EXPECT_FALSE(Holds(text, mark));
    EXPECT_TRUE(Holds(run(column, "1").listing, mark));
  }
  ASSERT_GT(n, 1);
  const auto rank = [&t = table](int row) { return std::pair(t(row, solnix), t(row, solfom)); };
  for (int row = 2; row <= n; ++row) EXPECT_GE(rank(row - 1), rank(row));
  EXPECT_EQ(run(4, "1").nsolutions, 1);
  EXPECT_EQ(run(4, "4", "            999999.0").nsolutions, 0);
}

TEST(ItoEngine, TheListOfLinesTellsThoseThatDoNotFit) {
  const auto run = [](const std::vector<double>& q, const Lattice& trial) {
    return RunIto(Problem(q, With(43, " 1")) + TrialCard(trial));
  };
  auto lines = LinesOf(kOrthorhombic);
  const Lattice x = LatticeOfCell(kOrthorhombic.cell);
  // A cell of 27 times the volume calculates too many.
  EXPECT_TRUE(Holds(run(lines, {x.a / 9, x.b / 9, x.c / 9}).listing,
                    "no listing is printed when n20 is more than 100"));
  const double tenth = lines[9];
  lines[9] += (lines[10] - lines[9]) / 2;
  const Result result = run(lines, x);
  EXPECT_EQ(result.First(solnix), 19);
  EXPECT_EQ(Count(result.listing, " not indexed\n"), 2);
  EXPECT_TRUE(Holds(result.listing, "lines that are not indexed   1\n"));
  EXPECT_FALSE(Holds(result.listing, "was used before"));
  lines[9] = lines[8] + 0.1;
  ASSERT_LT(lines[9], tenth);
  EXPECT_EQ(Count(run(lines, x).listing, " hkl-combination was used before\n"), 2);
}

TEST(ItoEngine, NeitherProblemsNorEnginesSeeEachOther) {
  EXPECT_EQ(RunIto(kFew).run.nlines, 3);
  const std::string inputs[] = {Problem(kShort) + kFew + Problem(kMonoclinic),
                                Problem(kTriclinic) + "end\n" + Problem(kCentred)};
  const std::string alone[] = {
      RunIto(Problem(kShort)).listing + RunIto(kFew).listing + RunIto(Problem(kMonoclinic)).listing,
      RunIto(Problem(kTriclinic)).listing};
  std::array<std::vector<std::string>, 2> listings;
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < 2; ++i)
    threads.emplace_back([&, i] {
      for (int n = 0; n < 10; ++n) listings[i].push_back(RunIto(inputs[i]).listing);
    });
  for (std::thread& each : threads) each.join();
  for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(listings[i], std::vector(10, alone[i]));
}

TEST(ItoEngine, AStopAtAnyReportLeavesAReadableListing) {
  const std::string input = Problem(kOrthorhombic) + kFew;
  int all = 0, withsolutions = 0;
  RunIto(input, [&](const std::string& stage) { return ++all > 0 && stage.starts_with("ITO: "); });
  ASSERT_GT(all, 20);
  for (int n = 1; n <= all; ++n) {
    int reports = 0;
    const Result result = RunIto(input, [&](const std::string&) { return ++reports < n; });
    EXPECT_TRUE(result.run.stopped && result.run.complaints.empty());
    EXPECT_EQ(result.run.problems, 1);
    EXPECT_EQ(reports, n);
    EXPECT_EQ(result.nsolutions > 0, Holds(result.listing, "q(a)"));
    for (int row = 1; row <= result.nsolutions; ++row)
      EXPECT_GT(result.solutions(row, solvolume), 0);
    withsolutions += result.nsolutions > 0;
  }
  EXPECT_TRUE(withsolutions > all / 4 && withsolutions < all);
}

TEST(ItoEngine, FilesThatCannotBeReadOrWrittenAreTold) {
  const TempDir directory;
  const std::string in = directory.file("ito.inp"), out = directory.file("ito.out");
  const std::string nowhere = directory.file("nowhere/ito.out");
  const auto expect = [&](const std::string& output, const std::string& text) {
    ItoRun run;
    int status = -1;
    ItoEngine(status, in, output, run);
    EXPECT_EQ(status, 0);
    ASSERT_EQ(run.complaints.size(), 1u);
    EXPECT_EQ(run.complaints[0].caption, "File Error");
    EXPECT_EQ(run.complaints[0].text, text);
  };
  expect(out, "Error opening ITO input file\n" + in + ": No such file or directory");
  WriteFile(in, Problem(kTriclinic) + "end\n");
  expect(nowhere, "Error opening ITO output file\n" + nowhere + ": No such file or directory");
  WriteFile(out, "before\n");
  const SmallFiles full(5000);
  expect(out, "Error writing ITO output file\n" + out + ": File too large");
  EXPECT_EQ(ReadFile(out), "before\n");
}

}  // namespace
