// Least-squares refinement of a trial cell.
#pragma once

#include "index/treor/forms.h"

struct TrialCell {
  CrystalSystem system{};
  Constants constants{};
  int singles = 0;  // lines with one reflection alone, which it was refined by
  // Of the parameters, after the last cycle; row by row.
  std::array<float, kMostUnknowns * kMostUnknowns> covariance{};
};

inline constexpr int kCycles = 3;

// Runs three cycles on the lines, rising s. They end early, with the constants of before, when too
// few lines have one reflection alone or when the cell runs away. Each cycle is listed.
void RefineCell(TrialCell& trial, const std::vector<TreorLine>& lines, const TreorOptions& options,
                Listing& listing);

// Standard deviations of the direct cell, from those of the parameters.
UnitCell CellDeviations(const TrialCell& trial, float wave);
