// "Find cell" from a user's side: the lines it takes, its table, and what a cell that is taken
// does.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "index/cellsources.h"
#include "index/foundcells.h"
#include "peaks/peaklist.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "support/smallfiles.h"
#include "support/support.h"
#include "workspace/menuids.h"
#include "workspace/slots.h"

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

constexpr double kRad = 0.017453292519943295, kWave = 1.54056;

struct Crystal {
  double a, b, c;  // right angles
  char centering;
};
constexpr Crystal kCrystal{6.21, 8.13, 10.35, 'I'};
constexpr Crystal kCubic{4.1, 4.1, 4.1, 'P'}, kOther{5.43, 5.43, 5.43, 'F'};

bool IsAllowed(char centering, int h, int k, int l) {
  if (centering == 'I') return (h + k + l) % 2 == 0;
  return centering == 'P' || ((h + k) % 2 == 0 && (h + l) % 2 == 0);
}

// The first lines, as far apart as a diffractometer can tell.
std::vector<double> LinesOf(const Crystal& crystal, std::size_t n) {
  std::set<double> all;
  for (int h = 0; h < 12; ++h)
    for (int k = 0; k < 12; ++k)
      for (int l = 0; l < 12; ++l) {
        const double sine = kWave / 2 * std::hypot(h / crystal.a, k / crystal.b, l / crystal.c);
        if (h + k + l > 0 && sine < 0.9 && IsAllowed(crystal.centering, h, k, l))
          all.insert(2 * std::asin(sine) / kRad);
      }
  std::vector<double> lines;
  for (const double tth : all)
    if (lines.size() < n && (lines.empty() || tth - lines.back() > 0.1)) lines.push_back(tth);
  return lines;
}

void List(std::vector<double> lines, PeakOrigin origin = PeakLoaded) {
  std::ranges::sort(lines);
  RelistPeaks(static_cast<int>(lines.size()), origin);
  for (int j = 1; j <= ws.npeaks; ++j) {
    ws.peaks(ptth, j) = static_cast<float>(lines[static_cast<std::size_t>(j - 1)]);
    ws.peaks(pint, j) = 1000;
    ws.peaks(pfwhm, j) = 0.1f;
  }
}

Lines EventsOf(const std::string& kinds) {
  Lines found = Events();
  std::erase_if(found, [&](const std::string& event) {
    return kinds.find(event.substr(0, event.find('\t'))) == std::string::npos;
  });
  return found;
}

// Whether the search has ended with these words in the status bar.
bool TellsOfSearch(const std::string& end) {
  return std::ranges::any_of(EventsOf("status"), [&](const std::string& told) {
    return told.starts_with("status\t3\t") && told.ends_with(end);
  });
}

class FindCellCommand : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    fs::current_path(dir.path());
    ws.startdir = dir.path() + "/";
    ws.patternstem = "mine";
    ws.plotmask = ws.viewmode = 1;
    PutGrid(SlotInput, 10, 0.02f, 4001, [](double) { return 100; });
    ComputeXAxes();
    SetMenuLoaded(1);
    Events();
  }
  void TearDown() override { fs::current_path("/"); }
  TempDir dir;
};

// Measured 0.05 degrees too high, which the zero of the fit takes off. The foreign line is named by
// its row of the list.
TEST_F(FindCellCommand, GivesTheCellToTheFitAndLeavesThePeaks) {
  std::vector<double> lines = LinesOf(kCrystal, 24);
  for (double& tth : lines) tth += 0.05;
  const auto foreign = std::ranges::upper_bound(lines, 33.33) - lines.begin() + 2;
  lines.push_back(33.33);
  lines.push_back(lines.front());  // twice the same: the rows behind keep their numbers
  List(lines);
  ws.peakesd(1, 3) = 0.002f;
  const auto peaks = static_cast<PeakTables>(ws);
  RunMenu(MenuFindCell, "press \"Use in fit\"");
  EXPECT_EQ(EventsOf("box"), Lines{});
  EXPECT_EQ(ws.findlattice(1), "orthorhombic I");
  EXPECT_EQ(ws.findunexplained(1), std::to_string(foreign));
  EXPECT_EQ(ws.findcell(1, foundindexed), 24);
  EXPECT_EQ(ws.findcell(1, foundlines), 25);
  const float edges[] = {6.21f, 8.13f, 10.35f};
  for (int k = 1; k <= 3; ++k) {
    EXPECT_NEAR(ws.cell(k), edges[k - 1], 0.005);
    EXPECT_EQ(ws.cell(k + 3), 90);
  }
  EXPECT_NEAR(ws.tthzero, -0.05, 0.01);
  EXPECT_EQ(ws.laueclass, 5);
  EXPECT_EQ(ws.centering, 5);
  EXPECT_EQ(static_cast<PeakTables>(ws), peaks);
  EXPECT_EQ(ws.ncelllines, 0);
  EXPECT_NE(ws.findorigin(1).find("Search"), std::string::npos);
  RunMenu(MenuUndo);
  EXPECT_EQ(ws.cell(1), 10);
  EXPECT_EQ(ws.tthzero, 0);
}

// The lines of the cell stand where the pattern has them, with the shift, and go with the table.
TEST_F(FindCellCommand, ShowsTheLinesOfTheRowChosenAndLeavesNothingAfterCancel) {
  std::vector<double> lines = LinesOf(kCrystal, 20);
  for (double& tth : lines) tth -= 0.04;
  List(lines);
  const Snapshot before = TakeSnapshot();
  RunMenu(MenuFindCell, "get celllines(1:3)\nplot \"" + dir.file("chosen.svg") +
                            "\"\nget selfindcell\nset 1811 \"3,2\"\n"
                            "get selfindcell\nget ncelllines\npress Cancel");
  const Lines told = EventsOf("value");
  ASSERT_EQ(told.size(), 4u);
  float first[3] = {};
  ASSERT_EQ(std::sscanf(told[0].c_str(), "value\tcelllines(1:3)\t%f\t%f\t%f", &first[0], &first[1],
                        &first[2]),
            3);
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(first[k], lines[k], 0.01);
  EXPECT_EQ(told[1], "value\tselfindcell\t1");
  EXPECT_EQ(told[2], "value\tselfindcell\t2");
  EXPECT_NE(ReadFile(dir.file("chosen.svg")).find("#0000ff"), std::string::npos);
  EXPECT_TRUE(TakeSnapshot(&before) == before);
}

TEST_F(FindCellCommand, CopiesAndSavesTheTable) {
  List(LinesOf(kCubic, 14));
  RunMenu(MenuFindCell, "press Copy\npress \"Save CSV...\"\nfile " + dir.file("cells") +
                            "\npress \"Save CSV...\"\nfile " + dir.file("none/cells.csv") +
                            "\npress Cancel");
  const Lines told = EventsOf("copied box");
  ASSERT_EQ(told.size(), 2u);
  EXPECT_NE(told[0].find("\\n1  cubic P 4.1000"), std::string::npos) << told[0];
  EXPECT_TRUE(told[1].starts_with("box\tFile Error\tError writing cells\\n")) << told[1];
  const std::string csv = ReadFile(dir.file("cells.csv"));
  ASSERT_EQ(std::ranges::count(csv, '\n'), 1 + ws.nfindcell);
  const auto commas = std::ranges::count(csv.substr(0, csv.find('\n')), ',');
  EXPECT_EQ(std::ranges::count(csv, ','), commas * (1 + ws.nfindcell));
}

// A search takes noise and alpha2 lines for peaks; neither is to count as a line.
TEST_F(FindCellCommand, LeavesOutAlpha2AndWhatNoFitHasBorneOut) {
  const std::vector<double> lines = LinesOf(kCrystal, 24);
  std::vector<double> all = lines;
  const auto second = [](double tth) {
    return 2 * std::asin(std::sin(tth * kRad / 2) * CuKalpha2 / kWave) / kRad;
  };
  for (const double tth : lines)
    if (second(tth) - tth > 0.09) all.push_back(second(tth));
  ASSERT_GT(all.size(), 28u);
  List(all, PeakSearched);
  for (int j = 2; j <= ws.npeaks; ++j)
    if (std::abs(ws.peaks(ptth, j) - second(ws.peaks(ptth, j - 1))) < 0.001)
      ws.peaks(pint, j) = 500;
  ws.peaks(pint, 1) = 20;
  RunMenu(MenuFindCell, "press Cancel");
  EXPECT_EQ(ws.findcell(1, foundlines), 24);
  EXPECT_EQ(ws.findcell(1, foundindexed), 24);
  const std::string count = std::to_string(all.size() - lines.size());
  EXPECT_TRUE(TellsOfSearch("found, without " + count + " alpha2 lines"));

  all = lines;
  for (int noise = 0; noise < 12; ++noise) all.push_back(11.37 + 2.51 * noise);
  List(all, PeakSearched);
  for (int j = 1; j <= ws.npeaks; ++j) {
    const auto is = [&](double tth) { return std::abs(ws.peaks(ptth, j) - tth) < 1e-4; };
    if (std::ranges::any_of(lines, is)) ws.peakorigin(j) = PeakFitted;
  }
  RunMenu(MenuFindCell, "press Cancel");
  EXPECT_EQ(ws.findlattice(1), "orthorhombic I");
  EXPECT_EQ(ws.findcell(1, foundlines), 24);
  EXPECT_TRUE(TellsOfSearch("found, without 12 peaks that no fit bears out"));
}

// Four times the lines, errors alike: half the e.s.d.s at most, as they reach further, too.
TEST_F(FindCellCommand, RefinesOnAllLines) {
  const auto esd = [](std::size_t n) {
    std::vector<double> lines = LinesOf(kCrystal, n);
    for (std::size_t i = 0; i < n; ++i) lines[i] += 0.08 + (i % 3 == 0 ? 0.01 : -0.005);
    List(lines);
    RunMenu(MenuFindCell, "press Cancel");
    EXPECT_EQ(ws.findlattice(1), "orthorhombic I");
    EXPECT_NEAR(ws.findcell(1, foundzero), -0.08, 2 * ws.findcell(1, foundesdzero));
    return ws.findcell(1, foundesda);
  };
  EXPECT_LT(esd(120), esd(30) / 2);
}

// Every other line is off by as much as its e.s.d. tells; without e.s.d.s the zero would take half
// of it.
TEST_F(FindCellCommand, WeighsLinesByTheirErrors) {
  std::vector<double> lines = LinesOf(kCubic, 14);
  for (std::size_t i = 0; i < lines.size(); i += 2) lines[i] += 0.02;
  List(lines, PeakFitted);
  for (int j = 1; j <= ws.npeaks; ++j) ws.peakesd(1, j) = j % 2 == 0 ? 0.0005f : 0.02f;
  RunMenu(MenuFindCell, "press Cancel");
  EXPECT_EQ(ws.findlattice(1), "cubic P");
  EXPECT_NEAR(ws.findcell(1, foundzero), 0, 0.003);
  EXPECT_NEAR(ws.findcell(1, 1), 4.1, 0.0003);
}

TEST_F(FindCellCommand, FindsASecondPhaseAmongTheLinesLeft) {
  std::vector<double> lines = LinesOf(kCubic, 14);
  const auto others = LinesOf(kOther, 9);
  lines.insert(lines.end(), others.begin(), others.end());
  List(lines);
  RunMenu(MenuFindCell, "get findcell(1,1)\npress \"Second phase\"\npress \"Use in fit\"");
  EXPECT_EQ(EventsOf("box"), Lines{});
  EXPECT_EQ(ws.findlattice(1), "cubic F");
  EXPECT_NEAR(ws.cell(1), 5.43, 0.005);
  EXPECT_LE(ws.findcell(1, foundlines), 9);
}

std::string PeakFile(const TempDir& dir, const Crystal& crystal) {
  std::string text = "   TwoTheta\n";  // uses up a row of the list
  for (const double tth : LinesOf(crystal, 20)) text += std::to_string(tth).substr(0, 8) + "\n";
  WriteFile(dir.file("mine.pks"), text);
  return "file " + dir.file("mine.pks") + "\n";
}

TEST_F(FindCellCommand, ReadsAFileWhereThereIsNoList) {
  RunMenu(MenuFindCell, PeakFile(dir, kCrystal) + "press \"Use in fit\"");
  EXPECT_EQ(ws.findlattice(1), "orthorhombic I");
  EXPECT_EQ(ws.npeaks, 21);
  EXPECT_EQ(ws.findcell(1, foundlines), 20);
  RunMenu(MenuUndo);
  EXPECT_EQ(ws.npeaks, 0);
  RunMenu(MenuFindCell, "file");
  EXPECT_EQ(EventsOf("box"), Lines{});
  EXPECT_EQ(ws.nfindcell, 0) << "the cells of the search before";
}

// There may be cells by then, or none.
TEST_F(FindCellCommand, StopsAtAReport) {
  const Snapshot before = TakeSnapshot();
  RunMenu(MenuFindCell, "stop 1\n" + PeakFile(dir, kCrystal) + "press Cancel");
  const Lines told = EventsOf("box status");
  EXPECT_TRUE(
      std::ranges::any_of(told, [](const auto& t) { return t.starts_with("status\t3\tStopped"); }));
  EXPECT_TRUE(std::ranges::none_of(told, [](const auto& t) { return t.starts_with("box"); }));
  EXPECT_TRUE(TakeSnapshot(&before) == before);
}

TEST_F(FindCellCommand, SaysWhyThereIsNoCell) {
  WriteFile("empty.pks", "");
  WriteFile("three.pks", "  20.0\n  30.0\n  40.0\n");
  std::string equal;
  for (int i = 0; i < 30; ++i) equal += "  31.5\n";
  WriteFile("equal.pks", equal);
  const struct {
    const char *file, *box;
  } cases[] = {
      {"none.pks", "box\tFile error\tError opening peak info file\\n"},
      {"empty.pks", "box\tFile Error\tNo peaks found\\n"},
      {"three.pks", "box\tFind cell\t3 lines: a search needs 6 at least"},
      {"equal.pks", "box\tFind cell\t1 line: a search needs 6 at least"},
  };
  for (const auto& c : cases) {
    RunMenu(MenuFindCell, "file " + dir.file(c.file));
    const Lines told = EventsOf("box");
    ASSERT_EQ(told.size(), 1u) << c.file;
    EXPECT_TRUE(told[0].starts_with(c.box)) << told[0];
    EXPECT_EQ(ws.npeaks, 0);
  }
  List({11.875, 12.9, 13.493, 13.622, 17.542, 26.192, 28.284, 31.682, 35.372, 36.794, 42.547});
  RunMenu(MenuFindCell, "press Cancel");
  EXPECT_TRUE(TellsOfSearch("found, none better than chance, by few lines"));
  const auto tellsnone = [] {
    RunMenu(MenuFindCell);
    EXPECT_EQ(EventsOf("box"),
              Lines{"box\tFind cell\tNo peak to search with: lines of a cell or of a fit are not "
                    "measured, and others have to lie below 180 degrees"});
  };
  for (const PeakOrigin origin : {PeakCalculated, PeakIndexed}) {
    List(LinesOf(kCubic, 14), origin);
    tellsnone();
  }
  List({180, 190, 1e30});
  tellsnone();
}

// ---- Engines as sources ----

// The directory for temporary files, as long as the object lives.
class Temporary {
 public:
  explicit Temporary(const std::string& path) { setenv("TMPDIR", path.c_str(), 1); }
  ~Temporary() { unsetenv("TMPDIR"); }
};

std::vector<ObservedLine> Observed(const Crystal& crystal) {
  std::vector<PeakOfList> peaks;
  for (const double tth : LinesOf(crystal, 25)) peaks.push_back({tth, 1000, 0.1});
  return ObservedLines(peaks, kWave);
}

TEST(EngineSource, ProposesWithoutLeavingFilesOrTouchingTheWorkspace) {
  FreshWorkspace();
  const TempDir dir;
  const Temporary temporary(dir.path());
  const Indexing before = ws;
  for (const int number : {EngineIto, EngineTreor}) {
    std::string failure;
    const auto cells =
        EngineSource(EngineOf(number), Observed(kCrystal), kWave, failure).propose([] {
          return false;
        });
    EXPECT_EQ(failure, "");
    // ITO tells the centering, of TREOR90's cells it is not known.
    const bool found = std::ranges::any_of(cells, [&](const ProposedCell& p) {
      std::array<double, 3> edges{p.cell[0], p.cell[1], p.cell[2]};
      std::ranges::sort(edges);
      return std::abs(edges[0] - 6.21) < 0.02 && std::abs(edges[2] - 10.35) < 0.02 &&
             p.centering == (number == EngineIto ? 'I' : ' ');
    });
    EXPECT_TRUE(found) << EngineOf(number).name;
  }
  EXPECT_TRUE(fs::is_empty(dir.path()));
  EXPECT_TRUE(before == static_cast<const Indexing&>(ws));
}

TEST(EngineSource, TellsWhyItCouldNotRunAndStopsWhenAsked) {
  const auto lines = Observed(kCrystal);
  const auto run = [&](int number, bool stopped) {
    std::string failure;
    const auto cells =
        EngineSource(EngineOf(number), lines, kWave, failure).propose([=] { return stopped; });
    EXPECT_TRUE(cells.empty());
    return failure;
  };
  const TempDir dir;
  for (const int number : {EngineIto, EngineTreor}) {
    {
      const Temporary none(dir.file("none"));
      EXPECT_NE(run(number, false), "");
    }
    const Temporary temporary(dir.path());
    {
      const SmallFiles full(100);
      EXPECT_NE(run(number, false), "");
    }
    EXPECT_EQ(run(number, true), "");
    EXPECT_TRUE(fs::is_empty(dir.path()));
  }
}

// ---- Texts ----

FoundCell Found(LatticeSystem system, char centering, std::array<double, 6> cell, double volume) {
  FoundCell found{};
  found.system = system;
  found.centering = centering;
  found.cell = cell;
  found.volume = volume;
  found.relativeof = -1;
  return found;
}

TEST(FoundCellTexts, TellConstantsRelationAndLinesLeft) {
  FoundTable table;
  for (int i = 1; i <= 12; ++i) {
    table.lines.push_back({});
    table.lines.back().tth = 10.005 * i;
    table.numbers.push_back(2 * i);
  }
  using enum LatticeSystem;
  FoundCell best = Found(Monoclinic, 'C', {9.5, 5.25, 7.125, 90, 101.5, 90}, 348.2);
  best.esd = {0.0021, 0.0013, 0.0009, 0, 0.012, 0};
  best.zero = 0.031;
  best.zeroesd = 0.004;
  best.likelihood = 40;
  best.m20 = 35.2;
  best.f20 = 61.5;
  best.f20error = 0.0064;
  best.f20lines = 51;
  best.indexed = 10;
  best.unindexed = {7, 12};
  best.origins = {"Search", "ITO"};
  FoundCell half = Found(Monoclinic, 'P', {4.75, 5.25, 3.56, 90, 101.5, 90}, 87.05);
  half.relativeof = 0;
  half.tie = true;
  half.likelihood = 38.5;
  half.origins = {"TREOR90"};
  FoundCell large = Found(Rhombohedral, 'R', {9.5, 9.5, 10, 90, 90, 120}, 1566.9);
  large.relativeof = 0;
  large.unindexed = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  table.cells = {best, half, large};

  EXPECT_EQ(FoundTexts(table, 0),
            (Lines{"1", "monoclinic C", "9.500(2)", "5.2500(13)", "7.1250(9)", "90", "101.500(12)",
                   "90", "348.2", "35.2", "61.5 (0.0064, 51)", "10 of 12", "-0.031(4)", "0.0",
                   "Search + ITO", ""}));
  const Lines second = FoundTexts(table, 1), third = FoundTexts(table, 2);
  EXPECT_EQ(second[0], "2 =");
  EXPECT_EQ(second[13], "-1.5");
  EXPECT_EQ(second[15], "1/2 of 1");
  EXPECT_EQ(third[15], "3 times 1");
  EXPECT_EQ(second[6], "101.500") << "free, but not told by the lines";
  EXPECT_EQ(ShortText(best), "monoclinic C 9.50 5.25 7.12 101.5, M20 35");
  EXPECT_EQ(ShortText(large), "rhombohedral R 9.50 10.00, M20 0");
  EXPECT_EQ(UnexplainedText(table, 0), "lines 14, 24 at 70.04, 120.06");
  EXPECT_EQ(UnexplainedText(table, 1), "none");
  EXPECT_TRUE(UnexplainedText(table, 2).ends_with("80.04 and 2 more"));
  EXPECT_EQ(ClassNumberOf(large), 8);
  EXPECT_EQ(CenteringNumberOf(large), 7);
  const Lines lines = FoundLines(table, ',');
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_TRUE(lines[1].ends_with(",Search + ITO,,70.0350 120.0600")) << lines[1];
  EXPECT_TRUE(lines[2].starts_with("2,tie,monoclinic P,4.750000,")) << lines[2];
}

}  // namespace
