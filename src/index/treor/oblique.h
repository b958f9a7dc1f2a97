// What the searches for monoclinic and triclinic cells share: limits, and the zones that may hold
// the first lines.
#pragma once

#include <array>
#include <vector>

#include "index/treor/run.h"
#include "index/treor/zone.h"

// Lengths and angle of the axes a and c. Of the two signs that d may have one is enough.
bool AllowsZone(const TreorZone& zone, const TreorSearch& search);
bool AllowsMonoclinic(const Constants& s, const TreorSearch& search);
// Lengths and angles of all axes.
float DeterminantOf(const Constants& s);  // lambda6 / V^2
bool AllowsTriclinic(const Constants& s, const TreorSearch& search);

// The zones that index lines 1 to 3, with indices up to the given limits, and lines 4 to 6.
using ZoneLimits = std::array<IndexLimits, 3>;
std::vector<TreorZone> DominantZones(const ZoneLimits& limits, const TreorSearch& search);
inline constexpr int kZoneLines = 6;
// The first test line outside such a zone, from a place on; 0 if there is none.
int LineOutside(const TreorZone& zone, int from, const TreorSearch& search);
