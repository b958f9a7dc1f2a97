// Patterns of a known cell, profile and background, calculated in double precision from textbook
// formulas, and the model that a fit of them starts from.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "crystal/hklcode.h"
#include "crystal/reflections.h"
#include "fit/calculate.h"
#include "fit/fitbackground.h"
#include "fit/intensities.h"
#include "fit/parameters.h"
#include "fit/profiles.h"
#include "peaks/simulate.h"  // for Split
#include "support/lattices.h"

namespace simulate {

// Owns what a FitModel looks at.
struct FitData {
  std::vector<float> x, y, background, net, calculated;
  std::unique_ptr<Table<int, 4, MaxPoints>> ptrefl = std::make_unique<Table<int, 4, MaxPoints>>();
  FitParameters fit;
  Table<float, 8, MaxPeaks + 1> peaks;
  int npeaks = 0;
  Table<float, 3> scanwave;
  float wavelength = 0;

  FitModel Model() {
    return {x, y, background, net, calculated, *ptrefl, fit, peaks, npeaks, scanwave, wavelength};
  }
};

using Triple = std::array<double, 3>;

struct Truth {
  int laueclass = 1;
  Cell cell{10, 10, 10, 90, 90, 90};
  double zero = 0;
  Triple left{0.01, -0.005, 0.02}, right{0.01, -0.005, 0.02};  // U, V, W
  Triple leftshape{0.5, 0, 0}, rightshape{0.5, 0, 0};
  std::vector<double> background{100};
  double start = 20, step = 0.02;
  int points = 2001;
  double ratio = 0;  // alpha2 / alpha1
  int reach = 6;     // of a peak, in mean FWHM
  std::vector<Hkl> hkl = {};
  std::vector<double> area = {};
  std::vector<double> position = {};  // of the rows; empty: from the cell

  double Last() const { return start + step * (points - 1); }
  int Rows() const { return static_cast<int>(area.size()); }
};

inline double Parabola(const Triple& p, double u) { return p[0] + p[1] * u + p[2] * u * u; }

// Two-theta of a reflection.
inline double PositionIn(const Cell& cell, const Hkl& r) {
  const double inversed = std::sqrt(At(Reciprocal(cell), r.h, r.k, r.l));
  return 2 / kDegree * std::asin(0.5 * Lambda1 * inversed);
}

inline double PositionOf(const Truth& t, int j) {
  if (!t.position.empty()) return t.position[j];
  return PositionIn(t.cell, t.hkl[j]);
}

// A peak with the width and shape that the laws give at a position.
inline Peak PeakAt(const Truth& t, double tth, double area) {
  const double tangent = std::tan(tth / 2 * kDegree);
  const auto width = [&](const Triple& p) {
    return std::sqrt(Parabola({p[2], p[1], p[0]}, tangent));
  };
  return {tth,
          area,
          width(t.left),
          Parabola(t.leftshape, tth),
          width(t.right),
          Parabola(t.rightshape, tth)};
}

inline Peak PeakOf(const Truth& t, int j) { return PeakAt(t, PositionOf(t, j), t.area[j]); }

inline double BackgroundAt(const Truth& t, double x) {
  const double z = -1 + 2 * (x - t.start) / (t.Last() - t.start);
  double sum = 0;
  for (std::size_t k = 0; k < t.background.size(); ++k)
    sum += t.background[k] * std::cos(static_cast<double>(k) * std::acos(std::clamp(z, -1.0, 1.0)));
  return sum;
}

// Counts at the points, rounded and with Poisson's scatter for a seed.
inline std::vector<float> Counts(const Truth& t, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<double> y(t.points);
  for (int i = 0; i < t.points; ++i) y[i] = BackgroundAt(t, t.start + t.step * i + t.zero);
  for (int j = 0; j < t.Rows(); ++j) {
    const Peak p = PeakOf(t, j);
    const double reach = t.reach * (p.left + p.right) / 2;
    for (int i = 0; i < t.points; ++i) {
      const double x = t.start + t.step * i + t.zero;
      if (std::abs(x - p.position) > reach) continue;
      y[i] += Split(p, x - p.position);
      if (t.ratio > 0) y[i] += t.ratio * Split(p, x - Alpha2Position(p.position));
    }
  }
  std::vector<float> counts;
  for (double value : y)
    counts.push_back(
        static_cast<float>(seed ? std::poisson_distribution<long long>(value)(random) : value));
  return counts;
}

// The rows of a cell in the range, with areas that go up and down; those that lie together, and
// will be refined as one, have the same.
inline void FillRows(Truth& t, int centering, double mean) {
  UnitCell cell = AsFloat(t.cell);
  float wavelength = static_cast<float>(Lambda1);
  const TthRange range{static_cast<float>(t.start + 0.5), static_cast<float>(t.Last() - 0.5)};
  const auto list = AssignReflections(cell, t.laueclass, centering, range, wavelength).value();
  for (const Reflection& r : list) {
    const bool together = t.Rows() > 0 && r.tth < PositionOf(t, t.Rows() - 1) + 0.05;
    t.hkl.push_back(r.hkl);
    t.area.push_back(together ? t.area.back() : mean * (1 + 0.7 * std::sin(2.4 * t.Rows())));
  }
}

template <std::size_t N, int M>
void Store(const std::array<double, N>& from, Table<float, M>& to) {
  for (std::size_t k = 0; k < N; ++k) to.cells[k] = static_cast<float>(from[k]);
}

// The model with the true values, on the counts of a seed; 0: without noise. The points are
// assigned.
inline FitData MakeFit(const Truth& t, unsigned seed = 0) {
  FitData data;
  FitParameters& fit = data.fit;
  for (int i = 0; i < t.points; ++i) data.x.push_back(static_cast<float>(t.start + t.step * i));
  data.y = Counts(t, seed);
  data.background = data.net = data.calculated = std::vector<float>(t.points);
  fit.laueclass = t.laueclass;
  Store(t.cell, fit.cell);
  Store(t.left, fit.fwhmleft);
  Store(t.right, fit.fwhmright);
  Store(t.leftshape, fit.shapeleft);
  Store(t.rightshape, fit.shaperight);
  fit.tthzero = static_cast<float>(t.zero);
  fit.bgorder = static_cast<int>(t.background.size());
  for (int k = 1; k <= fit.bgorder; ++k) fit.bgcoef(k) = static_cast<float>(t.background[k - 1]);
  fit.fitmin2th = static_cast<float>(t.start);
  fit.fitmax2th = static_cast<float>(t.Last());
  fit.nfwhmpeak = t.reach;
  fit.fitposmode = t.position.empty() ? 2 : 1;
  data.scanwave = {
      {static_cast<float>(Lambda1), static_cast<float>(Lambda2), static_cast<float>(t.ratio)}};
  data.wavelength = static_cast<float>(Lambda1);
  data.npeaks = t.Rows();
  for (int j = 1; j <= t.Rows(); ++j) {
    data.peaks(ptth, j) = static_cast<float>(PositionOf(t, j - 1));
    data.peaks(pint, j) = static_cast<float>(t.area[j - 1]);
    data.peaks(phkl, j) = static_cast<float>(PackHkl(t.hkl.empty() ? Hkl{} : t.hkl[j - 1]));
  }
  FitModel model = data.Model();
  AssignProfiles(model);
  return data;
}

// Puts the rows where the model's cell has them.
inline void MoveToCell(FitData& data) {
  for (int j = 1; j <= data.npeaks; ++j) {
    const Hkl r = UnpackHkl(static_cast<int>(data.peaks(phkl, j)));
    data.peaks(ptth, j) = static_cast<float>(PositionIn(AsDouble(data.fit.cell), r));
  }
}

// One cell of each system: Laue class, centering, and the range in which it has some 20 to 60 rows.
struct CrystalSystem {
  const char* name;
  int laueclass, centering;
  Cell cell;
};
inline constexpr CrystalSystem kSystems[] = {
    {"triclinic", 1, 1, {5.1, 6.2, 7.3, 94, 101, 107}},
    {"monoclinic", 3, 4, {9.2, 6.4, 5.3, 90, 104, 90}},
    {"orthorhombic", 5, 1, {5.2, 6.7, 8.1, 90, 90, 90}},
    {"tetragonal", 12, 5, {6.1, 6.1, 9.4, 90, 90, 90}},
    {"trigonal", 10, 1, {6.3, 6.3, 6.3, 71, 71, 71}},
    {"hexagonal", 14, 1, {7.2, 7.2, 8.3, 90, 90, 120}},
    {"cubic", 16, 1, {8.3, 8.3, 8.3, 90, 90, 90}},
};

}  // namespace simulate
