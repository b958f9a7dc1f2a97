// Patterns with known peaks and counting noise, put straight into slot 1.
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "workspace/workspace.h"

namespace simulate {

struct Peak {
  double position, area;
  double left, leftshape, right, rightshape;  // FWHM and Lorentzian share of both sides
};

// Pseudo-Voigt of unit area from the textbook forms of both functions.
inline double PseudoVoigt(double d, double fwhm, double shape) {
  const double u = 2 * d / fwhm, pi = std::numbers::pi;
  const double gauss = 2 / fwhm * std::sqrt(std::numbers::ln2 / pi) * std::exp2(-u * u);
  return (1 - shape) * gauss + shape * 2 / (pi * fwhm) / (1 + u * u);
}

// Half profiles of one height H at the top: the area is H (1/2 hl + 1/2 hr).
inline double Split(const Peak& p, double d) {
  const double hl = PseudoVoigt(0, p.left, p.leftshape);
  const double hr = PseudoVoigt(0, p.right, p.rightshape);
  const double height = p.area / (0.5 / hl + 0.5 / hr);
  return height * (d < 0 ? PseudoVoigt(d, p.left, p.leftshape) / hl
                         : PseudoVoigt(d, p.right, p.rightshape) / hr);
}

inline Peak Symmetric(double position, double height, double fwhm, double shape = 0.5) {
  return {position, height / PseudoVoigt(0, fwhm, shape), fwhm, shape, fwhm, shape};
}

constexpr double Lambda1 = 1.54056, Lambda2 = 1.54433;

// Where Bragg's law puts the alpha2 line of a peak.
inline double Alpha2Position(double tth) {
  const double rad = std::numbers::pi / 360;
  return std::asin(std::sin(tth * rad) * Lambda2 / Lambda1) / rad;
}

struct Pattern {
  double start = 10, step = 0.02;
  int points = 4001;
  double background = 100, slope = 0;  // counts, and counts per degree
  double bend = 0;                     // counts per squared degree
  double alpha2 = 0;                   // ratio to alpha1
  std::vector<Peak> peaks = {};
};

inline double Intensity(const Pattern& pattern, double x) {
  const double along = x - pattern.start;
  double y = pattern.background + pattern.slope * along + pattern.bend * along * along;
  for (const Peak& p : pattern.peaks) {
    y += Split(p, x - p.position);
    if (pattern.alpha2 > 0) y += pattern.alpha2 * Split(p, x - Alpha2Position(p.position));
  }
  return y;
}

// Fills slot 1 and the fit wavelengths, and shows all of it. A seed makes the counts whole and
// noisy.
inline void Load(const Pattern& pattern, unsigned seed = 0) {
  std::mt19937 noise(seed);
  ws.npts(SlotInput) = pattern.points;
  for (int i = 1; i <= pattern.points; ++i) {
    const double x = pattern.start + pattern.step * (i - 1);
    double y = Intensity(pattern, x);
    if (seed) y = static_cast<double>(std::poisson_distribution<long long>(y)(noise));
    ws.xval(AxisTth, SlotInput, i) = static_cast<float>(x);
    ws.yval(SlotInput, i) = static_cast<float>(y);
  }
  ws.scanwave = {{Lambda1, Lambda2, static_cast<float>(pattern.alpha2)}};
  ws.viewmode = ws.plotmask = 1;
  ws.plotxmin = ws.xval(AxisTth, SlotInput, 1);
  ws.plotxmax = ws.xval(AxisTth, SlotInput, std::max(1, pattern.points));
}

}  // namespace simulate
