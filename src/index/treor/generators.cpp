#include "index/treor/generators.h"

#include <algorithm>

namespace {

constexpr int kMostIndex = 20;  // of a base line; more would be asking for all there is

template <class Use>
void ForEachSet(const IndexLimits& limits, Use use) {
  const auto most = [](int limit) { return std::min(limit, kMostIndex); };
  for (int l = 0; l <= most(limits.l); ++l)
    for (int k = 0; k <= most(limits.k); ++k)
      for (int h = 0; h <= most(limits.h); ++h)
        if (const int sum = h + k + l; sum > 0 && sum <= limits.sum) use(Hkl{h, k, l});
}

}  // namespace

std::vector<Hkl> IndexSets(const IndexLimits& limits, HSign sign) {
  std::vector<Hkl> sets;
  ForEachSet(limits, [&](const Hkl& r) {
    sets.push_back(r);
    if (sign == HSign::Both && r.h * r.l > 0) sets.push_back({-r.h, r.k, r.l});
  });
  return sets;
}

std::vector<Hkl> OrderedSets(const IndexLimits& limits, Equivalent axes) {
  std::vector<Hkl> sets;
  ForEachSet(limits, [&](const Hkl& r) {
    if (r.h >= r.k && (axes == Equivalent::FirstTwo || r.k >= r.l)) sets.push_back(r);
  });
  return sets;
}
