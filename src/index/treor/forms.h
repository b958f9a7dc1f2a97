// The quadratic forms of the crystal systems, and the lines that they give.
#pragma once

#include <array>
#include <vector>

#include "crystal/hklcode.h"
#include "index/treor/equations.h"
#include "index/treor/run.h"

// What a cell is refined by: a; a, c; a, b, c; a, c; a, b, c, d; all six constants.
int ParametersOf(CrystalSystem system);
using Parameters = std::array<float, kMostUnknowns>;
Constants ConstantsOf(CrystalSystem system, const Parameters& parameters);
Parameters ParametersOf(CrystalSystem system, const Constants& constants);

// What the parameters are multiplied with. Two reflections of the same form have the same s in
// every cell of the system.
std::array<int, kMostUnknowns> FormOf(CrystalSystem system, const Hkl& hkl);

struct CalculatedLine {
  float s;
  Hkl hkl;
};

inline constexpr std::size_t kMostCalculated = 270;

// The lines of a cell up to smax, one of each form, by rising s: the first 270 of them. None for
// constants a, b or c that are not above 0.
std::vector<CalculatedLine> CalculatedLines(CrystalSystem system, const Constants& constants,
                                            float smax);
