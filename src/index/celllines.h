// The lines of a cell that a pattern can show, as far apart as its steps.
#pragma once

#include <vector>

#include "crystal/reflections.h"

struct CellLines {
  UnitCell cell;
  float wavelength;  // one that is not positive stands for Cu K alpha1
  int lattice;       // a centering
  float offset;      // added to all positions, degrees two-theta
  int laueclass;     // whose families are one line
  TthRange range;    // of the pattern
  float step;        // lines that lie no further behind the last one than this are left out
  float zeroshift;   // of the pattern, degrees two-theta
};

// The first 200 by two-theta; none for a cell without volume. No index goes beyond 40, and a range
// that holds more than 20000 reflections is not seen to its end.
std::vector<Reflection> ReflectionsFromCell(const CellLines& asked);
