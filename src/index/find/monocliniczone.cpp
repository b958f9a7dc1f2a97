// Monoclinic cells with many lines h0l: the zone first, then the axis across it.
#include <algorithm>
#include <cmath>

#include "index/find/monoclinic.h"
#include "index/find/zones.h"

namespace {

constexpr std::size_t kMostZones = 400;
constexpr std::size_t kCrossLines = 4;  // the first ones missed by the zone, for the axis

// The cell whose axes a and c are as many times those of the zone.
MonoclinicForm Multiplied(const ReciprocalPlane& z, double b, int ma, int mc) {
  return {z.a / (ma * ma), b, z.c / (mc * mc), z.e / (ma * mc)};
}

}  // namespace

void SearchForMonoclinicZone(const SearchLines& lines, TrialList& list) {
  for (const ReciprocalPlane& zone : BestZones(lines, kMostZones)) {
    std::size_t taken = 0;
    const std::size_t n = std::min(kLinesOfSecondCheck, lines.q.size());
    for (std::size_t i = 0; i < n && taken < kCrossLines; ++i) {
      if ((zone.hit >> i) & 1) continue;
      ++taken;
      // In halves of the zone's axes: a zone of a centred cell, or one with a glide plane, shows
      // only every other line.
      for (int h = -4; h <= 4; ++h)
        for (int l = 0; l <= 4; ++l) {
          const double rest = lines.q[i] - (zone.a * h * h + zone.e * h * l + zone.c * l * l) / 4;
          for (int k = 1; k <= 2; ++k)
            if (const double b = rest / (k * k); b > kLeastSquare) {
              const MonoclinicForm form = Multiplied(zone, b, 1 + (h & 1), 1 + (l & 1));
              if (PassesFirst(form, lines)) Try(form, lines, list);
            }
        }
    }
  }
}
