// Least squares of one pattern against another: scale, background and zero.
#pragma once

#include <array>
#include <optional>
#include <span>

#include "crystal/fit.h"

// Puts a curve at x + zero back on the points x, equal steps apart: whole steps move its points,
// where those that enter take the value of the end, and a spline does the rest. A shift below
// 0.0001 degrees does nothing. `out` is not y.
void ResampleOverlay(std::span<const float> x, std::span<const float> y, float zero, float step,
                     std::span<float> out);
// The whole steps in a shift, towards 0.
int WholeSteps(float zero, float step);
bool IsShift(float zero);

// Background polynomial plus scale times overlay against the observed pattern, all on the points x.
struct OverlayFit {
  std::span<const float> x, observed, overlay;
  std::span<float> calculated;  // filled
  float xmin, xmax;             // of the polynomial
  std::span<float> coef;        // of as many terms; improved
  float& scale;                 // improved if refinescale
  bool refinescale;
  float diagdamp;  // factor of the matrix' diagonal, where it is above 1
};

inline constexpr int kOverlayFitCycles = 20;

struct OverlayFitResult {
  FitEnd end;
  float r = 0;              // sum of |observed - calculated| over sum of |observed|
  int zeroderivatives = 0;  // parameters that change nothing, and so leave no inverse
};

// All cycles, with weights 1 / observed. Without anything to refine it only calculates. `report`
// gets each cycle's r.
OverlayFitResult FitOverlay(const OverlayFit& fit, const FitReport& report);

// Where the parabola through three points is lowest; nothing if it is not open upwards.
std::optional<float> ParabolaMinimum(const std::array<float, 3>& z, const std::array<float, 3>& r);
