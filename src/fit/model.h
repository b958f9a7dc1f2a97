// What the stages of the whole-pattern fit work on. They read and change nothing else, so that
// several fits can run at once.
#pragma once

#include <algorithm>
#include <span>

#include "workspace/workspace.h"

struct FitModel {
  // The pattern: two-theta in degrees without the zero, and counts.
  std::span<const float> x, y;
  // Curves on the same points: estimated or polynomial background, pattern less background, and
  // calculated pattern.
  std::span<float> background, net, calculated;
  // Rows 1 and 2: first and last of the `peaks` that reach a point at nfwhmpeak FWHM; rows 3 and 4:
  // at minfwhmsep FWHM. 0 and 0: none.
  Table<int, 4, MaxPoints>& ptrefl;
  FitParameters& fit;
  Table<float, 8, MaxPeaks + 1>& peaks;  // pfwhmr and pshaper hold the left values
  int& npeaks;
  Table<float, 3> scanwave;  // alpha1, alpha2 and the ratio of their intensities
  float& wavelength;         // that turns the cell into positions

  int Rows() const { return std::clamp(npeaks, 0, MaxPeaks); }
  int Points() const { return static_cast<int>(x.size()); }
  float Step() const { return x.size() < 2 ? 0.0f : x[1] - x[0]; }
};
