// Tetragonal and hexagonal cells: two lines tell the two constants.
#include "index/treor/cofactors.h"
#include "index/treor/generators.h"
#include "index/treor/searches.h"
#include "index/treor/trials.h"

namespace {

constexpr std::array<int, 2> kBaseLines[] = {{1, 2}, {1, 3}, {2, 3}};

// What a system makes of its constants and indices.
struct TwoConstants {
  Stage stage;
  CrystalSystem system;
  int (*form)(const Hkl& r);  // that is multiplied with the constant a
  Constants (*constants)(float a, float c);
};

void Search(TreorSearch& search, const TwoConstants& kind, float amin) {
  if (!HasLines(search, 3)) return;
  Trials trials(search, kind.stage, kind.system);
  const auto sets = OrderedSets(search.options.tetragonal, Equivalent::FirstTwo);
  for (const auto& [x, y] : kBaseLines)
    for (const Hkl& first : sets)
      for (const Hkl& second : sets) {
        if (!trials.GoOn()) return;
        const int n1 = kind.form(first), n2 = kind.form(second);
        if (first.l >= second.l && n2 <= n1) continue;
        const auto found = Solve<2>({{{n1, first.l * first.l}, {n2, second.l * second.l}}},
                                    {search.Line(x).s, search.Line(y).s});
        if (!found) continue;
        const auto [a, c] = *found;
        if (a > amin && c > search.limits.amin) trials.Test(kind.constants(a, c));
      }
}

}  // namespace

void SearchTetragonal(TreorSearch& search) {
  Search(search,
         {Stage::Tetragonal, CrystalSystem::Tetragonal,
          [](const Hkl& r) { return r.h * r.h + r.k * r.k; },
          [](float a, float c) {
            return Constants{a, a, c};
          }},
         search.limits.amin);
}

void SearchHexagonal(TreorSearch& search) {
  Search(search,
         {Stage::Hexagonal, CrystalSystem::Hexagonal,
          [](const Hkl& r) { return r.h * r.h + r.h * r.k + r.k * r.k; },
          [](float a, float c) {
            return Constants{a, a, c, 0, a};
          }},
         search.limits.hexamin);
}
