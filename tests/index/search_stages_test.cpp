// Each search finds a cell of its system from lines without errors, and ends when it is told to.
#include <gtest/gtest.h>

#include <ctime>

#include "index/simulate.h"
#include "index/treor/cell.h"
#include "index/treor/searches.h"

namespace {

using Absences = bool (*)(const Hkl&);
constexpr Absences kNone = [](const Hkl&) { return true; },
                   kScrew = [](const Hkl&r) { return r.h != 0 || r.l != 0 || r.k % 2 == 0; },
                   kEven = [](const Hkl&r) { return r.l || (r.h && r.k) || (r.h + r.k) % 2 == 0; },
                   kZeros = [](const Hkl&r) { return r.h * r.k * r.l != 0; };

struct Search {
  const char* name;
  void (*run)(TreorSearch&);
  CrystalSystem system;
  Cell cell;
  Absences allows = kNone;
};

constexpr CrystalSystem kTriclinic = CrystalSystem::Triclinic,
                        kMonoclinic = CrystalSystem::Monoclinic,
                        kOrthorhombic = CrystalSystem::Orthorhombic;

// The zones of the dominant zone tests have a short axis at right angles to them, the other
// searches need lines of all kinds among the first. Where 0 1 0 is absent 0 2 0 is no higher order.
const Search kSearches[] = {
    {"cubic", SearchCubic, CrystalSystem::Cubic, {6.649, 6.649, 6.649, 90, 90, 90}},
    {"tetragonal", SearchTetragonal, CrystalSystem::Tetragonal, {5.21, 5.21, 7.93, 90, 90, 90}},
    {"cubic without hk0", SearchCubic, CrystalSystem::Cubic, {9, 9, 9, 90, 90, 90}, kZeros},
    {"tetragonal without hk0, h0l",
     SearchTetragonal,
     CrystalSystem::Tetragonal,
     {5.21, 5.21, 7.93, 90, 90, 90},
     kZeros},
    {"hexagonal", SearchHexagonal, CrystalSystem::Hexagonal, {5.852, 5.852, 3.953, 90, 90, 120}},
    {"hexagonal, long",
     SearchHexagonal,
     CrystalSystem::Hexagonal,
     {3.77, 3.77, 12.16, 90, 90, 120}},
    {"orthorhombic", SearchOrthorhombic, kOrthorhombic, {4.44, 5.39, 7.37, 90, 90, 90}},
    {"orthorhombic zone", SearchOrthorhombicZone, kOrthorhombic, {13.4, 9.13, 3.31, 90, 90, 90}},
    {"orthorhombic zone of even h00, 0k0",
     SearchOrthorhombicZone,
     kOrthorhombic,
     {13.4, 9.13, 3.31, 90, 90, 90},
     kEven},
    {"(020)", SearchMonoclinic020, kMonoclinic, {5.12, 10.78, 6.44, 90, 99.2, 90}, kScrew},
    {"monoclinic zone", SearchMonoclinicZone, kMonoclinic, {12.3, 3.27, 9.13, 90, 104.3, 90}},
    {"monoclinic", SearchMonoclinic, kMonoclinic, {5.43, 4.83, 8.14, 90, 107.58, 90}},
    {"triclinic zone", SearchTriclinicZone, kTriclinic, {10.1, 3.71, 8.93, 95.2, 101.3, 97.4}},
    {"triclinic", SearchTriclinic, kTriclinic, {4.795, 5.108, 6.83, 95.8, 97.6, 103.1}},
};

void Prepare(TreorSearch& search, const Search& one, float volume) {
  search.options.mono = 135;
  search.options.monoset = 7;
  search.options.vol = volume;
  search.options.wave = static_cast<float>(kWave);
  search.all = TreorLinesAt(Pattern(one.cell, 25, 0, 0.15, one.allows));
  PrepareLines(search);
  SetLimits(search);
}

// Each line of the one has a line of the other.
bool HasTheLinesOf(const TreorCandidate& candidate, const Cell& cell) {
  constexpr double smax = 0.15, tolerance = 5e-5;
  const auto has = [](const std::vector<double>& all, const std::vector<double>& some) {
    return std::ranges::all_of(some, [&](double s) {
      const auto near = [s](double t) { return std::abs(s - t) < tolerance; };
      return s > smax - tolerance || std::ranges::any_of(all, near);
    });
  };
  const auto& [a, b, c, d, e, f] = candidate.constants;
  const auto truth = TrueLines(cell, smax), lines = Values({a, b, c, f, d, e}, 20, 20, 1e-9);
  return has(truth, lines) && has(lines, truth);
}

bool Finds(const TreorSearch& search, const Cell& cell) {
  return std::ranges::any_of(search.candidates, [&](const TreorCandidate& found) {
    return found.count == search.options.use && HasTheLinesOf(found, cell);
  });
}

// They count the cells that have enough lines; in the monogam mode the first is the last.
TEST(TreorSearches, FindACellOfTheirSystem) {
  for (const Search& one : kSearches) {
    SCOPED_TRACE(one.name);
    DataSet data;
    Prepare(data.search, one, 1200);
    one.run(data.search);
    EXPECT_TRUE(Finds(data.search, one.cell));
    for (const TreorCandidate& candidate : data.search.candidates) {
      EXPECT_EQ(candidate.system, one.system);
      EXPECT_GE(candidate.count, data.search.options.iq);
    }
    SearchCounts& n = data.search.counts;
    EXPECT_EQ(n.zone020 > 0, one.run == SearchMonoclinic020);
    EXPECT_EQ(n.dominantzone > 0, one.run == SearchMonoclinicZone);
    EXPECT_EQ(n.general > 1, one.run == SearchMonoclinic);
    EXPECT_EQ(n.triclinic > 0, one.system == kTriclinic);
    n = {};
    data.search.options.monogam = 1;
    one.run(data.search);
    EXPECT_EQ(n.general, one.run == SearchMonoclinic);
  }
}

// With few lines to index nearly all cells are candidates: the limits are all that keeps them out.
TEST(TreorSearches, KeepToTheLimits) {
  for (const Search& one : kSearches) {
    SCOPED_TRACE(one.name);
    for (const float cem : {9.f, 14.f}) {
      DataSet data;
      Prepare(data.search, one, 700);
      data.search.options.cem = cem;
      data.search.options.iq = 1;
      SetLimits(data.search);
      one.run(data.search);
      for (const TreorCandidate& candidate : data.search.candidates) {
        const auto cell = CellOf(one.system, candidate.constants, data.search.options.wave);
        ASSERT_TRUE(cell);
        EXPECT_LE(cell->volume, 700.1f);
        EXPECT_NEAR(cell->volume, candidate.volume, candidate.volume / 5);
        for (int k = 1; k <= 3; ++k) EXPECT_LE(cell->cell(k), cem * 1.0001f);
        EXPECT_TRUE(one.system != kMonoclinic || cell->cell(5) <= 135.01f);
      }
    }
  }
}

// A cell whose first six lines all have no l is found by one behind them only if that is selected.
TEST(TreorSearches, TakeASelectedLineAsABaseLine) {
  const Search flat{"", SearchOrthorhombic, kOrthorhombic, {13.4, 9.13, 3.31, 90, 90, 90}};
  DataSet data;
  Prepare(data.search, flat, 1200);
  const float c = ConstantsOf(flat.cell).c;
  const int line = 1 + static_cast<int>(std::ranges::count_if(
                           data.search.lines, [&](const auto& l) { return l.s < c - 1e-5f; }));
  ASSERT_GT(line, 6);
  for (const int select : {0, line}) {
    data.search.candidates.clear();
    data.search.options.select = select;
    SearchOrthorhombic(data.search);
    EXPECT_EQ(Finds(data.search, flat.cell), select > 0);
  }
}

// With limits that let everything through, the searches by base lines would go on for hours. The
// time is that of the processor, whatever else the machine does.
TEST(TreorSearches, AskOftenWhetherToGoOn) {
  const auto now = [] { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; };
  for (const Search& one : kSearches) {
    DataSet data;
    Prepare(data.search, one, 90000);
    data.search.options.cem = 90;
    const IndexLimits wide{9, 9, 9, 20};
    data.search.options.tetragonal = wide;
    data.search.options.orthorhombic.fill(wide);
    data.search.options.monoclinic.fill(wide);
    SetLimits(data.search);
    const double begin = now();
    double last = begin, longest = 0;
    data.run.report = [&](const std::string&) {
      longest = std::max(longest, now() - last);
      last = now();
      return last - begin < 0.1;
    };
    one.run(data.search);
    EXPECT_LT(std::max(longest, now() - last), 0.15) << one.name;
  }
}

}  // namespace
