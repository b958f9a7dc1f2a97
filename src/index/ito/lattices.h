// Lattices: how two zones make one, and the form that all descriptions of one lattice share.
#pragma once

#include <optional>

#include "index/ito/zones.h"

inline constexpr std::size_t kMostLattices = 150;

// Sum of the absolute differences of the six constants.
float Difference(const Lattice& one, const Lattice& other);

// Lattices of two zones that have a length in common, to 1.0: a is the common length, b and f the
// first zone, c and e the second, and d is not known yet. A zone is combined with itself on up to
// five of its lengths, two zones on the first that they share.
std::vector<Lattice> CombineZones(const Zone& first, const Zone& second, bool same);

// The constants d, four at most, with which a lattice indexes many lines; `lines` of each row is
// the count of its histogram.
std::vector<Lattice> Threed(const Lattice& lattice, const ItoProblem& problem);

// Brings the lattice into its standard form: rhombic nets become rectangles of half their edges, so
// that centred lattices come to orthogonal axes, and then the axes the shortest vectors. False if
// it is no lattice, or has an edge beyond the limit of the problem; a is 0 then.
bool Norm3(Lattice& lattice, const ItoProblem& problem, Listing* test);
