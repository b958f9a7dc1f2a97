// Monoclinic cells whose first lines all lie in the zone of the oblique axes: one of the first
// lines outside it tells the third axis.
#include "index/treor/generators.h"
#include "index/treor/listing.h"
#include "index/treor/oblique.h"
#include "index/treor/searches.h"
#include "index/treor/trials.h"

namespace {

constexpr ZoneLimits kZones{{{2, 0, 2, 4}, {2, 0, 2, 4}, {2, 0, 2, 4}}};
constexpr IndexLimits kOutside{4, 2, 4, 6};
constexpr int kLinesOutside = 2;

class Search {
 public:
  explicit Search(TreorSearch& search)
      : search_(search), trials_(search, Stage::MonoclinicZone, CrystalSystem::Monoclinic) {
    std::erase_if(sets_, [](const Hkl& r) { return r.k == 0; });
  }

  bool TryZone(const TreorZone& zone) {
    int line = kZoneLines;
    for (int n = 0; n < kLinesOutside; ++n) {
      line = LineOutside(zone, line + 1, search_);
      if (n == 0 && line == 0) ListNoZoneIndex(search_.listing);
      if (line == 0) return true;
      if (!TryLine(zone, line)) return false;
    }
    return true;
  }

 private:
  TreorSearch& search_;
  Trials trials_;
  std::vector<Hkl> sets_ = IndexSets(kOutside, HSign::Both);

  float S(int line) const { return search_.Line(line).s; }

  bool TryLine(const TreorZone& zone, int line) {
    for (const auto& [h, k, l] : sets_) {
      if (!trials_.GoOn()) return false;
      const Constants s{zone.a, (S(line) - zone.S(h, l)) / static_cast<float>(k * k), zone.c,
                        zone.d};
      if (!AllowsMonoclinic(s, search_)) continue;
      if (const int count = trials_.Test(s)) {
        ++search_.counts.dominantzone;
        if (trials_.IsStored()) ListZoneTrial(search_.listing, count, {S(1), S(2), S(3), S(line)});
      }
    }
    return true;
  }
};

}  // namespace

void SearchMonoclinicZone(TreorSearch& search) {
  Search trials(search);
  for (const TreorZone& zone : DominantZones(kZones, search))
    if (!trials.TryZone(zone)) return;
}
