// Chebyshev polynomials on an interval, and their least-squares fit to a curve.
#pragma once

#include <functional>
#include <optional>
#include <span>

// Fills t with the polynomials 0 to size-1 at x, the interval xmin to xmax taken to -1 to 1. An
// interval without length counts as its lower end.
void ChebyshevBasis(std::span<float> t, float x, float xmin, float xmax);

// The sum of coef(k) t(k) at x.
float ChebyshevValue(std::span<const float> coef, float x, float xmin, float xmax);

// The interval of a fit, and the intensity that stands for every point in the denominator of Rw.
struct ChebyshevFrame {
  float xmin, xmax;
  float yscale;
};

// Improves coef (at most MaxChebyshev terms) by `cycles` rounds of unweighted normal equations over
// the points. `report` gets each round's number and its Rw before the round's correction. Returns
// the Rw of the final polynomial, or nothing if the matrix cannot be inverted, or if it is so near
// to a singular one that the coefficients outgrow a real.
std::optional<float> ChebyshevCycles(std::span<const float> x, std::span<const float> y,
                                     const ChebyshevFrame& frame, std::span<float> coef, int cycles,
                                     const std::function<void(int cycle, float rw)>& report);
// Writes the line of a round to the status bar.
void ReportChebyshevCycle(int cycle, float rw);
