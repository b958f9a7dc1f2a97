// The symmetry of a lattice, by its metric alone.
#pragma once

#include <vector>

#include "index/find/form.h"

enum class LatticeSystem {
  Triclinic,
  Monoclinic,
  Orthorhombic,
  Tetragonal,
  Rhombohedral,
  Hexagonal,
  Cubic
};

using Rotation = std::array<std::array<int, 3>, 3>;  // images of the axes in rows
Axes AxesOf(const Rotation& rotation);

// A lattice that has a symmetry exactly.
struct SymmetricLattice {
  LatticeSystem system = LatticeSystem::Triclinic;
  Form direct{};                   // on its reduced axes
  std::vector<Rotation> group{};   // proper ones
  std::vector<Form> parameters{};  // what its reciprocal form is a sum of, orthonormal
};

// The symmetries that a lattice, given on its reduced axes, comes close to, each with the lattice
// averaged over it: within 1 in 10 000 first, then within up to 3 in 100 of products of axes.
std::vector<SymmetricLattice> SymmetriesOf(const Form& reduced);

// Whether two lattices, on their reduced axes, are one within a share of products of axes.
bool IsSameLattice(const Form& reduced, const Form& other, double tolerance);

// The axes of the conventional cell in rows, as sums of the reduced ones: right-handed, of the
// usual order, b unique with an obtuse angle, hexagonal for rhombohedral lattices (obverse).
struct ConventionalAxes {
  char centering;  // P, C, I, F or R
  Rotation axes;
};
ConventionalAxes Conventional(const SymmetricLattice& lattice);
