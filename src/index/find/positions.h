// The positions that a lattice calculates, and the lines that lie on them.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "index/find/form.h"
#include "index/find/limits.h"
#include "index/find/lines.h"

struct CalculatedReflection {
  double q;
  Hkl hkl;  // one of each two opposites
};

// Reflections that the pattern cannot tell apart.
struct CalculatedPosition {
  double q;                // their mean
  double spread;           // from the first to the last
  std::size_t begin, end;  // of them
  int line = -1;           // that lies here; -1 for none
};

struct MatchedPositions {
  std::vector<CalculatedReflection> reflections;  // by rising q
  std::vector<CalculatedPosition> positions;
  int hits = 0;

  std::span<const CalculatedReflection> At(const CalculatedPosition& p) const {
    return std::span(reflections).subspan(p.begin, p.end - p.begin);
  }
};

// By how much a line lies beyond a position, degrees.
inline double DeviationOf(const ObservedLine& line, double q, double zero) {
  return (line.q - q) / line.slope - zero;
}

// Positions as far as the last line goes; none for a lattice that is expected to have more than
// `most` reflections there.
// `zero` is how far the lines lie beyond their positions, degrees. Each line is given to the
// nearest position, each position to the nearest of its lines.
MatchedPositions MatchLines(std::span<const ObservedLine> lines, const Form& reciprocal,
                            double zero, double most = kMostReflections);
