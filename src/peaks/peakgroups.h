// What of a list of peaks is fitted together, and where its fit begins.
#pragma once

#include <span>
#include <vector>

#include "peaks/fitpeaks.h"
#include "peaks/groupfit.h"

// A peak to be fitted.
struct ListedPeak : GroupPeak {
  int row = 0;          // of the list, from 0
  bool needed = false;  // the points are not met without it
};

// Peaks that are fitted together, on the points from one two-theta to another.
struct PeakGroup {
  std::vector<ListedPeak> peaks;
  double from = 0, to = 0;
  BackgroundLine background;
  bool rested = false;  // its fit has come to rest
};

// The peaks at `positions` that lie on the pattern and can be told from the one before them, with
// limits, and with widths and heights as the pattern shows them over its background.
std::vector<ListedPeak> StartPeaks(const FittedPattern& pattern, std::span<const float> positions);

// The median of the widths that are not 0; 0 if there is none.
double UsualWidth(std::vector<double> widths);

// Parts peaks into groups that do not overlap, or where too many do, in the widest gaps.
std::vector<PeakGroup> GroupPeaks(std::span<const ListedPeak> peaks, const FitWavelengths& lines);
