// Reflections that glide planes and screw axes leave out.
#pragma once

#include <span>

#include "index/find/symmetry.h"

// One kind of reflections, such as h0l, and what may be missing of it: at most one of these.
struct AbsenceKind {
  static constexpr std::size_t kMost = 4;
  bool (*missing[kMost])(int h, int k, int l);  // of conventional indices; null behind the last
};

// The kinds of a system, by International Tables for Crystallography A, table of extinction
// symbols. Empty for triclinic lattices.
std::span<const AbsenceKind> AbsencesOf(LatticeSystem system);
