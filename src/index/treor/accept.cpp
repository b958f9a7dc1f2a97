#include "index/treor/accept.h"

#include <algorithm>
#include <cmath>

#include "index/treor/listing.h"
#include "index/treor/reduction.h"
#include "index/treor/refine.h"

namespace {

constexpr float kEqualConstants = 0.00015f;
constexpr int kLeastListedMerit = 6, kMostListedUnindexed = 3;

TrialCell TrialOf(const TreorCandidate& candidate, const TreorOptions& options) {
  TrialCell trial{candidate.system, candidate.constants};
  if (trial.system == CrystalSystem::Monoclinic) {
    // h may have either sign: beta* is the acute one.
    trial.constants.d = std::fabs(trial.constants.d);
    if (trial.constants.d <= options.d1) {
      trial.constants.d = 0;
      trial.system = CrystalSystem::Orthorhombic;
    }
  }
  return trial;
}

bool WithinLimits(const CellAndVolume& found, const TreorOptions& options) {
  const UnitCell& cell = found.cell;
  return std::max({cell(1), cell(2), cell(3)}) <= options.cem && found.volume <= options.vol;
}

std::optional<CellAndVolume> CellOf(const TrialCell& trial, const TreorOptions& options) {
  auto cell = CellOf(trial.system, trial.constants, options.wave);
  if (cell && trial.system == CrystalSystem::Triclinic && !WithinLimits(*cell, options))
    cell.reset();
  return cell;
}

bool Passes(const LineTest& test, const TreorOptions& options) {
  return test.m >= options.merit && test.unindexedintest <= options.nix;
}

bool IsListed(const LineTest& test) {
  return test.m >= kLeastListedMerit && test.unindexedintest <= kMostListedUnindexed;
}

bool Near(float x, float y) { return std::fabs(x - y) <= kEqualConstants; }

void SetHigherSymmetry(TrialCell& trial, CrystalSystem system, const Parameters& parameters) {
  trial.system = system;
  trial.constants = ConstantsOf(system, parameters);
}

// The higher symmetry that the constants of an orthorhombic cell come near to; false if none.
bool RaiseSymmetry(TrialCell& trial) {
  if (trial.system != CrystalSystem::Orthorhombic) return false;
  const auto [a, b, c, d, e, f] = trial.constants;
  if (Near(a, b) && Near(b, c) && Near(a, c)) {
    SetHigherSymmetry(trial, CrystalSystem::Cubic, {(a + b + c) / 3.0f});
    return true;
  }
  struct Pair {
    float x, y, third;
  };
  const Pair pairs[] = {{a, b, c}, {a, c, b}, {b, c, a}};
  for (const auto& [x, y, third] : pairs) {
    if (!Near(x, y)) continue;
    SetHigherSymmetry(trial, CrystalSystem::Tetragonal, {(x + y) / 2.0f, third});
    return true;
  }
  for (const auto& [x, y, third] : pairs) {
    const auto [small, large] = std::minmax({x, y});
    if (!Near(3.0f * small, large)) continue;
    SetHigherSymmetry(trial, CrystalSystem::Hexagonal, {(3.0f * small + large) / 6.0f, third});
    return true;
  }
  return false;
}

// Refines and tests a cell. None if it is no cell then.
std::optional<LineTest> RefineAndTest(TreorSearch& search, TrialCell& trial,
                                      const std::vector<TreorLine>& lines, bool listed) {
  const TreorOptions& o = search.options;
  RefineCell(trial, lines, o, search.listing);
  const auto cell = CellOf(trial, o);
  if (!cell) return std::nullopt;
  const LineTest test = TestLines(trial.system, trial.constants, lines, o);
  if (listed || IsListed(test)) {
    const TreorSolution solution{cell->cell, CellDeviations(trial, o.wave), cell->volume, test.m,
                                 test.unindexedintest};
    ListCell(search.listing, solution, trial.singles, test.observed);
    ListLines(search.listing, test, o.wave);
    if (search.run.solutions.size() < kTreorMostSolutions) search.run.solutions.push_back(solution);
  }
  ListTest(search.listing, test);
  return test;
}

// Leaves the trial refined in the higher symmetry that it comes near to, if it passes there, and
// else in its own: an edge that only looks like another does not cost a good cell.
bool PassesAtHighestSymmetry(TreorSearch& search, TrialCell& trial) {
  const auto passes = [&](const std::optional<LineTest>& test) {
    return test && Passes(*test, search.options);
  };
  const auto own = RefineAndTest(search, trial, search.lines, false);
  TrialCell raised = trial;
  if (!own || !RaiseSymmetry(raised)) return passes(own);
  ListHigherSymmetry(search.listing, raised.system);
  if (!passes(RefineAndTest(search, raised, search.lines, false))) return passes(own);
  trial = raised;
  return true;
}

}  // namespace

bool AcceptCandidate(TreorSearch& search, const TreorCandidate& candidate) {
  const TreorOptions& o = search.options;
  TrialCell trial = TrialOf(candidate, o);
  const auto unrefined = CellOf(trial, o);
  if (!unrefined) return false;
  ListUnrefined(search.listing, *unrefined);
  if (!PassesAtHighestSymmetry(search, trial)) return false;
  ListGoodLuck(search.listing);
  const auto test = RefineAndTest(search, trial, search.all, true);
  if (!test || !Passes(*test, o)) return false;
  ListSolved(search, trial.system);
  if (trial.system == CrystalSystem::Monoclinic || trial.system == CrystalSystem::Triclinic)
    ReduceCell(search.run.solutions.back().cell, kReductionTolerance, search.listing);
  ListAdvice(search.listing, *test);
  return true;
}
