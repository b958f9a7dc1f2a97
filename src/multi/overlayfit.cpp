// Least squares of one pattern against another: scale, background and zero.
#include "multi/overlayfit.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "crystal/chebyshev.h"
#include "crystal/matrix.h"
#include "crystal/spline.h"
#include "workspace/text.h"  // for nint

namespace {

constexpr float kLeastShift = 0.0001f;  // degrees
constexpr float kWholeStep = 0.001f;    // a step lacks no more to be whole
constexpr int kDimension = 25;
constexpr float kZeroDerivative = 1.0e-30f;
constexpr float kLeastCounts = 0.01f;

// The equations of one cycle; matrix(k, l) at [k + kDimension * l].
struct Equations {
  int npar;
  float matrix[kDimension * kDimension] = {}, right[kDimension] = {};
  float residual = 0, total = 0;

  void Add(const float* derivatives, float observed, float calculated);
  void Mirror();
  int CountZeros() const;
  bool Invert(float damping);
  float Shift(int k) const;
};

void Equations::Add(const float* derivatives, float observed, float calculated) {
  const float w = observed > kLeastCounts ? 1.0f / observed : 1.0f;
  const float e = observed - calculated;
  residual += std::fabs(e);
  total += std::fabs(observed);
  for (int k = 0; k < npar; ++k) {
    const float weighted = w * derivatives[k];
    right[k] += w * e * derivatives[k];
    for (int l = k; l < npar; ++l) matrix[k + kDimension * l] += weighted * derivatives[l];
  }
}

void Equations::Mirror() {
  for (int k = 0; k < npar; ++k)
    for (int l = k + 1; l < npar; ++l) matrix[l + kDimension * k] = matrix[k + kDimension * l];
}

int Equations::CountZeros() const {
  int count = 0;
  for (int k = 0; k < npar; ++k) count += std::fabs(matrix[k + kDimension * k]) < kZeroDerivative;
  return count;
}

bool Equations::Invert(float damping) {
  if (damping > 1)
    for (int k = 0; k < npar; ++k) matrix[k + kDimension * k] *= damping;
  int order = npar;
  return MatrixInverse(matrix, order, kDimension) >= 0;
}

float Equations::Shift(int k) const {
  float shift = 0;
  for (int l = 0; l < npar; ++l) shift += right[l] * matrix[l + kDimension * k];
  return shift;
}

// Fills the calculated pattern and the equations.
void Accumulate(const OverlayFit& fit, Equations& equations) {
  const std::size_t terms = fit.coef.size();
  float derivatives[kDimension] = {};
  for (std::size_t i = 0; i < fit.x.size(); ++i) {
    ChebyshevBasis({derivatives, terms}, fit.x[i], fit.xmin, fit.xmax);
    derivatives[terms] = fit.overlay[i];
    float calculated = 0;
    for (std::size_t k = 0; k < terms; ++k) calculated += fit.coef[k] * derivatives[k];
    calculated += fit.scale * fit.overlay[i];
    fit.calculated[i] = calculated;
    equations.Add(derivatives, fit.observed[i], calculated);
  }
}

// A shift against the previous one is halved, and counts as halved for the next one. False if a
// shift is not a number.
bool ApplyShifts(const OverlayFit& fit, const Equations& equations, float* previous) {
  for (int k = 0; k < equations.npar; ++k) {
    float shift = equations.Shift(k);
    if (!std::isfinite(shift)) return false;
    if ((shift < 0 && previous[k] > 0) || (shift > 0 && previous[k] < 0)) shift *= 0.5f;
    previous[k] = shift;
    const std::size_t term = static_cast<std::size_t>(k);
    (term < fit.coef.size() ? fit.coef[term] : fit.scale) += shift;
  }
  return true;
}

}  // namespace

bool IsShift(float zero) { return std::fabs(zero) >= kLeastShift; }

int WholeSteps(float zero, float step) {
  const float steps = zero / step;
  return nint(std::trunc(steps + (steps < 0 ? -kWholeStep : kWholeStep)));
}

void ResampleOverlay(std::span<const float> x, std::span<const float> y, float zero, float step,
                     std::span<float> out) {
  const int n = static_cast<int>(x.size());
  const int steps = IsShift(zero) ? std::clamp(WholeSteps(zero, step), -n, n) : 0;
  for (int i = 0; i < n; ++i) out[i] = y[std::clamp(i - steps, 0, n - 1)];
  const float rest = zero - static_cast<float>(steps) * step;
  if (std::abs(steps) == n || !IsShift(zero) || !(std::fabs(rest) > kLeastShift)) return;
  std::vector<float> knots(x.begin(), x.end()), y2(n);
  for (float& knot : knots) knot += rest;
  const std::vector<float> curve(out.begin(), out.begin() + n);
  SplineSetup(knots, curve, NaturalEnd, NaturalEnd, y2);
  SplineEval(knots, curve, y2, x, out);
}

OverlayFitResult FitOverlay(const OverlayFit& fit, const FitReport& report) {
  float previous[kDimension] = {};
  for (int cycle = 1;; ++cycle) {
    Equations equations{static_cast<int>(fit.coef.size()) + fit.refinescale};
    Accumulate(fit, equations);
    const float ratio = equations.residual / equations.total;
    OverlayFitResult result{FitEnd::Done, equations.total > 0 ? ratio : 0.0f};
    const auto ended = [&](FitEnd end) {
      result.end = end;
      return result;
    };
    if (!std::isfinite(result.r)) return ended(FitEnd::Diverged);
    const bool last = equations.npar == 0 || cycle == kOverlayFitCycles;
    equations.Mirror();
    if (!last) result.zeroderivatives = equations.CountZeros();
    if (result.zeroderivatives > 0 || (!last && !equations.Invert(fit.diagdamp)))
      return ended(FitEnd::NoInverse);
    if (!report(cycle, result.r)) return ended(FitEnd::Stopped);
    if (last) return result;
    if (!ApplyShifts(fit, equations, previous)) return ended(FitEnd::Diverged);
  }
}

std::optional<float> ParabolaMinimum(const std::array<float, 3>& z, const std::array<float, 3>& r) {
  const float squares = z[0] * z[0] - z[1] * z[1];
  if (squares == 0) return {};
  const float ratio = (z[0] * z[0] - z[2] * z[2]) / squares;
  const float divisor = (z[0] - z[2]) - ratio * (z[0] - z[1]);
  if (divisor == 0) return {};
  const float b = ((r[0] - r[2]) - ratio * (r[0] - r[1])) / divisor;
  const float a = ((r[0] - r[1]) - b * (z[0] - z[1])) / squares;
  const float lowest = -b / (2 * a);
  if (!(a > 0) || !std::isfinite(lowest)) return {};
  return lowest;
}
