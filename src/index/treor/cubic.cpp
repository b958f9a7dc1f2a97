// Cubic cells: one line tells the constant.
#include <algorithm>
#include <cmath>

#include "index/treor/generators.h"
#include "index/treor/searches.h"
#include "index/treor/trials.h"

void SearchCubic(TreorSearch& search) {
  if (!HasLines(search, 2)) return;
  Trials trials(search, Stage::Cubic, CrystalSystem::Cubic);
  const float least = std::max(std::pow(search.limits.testlimit, 0.3333f), search.limits.amin);
  for (int line : {1, 2})
    for (const auto& [h, k, l] : OrderedSets(search.options.cubic, Equivalent::All)) {
      const float a = search.Line(line).s / static_cast<float>(h * h + k * k + l * l);
      if (a > least) trials.Test({a, a, a});
      if (!trials.GoOn()) return;
    }
}
