// Lattices of all kinds and lists of their lines, for the tests of the search for a cell. Lines
// come from the conventional cell and the conditions of its centring.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <vector>

#include "index/find/centering.h"
#include "index/find/form.h"
#include "index/find/lines.h"
#include "index/find/symmetry.h"

namespace findtest {

using Cell = std::array<double, 6>;  // angstrom, degrees
using Random = std::mt19937;
using Condition = std::function<bool(int h, int k, int l)>;  // for a reflection to be there
inline constexpr double kWave = 1.5406, kRad = std::numbers::pi / 180;

inline double Uniform(Random& random, double low, double high) {
  return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
}

inline Form DirectOf(const Cell& c) {
  const auto twice = [&](int i, int j, int angle) {
    return 2 * c[static_cast<std::size_t>(i)] * c[static_cast<std::size_t>(j)] *
           std::cos(c[static_cast<std::size_t>(angle)] * kRad);
  };
  return {c[0] * c[0], c[1] * c[1], c[2] * c[2], twice(0, 1, 5), twice(0, 2, 4), twice(1, 2, 3)};
}

inline Cell CellOf(const Form& f) {
  const double a = std::sqrt(f[0]), b = std::sqrt(f[1]), c = std::sqrt(f[2]);
  return {a,
          b,
          c,
          std::acos(f[5] / (2 * b * c)) / kRad,
          std::acos(f[4] / (2 * a * c)) / kRad,
          std::acos(f[3] / (2 * a * b)) / kRad};
}

inline Form ReducedPrimitive(const Cell& cell, char centering) {
  return Reduced(OnAxes(DirectOf(cell), PrimitiveAxes(centering)));
}

struct Bravais {
  LatticeSystem system;
  char centering;
};
inline constexpr Bravais kBravais[] = {
    {LatticeSystem::Triclinic, 'P'},    {LatticeSystem::Monoclinic, 'P'},
    {LatticeSystem::Monoclinic, 'C'},   {LatticeSystem::Orthorhombic, 'P'},
    {LatticeSystem::Orthorhombic, 'C'}, {LatticeSystem::Orthorhombic, 'I'},
    {LatticeSystem::Orthorhombic, 'F'}, {LatticeSystem::Tetragonal, 'P'},
    {LatticeSystem::Tetragonal, 'I'},   {LatticeSystem::Rhombohedral, 'R'},
    {LatticeSystem::Hexagonal, 'P'},    {LatticeSystem::Cubic, 'P'},
    {LatticeSystem::Cubic, 'I'},        {LatticeSystem::Cubic, 'F'}};

// A conventional cell of the system, of the usual order, whose metric comes close to no other one.
inline Cell RandomCell(const Bravais& kind, Random& random) {
  using enum LatticeSystem;
  const double a = Uniform(random, 5, 6);
  const double b = a * Uniform(random, 1.15, 1.3), c = b * Uniform(random, 1.15, 1.3);
  switch (kind.system) {
    case Triclinic: {
      const auto angle = [&] { return Uniform(random, 93, 99); };
      return {a, b, c, angle(), angle(), angle()};
    }
    case Monoclinic:
      // Likewise.
      if (kind.centering == 'C' && random() % 2 == 0)
        return {c, b, a, 90, Uniform(random, 97, 103), 90};
      return {a, b, c, 90, Uniform(random, 97, 103), 90};
    case Orthorhombic:
      // The centred face is that of a and b, however long c is.
      if (kind.centering == 'C' && random() % 3 == 0) return {b, c, a, 90, 90, 90};
      if (kind.centering == 'C' && random() % 2 == 0) return {a, c, b, 90, 90, 90};
      return {a, b, c, 90, 90, 90};
    case Tetragonal:
      return {a, a, a * Uniform(random, 1.1, 1.3), 90, 90, 90};
    case Rhombohedral:
      return {a, a, a * Uniform(random, 1.5, 2.2), 90, 90, 120};
    case Hexagonal:
      return {a, a, a * Uniform(random, 1.1, 1.6), 90, 90, 120};
    case Cubic:
      return {a, a, a, 90, 90, 90};
  }
  return {};
}

// A right-handed basis of the lattice, by shears and a turn of the axes.
inline Axes RandomBasis(Random& random) {
  Axes axes{{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}};
  for (int step = 0; step < 6; ++step) {
    const std::size_t to = random() % 3, from = (to + 1 + random() % 2) % 3;
    const int times = static_cast<int>(random() % 5) - 2;
    for (std::size_t i = 0; i < 3; ++i) axes[to][i] += times * axes[from][i];
  }
  return axes;
}

inline bool Allows(char centering, int h, int k, int l) {
  switch (centering) {
    case 'C':
      return (h + k) % 2 == 0;
    case 'I':
      return (h + k + l) % 2 == 0;
    case 'F':
      return (h + k) % 2 == 0 && (k + l) % 2 == 0;
    case 'R':
      return (h - k - l) % 3 == 0;  // obverse: -h + k + l = 3n
    default:
      return true;
  }
}

// The positions of all reflections in degrees, those of equal ones once.
inline std::vector<double> AllPositions(const Cell& cell, char centering,
                                        const Condition& there = {}) {
  const Form reciprocal = Reciprocal(DirectOf(cell));
  std::vector<double> all;
  for (int h = -15; h <= 15; ++h)
    for (int k = -15; k <= 15; ++k)
      for (int l = 0; l <= 25; ++l) {
        if ((h == 0 && k == 0 && l == 0) || !Allows(centering, h, k, l)) continue;
        if (there && !there(h, k, l)) continue;
        const double sine = std::sqrt(Value(reciprocal, {h, k, l})) * kWave / 2;
        if (sine < 0.98) all.push_back(2 * std::asin(sine) / kRad);
      }
  std::ranges::sort(all);
  const auto equal = [](double a, double b) { return b - a < 1e-6; };
  all.erase(std::unique(all.begin(), all.end(), equal), all.end());
  return all;
}

// The first ones that a pattern can tell apart: of close ones the first.
inline std::vector<double> Positions(const Cell& cell, char centering, std::size_t most,
                                     const Condition& there = {}) {
  std::vector<double> positions;
  for (double at : AllPositions(cell, centering, there))
    if (positions.size() < most && (positions.empty() || at - positions.back() > 0.06))
      positions.push_back(at);
  return positions;
}

// The first ones that stand alone, at angles where no shift moves one to another.
inline std::vector<double> LonePositions(const Cell& cell, char centering, std::size_t most) {
  constexpr double kApart = 0.25, kLast = 100;
  const std::vector<double> all = AllPositions(cell, centering);
  std::vector<double> lone;
  for (std::size_t i = 0; i + 1 < all.size() && lone.size() < most; ++i)
    if (all[i] < kLast && all[i + 1] - all[i] > kApart && (i == 0 || all[i] - all[i - 1] > kApart))
      lone.push_back(all[i]);
  return lone;
}

inline std::vector<ObservedLine> LinesAt(const std::vector<double>& positions, double width = 0.1,
                                         double esd = 0) {
  std::vector<PeakOfList> peaks;
  for (double at : positions) peaks.push_back({at, 100, width, esd});
  return ObservedLines(peaks, kWave);
}

inline void AddErrors(std::vector<double>& positions, double sigma, double zero, Random& random) {
  std::normal_distribution<double> error(zero, sigma);
  for (double& at : positions) at += error(random);
}

}  // namespace findtest
