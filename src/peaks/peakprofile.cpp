// Split pseudo-Voigt profile of one peak with its alpha2 component, and its least-squares fit.
#include "peaks/peakprofile.h"

#include <algorithm>
#include <cmath>

#include "crystal/matrix.h"
#include "workspace/workspace.h"  // for RadToDeg

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
  float area;  // that makes the halves meet at the position and the whole have the peak's area
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
          {p[LeftWidth], p[LeftShape], r * f * area},
          {p[RightWidth], p[RightShape], f * area}};
}

// alpha1, and alpha2 where there is one. Returns their number.
int MakeComponents(std::span<const float, Parameters> p, const FitWavelengths& lines,
                   Component* list) {
  list[0] = MakeComponent(p, p[Position], p[Area]);
  if (!(lines.ratio > 0)) return 1;
  const float sine = std::sin(p[Position] / 2 / RadToDeg) * lines.alpha2 / lines.alpha1;
  list[1] = MakeComponent(p, TwoRadToDeg * std::asin(sine), lines.ratio * p[Area]);
  return 2;
}

constexpr int BlockSize = 64;
using Lanes = float[BlockSize];

// Neighbouring points. Most of a fit's time is spent on divisions, so the points of a block go side
// by side through loops that the compiler takes in vectors. Each point has the steps, and with them
// the bits, of the plain formulas.
struct Block {
  Lanes u;      // two-theta
  Lanes value;  // of the components
  Lanes deriv[Parameters];
};

// Adds a component to the values of a block, and its part to their derivatives. The ratio of the
// halves is not differentiated. Width and shape of the side that a point is not on get zeros.
void AddComponent(Component c, Block& block) {
  Lanes d, w, q, G, dwidth, dshape;
  for (int i = 0; i < BlockSize; ++i) {
    d[i] = block.u[i] - c.position;
    w[i] = d[i] < 0 ? c.left.width : c.right.width;
    const float z = d[i] / w[i] / c3;
    q[i] = z * z;
  }
  for (int i = 0; i < BlockSize; ++i) G[i] = c2 * std::exp(-q[i]);
  for (int i = 0; i < BlockSize; ++i) {
    const float e = d[i] < 0 ? c.left.shape : c.right.shape;
    const float area = d[i] < 0 ? c.left.area : c.right.area;
    const float L = c1 / (c4 * q[i] + 1);
    const float v = area * ((1 - e) * G[i] + e * L) / w[i];
    const float dL = c4 * 2 * d[i] * e * (L * L) / c1 / w[i] / c3;
    const float dG = (1 - e) * d[i] * 2 * G[i] / w[i] / c3;
    const float sum = (dG + dL) * c.area;
    block.value[i] += v;
    block.deriv[Area][i] += v / c.area;
    block.deriv[Position][i] += sum / w[i] / w[i] / c3;
    dwidth[i] = (sum * d[i] / c3 / w[i] / w[i] - v) / w[i];
    dshape[i] = (L - G[i]) * c.area / w[i];
  }
  for (int i = 0; i < BlockSize; ++i) block.deriv[LeftWidth][i] += d[i] < 0 ? dwidth[i] : 0;
  for (int i = 0; i < BlockSize; ++i) block.deriv[LeftShape][i] += d[i] < 0 ? dshape[i] : 0;
  for (int i = 0; i < BlockSize; ++i) block.deriv[RightWidth][i] += d[i] < 0 ? 0 : dwidth[i];
  for (int i = 0; i < BlockSize; ++i) block.deriv[RightShape][i] += d[i] < 0 ? 0 : dshape[i];
}

// Start values from the maximum and the points where the curve falls to half of it. False if the
// maximum is at an end, or nothing is above 0: p stays.
bool StartValues(std::span<const float> x, std::span<const float> y,
                 std::span<float, Parameters> p) {
  const int n = static_cast<int>(x.size());
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

// Adds the first `count` points of a block, whose intensities are y. The elements are lanes here:
// each has one sum, which takes the points in their order. The zeros of the other side's
// derivatives are added too: they keep what is not a number visible.
void AddBlock(const Block& block, const float* y, const float* calc, int count,
              NormalEquations& sums) {
  float deriv[BlockSize][Parameters];
  for (int i = 0; i < BlockSize; ++i)
    for (int j = 0; j < Parameters; ++j) deriv[i][j] = block.deriv[j][i];
  for (int i = 0; i < count; ++i) {
    const float e = y[i] - calc[i];
    sums.residual += e * e;
    sums.total += y[i] * y[i];
    for (int k = 0; k < Parameters; ++k) sums.vector[k] += e * deriv[i][k];
    for (int j = 0; j < Parameters; ++j)
      for (int k = 0; k < Parameters; ++k)
        sums.matrix[j * Parameters + k] += deriv[i][j] * deriv[i][k];
  }
}

// One pass over the points.
void Accumulate(std::span<const float> x, std::span<const float> y, std::span<float> calc,
                const FitWavelengths& lines, std::span<const float, Parameters> p,
                NormalEquations& sums) {
  Component component[2];
  const int components = MakeComponents(p, lines, component), n = static_cast<int>(x.size());
  for (int start = 0; start < n; start += BlockSize) {
    const int count = std::min(BlockSize, n - start);
    Block block = {};
    std::copy_n(&x[start], count, block.u);
    std::fill(block.u + count, std::end(block.u), x[start]);
    for (int i = 0; i < BlockSize; ++i) {
      block.deriv[Background][i] = 1;
      block.deriv[Slope][i] = block.u[i] - x[0];
    }
    for (int k = 0; k < components; ++k) AddComponent(component[k], block);
    for (int i = 0; i < count; ++i)
      calc[start + i] = block.value[i] + block.deriv[Slope][i] * p[Slope] + p[Background];
    AddBlock(block, &y[start], &calc[start], count, sums);
  }
}

}  // namespace

// Works with unit weights and full shifts. Ends when Rw comes to rest; the last shift is not in
// calc any more.
FitResult PeakProfileFit(std::span<const float> x, std::span<const float> y, std::span<float> calc,
                         const FitWavelengths& lines, std::span<float, Parameters> p,
                         const FitReport& report) {
  if (!StartValues(x, y, p)) return {FitEnd::Done};
  float previous = 100;
  for (int cycle = 1;; ++cycle) {
    NormalEquations sums;
    Accumulate(x, y, calc, lines, p, sums);
    int order = Parameters;
    if (MatrixInverse(sums.matrix, order, Parameters) < 0) return {FitEnd::NoInverse, cycle};
    for (int j = 0; j < Parameters; ++j) {
      float shift = 0;
      for (int k = 0; k < Parameters; ++k)
        shift += sums.vector[k] * sums.matrix[k * Parameters + j];
      p[j] += shift;
    }
    if (!std::ranges::all_of(p, [](float value) { return std::isfinite(value); }))
      return {FitEnd::Diverged, cycle};
    const float rw = std::sqrt(sums.residual / sums.total);
    if (!report(cycle, rw)) return {FitEnd::Stopped, cycle, rw};
    if (std::fabs(rw - previous) <= 0.00005f || cycle == MaxCycles)
      return {FitEnd::Done, cycle, rw};
    previous = rw;
  }
}
