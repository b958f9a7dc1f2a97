// Which of the lattices found is the right one.
#include "index/find/ranking.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t kWithRelatives = 10;  // the best ones
constexpr double kOneLattice = 0.01;        // lattices that differ by less are one
constexpr double kSameForm = 1e-3;          // forms, likewise, are not worth refining twice

// Bases of all sublattices of an index that is prime.
std::vector<Axes> SublatticesOf(int index) {
  std::vector<Axes> bases;
  const auto x = [](int n) { return static_cast<double>(n); };
  for (int i = 0; i < index; ++i)
    for (int j = 0; j < index; ++j)
      bases.push_back({{{x(index), 0, 0}, {x(i), 1, 0}, {x(j), 0, 1}}});
  for (int i = 0; i < index; ++i) bases.push_back({{{1, 0, 0}, {0, x(index), 0}, {0, x(i), 1}}});
  bases.push_back({{{1, 0, 0}, {0, 1, 0}, {0, 0, x(index)}}});
  return bases;
}

std::vector<Form> Sublattices(const Form& direct) {
  std::vector<Form> lattices;
  for (int index : {2, 3})
    for (const Axes& axes : SublatticesOf(index)) lattices.push_back(Reduced(OnAxes(direct, axes)));
  return lattices;
}

// A sublattice of the reciprocal lattice is a superlattice of the direct one.
std::vector<Form> Relatives(const Form& direct) {
  std::vector<Form> lattices = Sublattices(direct);
  for (const Form& reciprocal : Sublattices(Reciprocal(direct)))
    lattices.push_back(Reduced(Reciprocal(reciprocal)));
  return lattices;
}

bool IsSameForm(const Form& a, const Form& b) {
  for (std::size_t i = 0; i < 6; ++i)
    if (std::abs(a[i] - b[i]) > kSameForm * b[2]) return false;
  return true;
}

void OnReducedAxes(Assessment& a) {
  a.lattice.direct = Reduced(a.lattice.direct);
  a.reciprocal = Reciprocal(a.lattice.direct);
}

void AddInAllSymmetries(std::span<const ObservedLine> lines, const Form& reduced, double zero,
                        const PhaseModel& model, Ranking& ranking) {
  for (const SymmetricLattice& lattice : SymmetriesOf(reduced))
    if (auto a = Assess(lines, lattice, RefinementStart::Refined, zero, model)) {
      OnReducedAxes(*a);
      ranking.push_back(std::move(*a));
    }
}

// Whether all positions of one lattice lie on such of another.
bool Coincides(std::span<const ObservedLine> lines, const Assessment& a, const Assessment& other) {
  constexpr double kTolerance = 0.3;  // of the width
  const MatchedPositions mine = MatchLines(lines, a.reciprocal, 0),
                         others = MatchLines(lines, other.reciprocal, 0);
  const double tolerance = kTolerance * lines.back().width * lines.back().slope;
  return std::ranges::all_of(mine.positions, [&](const CalculatedPosition& p) {
    const auto after = std::ranges::lower_bound(others.positions, p.q, {}, &CalculatedPosition::q);
    return (after != others.positions.end() && after->q - p.q < tolerance) ||
           (after != others.positions.begin() && p.q - std::prev(after)->q < tolerance);
  });
}

// A lattice can, by a chance of its metric, have all its positions where one of fewer constants
// has positions. If these are all that the other one has, or it is cubic and so leaves nothing to
// chance, the more symmetric lattice comes first, unless the lines speak strongly against it.
void PutSymmetricFirst(std::span<const ObservedLine> lines, Ranking& ranking) {
  constexpr std::size_t kLooked = 10;
  constexpr double kStrongly = 20;
  const auto belongsbefore = [&](const Assessment& below, const Assessment& above) {
    const std::size_t constants = below.lattice.parameters.size();
    return constants < above.lattice.parameters.size() &&
           above.likelihood - below.likelihood < kStrongly && Coincides(lines, above, below) &&
           (constants == 1 || Coincides(lines, below, above));
  };
  for (std::size_t i = 1; i < std::min(kLooked, ranking.size()); ++i)
    for (std::size_t j = 0; j < i; ++j)
      if (belongsbefore(ranking[i], ranking[j])) {
        std::rotate(ranking.begin() + static_cast<std::ptrdiff_t>(j),
                    ranking.begin() + static_cast<std::ptrdiff_t>(i),
                    ranking.begin() + static_cast<std::ptrdiff_t>(i + 1));
        break;
      }
}

}  // namespace

void AddAssessed(std::span<const ObservedLine> lines, const Form& reduced, double zero,
                 const PhaseModel& model, Ranking& ranking) {
  const auto lattices = SymmetriesOf(reduced);
  if (lattices.empty()) return;
  if (auto a = Assess(lines, lattices.front(), RefinementStart::Rough, zero, model)) {
    OnReducedAxes(*a);
    ranking.push_back(std::move(*a));
  }
}

Ranking Distinct(Ranking all) {
  std::ranges::stable_sort(all, std::ranges::greater{}, &Assessment::likelihood);
  Ranking distinct;
  for (Assessment& a : all) {
    if (distinct.size() == kRanked) break;
    if (std::ranges::none_of(distinct, [&](const Assessment& b) {
          return IsSameLattice(a.lattice.direct, b.lattice.direct, kOneLattice);
        }))
      distinct.push_back(std::move(a));
  }
  return distinct;
}

Ranking WithRelatives(std::span<const ObservedLine> lines, Ranking ranking, const PhaseModel& model,
                      const ForEach& each) {
  struct Start {
    Form reduced;
    double zero;
  };
  std::vector<Start> known;
  for (int round = 0; round < 2; ++round) {
    const std::size_t first = known.size();
    const auto add = [&](const Form& reduced, double zero) {
      if (std::ranges::none_of(known,
                               [&](const Start& k) { return IsSameForm(reduced, k.reduced); }))
        known.push_back({reduced, zero});
    };
    for (std::size_t i = 0; i < ranking.size(); ++i) {
      const Assessment& a = ranking[i];
      add(a.lattice.direct, a.zero);
      if (i >= kWithRelatives) continue;
      for (const Form& relative : Relatives(a.lattice.direct)) add(relative, a.zero);
    }
    std::vector<Ranking> found(known.size() - first);
    each(found.size(), [&](std::size_t i) {
      AddInAllSymmetries(lines, known[first + i].reduced, known[first + i].zero, model, found[i]);
    });
    for (Ranking& some : found) std::ranges::move(some, std::back_inserter(ranking));
    ranking = Distinct(std::move(ranking));
  }
  PutSymmetricFirst(lines, ranking);
  return ranking;
}

bool AreRelatives(const Form& reduced, const Form& other) {
  const auto contains = [](const Form& lattice, const Form& sublattice) {
    const double index = std::sqrt(Determinant(sublattice) / Determinant(lattice));
    if (index < 1.9 || index > 4.1) return false;
    for (const Form& form : Sublattices(lattice)) {
      if (IsSameLattice(form, sublattice, 2 * kOneLattice)) return true;
      if (index < 3.5) continue;
      for (const Form& second : Sublattices(form))
        if (IsSameLattice(second, sublattice, 2 * kOneLattice)) return true;
    }
    return false;
  };
  return contains(reduced, other) || contains(other, reduced);
}
