// Lines of known cells for the tests of TREOR90, all in double precision and by a road of its own:
// from the direct metric, whose inverse gives 1/d^2.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "index/treor/lines.h"
#include "index/treor/run.h"
#include "support/support.h"

namespace treor {

using Cell = std::array<double, 6>;  // angstrom, degrees
inline constexpr double kWave = 1.540598, kRad = 0.017453292519943295;

struct TrueCell {
  CrystalSystem system;
  Cell cell;
};

// A cell of each system, with no other lattice near.
inline const TrueCell kCells[] = {
    {CrystalSystem::Cubic, {6.649, 6.649, 6.649, 90, 90, 90}},
    {CrystalSystem::Tetragonal, {5.21, 5.21, 7.93, 90, 90, 90}},
    {CrystalSystem::Hexagonal, {5.852, 5.852, 3.953, 90, 90, 120}},
    {CrystalSystem::Orthorhombic, {4.44, 5.39, 3.37, 90, 90, 90}},
    {CrystalSystem::Monoclinic, {5.43, 4.83, 8.14, 90, 107.58, 90}},
    {CrystalSystem::Triclinic, {4.795, 5.108, 6.83, 95.8, 97.6, 103.1}},
};

// 1/d^2 = r[0] hh + r[1] kk + r[2] ll + r[3] hl + r[4] hk + r[5] kl.
inline std::array<double, 6> Reciprocal(const Cell& c) {
  const double ca = std::cos(c[3] * kRad), cb = std::cos(c[4] * kRad), cg = std::cos(c[5] * kRad);
  const double g[3][3] = {{c[0] * c[0], c[0] * c[1] * cg, c[0] * c[2] * cb},
                          {c[0] * c[1] * cg, c[1] * c[1], c[1] * c[2] * ca},
                          {c[0] * c[2] * cb, c[1] * c[2] * ca, c[2] * c[2]}};
  const auto minor = [&](int i, int j) {
    const int p = (i + 1) % 3, q = (i + 2) % 3, u = (j + 1) % 3, v = (j + 2) % 3;
    return g[p][u] * g[q][v] - g[p][v] * g[q][u];
  };
  const double det = g[0][0] * minor(0, 0) + g[0][1] * minor(0, 1) + g[0][2] * minor(0, 2);
  return {minor(0, 0) / det,     minor(1, 1) / det,     minor(2, 2) / det,
          2 * minor(0, 2) / det, 2 * minor(0, 1) / det, 2 * minor(1, 2) / det};
}

// The s of all reflections up to smax, rising, equal ones once.
inline std::vector<double> TrueLines(const Cell& cell, double smax) {
  const auto r = Reciprocal(cell);
  std::vector<double> s;
  for (int h = -20; h <= 20; ++h)
    for (int k = -20; k <= 20; ++k)
      for (int l = 0; l <= 20; ++l) {
        const double q =
            r[0] * h * h + r[1] * k * k + r[2] * l * l + r[3] * h * l + r[4] * h * k + r[5] * k * l;
        const double value = q * kWave * kWave / 4;
        if (value > 1e-9 && value <= smax) s.push_back(value);
      }
  std::ranges::sort(s);
  s.erase(std::unique(s.begin(), s.end(), [](double x, double y) { return y - x < 1e-9; }),
          s.end());
  return s;
}

// The first n lines that are so far apart from others, in degrees two-theta, with an error of
// sigma.
inline std::vector<double> Pattern(const Cell& cell, std::size_t n, double sigma,
                                   double apart = 0.15) {
  std::mt19937 generator(1);
  std::normal_distribution<double> error(0, 1);
  std::vector<double> all, twotheta;
  for (const double s : TrueLines(cell, 0.8)) all.push_back(2 * std::asin(std::sqrt(s)) / kRad);
  for (std::size_t i = 0; i + 1 < all.size() && twotheta.size() < n; ++i)
    if (all[i + 1] - all[i] > apart && (i == 0 || all[i] - all[i - 1] > apart))
      twotheta.push_back(all[i] + sigma * error(generator));
  return twotheta;
}

inline std::vector<TreorLine> LinesOf(const std::vector<double>& twotheta) {
  std::vector<TreorLine> lines;
  for (const double at : twotheta) {
    const auto s = static_cast<float>(std::pow(std::sin(at * kRad / 2), 2));
    lines.push_back({s, LineCode(s), ""});
  }
  return lines;
}

inline Constants ConstantsOf(const Cell& cell, double factor = 1) {
  std::array<float, 6> c;
  const auto r = Reciprocal(cell);
  for (std::size_t i = 0; i < 6; ++i) {
    const double value = factor * r[i] * kWave * kWave / 4;
    c[i] = std::fabs(value) < 1e-9 ? 0.0f : static_cast<float>(value);
  }
  return {c[0], c[1], c[2], c[3], c[4], c[5]};
}

// The cards of an input file.
inline std::string Cards(const std::vector<double>& twotheta, const std::string& control) {
  std::string text = "a title\n";
  for (const double at : twotheta) text += WriteRecord<"(f10.4)">(at) + "\n";
  return text + "\n" + control + "\n";
}

// A data set whose listing goes to a directory of its own.
struct DataSet {
  TempDir dir;
  TreorRun run;
  Listing listing{dir.file("out")};
  TreorSearch search{run, listing};
  std::string Text() {
    listing.Close();
    return ReadFile(dir.file("out"));
  }
};

}  // namespace treor
