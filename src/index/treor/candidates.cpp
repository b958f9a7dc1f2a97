#include "index/treor/candidates.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kEqual = 0.00005f;     // constants
constexpr float kEqualVolume = 0.05f;  // of triclinic cells, cubic angstrom

// The usual order of the axes, where a system leaves a choice.
void OrderAxes(TreorCandidate& candidate) {
  Constants& s = candidate.constants;
  if (candidate.system == CrystalSystem::Orthorhombic) {
    std::array axes{s.a, s.b, s.c};
    std::ranges::sort(axes, std::ranges::greater());
    s = {axes[0], axes[1], axes[2]};
  } else if (candidate.system == CrystalSystem::Monoclinic) {
    if (s.a < s.c) std::swap(s.a, s.c);
    s.d = std::abs(s.d);  // the obtuse of both angles
  }
}

bool Near(float p, float q) { return std::abs(p - q) <= kEqual; }

// Triclinic cells come with their axes in any order and direction: equal edges and an equal volume
// tell that two are of one lattice.
bool AreEqualTriclinic(const TreorCandidate& x, const TreorCandidate& y) {
  const auto edges = [](const Constants& s) {
    std::array list{s.a, s.b, s.c};
    std::ranges::sort(list);
    return list;
  };
  return std::ranges::equal(edges(x.constants), edges(y.constants), Near) &&
         std::abs(x.volume - y.volume) <= kEqualVolume;
}

bool AreEqual(const TreorCandidate& x, const TreorCandidate& y) {
  if (x.system == CrystalSystem::Triclinic) return AreEqualTriclinic(x, y);
  const Constants &s = x.constants, &t = y.constants;
  return Near(s.a, t.a) && Near(s.b, t.b) && Near(s.c, t.c) && Near(s.d, t.d);
}

bool IsBetter(const TreorCandidate& x, const TreorCandidate& y) {
  if (x.count != y.count) return x.count > y.count;
  return x.system == CrystalSystem::Triclinic ? x.volume < y.volume : x.product > y.product;
}

}  // namespace

bool StoreCandidate(std::vector<TreorCandidate>& candidates, TreorCandidate candidate) {
  OrderAxes(candidate);
  for (const TreorCandidate& listed : candidates)
    if (AreEqual(listed, candidate)) return false;
  const bool triclinic = candidate.system == CrystalSystem::Triclinic;
  const std::size_t most = triclinic ? kMostTriclinicCandidates : kMostCandidates;
  const auto at = std::ranges::upper_bound(candidates, candidate, IsBetter);
  const bool room = at - candidates.begin() < static_cast<std::ptrdiff_t>(most);
  candidates.insert(at, candidate);
  if (candidates.size() > most) candidates.pop_back();
  return room;
}
