// Planes of the reciprocal lattice: with one known, what remains of a cell is told by few lines.
#pragma once

#include <cstdint>
#include <vector>

#include "index/find/trials.h"

// Q = a h^2 + c l^2 + e hl of a plane, on its reduced axes: a <= c, -a <= e <= 0.
struct ReciprocalPlane {
  double a, c, e;
  std::uint32_t hit;  // lines of the second check
  double score;
};

// The planes that explain more lines than chance would, best first.
std::vector<ReciprocalPlane> BestZones(const SearchLines& lines, std::size_t most);
