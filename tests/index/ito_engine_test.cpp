// The engine ITO from cards to listing.
#include <gtest/gtest.h>

#include <sstream>
#include <thread>

#include "index/ito/latticefit.h"
#include "index/itoproblems.h"
#include "index/listings.h"
#include "support/smallfiles.h"

namespace {

bool Holds(const std::string& text, const std::string& part) { return Count(text, part) > 0; }

struct Result {
  ItoRun run;
  std::string listing;
  SolutionTable solutions;
  int nsolutions = 0;
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
  UnitCell cell;
  int type = TypeP;
};
const Crystal kOrthorhombic{"orthorhombic", {{7.12f, 9.43f, 11.87f, 90, 90, 90}}};
const Crystal kMonoclinic{"monoclinic", {{7.12f, 9.43f, 11.87f, 90, 103.4f, 90}}};
const Crystal kTriclinic{"triclinic", {{7.12f, 8.43f, 9.87f, 97.2f, 101.4f, 93.1f}}};
const Crystal kCentred{"centred", {{9.12f, 12.43f, 8.87f, 90, 90, 90}}, TypeC};
const Crystal kInner{"body centred", {{9.12f, 12.43f, 8.87f, 90, 90, 90}}, TypeI};
const Crystal kTetragonal{"tetragonal", {{7.12f, 7.12f, 9.87f, 90, 90, 90}}};
const Crystal kShort{"one short axis", {{3.91f, 11.43f, 16.87f, 90, 90, 90}}};

std::vector<double> LinesOf(const Crystal& crystal) {
  return LinesOf(ReciprocalOf(crystal.cell),
                 [&](const Hkl& r) { return TypeAllows(crystal.type, r); });
}

std::string Problem(const std::string& title, const std::vector<double>& lines,
                    const std::string& parameters = kParameters, const std::string& second = "") {
  return title + "\n" + parameters + "\n" + second + "\n" + LineCards(lines);
}
std::string Problem(const Crystal& crystal) { return Problem(crystal.name, LinesOf(crystal)); }

// Parameters with a text from a column on.
std::string With(std::size_t column, const std::string& text) {
  std::string parameters = kParameters;
  parameters.resize(std::max(parameters.size(), column - 1 + text.size()), ' ');
  return parameters.replace(column - 1, text.size(), text);
}

void ExpectFirst(const Result& result, const Crystal& crystal) {
  ASSERT_GT(result.nsolutions, 0) << crystal.name;
  UnitCell cell;
  for (int k = 1; k <= 6; ++k) cell(k) = result.solutions(1, sola + k - 1);
  const double volume = CellVolume(crystal.cell);
  EXPECT_NEAR(result.solutions(1, solvolume), volume, 2e-3 * volume) << crystal.name;
  EXPECT_TRUE(Indexes(ReciprocalOf(cell), LinesOf(crystal), 0.5)) << crystal.name;
  EXPECT_EQ(result.solutions(1, solnix), 20);
  EXPECT_GT(result.solutions(1, solfom), 20);
}

TEST(ItoEngine, ExactLinesInEachFormGiveTheLattice) {
  for (const Crystal& crystal :
       {kOrthorhombic, kMonoclinic, kTriclinic, kCentred, kInner, kShort}) {
    const auto q = LinesOf(crystal);
    std::vector<double> angles, distances;
    for (const double each : q)
      (angles.push_back(TwoThetaAt(each)), distances.push_back(100 / std::sqrt(each)));
    for (const auto& lines : {q, angles, distances}) {
      const Result result = RunIto(Problem(crystal.name, lines));
      ExpectFirst(result, crystal);
      EXPECT_TRUE(result.run.complaints.empty());
      EXPECT_LE(result.nsolutions, 4);
      EXPECT_EQ(Holds(result.listing, "zone-finding is restarted"), crystal.name == kShort.name);
    }
  }
}

TEST(ItoEngine, ADominantZoneLeavesAtMostOneOfTheLinesThatAreCombined) {
  const Lattice x = ReciprocalOf(kShort.cell);
  auto lines = LinesOf(x, [](const Hkl& r) { return r.h == 0; });
  for (int others = 0; others <= 2; ++others) {
    for (const char* numbers : {" 3 6", " 330", "4199"}) {
      const Result result = RunIto(Problem("zone", lines, With(35, numbers)));
      EXPECT_EQ(Holds(result.listing, "zone-finding is restarted"), others < 2)
          << others << numbers;
    }
    lines[3 + others] += (lines[4 + others] - lines[3 + others]) / 3;
  }
}

std::string TrialCard(const Lattice& x) {
  return WriteRecord<"(6f10.4)">(x.a, x.b, x.c, x.d, x.e, x.f) + "\n";
}

TEST(ItoEngine, TrialLatticesAreOnlyRefined) {
  const auto lines = LinesOf(kTriclinic);
  Lattice start = ReciprocalOf(kTriclinic.cell);
  const Lattice far{100, 200, 300};
  start.a += 0.1f, start.e += 0.1f;
  // Twice the same gives one solution.
  const Result result = RunIto(Problem("trial", lines, With(43, " 3")) + TrialCard(start) +
                               TrialCard(far) + TrialCard(start));
  ExpectFirst(result, kTriclinic);
  EXPECT_EQ(result.nsolutions, 1);
  EXPECT_FALSE(Holds(result.listing, "zones that have been found"));
  EXPECT_TRUE(Holds(result.listing, "not enough lines indexed"));
  EXPECT_TRUE(
      Holds(result.listing, "\n0solution  2 is not printed, it is the same as solution  1\n"));
}

TEST(ItoEngine, ZonesByHandEnterTheSearch) {
  const Lattice x = ReciprocalOf(kTriclinic.cell);
  std::string cards;
  for (const auto& [a, b, f] : {std::tuple(x.a, x.b, x.f), {x.a, x.c, x.e}})
    cards += WriteRecord<"(3f10.2,f10.1)">(a, b, f, 123456.5f) + "\n";
  const Result result =
      RunIto(Problem("zones", LinesOf(kTriclinic), With(31, " 1")) + cards + "\n");
  ExpectFirst(result, kTriclinic);
  EXPECT_EQ(Count(result.listing, "    123456.5"), 6);  // of the cards, found, and selected
}

// How many angles of a solution are not right.
int Oblique(const SolutionTable& s, int row) {
  return (s(row, solalpha) != 90) + (s(row, solbeta) != 90) + (s(row, solgamma) != 90);
}

TEST(ItoEngine, CrystalSystemsArePreferred) {
  const auto lines = LinesOf(kOrthorhombic);
  const std::pair<const char*, std::array<bool, 3>> cases[] = {
      {" 0 0 0", {true, true, true}},   {" 1 0 0", {true, false, false}},
      {" 1-1 0", {true, false, false}}, {" 0 1 0", {false, true, false}},
      {"-1 0 0", {false, true, true}},  {" 0 0 1", {false, false, true}}};
  for (const auto& [wishes, allowed] : cases) {
    const Result result = RunIto(Problem("system", lines, With(5, wishes)));
    if (allowed[0]) ExpectFirst(result, kOrthorhombic);
    for (int row = 1; row <= result.nsolutions; ++row)
      EXPECT_TRUE(allowed[std::min(Oblique(result.solutions, row), 2)]) << wishes;
  }
  const Result none = RunIto(Problem("none", lines, With(5, "-1-1-1")));
  EXPECT_FALSE(Holds(none.listing, "q(a)"));
}

TEST(ItoEngine, APreferenceDoublesTheWindows) {
  constexpr double tolerance = 0.02;
  for (const auto& [off, usual, preferred] :
       {std::tuple(0.9, 20, 20), {1.5, 19, 20}, {-1.5, 19, 20}, {2.5, 19, 19}}) {
    auto q = LinesOf(kOrthorhombic);
    q[9] = QAt(TwoThetaAt(q[9]) + off * tolerance);
    for (const auto& [wish, lines] : {std::pair("  ", usual), {" 1", preferred}}) {
      std::string parameters = With(43, " 1").replace(4, 2, wish);
      parameters.resize(70, ' ');
      const Result result = RunIto(Problem("window", q, parameters + "  2.0000") +
                                   TrialCard(ReciprocalOf(kOrthorhombic.cell)));
      EXPECT_EQ(result.solutions(1, solnix), lines) << off << wish;
    }
  }
}

TEST(ItoEngine, TheListingHoldsWhatTheCardsAskFor) {
  const auto lines = LinesOf(kTetragonal);
  const auto run = [&](std::size_t column, const char* field, const std::string& second = "") {
    return RunIto(Problem("title", lines, With(column, field), second));
  };
  constexpr const char* list = "\n0twotheta     d       q       h    k    l\n";
  const auto [engine, text, table, n] = run(47, " 2");
  EXPECT_EQ(Count(text, list), 3);  // of two solutions, and of all lines
  for (const char* part : {"c       d       e       f    hits  pedigree\n", " tetragonal",
                           "d       e       f   lines   merit    type  pedigree\n",
                           "the best solution is now used to try and index all lines."})
    EXPECT_TRUE(Holds(text, part)) << part;
  EXPECT_FALSE(Holds(text, "mean delta q"));
  EXPECT_TRUE(Holds(run(33, "1").listing, "mean delta q"));
  EXPECT_FALSE(Holds(text, "in standard form"));
  EXPECT_TRUE(Holds(run(34, "1").listing, "in standard form"));
  ASSERT_GT(n, 1);
  for (int row = 2; row <= n; ++row)
    EXPECT_TRUE(table(row - 1, solnix) > table(row, solnix) ||
                (table(row - 1, solnix) == table(row, solnix) &&
                 table(row - 1, solfom) >= table(row, solfom)));
  EXPECT_EQ(run(4, "1").nsolutions, 1);
  EXPECT_EQ(run(4, "4", "            999999.0").nsolutions, 0);
}

TEST(ItoEngine, TheListOfLinesTellsThoseThatDoNotFit) {
  auto lines = LinesOf(kOrthorhombic);
  const Lattice x = ReciprocalOf(kOrthorhombic.cell);
  lines[9] += (lines[10] - lines[9]) / 2;
  const std::string one = With(43, " 1");
  Result result = RunIto(Problem("one off", lines, one) + TrialCard(x));
  EXPECT_EQ(result.solutions(1, solnix), 19);
  EXPECT_EQ(Count(result.listing, " not indexed\n"), 2);
  EXPECT_TRUE(Holds(result.listing, "lines that are not indexed   1\n"));
  EXPECT_FALSE(Holds(result.listing, "was used before"));
  lines = LinesOf(kOrthorhombic);
  lines[9] = lines[8] + 0.1;
  result = RunIto(Problem("two for one", lines, one) + TrialCard(x));
  EXPECT_EQ(Count(result.listing, " hkl-combination was used before\n"), 2);
  // A cell of 27 times the volume calculates too many.
  const Lattice large{x.a / 9, x.b / 9, x.c / 9};
  result = RunIto(Problem("large", LinesOf(kOrthorhombic), one) + TrialCard(large));
  EXPECT_TRUE(Holds(result.listing, "no listing is printed when n20 is more than 100"));
}

TEST(ItoEngine, ObservedAndCalculatedLinesAreListedOnOneScale) {
  std::vector<double> angles;
  for (const double each : LinesOf(kOrthorhombic)) angles.push_back(TwoThetaAt(each) - 0.25);
  const Result result = RunIto(Problem("zero", angles, kParameters, "      0.25"));
  ExpectFirst(result, kOrthorhombic);
  std::istringstream text(result.listing.substr(result.listing.find("0twotheta     d")));
  int observed = 0, calculated = 0;
  for (std::string line; std::getline(text, line) && !line.starts_with('1');) {
    float twotheta = 0, d = 0, q = 0;
    if (!ReadRecord<"(1x,f8.0,f8.0,f9.0)">(line, twotheta, d, q) || q == 0) continue;
    ++(Holds(line, "*observed*") ? observed : calculated);
    EXPECT_NEAR(twotheta, TwoThetaAt(q), 0.011);
    EXPECT_NEAR(d, 100 / std::sqrt(q), 0.005);
  }
  EXPECT_EQ(observed, 20);
  EXPECT_GE(calculated, 20);
}

TEST(ItoEngine, TestOutputOfEachStage) {
  static constexpr const char* marks[] = {"search with h and k up to", "  norm3 of    ",
                                          "  refpar"};
  const auto ask = [](const std::string& stage) {
    std::string parameters = With(49, " 1");
    parameters.resize(78, ' ');
    const std::string text = RunIto(Problem("test", LinesOf(kShort), parameters + stage)).listing;
    const auto rated = text.rfind("zones that have been found"), chosen = text.find("selected");
    std::string written;
    if (Holds(text, marks[0])) written += '1';
    if (Holds(text.substr(0, chosen), "input of norm")) written += '2';
    // Behind the first choice and in front of the second search.
    if (Holds(text.substr(chosen, text.find("restarted") - chosen), "input of norm"))
      written += '3';
    if (Holds(text.substr(rated), "  threed ")) written += '4';
    if (Holds(text.substr(rated), marks[1])) written += '5';
    if (Holds(text.substr(rated), marks[2])) written += '6';
    return written;
  };
  const std::pair<const char*, const char*> cases[] = {
      {" 1", "1"},   {" 2", "2"},      {" 3", "3"},      {" 4", "4"},     {" 5", "5"},
      {" 6", "6"},   {" 0", "123456"}, {"11", "123456"}, {"22", "23456"}, {"33", "3456"},
      {"44", "456"}, {"66", "6"},      {"77", ""},       {"99", "123456"}};
  for (const auto& [stage, expected] : cases) EXPECT_EQ(ask(stage), expected) << stage;
}

TEST(ItoEngine, NeitherProblemsNorEnginesSeeEachOther) {
  const std::string few = Problem("few", {100, 200, 300});
  EXPECT_EQ(RunIto(few).run.nlines, 3);
  const std::string inputs[] = {Problem(kShort) + few + Problem(kMonoclinic),
                                Problem(kTriclinic) + "end\n" + Problem(kCentred)};
  const std::string alone[] = {
      RunIto(Problem(kShort)).listing + RunIto(few).listing + RunIto(Problem(kMonoclinic)).listing,
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
  const std::string input = Problem(kOrthorhombic) + Problem("few", {100, 200, 300});
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
  EXPECT_GT(withsolutions, all / 4);
  EXPECT_LT(withsolutions, all);
}

TEST(ItoEngine, FilesThatCannotBeReadOrWrittenAreTold) {
  const TempDir directory;
  const std::string in = directory.file("ito.inp"), out = directory.file("ito.out");
  const std::string nowhere = directory.file("nowhere/ito.out");
  const auto expect = [](const std::string& input, const std::string& output,
                         const std::string& text) {
    ItoRun run;
    int status = -1;
    ItoEngine(status, input, output, run);
    EXPECT_EQ(status, 0);
    ASSERT_EQ(run.complaints.size(), 1u);
    EXPECT_EQ(run.complaints[0].caption, "File Error");
    EXPECT_EQ(run.complaints[0].text, text);
  };
  expect(in, out, "Error opening ITO input file\n" + in + ": No such file or directory");
  WriteFile(in, Problem(kTriclinic) + "end\n");
  expect(in, nowhere, "Error opening ITO output file\n" + nowhere + ": No such file or directory");
  expect(in, "/dev/full", "Error writing ITO output file\n/dev/full: No space left on device");
  WriteFile(out, "before\n");
  const SmallFiles full(5000);
  expect(in, out, "Error writing ITO output file\n" + out + ": File too large");
  EXPECT_EQ(ReadFile(out), "before\n");
}

}  // namespace
