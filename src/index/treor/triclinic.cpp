// Triclinic cells: line 1 is 1 0 0, and five of the next lines have simple indices.
#include <algorithm>
#include <vector>

#include "index/treor/equations.h"
#include "index/treor/oblique.h"
#include "index/treor/searches.h"
#include "index/treor/trials.h"

namespace {

constexpr std::size_t kUnknowns = 5;

constexpr Hkl kSets[] = {{0, 1, 0}, {0, 0, 1},  {1, 1, 0}, {-1, 1, 0}, {0, 1, 1}, {0, -1, 1},
                         {1, 0, 1}, {-1, 0, 1}, {1, 1, 1}, {-1, 1, 1}, {1, -1, 1}};

// One after the other the lines give way to lines 7 and 8.
constexpr std::array<int, kUnknowns> kBaseLines[] = {
    {2, 3, 4, 5, 6}, {2, 3, 4, 5, 7}, {2, 3, 4, 6, 7}, {2, 3, 5, 6, 7}, {2, 4, 5, 6, 7},
    {3, 4, 5, 6, 7}, {2, 3, 4, 5, 8}, {2, 3, 4, 6, 8}, {2, 3, 5, 6, 8}};

// Five index sets and the inverse of their equations for b, c, d, e, f.
struct Equations {
  std::array<Hkl, kUnknowns> sets;
  std::array<float, kUnknowns * kUnknowns> inverse;
};

// False for sets that do not tell all five.
bool SetInverse(Equations& equations) {
  auto at = equations.inverse.begin();
  for (const auto& [h, k, l] : equations.sets)
    for (int product : {k * k, l * l, h * l, h * k, k * l}) *at++ = static_cast<float>(product);
  return InvertInPlace(equations.inverse, kUnknowns);
}

// Of all choices of five index sets, in the order of the table.
std::vector<Equations> AllEquations() {
  std::vector<Equations> all;
  std::array<bool, std::size(kSets)> chosen{};
  std::fill_n(chosen.begin(), kUnknowns, true);
  do {
    Equations equations{};
    auto at = equations.sets.begin();
    for (std::size_t i = 0; i < chosen.size(); ++i)
      if (chosen[i]) *at++ = kSets[i];
    if (SetInverse(equations)) all.push_back(equations);
  } while (std::ranges::prev_permutation(chosen).found);
  return all;
}

class Search {
 public:
  explicit Search(TreorSearch& search)
      : search_(search), trials_(search, Stage::Triclinic, CrystalSystem::Triclinic) {}

  void Run() {
    for (auto lines : kBaseLines) {
      if (!HasLines(search_, lines.back())) continue;
      for (const Equations& equations : equations_) do
          if (!TryCell(equations, lines)) return;
        while (std::ranges::next_permutation(lines).found);
    }
  }

 private:
  TreorSearch& search_;
  Trials trials_;
  const std::vector<Equations> equations_ = AllEquations();

  bool TryCell(const Equations& equations, const std::array<int, kUnknowns>& lines) {
    if (!trials_.GoOn()) return false;
    const float a = search_.Line(1).s;
    std::array<float, kUnknowns> side{}, x{};
    for (std::size_t i = 0; i < kUnknowns; ++i)
      side[i] = search_.Line(lines[i]).s - (equations.sets[i].h != 0 ? a : 0);
    for (std::size_t i = 0; i < kUnknowns; ++i)
      for (std::size_t j = 0; j < kUnknowns; ++j)
        x[i] += equations.inverse[i * kUnknowns + j] * side[j];
    const Constants m{a, x[0], x[1], x[2], x[3], x[4]};
    if (AllowsTriclinic(m, search_) && trials_.Test(m) > 0) ++search_.counts.triclinic;
    return true;
  }
};

}  // namespace

void SearchTriclinic(TreorSearch& search) { Search(search).Run(); }
