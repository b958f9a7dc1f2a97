// Monoclinic cells with a line 0 2 0, which is told by the lines h 1 0 and h 3 0 around it: they
// differ by twice its s.
#include <cmath>

#include "index/treor/cofactors.h"
#include "index/treor/generators.h"
#include "index/treor/listing.h"
#include "index/treor/oblique.h"
#include "index/treor/searches.h"
#include "index/treor/trials.h"

namespace {

// Of the zone h k 0, and of the first two lines outside it.
constexpr IndexLimits kZone{6, 0, 6, 12}, kFirst{2, 2, 2, 3}, kSecond{2, 2, 2, 4};
// Lines outside the zone that are tried with the first one: several next to it may have no more to
// tell than that, such as 0 0 2 and 0 2 1.
constexpr int kNextLines = 4;
constexpr int kMostH = 99;  // of line h 1 0

class Search {
 public:
  explicit Search(TreorSearch& search)
      : search_(search), trials_(search, Stage::Monoclinic020, CrystalSystem::Monoclinic) {}

  void Run() {
    const int n = search_.options.use;
    for (int x = 1; x <= n; ++x)
      for (int y = 1; y <= n; ++y)
        for (int z = y + 1; z <= n; ++z)
          if (x != y && x != z && std::abs(S(y) + 2 * S(x) - S(z)) <= search_.options.d2 &&
              !TryAxis(x, y))
            return;
  }

 private:
  TreorSearch& search_;
  Trials trials_;
  const std::vector<Hkl> zonesets_ = IndexSets(kZone, HSign::Positive);
  const std::vector<Hkl> firstsets_ = IndexSets(kFirst, HSign::Both);
  const std::vector<Hkl> secondsets_ = IndexSets(kSecond, HSign::Both);

  float S(int line) const { return search_.Line(line).s; }

  // Line x is 0 2 0, line y is h 1 0.
  bool TryAxis(int x, int y) {
    const float b = S(x) / 4;
    for (int h = 1; h <= kMostH; ++h) {
      const float a = (S(y) - b) / static_cast<float>(h * h);
      if (!(a > search_.limits.amin)) break;
      // The zone of a and b takes the place of that of a and c.
      const TreorZone zone{a, b, 0};
      const int first = LineOutside(zone, 1, zonesets_, search_);
      int second = first;
      for (int n = 0; n < kNextLines && second > 0; ++n) {
        second = LineOutside(zone, second + 1, zonesets_, search_);
        if (second > 0 && !TryLines(a, b, {S(x), S(y), S(first), S(second)})) return false;
      }
    }
    return true;
  }

  bool TryLines(float a, float b, const std::array<float, 4>& lines) {
    const auto rest = [&](const Hkl& r, float s) {
      return s - a * static_cast<float>(r.h * r.h) - b * static_cast<float>(r.k * r.k);
    };
    for (const Hkl& r1 : firstsets_)
      for (const Hkl& r2 : secondsets_) {
        if (!trials_.GoOn()) return false;
        const auto found = Solve<2>({{{r1.l * r1.l, r1.h * r1.l}, {r2.l * r2.l, r2.h * r2.l}}},
                                    {rest(r1, lines[2]), rest(r2, lines[3])});
        if (!found) continue;
        const Constants s{a, b, (*found)[0], (*found)[1]};
        if (!AllowsMonoclinic(s, search_)) continue;
        if (const int count = trials_.Test(s)) {
          ++search_.counts.zone020;
          if (trials_.IsStored()) ListTrial020(search_.listing, count, lines);
        }
      }
    return true;
  }
};

}  // namespace

void SearchMonoclinic020(TreorSearch& search) { Search(search).Run(); }
