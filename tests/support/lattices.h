// Lattices in double precision, by a road of the tests' own: quadratic forms in three indices, the
// metric of the direct axes and its inverse, which gives 1/d^2.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "crystal/cellmetric.h"
#include "crystal/hklcode.h"

// A namespace of its own, as the code under test has functions of the same names.
namespace lattices {

inline constexpr double kDegree = 0.017453292519943295;

using Cell = std::array<double, 6>;  // angstrom, degrees
using Form = std::array<double, 6>;  // of hh, kk, ll, kl, lh, hk
using Axes = std::array<std::array<double, 3>, 3>;

inline double At(const Form& q, double h, double k, double l) {
  return q[0] * h * h + q[1] * k * k + q[2] * l * l + q[3] * k * l + q[4] * l * h + q[5] * h * k;
}

inline double Determinant(const Form& q) {
  return q[0] * q[1] * q[2] +
         (q[3] * q[4] * q[5] - q[0] * q[3] * q[3] - q[1] * q[4] * q[4] - q[2] * q[5] * q[5]) / 4;
}

inline Form Direct(const Cell& c) {
  return {c[0] * c[0],
          c[1] * c[1],
          c[2] * c[2],
          2 * c[1] * c[2] * std::cos(c[3] * kDegree),
          2 * c[2] * c[0] * std::cos(c[4] * kDegree),
          2 * c[0] * c[1] * std::cos(c[5] * kDegree)};
}

inline double VolumeOf(const Cell& cell) { return std::sqrt(Determinant(Direct(cell))); }

// 1/d^2.
inline Form Reciprocal(const Cell& cell) {
  const auto [a, b, c, d, e, f] = Direct(cell);
  Form q{b * c - d * d / 4, c * a - e * e / 4, a * b - f * f / 4,
         e * f / 2 - a * d, f * d / 2 - b * e, d * e / 2 - c * f};
  for (double& each : q) each /= Determinant(Direct(cell));
  return q;
}

// The same form by other axes.
inline Form Rebased(const Form& q, const Axes& axes) {
  const auto square = [&](int i, int j) {
    const auto &u = axes[i], &v = axes[j];
    return At(q, u[0] + v[0], u[1] + v[1], u[2] + v[2]);
  };
  const double a = square(0, 0) / 4, b = square(1, 1) / 4, c = square(2, 2) / 4;
  return {a, b, c, square(1, 2) - b - c, square(2, 0) - c - a, square(0, 1) - a - b};
}

// To one of the axes others are added.
inline Form OtherAxes(const Form& q, std::mt19937& random) {
  Axes axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  for (int step = 0; step < 4; ++step) {
    const std::size_t i = random() % 3, j = (i + 1 + random() % 2) % 3;
    const int sign = random() % 2 ? 1 : -1;
    for (std::size_t k = 0; k < 3; ++k) axes[i][k] += sign * axes[j][k];
  }
  return Rebased(q, axes);
}

struct Everything {
  bool operator()(const Hkl&) const { return true; }
};

// The rising values at all indices up to `most`, and up to `lmost` in l, that a test of them
// allows; those closer than `apart` come once.
template <class Allows = Everything>
std::vector<double> Values(const Form& q, int most, int lmost, double apart, Allows allows = {}) {
  std::vector<double> values;
  for (int h = 0; h <= most; ++h)
    for (int k = -most; k <= most; ++k)
      for (int l = -lmost; l <= lmost; ++l)
        if ((h != 0 || k != 0 || l != 0) && allows(Hkl{h, k, l})) values.push_back(At(q, h, k, l));
  std::ranges::sort(values);
  const auto close = [&](double one, double other) { return other - one < apart; };
  values.erase(std::unique(values.begin(), values.end(), close), values.end());
  return values;
}

// Edges and angles of the axes that give a form.
inline Cell CellOfForm(const Form& q) {
  const double a = std::sqrt(q[0]), b = std::sqrt(q[1]), c = std::sqrt(q[2]);
  const auto angle = [](double cosine) { return std::acos(cosine) / kDegree; };
  return {a, b, c, angle(q[3] / (2 * b * c)), angle(q[4] / (2 * c * a)), angle(q[5] / (2 * a * b))};
}

inline Cell AsDouble(const UnitCell& cell) {
  Cell c;
  std::ranges::copy(cell.cells, c.begin());
  return c;
}
inline UnitCell AsFloat(const Cell& c) {
  UnitCell cell;
  for (int k = 0; k < 6; ++k) cell(k + 1) = static_cast<float>(c[k]);
  return cell;
}

}  // namespace lattices

using namespace lattices;
