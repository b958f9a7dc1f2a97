// Monoclinic cells by four base lines.
#include <algorithm>
#include <vector>

#include "index/treor/cofactors.h"
#include "index/treor/generators.h"
#include "index/treor/listing.h"
#include "index/treor/oblique.h"
#include "index/treor/searches.h"
#include "index/treor/trials.h"

namespace {

using BaseLines = std::array<int, 4>;

constexpr int kFirstSets = 3;    // the sets that are always used
constexpr int kLeastSelect = 6;  // the lines before it are base lines anyway

std::vector<BaseLines> BaseLinesOf(const TreorOptions& options) {
  std::vector<BaseLines> sets{{1, 2, 3, 4}, {1, 2, 3, 5}, {1, 2, 4, 5}, {1, 3, 4, 5},
                              {1, 2, 3, 6}, {2, 3, 4, 5}, {1, 2, 3, 7}};
  const int select = options.select;
  if (select >= kLeastSelect) {
    sets[0] = {select, 1, 2, 3};
    sets[1] = {select, 1, 2, 4};
    sets[2] = {select, 1, 3, 4};
  }
  const int all = static_cast<int>(sets.size());
  sets.resize(static_cast<std::size_t>(std::clamp(options.monoset, kFirstSets, all)));
  return sets;
}

// Orders of one reflection: one of the lines would be a higher order of the other.
bool AreProportional(const Hkl& r, const Hkl& q) {
  return r.h * q.k == r.k * q.h && r.h * q.l == r.l * q.h && r.k * q.l == r.l * q.k;
}

std::array<int, 4> Row(const Hkl& r) { return {r.h * r.h, r.k * r.k, r.l * r.l, r.h * r.l}; }

class Search {
 public:
  explicit Search(TreorSearch& search)
      : search_(search), trials_(search, Stage::Monoclinic, CrystalSystem::Monoclinic) {
    for (int i = 0; i < 4; ++i) sets_[i] = IndexSets(search.options.monoclinic(i + 1), HSign::Both);
  }

  void Run() {
    ListFirstBaseLines(search_.listing, search_.options.select);
    int n = 0;
    for (const BaseLines& lines : BaseLinesOf(search_.options)) {
      if (++n > kFirstSets) ListBaseLines(search_.listing, lines);
      if (HasLines(search_, std::ranges::max(lines)) && !TryLines(lines)) return;
    }
  }

 private:
  TreorSearch& search_;
  Trials trials_;
  std::array<std::vector<Hkl>, 4> sets_;
  std::array<Hkl, 4> at_{};
  std::array<float, 4> s_{};
  int cell_ = 0;  // that is tried

  bool TryLines(const BaseLines& lines) {
    for (int i = 0; i < 4; ++i) s_[i] = search_.Line(lines[i]).s;
    return TrySets(0);
  }

  // Gives indices to the i-th line and those behind it.
  bool TrySets(int i) {
    if (i == 4) return TryCell();
    for (const Hkl& r : sets_[i]) {
      const auto proportional = [&](const Hkl& q) { return AreProportional(r, q); };
      if (std::any_of(at_.begin(), at_.begin() + i, proportional)) continue;
      at_[i] = r;
      if (!TrySets(i + 1)) return false;
    }
    return true;
  }

  bool TryCell() {
    if (!trials_.GoOn()) return false;
    if (++cell_ <= search_.handedover) return true;
    const auto found = Solve<4>({Row(at_[0]), Row(at_[1]), Row(at_[2]), Row(at_[3])}, s_);
    if (!found) return true;
    const auto [a, b, c, d] = *found;
    if (!AllowsMonoclinic({a, b, c, d}, search_) || trials_.Test({a, b, c, d}) == 0) return true;
    ++search_.counts.general;
    if (search_.options.monogam == 0) return true;
    search_.handedover = cell_;
    return false;
  }
};

}  // namespace

void SearchMonoclinic(TreorSearch& search) {
  const int before = search.handedover;
  Search(search).Run();
  if (search.handedover == before) search.handedover = 0;
}
