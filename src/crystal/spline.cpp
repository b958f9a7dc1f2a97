// Plain cubic spline: second derivatives by the tridiagonal sweep, then the A, B, C, D form.
#include "crystal/spline.h"

#include <algorithm>
#include <cmath>
#include <vector>

void SplineSetup(std::span<const float> x, std::span<const float> y, float d1, float dn,
                 std::span<float> y2) {
  std::vector<float> work(x.size());
  SplineSetup(x, y, d1, dn, y2, work);
}

void SplineSetup(std::span<const float> x, std::span<const float> y, float d1, float dn,
                 std::span<float> y2, std::span<float> u) {
  const int n = static_cast<int>(std::min(x.size(), y.size()));
  if (n < 2) {
    std::fill(y2.begin(), y2.end(), 0.0f);
    return;
  }
  if (d1 > NaturalLimit || !(x[1] > x[0])) {
    y2[0] = u[0] = 0;
  } else {
    y2[0] = -0.5f;
    u[0] = (3.0f / (x[1] - x[0])) * ((y[1] - y[0]) / (x[1] - x[0]) - d1);
  }
  for (int i = 1; i < n - 1; ++i) {
    if (!(x[i] > x[i - 1]) || !(x[i + 1] > x[i])) {  // points that do not rise: straight there
      y2[i] = u[i] = 0;
      continue;
    }
    const float sig = (x[i] - x[i - 1]) / (x[i + 1] - x[i - 1]);
    const float p = sig * y2[i - 1] + 2.0f;
    y2[i] = (sig - 1.0f) / p;
    u[i] = (6.0f * ((y[i + 1] - y[i]) / (x[i + 1] - x[i]) - (y[i] - y[i - 1]) / (x[i] - x[i - 1])) /
                (x[i + 1] - x[i - 1]) -
            sig * u[i - 1]) /
           p;
  }
  float qn = 0, un = 0;
  const float last = x[n - 1] - x[n - 2];
  if (dn <= NaturalLimit && last > 0) {
    qn = 0.5f;
    un = (3.0f / last) * (dn - (y[n - 1] - y[n - 2]) / last);
  }
  y2[n - 1] = (un - qn * u[n - 2]) / (qn * y2[n - 2] + 1.0f);
  for (int k = n - 2; k >= 0; --k) y2[k] = y2[k] * y2[k + 1] + u[k];
}

void SplineEval(std::span<const float> x, std::span<const float> y, std::span<const float> y2,
                std::span<const float> at, std::span<float> out) {
  const int n = static_cast<int>(std::min(x.size(), y.size()));
  if (n < 2) {
    std::fill_n(out.begin(), at.size(), n == 1 ? y[0] : 0.0f);
    return;
  }
  int k = 0;
  for (std::size_t j = 0; j < at.size(); ++j) {
    while (k < n - 2 && at[j] > x[k + 1]) ++k;
    const float h = x[k + 1] - x[k];
    if (!(h > 0)) {
      out[j] = y[k];
      continue;
    }
    const float a = (x[k + 1] - at[j]) / h;
    const float b = (at[j] - x[k]) / h;
    const float c = (a * a * a - a) * (h * h) / 6.0f;
    const float d = (b * b * b - b) * (h * h) / 6.0f;
    const float line = a * y[k] + b * y[k + 1];
    const float curve = line + c * y2[k] + d * y2[k + 1];
    out[j] = std::isfinite(curve) ? curve : line;  // curvatures that no real can hold
  }
}
