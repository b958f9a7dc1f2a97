// Least-squares fit of a few peaks that overlap, on a straight background.
#pragma once

#include <span>
#include <vector>

#include "peaks/splitpeak.h"

// The points of a group, and the weights of their counts.
struct GroupPoints {
  std::vector<double> x, y, weight;
};

struct BackgroundLine {
  double middle = 0;  // two-theta
  double height = 0, slope = 0;
  double At(double x) const { return height + slope * (x - middle); }
};

// Within which a peak is refined, and what it is near to if it does not tell.
struct PeakLimits {
  double lowest = 0, highest = 0;      // position
  double narrowest = 0, broadest = 0;  // FWHM of either side
  double usual = 0;                    // FWHM of the other peaks; 0: not known
};

struct GroupPeak {
  SplitPeak peak;
  PeakLimits limits;
  double areaesd = 0, positionesd = 0, fwhmesd = 0;
  bool atlimit = false;  // of position or width: there is no such peak within them
};

struct GroupResult {
  bool rested = false;  // false: the fit has found no rest, or has too few points
  double chi2 = 0;      // weighted squares of what is left
  double misfit = 0;    // the same by degrees of freedom
};

// Refines peaks and background from the values given; leaves them if it finds no rest.
//
// Weak peaks do not tell their shapes, and close ones do not tell whose a tail is. Restraints draw
// shapes to a half, both sides of a peak to one width, neighbours to like widths and shapes, and
// widths to the usual one. They weigh as data would that are as far off as the points are, so that
// strong peaks hardly feel them, and they count in the e.s.d.s. A shape that ends at its limit, as
// that of a Gaussian does at 0, is held there.
//
// E.s.d.s are multiplied by the root of chi squared per degree of freedom. Counts are often not
// counts any more (rates, sums of detectors, smoothed or corrected), so that 1/y gives their
// weights up to a factor; and where the profile does not fit, its parameters are less sure.
GroupResult FitGroup(const GroupPoints& points, std::span<GroupPeak> peaks,
                     BackgroundLine& background, const FitWavelengths& lines);
