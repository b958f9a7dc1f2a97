// Chebyshev polynomials on an interval, and their least-squares fit to a curve.
#include "crystal/chebyshev.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "crystal/matrix.h"

namespace {

// The basis at one point, filled up with zeros so that loops over it have a fixed length.
constexpr int kTerms = kChebyshevTerms;
struct Basis {
  float t[kTerms] = {};
};

bool IsFinite(float value) { return std::isfinite(value); }

float Sum(std::span<const float> coef, const float* t) {
  float sum = 0;
  for (std::size_t k = 0; k < coef.size(); ++k) sum += t[k] * coef[k];
  return sum;
}

// The inverse of the sums of t(j) t(k) over all points, leading dimension kTerms; false if there is
// none. The sums do not depend on the coefficients, so one inverse serves all rounds.
bool InverseNormal(const std::vector<Basis>& basis, int terms, float* normal) {
  for (const Basis& b : basis)
    for (int j = 0; j < terms; ++j)
      for (int k = 0; k < kTerms; ++k) normal[k + kTerms * j] += b.t[j] * b.t[k];
  return MatrixInverse(normal, terms, kTerms) >= 0;
}

}  // namespace

void ChebyshevBasis(std::span<float> t, float x, float xmin, float xmax) {
  const float u = xmax == xmin ? -1.0f : -1.0f + 2.0f * (x - xmin) / (xmax - xmin);
  if (!t.empty()) t[0] = 1.0f;
  if (t.size() > 1) t[1] = u;
  for (std::size_t k = 2; k < t.size(); ++k)
    t[k] = static_cast<float>(2.0 * u * t[k - 1] - t[k - 2]);
}

float ChebyshevValue(std::span<const float> coef, float x, float xmin, float xmax) {
  float t[kTerms];
  ChebyshevBasis({t, coef.size()}, x, xmin, xmax);
  return Sum(coef, t);
}

FitResult ChebyshevCycles(std::span<const float> x, std::span<const float> y,
                          const ChebyshevFrame& frame, std::span<float> coef, int cycles,
                          const FitReport& report) {
  const int terms = static_cast<int>(coef.size());
  std::vector<Basis> basis(x.size());
  for (std::size_t i = 0; i < x.size(); ++i)
    ChebyshevBasis({basis[i].t, coef.size()}, x[i], frame.xmin, frame.xmax);
  float inverse[kTerms * kTerms] = {};
  if (!InverseNormal(basis, terms, inverse)) return {FitEnd::NoInverse};

  for (int cycle = 1;; ++cycle) {
    float right[kTerms] = {}, squares = 0, scale = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
      const float r = y[i] - Sum(coef, basis[i].t);
      squares += r * r;
      scale += frame.yscale * frame.yscale;
      for (int k = 0; k < kTerms; ++k) right[k] += r * basis[i].t[k];
    }
    const float ratio = squares / scale;
    const float rw = std::isfinite(ratio) ? std::sqrt(ratio) : 0.0f;
    if (cycle > cycles)
      return {std::ranges::all_of(coef, IsFinite) ? FitEnd::Done : FitEnd::Diverged, cycles, rw};
    if (!report(cycle, rw)) return {FitEnd::Stopped, cycle, rw};
    for (int j = 0; j < terms; ++j) {
      float shift = 0;
      for (int k = 0; k < terms; ++k) shift += right[k] * inverse[k + kTerms * j];
      coef[j] += shift;
    }
  }
}
