// Chebyshev polynomials on an interval, and their least-squares fit to a curve.
#pragma once

#include <span>

#include "crystal/fit.h"

// No polynomial has more terms.
inline constexpr int kChebyshevTerms = 16;

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

// Improves coef by `cycles` rounds of unweighted normal equations over the points. `report` gets
// each round's number and its Rw before the round's correction; the Rw returned is that of the
// final polynomial. A matrix so near to a singular one that the coefficients outgrow a real lets
// the fit diverge.
FitResult ChebyshevCycles(std::span<const float> x, std::span<const float> y,
                          const ChebyshevFrame& frame, std::span<float> coef, int cycles,
                          const FitReport& report);
