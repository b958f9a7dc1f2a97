// How likely it is that just those positions of a lattice are seen which are.
#include "index/find/visibility.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "index/find/absences.h"
#include "index/find/loggamma.h"

namespace {

// Of n positions h are seen, with a chance of which nothing is known: 1 / ((n + 1) C(n, h)).
double LogSeen(int n, int h) {
  return LogGamma(h + 1.0) + LogGamma(n - h + 1.0) - LogGamma(n + 2.0);
}

double LogSeen(std::span<const SeenPosition> positions) {
  const auto seen = std::ranges::count(positions, true, &SeenPosition::seen);
  return LogSeen(static_cast<int>(positions.size()), static_cast<int>(seen));
}

// The 7 sublattices of index 2 and 13 of index 3 by the sums of indices that they can divide.
struct Sublattice {
  int index, h, k, l;
};
constexpr std::size_t kSublattices = 20;
constexpr std::array<Sublattice, kSublattices> kAllSublattices = [] {
  std::array<Sublattice, kSublattices> all{};
  std::size_t at = 0;
  for (int index : {2, 3})
    for (int h = 0; h < index; ++h)
      for (int k = 0; k < index; ++k)
        for (int l = 0; l < index; ++l)
          if ((h != 0 ? h : k != 0 ? k : l) == 1) all[at++] = {index, h, k, l};
  return all;
}();

std::uint32_t SublatticesOf(const Hkl& r) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < kSublattices; ++i) {
    const auto& [index, h, k, l] = kAllSublattices[i];
    if ((h * r.h + k * r.k + l * r.l) % index == 0) bits |= 1U << i;
  }
  return bits;
}

// The mean chance over the sublattices, as a ratio to that of all positions alike.
double SublatticeRatio(std::span<const SeenPosition> positions, double plain) {
  std::array<int, kSublattices> inside{}, seen{};
  int hits = 0;
  for (const SeenPosition& p : positions) {
    std::uint32_t bits = 0;
    for (const Hkl& r : p.reflections) bits |= SublatticesOf(r);
    for (std::size_t i = 0; i < kSublattices; ++i) {
      const int in = (bits >> i) & 1;
      inside[i] += in;
      seen[i] += p.seen ? in : 0;
    }
    hits += p.seen;
  }
  const int n = static_cast<int>(positions.size());
  double sum = 0;
  for (std::size_t i = 0; i < kSublattices; ++i)
    sum += std::exp(LogSeen(inside[i], seen[i]) + LogSeen(n - inside[i], hits - seen[i]) - plain);
  return sum / kSublattices;
}

// The chance with the absences that fit best, each kind missing none or one of its sets.
double LogWithAbsences(std::span<const SeenPosition> positions, const SymmetricLattice& lattice) {
  const std::span<const AbsenceKind> kinds = AbsencesOf(lattice.system);
  const Rotation axes = Conventional(lattice).axes;
  std::vector<std::uint32_t> absent(positions.size());  // by kind and set, four bits a kind
  for (std::size_t i = 0; i < positions.size(); ++i) {
    absent[i] = ~0U;
    for (const Hkl& r : positions[i].reflections) {
      const auto index = [&](std::size_t row) {
        return axes[row][0] * r.h + axes[row][1] * r.k + axes[row][2] * r.l;
      };
      const int h = index(0), k = index(1), l = index(2);
      std::uint32_t bits = 0;
      for (std::size_t kind = 0; kind < kinds.size(); ++kind)
        for (std::size_t set = 0; set < AbsenceKind::kMost && kinds[kind].missing[set]; ++set)
          if (kinds[kind].missing[set](h, k, l)) bits |= 1U << (AbsenceKind::kMost * kind + set);
      absent[i] &= bits;
      if (absent[i] == 0) break;
    }
  }
  std::uint32_t chosen = 0;
  double price = 0;
  for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
    std::ptrdiff_t most = 0;
    std::uint32_t best = 0;
    std::size_t set = 0;
    for (; set < AbsenceKind::kMost && kinds[kind].missing[set]; ++set) {
      const std::uint32_t bit = 1U << (AbsenceKind::kMost * kind + set);
      std::ptrdiff_t missing = 0;
      bool seen = false;
      for (std::size_t i = 0; i < positions.size(); ++i)
        if (absent[i] & bit) {
          ++missing;
          seen = seen || positions[i].seen;
        }
      if (seen || missing <= most) continue;
      most = missing;
      best = bit;
    }
    chosen |= best;
    price += std::log(1.0 + static_cast<double>(set));
  }
  int n = 0, hits = 0;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    if (absent[i] & chosen) continue;
    ++n;
    hits += positions[i].seen;
  }
  return LogSeen(n, hits) - price;
}

}  // namespace

double LogVisibility(std::span<const SeenPosition> positions, const SymmetricLattice& lattice) {
  const double plain = LogSeen(positions);
  double ratio = 0.5 + 0.25 * SublatticeRatio(positions, plain);
  ratio += 0.25 * std::exp(LogWithAbsences(positions, lattice) - plain);
  return plain + std::log(ratio);
}
