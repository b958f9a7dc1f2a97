#include "index/treor/zone.h"

#include <algorithm>
#include <cmath>

#include "index/treor/lines.h"

bool Indexes(const TreorZone& zone, float s, const std::vector<Hkl>& sets,
             const TreorOptions& options) {
  const float tolerance = ToleranceAt(s, options);
  return std::ranges::any_of(
      sets, [&](const Hkl& r) { return std::abs(zone.S(r.h, r.l) - s) <= tolerance; });
}

int LineOutside(const TreorZone& zone, int from, const std::vector<Hkl>& sets,
                const TreorSearch& search) {
  for (int i = from; i <= search.options.use; ++i)
    if (!Indexes(zone, search.Line(i).s, sets, search.options)) return i;
  return 0;
}
