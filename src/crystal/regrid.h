// A pattern on another grid: means of neighbours, and a spline at equal steps.
#pragma once

#include <span>

// Replaces every `size` of the first n points by their mean, `step` being taken as their distance,
// and returns the number of means, (n - 1) / size. What is left over at the end goes.
int BinMeans(std::span<float> x, std::span<float> y, int n, int size, float step);

// Puts the first n points on equal steps from start to stop, by a natural spline. The step becomes
// the nearest that divides the range. Returns the number of points, at most 19995; without two
// points to start from or to make, 0, and nothing is changed. x and y hold MaxPoints.
int Regrid(std::span<float> x, std::span<float> y, int n, float start, float& step, float stop);
