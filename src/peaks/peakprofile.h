// Split pseudo-Voigt profile of one peak with its alpha2 component, and its least-squares fit.
#pragma once

#include <span>

#include "crystal/fit.h"

struct FitWavelengths {
  float alpha1, alpha2;
  float ratio;  // of the intensities alpha2 / alpha1; not above 0: alpha1 alone
};

// Refines p[8] = area, position, background, slope, left FWHM and shape, right FWHM and shape, to
// the points; calc receives the calculated values. `report` gets each cycle's number and Rw when
// its shift has been made. A maximum at an end is not fitted: no cycle is begun, and p and calc
// stay.
FitResult PeakProfileFit(std::span<const float> x, std::span<const float> y, std::span<float> calc,
                         const FitWavelengths& lines, std::span<float, 8> p,
                         const FitReport& report);
