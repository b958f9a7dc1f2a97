// How likely it is that just those positions of a lattice are seen which are.
#pragma once

#include <span>
#include <vector>

#include "index/find/symmetry.h"

struct SeenPosition {
  std::span<const Hkl> reflections;  // that lie there
  bool seen;
};

// The logarithm of the chance. Each position is seen with a chance that is not known; or with two,
// one for a sublattice of index 2 or 3 and one for the rest, as weak superlattice lines ask for;
// or some kinds of reflections are absent by a glide plane or screw axis.
double LogVisibility(std::span<const SeenPosition> positions, const SymmetricLattice& lattice);
