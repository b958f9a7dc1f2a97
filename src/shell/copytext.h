// Peaks and points as texts for other programs: lines of columns parted by tabs, a head line with
// units, and all digits.
#pragma once

#include <string>

// The peak list; d with the wavelength of the axes, and blank indices where a peak has none.
std::string PeaksAsText();

// Whether the pattern plot is on show.
bool HasPointsInView();
// The points of the primary curve within the range of the view, and the counts of the other curves
// on show that lie on the same two-theta values.
std::string PointsAsText();
