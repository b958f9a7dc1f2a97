// The search of each system by itself, without what others and the relatives of a lattice make up
// for.
#include "index/find/searches.h"

#include <gtest/gtest.h>

#include "index/find/simulate.h"

using namespace findtest;

namespace {

using enum LatticeSystem;

struct SystemSearch {
  const char* name;
  void (*search)(const SearchLines& lines, TrialList& list);
  std::vector<Bravais> kinds;
  int cells;              // of each kind
  double acrosszone = 1;  // what the b axis is multiplied by
};
void PrintTo(const SystemSearch& system, std::ostream* out) { *out << system.name; }
const SystemSearch kSearches[] = {
    {"Cubic", SearchForCubic, {{Cubic, 'P'}, {Cubic, 'I'}, {Cubic, 'F'}}, 20},
    {"Tetragonal", SearchForTetragonal, {{Tetragonal, 'P'}, {Tetragonal, 'I'}}, 10},
    {"Hexagonal", SearchForHexagonal, {{Hexagonal, 'P'}, {Rhombohedral, 'R'}}, 10},
    {"Orthorhombic",
     SearchForOrthorhombic,
     {{Orthorhombic, 'P'}, {Orthorhombic, 'C'}, {Orthorhombic, 'I'}, {Orthorhombic, 'F'}},
     4},
    {"Monoclinic", SearchForMonoclinic, {{Monoclinic, 'P'}, {Monoclinic, 'C'}}, 2},
    {"MonoclinicZone", SearchForMonoclinicZone, {{Monoclinic, 'P'}}, 6, 0.6},
    {"Triclinic", SearchForTriclinic, {{Triclinic, 'P'}}, 2},
};

bool AllowsFace(char centering, int h, int k, int l) {
  if (centering == 'A') return (k + l) % 2 == 0;
  if (centering == 'B') return (h + l) % 2 == 0;
  return Allows(centering, h, k, l);
}

// The lines among the first 20 that lie in a window about a reflection, and the different values of
// Q up to the end of the last window.
void ExpectCounts(const TrialLattice& trial, const std::vector<ObservedLine>& lines, double shift) {
  const auto judged = std::span(lines).first(std::min<std::size_t>(20, lines.size()));
  const auto window = [](const ObservedLine& line) { return 0.6 * line.width * line.slope; };
  const auto place = [&](const ObservedLine& line) { return line.q - shift * line.slope; };
  const double most = place(judged.back()) + window(judged.back());
  std::vector<double> values;
  for (int h = -20; h <= 20; ++h)
    for (int k = -20; k <= 20; ++k)
      for (int l = -20; l <= 20; ++l) {
        const double q = Value(trial.reciprocal, {h, k, l});
        if (q > 0 && q <= most && AllowsFace(trial.centering, h, k, l)) values.push_back(q);
      }
  std::ranges::sort(values);
  const auto equal = [](double a, double b) { return b - a < 1e-7 * b; };
  values.erase(std::unique(values.begin(), values.end(), equal), values.end());
  const auto hits = [&](double share) {
    return std::ranges::count_if(judged, [&](const ObservedLine& line) {
      return std::ranges::any_of(
          values, [&](double q) { return std::abs(q - place(line)) <= share * window(line); });
    });
  };
  EXPECT_GE(trial.hits, hits(0.95));
  EXPECT_LE(trial.hits, hits(1.05));
  EXPECT_EQ(trial.positions, std::ssize(values));
}

class OfSystem : public testing::TestWithParam<SystemSearch> {};
INSTANTIATE_TEST_SUITE_P(Searches, OfSystem, testing::ValuesIn(kSearches),
                         [](const auto& system) { return system.param.name; });

}  // namespace

// From lines that stand apart, with a foreign one or two among the first eight, and with a zero
// shift that is known.
TEST_P(OfSystem, TheSearchFindsItsLattices) {
  Random random(71);
  for (const Bravais& kind : GetParam().kinds)
    for (int n = 0; n < GetParam().cells; ++n) {
      SCOPED_TRACE(testing::Message() << kind.centering << n);
      Cell cell = RandomCell(kind, random);
      cell[1] *= GetParam().acrosszone;
      auto at = LonePositions(cell, kind.centering, 24);
      const double shift = n % 2 == 0 ? 0 : 0.1;
      AddErrors(at, 0.01, shift, random);
      at.push_back(at[4] + 0.5 * (at[5] - at[4]));
      if (kind.system >= Tetragonal) at.push_back(at[2] + 0.5 * (at[3] - at[2]));
      const auto lines = LinesAt(at);
      TrialList list;
      GetParam().search(SearchLines(lines, -shift, kOnePhase), list);
      const Form truth = ReducedPrimitive(cell, kind.centering);
      const auto found = std::ranges::find_if(list.All(), [&](const TrialLattice& trial) {
        const Form direct = OnAxes(Reciprocal(trial.reciprocal), PrimitiveAxes(trial.centering));
        return IsSameLattice(Reduced(direct), truth, 0.02);
      });
      ASSERT_NE(found, list.All().end());
      ExpectCounts(*found, lines, shift);
    }
}
