// Orthorhombic cells by three base lines.
#include <algorithm>
#include <vector>

#include "index/treor/cofactors.h"
#include "index/treor/generators.h"
#include "index/treor/searches.h"
#include "index/treor/trials.h"

namespace {

using BaseLines = std::array<int, 3>;

std::vector<BaseLines> BaseLinesOf(int select) {
  if (select > 0) return {{select, 1, 2}, {select, 1, 3}, {select, 2, 3}};
  return {{1, 2, 3}, {1, 2, 4}, {1, 2, 5}, {1, 3, 4}, {2, 3, 4}, {1, 2, 6}};
}

bool Exceeds(const Hkl& r, const Hkl& other) {
  return r.h > other.h || r.k > other.k || r.l > other.l;
}

// Axes that the first line does not tell from each other are not tried in both orders.
bool MayFollow(const Hkl& second, const Hkl& first) {
  return (first.h != first.k || second.k <= second.h) &&
         (first.k != first.l || second.l <= second.k) && Exceeds(second, first);
}

std::array<int, 3> Row(const Hkl& r) { return {r.h * r.h, r.k * r.k, r.l * r.l}; }

}  // namespace

void SearchOrthorhombic(TreorSearch& search) {
  const auto& limits = search.options.orthorhombic;
  const auto first = OrderedSets(limits(1), Equivalent::All);
  const auto second = IndexSets(limits(2), HSign::Positive);
  const auto third = IndexSets(limits(3), HSign::Positive);
  const float amin = search.limits.amin;
  Trials trials(search, Stage::Orthorhombic, CrystalSystem::Orthorhombic);
  for (const BaseLines& lines : BaseLinesOf(search.options.select)) {
    if (!HasLines(search, std::ranges::max(lines))) continue;
    const auto s = [&](int i) { return search.Line(lines[static_cast<std::size_t>(i)]).s; };
    for (const Hkl& r1 : first)
      for (const Hkl& r2 : second) {
        if (!MayFollow(r2, r1)) continue;
        if (!trials.GoOn()) return;
        for (const Hkl& r3 : third) {
          if (!Exceeds(r3, r2)) continue;
          const auto found = Solve<3>({Row(r1), Row(r2), Row(r3)}, {s(0), s(1), s(2)});
          if (!found) continue;
          const auto [a, b, c] = *found;
          if (a > amin && b > amin && c > amin) trials.Test({a, b, c});
        }
      }
  }
}
