// Split pseudo-Voigt profile of one peak with its alpha2 component, and its least-squares fit.
#include <algorithm>
#include <cmath>

#include "crystal/matrix.h"
#include "peaks/peaks.h"
#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/workspace.h"

namespace {

constexpr float c1 = 0.6366197f;  // 2 / pi
constexpr float c2 = 0.9394372f;  // 2 sqrt(ln 2 / pi)
constexpr float c3 = 0.6005612f;  // 1 / (2 sqrt(ln 2))
constexpr float c4 = 1.442695f;   // 1 / ln 2

constexpr int Parameters = 8;
constexpr int MaxCycles = 200;

// p in the order of PeakProfileFit.
enum { Area, Position, Background, Slope, LeftWidth, LeftShape, RightWidth, RightShape };

struct Side {
  float width, shape;
  float area;      // that makes the halves meet at the position and the whole have the peak's area
  int firstderiv;  // place of the width's derivative; that of the shape follows
};

struct Component {
  float position, area;
  Side left, right;
};

float SideHeight(float width, float shape) { return ((1 - shape) * c2 + c1 * shape) / width; }

Component MakeComponent(std::span<const float, Parameters> p, float position, float area) {
  const float r = SideHeight(p[RightWidth], p[RightShape]) / SideHeight(p[LeftWidth], p[LeftShape]);
  const float f = 2 / (r + 1);
  return {position,
          area,
          {p[LeftWidth], p[LeftShape], r * f * area, LeftWidth},
          {p[RightWidth], p[RightShape], f * area, RightWidth}};
}

// alpha1, and alpha2 where the fit wavelengths have one. Returns their number.
int MakeComponents(std::span<const float, Parameters> p, Component* list) {
  list[0] = MakeComponent(p, p[Position], p[Area]);
  const float ratio = ws.scanwave(3);
  if (!(ratio > 0)) return 1;
  const float sine = std::sin(p[Position] / 2 / RadToDeg) * ws.scanwave(2) / ws.scanwave(1);
  list[1] = MakeComponent(p, TwoRadToDeg * std::asin(sine), ratio * p[Area]);
  return 2;
}

// Adds a component's intensity at u to calc, and its part of the derivatives to deriv. The ratio of
// the halves is not differentiated.
void AddComponent(const Component& c, float u, float& calc, float* deriv) {
  const float d = u - c.position;
  const Side& side = d < 0 ? c.left : c.right;
  const float w = side.width, e = side.shape, a = c.area;
  const float z = d / w / c3;
  const float q = z * z;
  const float G = c2 * std::exp(-q);
  const float L = c1 / (c4 * q + 1);
  const float v = side.area * ((1 - e) * G + e * L) / w;
  const float dL = c4 * 2 * d * e * (L * L) / c1 / w / c3;
  const float dG = (1 - e) * d * 2 * G / w / c3;
  const float sum = (dG + dL) * a;
  calc += v;
  deriv[Area] += v / a;
  deriv[Position] += sum / w / w / c3;
  deriv[side.firstderiv] += (sum * d / c3 / w / w - v) / w;
  deriv[side.firstderiv + 1] += (L - G) * a / w;
}

// Start values from the maximum and the points where the curve falls to half of it. False if the
// maximum is at an end, or nothing is above 0: p stays.
bool StartValues(const float* x, const float* y, int n, std::span<float, Parameters> p) {
  float ymax = 0;
  int top = -1;
  for (int i = 0; i < n; ++i)
    if (y[i] > ymax) {
      ymax = y[i];
      top = i;
    }
  if (top < 1 || top >= n - 1) return false;
  const float base = (y[0] + y[n - 1]) / 2;
  const float level = (ymax - base) / 2 + base;
  int left = top, right = top;
  while (left > 0 && !(y[left] < level)) --left;
  while (right < n - 1 && !(y[right] < level)) ++right;
  const float width = x[right] - x[left];
  p[Area] = (ymax - base) * width / 0.8f;
  p[Position] = x[top];
  p[Background] = y[0];
  p[Slope] = (y[n - 1] - y[0]) / (x[n - 1] - x[0]);
  p[LeftWidth] = p[RightWidth] = width;
  p[LeftShape] = p[RightShape] = 0.5f;
  return true;
}

struct NormalEquations {
  float matrix[Parameters * Parameters] = {};
  float vector[Parameters] = {};
  float residual = 0, total = 0;  // sums of squares of y - calc and of y
};

// One pass over the points, each sum in their order. The zeros of the other side's derivatives are
// added too: they keep what is not a number visible.
void Accumulate(const float* x, const float* y, float* calc, int n,
                std::span<const float, Parameters> p, NormalEquations& sums) {
  Component component[2];
  const int components = MakeComponents(p, component);
  for (int i = 0; i < n; ++i) {
    float deriv[Parameters] = {};
    deriv[Background] = 1;
    deriv[Slope] = x[i] - x[0];
    float value = 0;
    for (int k = 0; k < components; ++k) AddComponent(component[k], x[i], value, deriv);
    calc[i] = value + deriv[Slope] * p[Slope] + p[Background];
    const float e = y[i] - calc[i];
    sums.residual += e * e;
    sums.total += y[i] * y[i];
    for (int j = 0; j < Parameters; ++j) sums.vector[j] += e * deriv[j];
    for (int j = 0; j < Parameters; ++j)
      for (int k = 0; k < Parameters; ++k) sums.matrix[j * Parameters + k] += deriv[j] * deriv[k];
  }
}

}  // namespace

// Works with unit weights and full shifts. Ends when Rw comes to rest; the last shift is not in
// calc any more. A maximum at an end is not fitted: p and calc stay, and the result is 0. A fit
// that has run away from all numbers gives -1.
int PeakProfileFit(const float* x, const float* y, float* calc, int N, std::span<float, 8> p) {
  WindowOutStatusBar(3, "");
  if (!StartValues(x, y, N, p)) return 0;
  float previous = 100, rw = 0;
  int cycle = 1;
  for (;; ++cycle) {
    NormalEquations sums;
    Accumulate(x, y, calc, N, p, sums);
    int order = Parameters;
    if (MatrixInverse(sums.matrix, order, Parameters) < 0) {
      MessageBoxError("Error", "Matrix inversion error");
      return -1;
    }
    for (int j = 0; j < Parameters; ++j) {
      float shift = 0;
      for (int k = 0; k < Parameters; ++k)
        shift += sums.vector[k] * sums.matrix[k * Parameters + j];
      p[j] += shift;
    }
    if (!std::ranges::all_of(p, [](float value) { return std::isfinite(value); })) return -1;
    rw = std::sqrt(sums.residual / sums.total);
    if (std::fabs(rw - previous) <= 0.00005f || cycle == MaxCycles) break;
    previous = rw;
  }
  WindowOutStatusBar(3, WriteRecord<"('Cycle ',i3,'  Rw 'f6.4)">(cycle, rw));
  return 0;
}
