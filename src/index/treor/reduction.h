// Reduction of a primitive cell, and the conventional cell that its metric implies.
#pragma once

#include <optional>

#include "crystal/cellmetric.h"
#include "index/listing.h"
#include "index/treor/lattices44.h"

struct CellWithVolume {
  UnitCell cell;
  float volume;  // cubic angstrom
};

struct Reduction {
  int spacediagonals = 0;  // how often the search for the shortest axes began anew
  CellWithVolume reduced{};
  const ReducedForm* form = nullptr;
  CellWithVolume conventional{};
};

inline constexpr float kReductionTolerance = 0.05f;  // of products of axes, square angstrom

// None if the cell is none.
std::optional<Reduction> Reduce(const UnitCell& cell, float tolerance);

// Lists the reduced cell, its form and the conventional cell of its metric symmetry; an impossible
// cell gives a warning in the listing.
void ReduceCell(const UnitCell& cell, float tolerance, Listing& listing);
