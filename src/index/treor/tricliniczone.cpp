// Triclinic cells whose first lines all lie in one zone: the first three lines outside it tell the
// other constants.
#include "index/treor/cofactors.h"
#include "index/treor/oblique.h"
#include "index/treor/searches.h"
#include "index/treor/trials.h"

namespace {

constexpr ZoneLimits kZones{{{2, 0, 2, 2}, {2, 0, 2, 3}, {2, 0, 2, 3}}};
constexpr int kMostIndex = 2;   // of lines in the layer next to the zone
constexpr int kMostLayers = 2;  // in which the first line outside the zone is looked for

class Search {
 public:
  explicit Search(TreorSearch& search)
      : search_(search), trials_(search, Stage::TriclinicZone, CrystalSystem::Triclinic) {
    for (int l = -kMostIndex; l <= kMostIndex; ++l)
      for (int h = -kMostIndex; h <= kMostIndex; ++h)
        if (h != 0 || l != 0) layer_.push_back({h, 1, l});
  }

  bool TryZone(const TreorZone& zone) {
    std::array<float, 3> s{};
    int line = kZoneLines;
    for (float& outside : s) {
      line = LineOutside(zone, line + 1, search_);
      if (line == 0) return true;
      outside = search_.Line(line).s;
    }
    // The axis b may be chosen so that the first line is an order of it.
    for (int k = 1; k <= kMostLayers; ++k)
      if (!TryLayer(zone, s[0] / static_cast<float>(k * k), s)) return false;
    return true;
  }

 private:
  TreorSearch& search_;
  Trials trials_;
  std::vector<Hkl> layer_;

  bool TryLayer(const TreorZone& zone, float b, const std::array<float, 3>& s) {
    for (const Hkl& r1 : layer_)
      for (const Hkl& r2 : layer_) {
        if (!trials_.GoOn()) return false;
        const auto found = Solve<2>({{{r1.h, r1.l}, {r2.h, r2.l}}},
                                    {s[1] - b - zone.S(r1.h, r1.l), s[2] - b - zone.S(r2.h, r2.l)});
        if (!found) continue;
        const Constants m{zone.a, b, zone.c, zone.d, (*found)[0], (*found)[1]};
        if (AllowsTriclinic(m, search_) && trials_.Test(m) > 0) ++search_.counts.triclinic;
      }
    return true;
  }
};

}  // namespace

void SearchTriclinicZone(TreorSearch& search) {
  Search trials(search);
  for (const TreorZone& zone : DominantZones(kZones, search))
    if (!trials.TryZone(zone)) return;
}
