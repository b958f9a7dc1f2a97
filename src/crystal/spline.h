// Plain cubic spline through sorted points.
#pragma once

#include <span>

// A first derivative above this value at an end selects a natural end.
inline constexpr float NaturalLimit = 0.99e30f;
inline constexpr float NaturalEnd = 1.0e30f;

// Second derivatives y2[0..n) of the spline through (x, y), x rising, by the tridiagonal sweep;
// first derivatives d1 and dn at the ends. y2 must hold as many places as x, and so must `work`,
// whose contents are lost; without it the work space is obtained for the call.
void SplineSetup(std::span<const float> x, std::span<const float> y, float d1, float dn,
                 std::span<float> y2, std::span<float> work);
void SplineSetup(std::span<const float> x, std::span<const float> y, float d1, float dn,
                 std::span<float> y2);

// Value of that spline at each of `at`, which rises; out must hold as many places. The search for
// the interval goes upward from the last one found. Beyond the last point the last interval holds.
void SplineEval(std::span<const float> x, std::span<const float> y, std::span<const float> y2,
                std::span<const float> at, std::span<float> out);
