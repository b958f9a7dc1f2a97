// Reflections of a structure with their structure factors.
#pragma once

#include <gemmi/small.hpp>
#include <gemmi/symmetry.hpp>

#include "multi/structure.h"

// A structure whose cell has the images of all operators but the identity, and whose occupancies
// are those of a site divided by the order of its symmetry.
struct StructureModel {
  gemmi::SmallStructure crystal;
  gemmi::GroupOps operators;
};

// With scattering factors of neutral atoms (International Tables C), the dispersion of Cromer and
// Liberman, and the displacement factors of the sites.
StructureReflections ReflectionsOf(const StructureModel& model, double wavelength, double shortest,
                                   double longest);
