// Filters on lists of points, in place.
#pragma once

#include <span>

// Moving average over w points of x and y both. At the ends of y the window shrinks to what the
// list holds on that side, from w - 1 points down to half of them, and x stays. This is not the
// average of the peak search, which keeps the window symmetric around its point. A w below 2 or
// above the number of points changes nothing.
void MovingAverage(std::span<float> x, std::span<float> y, int w);

// Savitzky-Golay filter of full window w, 5 to 25 and odd; any other counts as 9. A w above the
// number of points changes nothing.
void SGFilter(std::span<float> y, int w);
