// Orthorhombic cells whose first lines all lie in the zone of two axes: the first line outside it
// tells the third.
#include "index/treor/cofactors.h"
#include "index/treor/generators.h"
#include "index/treor/searches.h"
#include "index/treor/trials.h"
#include "index/treor/zone.h"

namespace {

constexpr int kLeastOutside = 5;  // line; an earlier one is no sign of a dominant zone

// The index sets of the zone are those of its axes h and l.
const IndexLimits kFirst{3, 0, 2, 4}, kSecond{4, 0, 4, 6}, kZone{5, 0, 5, 10};
const IndexLimits kOutside{4, 2, 4, 6};

class Search {
 public:
  explicit Search(TreorSearch& search)
      : search_(search), trials_(search, Stage::OrthorhombicZone, CrystalSystem::Orthorhombic) {}

  void Run() {
    for (const Hkl& r1 : IndexSets(kFirst, HSign::Positive)) {
      if (r1.h < r1.l) continue;
      for (const Hkl& r2 : IndexSets(kSecond, HSign::Positive)) {
        const auto found = Solve<2>({{{r1.h * r1.h, r1.l * r1.l}, {r2.h * r2.h, r2.l * r2.l}}},
                                    {search_.Line(1).s, search_.Line(2).s});
        if (found && !TryZone({(*found)[0], (*found)[1], 0})) return;
      }
    }
  }

 private:
  TreorSearch& search_;
  Trials trials_;
  const std::vector<Hkl> zonesets_ = IndexSets(kZone, HSign::Positive);
  const std::vector<Hkl> outsidesets_ = IndexSets(kOutside, HSign::Positive);

  bool TryZone(const TreorZone& zone) {
    const float amin = search_.limits.amin;
    if (zone.a <= amin || zone.c <= amin) return true;
    const int outside = LineOutside(zone, 3, zonesets_, search_);
    if (outside < kLeastOutside) return true;
    for (const auto& [h, k, l] : outsidesets_) {
      if (!trials_.GoOn()) return false;
      if (k == 0) continue;
      const float b = (search_.Line(outside).s - zone.S(h, l)) / static_cast<float>(k * k);
      if (b > amin) trials_.Test({zone.a, b, zone.c});
    }
    return true;
  }
};

}  // namespace

void SearchOrthorhombicZone(TreorSearch& search) {
  if (HasLines(search, kLeastOutside)) Search(search).Run();
}
