// Reduction of a primitive cell, and the conventional cell that its metric asks for.
#pragma once

#include "crystal/cellmetric.h"
#include "index/listing.h"

inline constexpr float kReductionTolerance = 0.05f;  // square angstrom

// Lists the reduced cell, its form (1 to 44) and the conventional cell of its metric symmetry; an
// impossible cell gives a warning in the listing.
void ReduceCell(const UnitCell& cell, float tolerance, Listing& listing);
