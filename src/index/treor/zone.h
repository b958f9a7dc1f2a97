// A zone of the reciprocal lattice, and the lines that it does not index.
#pragma once

#include <vector>

#include "crystal/hklcode.h"
#include "index/treor/run.h"

// s = a hh + c ll + d hl.
struct TreorZone {
  float a, c, d;
  float S(int h, int l) const {
    return a * static_cast<float>(h * h) + c * static_cast<float>(l * l) +
           d * static_cast<float>(h * l);
  }
  // 1 - cos^2 of the angle between its axes.
  float SineSquared() const { return 1 - d * d / (a * c) / 4; }
};

// True if one of the index sets, whose k does not count, gives a line.
bool Indexes(const TreorZone& zone, float s, const std::vector<Hkl>& sets,
             const TreorOptions& options);

// The first test line from a place on that the zone does not index; 0 if there is none.
int LineOutside(const TreorZone& zone, int from, const std::vector<Hkl>& sets,
                const TreorSearch& search);
