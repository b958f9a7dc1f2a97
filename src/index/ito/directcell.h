// From the constants of a reciprocal lattice to the direct cell, and what its metric tells.
#pragma once

#include "crystal/cellmetric.h"
#include "index/ito/problem.h"

struct DirectCell {
  UnitCell cell;     // angstrom, degrees
  float volume = 0;  // cubic angstrom
};

// The cell of a lattice; not numbers where its constants are those of none.
DirectCell CellOfLattice(const Lattice& lattice);

// Writes the cell as a line of the listing, and behind it Z or the density if a molecular weight is
// known.
void PutDirectCell(const Lattice& lattice, const ItoCards& cards, Listing& listing);
