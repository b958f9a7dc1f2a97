// Where a peak lies that has been pointed at roughly.
#pragma once

#include <span>

// The vertex of the parabola through the top that a walk uphill from the point nearest to `near`
// leads to, and its two neighbours. The place itself if there is no top within ten points, or none
// but an end of the pattern or a plateau. x rises.
float SnapToMaximum(std::span<const float> x, std::span<const float> y, float near);
