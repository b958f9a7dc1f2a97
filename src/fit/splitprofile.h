// The split pseudo-Voigt of the whole-pattern fit: two half curves with a width and a shape of
// their own, in the lines alpha1 and alpha2.
#pragma once

#include <cmath>

#include "workspace/workspace.h"

// 2 / pi and 2 sqrt(ln 2 / pi). The calculated pattern and the refinement round them differently in
// the last bit, and keep to that.
struct ProfileConstants {
  float c1, c2;
  static constexpr float c3 = 0.6005612f;  // 1 / (2 sqrt(ln 2))
  static constexpr float c4 = 1.442695f;   // 1 / ln 2
};
inline constexpr ProfileConstants kCalculation{0.63661975f, 0.93943727f};
inline constexpr ProfileConstants kRefinement{0.6366197f, 0.9394372f};

// Of one reflection: FWHM in degrees and Lorentzian share of both sides.
struct PeakShape {
  float leftwidth, rightwidth, leftshape, rightshape;
};

struct ProfileSide {
  float width, shape;
  float factor;  // that makes the halves meet and gives the whole the area 1
};

struct SplitProfile {
  ProfileSide left, right;
  const ProfileSide& At(float d) const { return d < 0 ? left : right; }
};

inline SplitProfile MakeProfile(const PeakShape& s, const ProfileConstants& c) {
  const float left = ((1 - s.leftshape) * c.c2 + s.leftshape * c.c1) / s.leftwidth;
  const float r = ((1 - s.rightshape) * c.c2 + s.rightshape * c.c1) / s.rightwidth / left;
  const float f = 2 / (1 + r);
  return {{s.leftwidth, s.leftshape, r * f}, {s.rightwidth, s.rightshape, f}};
}

struct ProfileValue {
  float gauss, lorentz;
  float value;  // of the side, in counts
};

// d: degrees behind the line; area: in counts times degrees.
inline ProfileValue ValueAt(const ProfileSide& s, float d, float area, const ProfileConstants& c) {
  const float z = d / s.width / c.c3, q = z * z;
  const float gauss = c.c2 * std::exp(-q), lorentz = c.c1 / (q * c.c4 + 1);
  const float both = (1 - s.shape) * gauss + s.shape * lorentz;
  return {gauss, lorentz, s.factor * area * both / s.width};
}

struct SpectralLine {
  float tth;    // where it puts the reflection
  float ratio;  // of its intensity to that of alpha1
};

struct SpectralLines {
  SpectralLine list[2];
  int count;
  const SpectralLine* begin() const { return list; }
  const SpectralLine* end() const { return list + count; }
};

// alpha1, and alpha2 if there is one. A reflection so near to 180 degrees that its alpha2 would lie
// beyond has none.
inline SpectralLines LinesAt(float tth, const Table<float, 3>& scanwave) {
  SpectralLines lines{{{tth, 1.0f}, {}}, 1};
  if (!(scanwave(3) > 0)) return lines;
  const float sine = std::sin(0.5f * tth / RadToDeg) * scanwave(2) / scanwave(1);
  if (std::fabs(sine) <= 1)
    lines.list[lines.count++] = {TwoRadToDeg * std::asin(sine), scanwave(3)};
  return lines;
}
