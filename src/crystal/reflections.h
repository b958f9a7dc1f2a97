// The reflections of a cell in a range of two-theta, with positions, indices and multiplicities.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "crystal/cellmetric.h"
#include "crystal/hklcode.h"

struct Reflection {
  float tth;
  Hkl hkl;
  int multiplicity;  // members of the family in the range, Friedel mates included
};

struct TthRange {
  float low, high;
};

inline constexpr float kUsualWavelength = 1.540598f;  // Cu K alpha1, where none is given

// (sin(theta) / wavelength)^2
float SineSquared(float tth, float wavelength);
// Of rhombohedral axes, on which centering R is none.
bool AnglesAreEqual(const UnitCell& cell);

// Gets a text after each stage.
using StageReport = std::function<void(const char* text)>;

// The first 200 reflections by two-theta, none of higher indices than 99. Where the range holds
// 10000 and more with all their equivalents, its upper end is halved, in (sin theta / lambda)^2 and
// towards the lower end, until it holds fewer. None at all, and nothing else changed, for a cell
// without volume.
//
// The cell comes back as the class forces it. Centering R becomes P for a cell whose angles are all
// equal, and a wavelength that is not positive 1.540598 angstrom.
std::optional<std::vector<Reflection>> AssignReflections(UnitCell& cell, int laueclass,
                                                         int& centering, const TthRange& range,
                                                         float& wavelength,
                                                         const StageReport& report = {});

struct Family {
  int code, multiplicity;
};

// The families in a rising list with one code for each member. A last code that stands alone is
// lost and counts for the family before it.
std::vector<Family> MergeCodes(std::span<const int> codes);
