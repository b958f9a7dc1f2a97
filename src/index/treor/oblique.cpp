#include "index/treor/oblique.h"

#include <cstdlib>

#include "index/treor/cofactors.h"
#include "index/treor/generators.h"

namespace {

constexpr int kBaseLines = 3;

// Limits of the lines behind the base lines, and of all others.
constexpr IndexLimits kFurtherLines[] = {{4, 0, 4, 6}, {4, 0, 4, 6}, {5, 0, 5, 6}};
constexpr IndexLimits kAnyLine{6, 0, 6, 12};

std::vector<Hkl> ZoneSets(const IndexLimits& limits) { return IndexSets(limits, HSign::Both); }

// As the axes may trade places, h of the first line is its larger index.
std::vector<Hkl> FirstSets(const IndexLimits& limits) {
  std::vector<Hkl> sets = ZoneSets(limits);
  std::erase_if(sets, [](const Hkl& r) { return std::abs(r.h) < r.l; });
  return sets;
}

bool AreEqual(const Hkl& r, const Hkl& q) { return r.h == q.h && r.l == q.l; }

std::array<int, 3> Row(const Hkl& r) { return {r.h * r.h, r.l * r.l, r.h * r.l}; }

bool IndexesFurtherLines(const TreorZone& zone, const TreorSearch& search) {
  int line = kBaseLines;
  for (const IndexLimits& limits : kFurtherLines)
    if (!Indexes(zone, search.Line(++line).s, ZoneSets(limits), search.options)) return false;
  return true;
}

}  // namespace

bool AllowsZone(const TreorZone& zone, const TreorSearch& search) {
  const auto& [a, c, d] = zone;
  const float amin = search.limits.amin;
  if (!(a > 0 && c > 0 && d >= -search.options.d2 && d * d / (a * c) <= search.limits.cos4))
    return false;
  const float f = zone.SineSquared();
  return f > 0 && a * f > amin && c * f > amin;
}

bool AllowsMonoclinic(const Constants& s, const TreorSearch& search) {
  return s.b > search.limits.amin && AllowsZone({s.a, s.c, s.d}, search);
}

float DeterminantOf(const Constants& s) {
  return s.a * s.b * s.c +
         (s.d * s.e * s.f - s.a * s.f * s.f - s.b * s.d * s.d - s.c * s.e * s.e) / 4;
}

bool AllowsTriclinic(const Constants& m, const TreorSearch& search) {
  const auto [a, b, c, d, e, f] = m;
  if (!(a > 0 && b > 0 && c > 0)) return false;
  // The squares of the areas between two reciprocal axes: over that of their volume they are the
  // squares of the direct axes.
  const float bc = b * c - f * f / 4, ac = a * c - d * d / 4, ab = a * b - e * e / 4;
  const float volume = DeterminantOf(m), amin = search.limits.amin;
  return bc > 0 && ac > 0 && ab > 0 && volume > 0 && bc * amin <= volume && ac * amin <= volume &&
         ab * amin <= volume;
}

std::vector<TreorZone> DominantZones(const ZoneLimits& limits, const TreorSearch& search) {
  std::vector<TreorZone> zones;
  if (search.Lines() < kZoneLines) return zones;
  const std::array<float, 3> s{search.Line(1).s, search.Line(2).s, search.Line(3).s};
  for (const Hkl& r1 : FirstSets(limits[0]))
    for (const Hkl& r2 : ZoneSets(limits[1]))
      for (const Hkl& r3 : ZoneSets(limits[2])) {
        if (AreEqual(r1, r2) || AreEqual(r1, r3) || AreEqual(r2, r3)) continue;
        const auto found = Solve<3>({Row(r1), Row(r2), Row(r3)}, s);
        if (!found) continue;
        const TreorZone zone{(*found)[0], (*found)[1], (*found)[2]};
        if (AllowsZone(zone, search) && IndexesFurtherLines(zone, search)) zones.push_back(zone);
      }
  return zones;
}

int LineOutside(const TreorZone& zone, int from, const TreorSearch& search) {
  return LineOutside(zone, from, ZoneSets(kAnyLine), search);
}
