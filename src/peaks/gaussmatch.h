// Match of a Gaussian to a peak that the search has in mind.
#pragma once

#include <span>

struct Candidate {
  int at = 0;     // point of the lowest second difference; 0: none
  int width = 0;  // points of the run of negative second difference
};

struct GaussianMatch {
  float root = 0;    // square root of the constant below the peak; not a number if that is negative
  float height = 0;  // above the constant
};

// Linear least-squares match of a Gaussian of FWHM c.width points, centred on c.at, on a constant.
// y counts from 1; step is that of two-theta. Zeros for a candidate within one and a half widths of
// an end.
GaussianMatch GaussMatch(std::span<const float> y, const Candidate& c, float step);
