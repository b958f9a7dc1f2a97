// Unit cell and its reciprocal.
#include "crystal/cellmetric.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "crystal/laue.h"         // for the classes with free angles
#include "workspace/workspace.h"  // for RadToDeg

namespace {

struct Angles {
  float ca, cb, cg, sa, sb, sg;
};

Angles AnglesOf(const UnitCell& cell) {
  const float alpha = cell(4) / RadToDeg, beta = cell(5) / RadToDeg, gamma = cell(6) / RadToDeg;
  return {std::cos(alpha), std::cos(beta), std::cos(gamma),
          std::sin(alpha), std::sin(beta), std::sin(gamma)};
}

// The squared volume of a cell with edges of 1. Not a number if that is negative or no more than
// rounding leaves of a flat cell's, as of one with angles of 50, 70 and 120.
float UnitVolumeSquared(const Angles& t) {
  constexpr float rounding = 1e-6f;
  const float square = 1 - t.ca * t.ca - t.cb * t.cb - t.cg * t.cg + 2 * t.ca * t.cb * t.cg;
  return square > rounding ? square : std::numeric_limits<float>::quiet_NaN();
}

struct Reciprocal {
  float w;                 // volume of a cell with edges of 1
  float a, b, c;           // reciprocal edges
  float cosa, cosb, cosg;  // of the reciprocal angles
};

Reciprocal ReciprocalOf(const UnitCell& cell, const Angles& t) {
  const float w = std::sqrt(UnitVolumeSquared(t));
  return {w,
          t.sa / cell(1) / w,
          t.sb / cell(2) / w,
          t.sg / cell(3) / w,
          (t.cg * t.cb - t.ca) / t.sb / t.sg,
          (t.cg * t.ca - t.cb) / t.sa / t.sg,
          (t.cb * t.ca - t.cg) / t.sa / t.sb};
}

float SineOf(float cosine) { return std::sqrt(std::max(1 - cosine * cosine, 0.0f)); }

bool HasFreeAngle(int laueclass) {
  const auto& master = LaueClassOf(laueclass).master;
  return std::any_of(master.begin() + 3, master.end(), [](int m) { return m >= 0; });
}

// The length of a reciprocal vector, and its derivatives by the reciprocal edges and angles.
struct Vector {
  float length;
  float t1, t2, t3;
  float ra, rb, rg;
};

Vector VectorOf(const Hkl& hkl, const Reciprocal& r) {
  const float h = static_cast<float>(hkl.h), k = static_cast<float>(hkl.k),
              l = static_cast<float>(hkl.l);
  const float d = std::sqrt(h * h * (r.a * r.a) + k * k * (r.b * r.b) + l * l * (r.c * r.c) +
                            2 * h * k * r.a * r.b * r.cosg + 2 * h * l * r.a * r.c * r.cosb +
                            2 * k * l * r.b * r.c * r.cosa);
  return {d,
          (h * h * r.a + h * k * r.b * r.cosg + h * l * r.c * r.cosb) / d,
          (k * k * r.b + h * k * r.a * r.cosg + k * l * r.c * r.cosa) / d,
          (l * l * r.c + h * l * r.a * r.cosb + k * l * r.b * r.cosa) / d,
          -SineOf(r.cosa) * k * l * r.b * r.c / d,
          -SineOf(r.cosb) * h * l * r.a * r.c / d,
          -SineOf(r.cosg) * h * k * r.a * r.b / d};
}

// By the angles, in degrees. The first sum of each line turns the reciprocal angles, the second
// stretches the reciprocal edges.
void AngleGradient(const UnitCell& cell, const Angles& t, const Reciprocal& r, const Vector& v,
                   std::array<float, 6>& g) {
  const auto& [ca, cb, cg, sa, sb, sg] = t;
  const float a = cell(1), b = cell(2), c = cell(3), w = r.w, w2 = w * w, w3 = w * w * w;
  const float a1 = (w * ca - (ca - cg * cb) * (sa * sa) / w) / a / w2;
  const float a2 = (w * cb - (cb - cg * ca) * (sb * sb) / w) / b / w2;
  const float a3 = (w * cg - (cg - cb * ca) * (sg * sg) / w) / c / w2;
  const float b1 = (cg * ca - cb) * sa * sb / w3 / a, b2 = (cb * ca - cg) * sa * sg / w3 / a;
  const float b3 = (cg * cb - ca) * sa * sb / w3 / b, b4 = (cb * ca - cg) * sb * sg / w3 / b;
  const float b5 = (cg * cb - ca) * sa * sg / w3 / c, b6 = (cg * ca - cb) * sb * sg / w3 / c;
  g[3] = (sg * r.cosb / (sa * sb) * v.rg + sb * r.cosg / (sa * sg) * v.rb + sa / (sb * sg) * v.ra +
          v.t3 * b5 + v.t2 * b3 + v.t1 * a1) /
         RadToDeg;
  g[4] = (sg * r.cosa / (sa * sb) * v.rg + sb / (sa * sg) * v.rb + sa * r.cosg / (sb * sg) * v.ra +
          v.t3 * b6 + v.t2 * a2 + v.t1 * b1) /
         RadToDeg;
  g[5] = (sg / (sa * sb) * v.rg + sb * r.cosa / (sa * sg) * v.rb + sa * r.cosb / (sb * sg) * v.ra +
          v.t3 * a3 + v.t2 * b4 + v.t1 * b2) /
         RadToDeg;
}

}  // namespace

float QuadraticForm(const Metric& m, const Hkl& hkl) {
  const auto [h, k, l] = hkl;
  return m[0] * static_cast<float>(h * h) + m[1] * static_cast<float>(k * k) +
         m[2] * static_cast<float>(l * l) + m[3] * static_cast<float>(h * k) +
         m[4] * static_cast<float>(h * l) + m[5] * static_cast<float>(k * l);
}

float CellVolume(const UnitCell& cell) {
  const float volume = cell(1) * cell(2) * cell(3) * std::sqrt(UnitVolumeSquared(AnglesOf(cell)));
  return std::isnan(volume) ? 0.0f : volume;
}

Metric ReciprocalMetric(const UnitCell& cell) {
  const Reciprocal r = ReciprocalOf(cell, AnglesOf(cell));
  return {r.a * r.a,
          r.b * r.b,
          r.c * r.c,
          2 * r.a * r.b * r.cosg,
          2 * r.a * r.c * r.cosb,
          2 * r.b * r.c * r.cosa};
}

std::optional<Metric> SineMetric(const UnitCell& cell) {
  const auto [ca, cb, cg, sa, sb, sg] = AnglesOf(cell);
  const float a = cell(1), b = cell(2), c = cell(3);
  const float A = b * c * sa, B = a * c * sb, C = a * b * sg, V = a * b * c;
  const float D = 4 * (V * V) * UnitVolumeSquared({ca, cb, cg, sa, sb, sg});
  if (!(D > 0 && std::isfinite(D))) return {};
  const Metric m{A * A / D,
                 B * B / D,
                 C * C / D,
                 2 * V * c * (cb * ca - cg) / D,
                 2 * V * b * (cg * ca - cb) / D,
                 2 * V * a * (cg * cb - ca) / D};
  const bool fits = std::ranges::all_of(m, [](float x) { return std::isfinite(x); }) && m[0] > 0 &&
                    m[1] > 0 && m[2] > 0;
  return fits ? std::optional(m) : std::nullopt;
}

float InverseD(const Metric& r, const Hkl& hkl) {
  const float s = QuadraticForm(r, hkl);
  return s > 0 ? std::sqrt(s) : 0.0f;
}

float TwoThetaOfSine(float sine) { return TwoRadToDeg * std::asin(std::min(sine, 1.0f)); }

std::array<float, 6> CellGradient(int laueclass, int code, const UnitCell& cell) {
  const Angles t = AnglesOf(cell);
  const Reciprocal r = ReciprocalOf(cell, t);
  const Vector v = VectorOf(UnpackHkl(code), r);
  if (!(v.length > 0 && std::isfinite(v.length))) return {};
  std::array<float, 6> g{-t.sa * v.t1 / (cell(1) * cell(1)) / r.w,
                         -t.sb * v.t2 / (cell(2) * cell(2)) / r.w,
                         -t.sg * v.t3 / (cell(3) * cell(3)) / r.w};
  if (HasFreeAngle(laueclass)) AngleGradient(cell, t, r, v, g);
  return g;
}
