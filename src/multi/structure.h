// A crystal structure as a file tells it, and the lines of its powder pattern.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "crystal/cellmetric.h"

// All reflections that are equivalent by symmetry, named by the one that tables print.
struct StructureReflection {
  Hkl hkl;
  int multiplicity;  // Friedel mates included
  double d;          // angstrom
  double square;     // |F| squared of the cell, mean of hkl and its opposite
};

struct StructureReflections {
  std::vector<StructureReflection> rows;
  double shortest;  // d to which they are complete: more than asked for where they are too many
};

struct CrystalStructure {
  std::string name, formula;
  std::string group;  // symbol of the space group and its setting, blank where none is known
  UnitCell cell;
  int laueclass = 1, centering = 1;  // as the fit numbers them
  // Those from d `longest` down to `shortest`, angstrom.
  std::function<StructureReflections(double wavelength, double shortest, double longest)>
      reflections;
};

// The first structure with atoms in a CIF. Throws NotReadable, or what std::exception stands for.
CrystalStructure ReadStructure(std::string_view bytes, const std::string& path);

struct PowderLine {
  float tth, intensity;  // 100 for the strongest
  Hkl hkl;
};

// The lines by two-theta with the Lorentz and polarisation factor of a diffractometer without
// monochromator; reflections at one d are one line. Of more than `most` the weakest are left out.
std::vector<PowderLine> PowderLines(const std::vector<StructureReflection>& rows, double wavelength,
                                    std::size_t most);
