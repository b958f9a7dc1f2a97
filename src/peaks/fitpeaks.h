// The peaks of a list fitted one and all, in groups of those that overlap.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "peaks/peakprofile.h"  // for FitWavelengths
#include "peaks/splitpeak.h"

// Rising two-theta, counts, and an estimate of the background under them.
struct FittedPattern {
  std::span<const float> x, y, background;
};

struct PeakFit {
  bool fitted = false;  // false: there is no such peak, or the points do not tell
  SplitPeak peak;
  double positionesd = 0, areaesd = 0, fwhmesd = 0;  // as FitGroup gives them
};

// Gets how many of the peaks are done; false ends the fit.
using PeaksReport = std::function<bool(int done, int all)>;

struct PeakFits {
  std::vector<PeakFit> peaks;  // in the order of the positions
  std::vector<float> curve;    // peaks and background, on the points of the pattern
  bool stopped = false;        // by the report: nothing else holds
};

// Fits split pseudo-Voigt peaks at the given positions, which rise, each group on a line of its
// own. Weights are 1/y; 1 for y of 0 and less. A peak is not fitted
//   - that lies outside the pattern, or within one and a half steps of the one before it;
//   - that the points have no need of: of two that cannot be told apart one gets the area of both;
//   - whose group has too few points, finds no rest, or has changed its order;
//   - whose position has gone as far as a FWHM or three quarters of the way to the next one, whose
//     widths have become five times or a fifth of what this and the other peaks show at first, or
//     whose position is not known to its FWHM.
PeakFits FitPeaks(const FittedPattern& pattern, std::span<const float> positions,
                  const FitWavelengths& lines, const PeaksReport& report);
