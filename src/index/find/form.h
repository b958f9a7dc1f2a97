// Quadratic forms of three whole numbers: 1/d^2 of a reflection by the reciprocal metric, squared
// lengths of lattice vectors by the direct one.
#pragma once

#include <array>

#include "crystal/hklcode.h"

// Coefficients of h^2, k^2, l^2, hk, hl and kl: of mixed terms twice the scalar product.
using Form = std::array<double, 6>;

// The products of indices that the coefficients are multiplied with.
constexpr Form TermsOf(const Hkl& r) {
  const double h = r.h, k = r.k, l = r.l;
  return {h * h, k * k, l * l, h * k, h * l, k * l};
}
constexpr double Dot(const Form& a, const Form& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3] + a[4] * b[4] + a[5] * b[5];
}
constexpr double Value(const Form& form, const Hkl& r) { return Dot(form, TermsOf(r)); }

// New axes in rows, as sums of the old ones.
using Axes = std::array<std::array<double, 3>, 3>;
double Determinant(const Axes& axes);
Axes Inverse(const Axes& axes);

// The symmetric matrix of scalar products.
double Determinant(const Form& form);
// The form of the reciprocal lattice; for one of no positive determinant not numbers.
Form Reciprocal(const Form& form);
// The form of the lattice of other axes.
Form OnAxes(const Form& form, const Axes& axes);

// The form of the same lattice on its reduced (Niggli) axes. Squares that differ
// by less than a hundred thousandth of the volume to the power of 2/3 count as equal.
Form Reduced(Form form);
