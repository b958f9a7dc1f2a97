// The figures of merit that everyone knows.
#pragma once

#include <span>

#include "index/find/assess.h"

struct FiguresOfMerit {
  double m20;       // Q20 / (2 <dQ> N20)
  double f20;       // 20 / (N20 <d2theta>)
  double f20error;  // <d2theta>, degrees
  int possible;     // N20
};

// On the first 20 lines that the lattice indexes, or on all of them. P. M. de Wolff, J. Appl.
// Cryst. 1 (1968) 108; G. S. Smith and R. L. Snyder, ibid. 12 (1979) 60. Only the absences of the
// centering are left out of the possible lines.
FiguresOfMerit MeritOf(std::span<const ObservedLine> lines, const Assessment& assessment);
