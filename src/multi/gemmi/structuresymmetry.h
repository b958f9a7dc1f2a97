// The symmetry of a structure: its operators, and what the fit calls its class and centering.
#pragma once

#include <gemmi/cifdoc.hpp>
#include <gemmi/symmetry.hpp>
#include <gemmi/unitcell.hpp>
#include <set>
#include <string>

struct StructureSymmetry {
  gemmi::GroupOps operators;
  std::string group;  // symbol of the space group, blank where none is known
  int laueclass, centering;
};

// By the block's list of operators, or without one by the space group's Hall symbol, name or
// number. Throws NotReadable.
StructureSymmetry SymmetryOf(gemmi::cif::Block& block, const gemmi::UnitCell& cell);

// All that are equivalent to one reflection, Friedel mates included.
std::set<gemmi::Miller> EquivalentsOf(const gemmi::Miller& hkl, const gemmi::GroupOps& operators);

// A value of the first of these tags that has one, without quotes and line ends; else blank.
std::string FirstValue(gemmi::cif::Block& block, std::initializer_list<const char*> tags);
