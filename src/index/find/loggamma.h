// The logarithm of the gamma function, without the global that the standard one leaves its sign in:
// several threads judge lattices at once.
#pragma once

#include <cmath>

inline double LogGamma(double x) {
  int sign = 0;
  return ::lgamma_r(x, &sign);
}
