// What simulated patterns are made of: pseudo-Voigt lines and counting noise, the same on every
// machine.
#pragma once

#include <cmath>
#include <numbers>
#include <random>

// Uniform in 0 to 1, both ends excluded.
inline double Uniform(std::mt19937_64& random) {
  return (static_cast<double>(random() >> 11) + 0.5) / 9007199254740992.0;
}

// A count of the given mean: by multiplying for small means, from a normal deviate with the
// skewness of the Poisson distribution for large ones.
inline int Poisson(double mean, std::mt19937_64& random) {
  if (mean < 40) {
    int n = 0;
    const double end = std::exp(-mean);
    for (double rest = Uniform(random); rest > end; ++n) rest *= Uniform(random);
    return n;
  }
  const double radius = std::sqrt(-2 * std::log(Uniform(random)));
  const double z = radius * std::cos(2 * std::numbers::pi * Uniform(random));
  return static_cast<int>(std::floor(mean + std::sqrt(mean) * z + (z * z - 1) / 6 + 0.5));
}

// Area 1.
inline double PseudoVoigt(double x, double fwhm, double lorentz) {
  using namespace std::numbers;
  const double r = 2 * x / fwhm;
  const double lorentzian = 2 / (pi * fwhm) / (1 + r * r);
  const double gaussian = 2 * std::sqrt(ln2 / pi) / fwhm * std::exp(-ln2 * r * r);
  return lorentz * lorentzian + (1 - lorentz) * gaussian;
}

// Lorentz and polarisation factors at an angle theta, in radians, without a monochromator.
inline double LorentzPolarisation(double theta) {
  const double s = std::sin(theta), c = std::cos(2 * theta);
  return (1 + c * c) / (s * s * std::cos(theta));
}
