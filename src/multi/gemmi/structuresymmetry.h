// The symmetry of a structure: its operators, and what the fit calls its class and centering.
#pragma once

#include <gemmi/symmetry.hpp>
#include <gemmi/unitcell.hpp>
#include <set>
#include <string>

#include "patternfiles/import/gemmi/cifblocks.h"

struct StructureSymmetry {
  gemmi::GroupOps operators;
  std::string group;  // symbol of the space group, blank where none is known
  int laueclass, centering;
};

// By the block's list of operators, or without one by the space group's Hall symbol, name or
// number. Throws NotReadable.
StructureSymmetry SymmetryOf(const CifBlock& block, const gemmi::UnitCell& cell);

// All that are equivalent to one reflection, Friedel mates included.
std::set<gemmi::Miller> EquivalentsOf(const gemmi::Miller& hkl, const gemmi::GroupOps& operators);
