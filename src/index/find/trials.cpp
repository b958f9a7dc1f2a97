// What all searches share.
#include "index/find/trials.h"

#include <algorithm>
#include <cmath>

namespace {

std::vector<double> Shifted(std::span<const ObservedLine> lines, double shift) {
  std::vector<double> q;
  for (const ObservedLine& line : lines) q.push_back(line.q + shift * line.slope);
  return q;
}

// n times the divergence of a share of hits from one expected.
double Divergence(int n, int hits, double expected) {
  const double share = static_cast<double>(hits) / n;
  if (share <= expected) return 0;
  const double missed = share < 1 ? (1 - share) * std::log((1 - share) / (1 - expected)) : 0;
  return n * (share * std::log(share / expected) + missed);
}

bool IsSame(const TrialLattice& a, const TrialLattice& b) {
  const double tolerance =
      kSameMetric * std::max({a.reciprocal[0], a.reciprocal[1], a.reciprocal[2]});
  for (std::size_t i = 0; i < 6; ++i)
    if (std::abs(a.reciprocal[i] - b.reciprocal[i]) > tolerance) return false;
  return a.centering == b.centering;
}

}  // namespace

ChanceTable::ChanceTable(const HitTable& table) {
  for (int positions = 1; positions <= kMostPositions; ++positions)
    for (int hits = 0; hits <= table.Lines(); ++hits)
      scores_[static_cast<std::size_t>(positions)][static_cast<std::size_t>(hits)] = Divergence(
          table.Lines(), hits, 1 - std::exp(-positions * table.Covered() / table.Lines()));
}

SearchLines::SearchLines(std::span<const ObservedLine> lines, double shift, const PhaseModel& model)
    : q(Shifted(lines, shift)),
      first(lines, kLinesOfFirstCheck, shift, kSearchWindow),
      second(lines, kLinesOfSecondCheck, shift, kSearchWindow),
      chance(second),
      leastoffirst(std::min(model.offirst, first.Lines())),
      leastofsecond(static_cast<int>(std::ceil(model.shareofsecond * second.Lines()))) {}

void TrialList::Add(const TrialLattice& candidate) {
  const bool full = all_.size() == kMostCandidates;
  if (full && candidate.score <= all_[worst_].score) return;
  const auto same = std::ranges::find_if(
      all_, [&](const TrialLattice& other) { return IsSame(candidate, other); });
  if (same != all_.end()) {
    if (same->score >= candidate.score) return;
    *same = candidate;
  } else if (full) {
    all_[worst_] = candidate;
  } else {
    all_.push_back(candidate);
  }
  worst_ = static_cast<std::size_t>(std::ranges::min_element(all_, {}, &TrialLattice::score) -
                                    all_.begin());
}

void AddCentered(const SearchLines& lines, const Form& reciprocal, const ParityCounts& counts,
                 std::span<const CenteringClasses> centerings, TrialList& list) {
  for (const auto& [letter, parities] : centerings) {
    std::uint32_t hit = 0;
    int positions = 0;
    for (unsigned parity = 0; parity < 8; ++parity) {
      if (!((parities >> parity) & 1)) continue;
      hit |= counts.lines[parity];
      positions += counts.positions[parity];
    }
    const int hits = std::popcount(hit);
    if (hits < lines.leastofsecond || positions > kMostPositions) continue;
    list.Add({reciprocal, letter, hits, positions, lines.chance.Score(hits, positions)});
  }
}
