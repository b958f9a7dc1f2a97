#pragma once

#include "index/ito/problem.h"

// Tells in the listing whether a lattice is metrically cubic, tetragonal, hexagonal or
// rhombohedral, within the tolerance of equal values and within three times of it.
void SpecialLattices(const Lattice& lattice, float eqtol, Listing& listing);
