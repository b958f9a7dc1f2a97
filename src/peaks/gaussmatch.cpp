// Match of a Gaussian to a peak that the search has in mind.
#include "peaks/gaussmatch.h"

#include <cmath>
#include <vector>

namespace {

// Gaussian of unit area at -half to half points from its centre, and a 0 behind.
std::vector<float> Template(int half, int width, float fwhm) {
  std::vector<float> g(2 * half + 2);
  const float w2 = static_cast<float>(width * width);
  g[half] = 0.9394372f / fwhm;
  for (int k = 1; k <= half; ++k) {
    const float k2 = static_cast<float>(k * k);
    g[half + k] = g[half - k] = 0.9394372f * std::exp(-2.7725887f * k2 / w2) / fwhm;
  }
  return g;
}

}  // namespace

GaussianMatch GaussMatch(std::span<const float> y, const Candidate& c, float step) {
  const int n = static_cast<int>(y.size()) - 1;
  const int half = 3 * c.width / 2;
  const int first = c.at - half - 1, last = c.at + half;
  if (first < 1 || last > n) return {};
  const std::vector<float> g = Template(half, c.width, step * static_cast<float>(c.width));

  // The sums take one point more than the template, with g = 0; behind the data lies a 0.
  float sy = 0, sg = 0, sgy = 0, sgg = 0;
  const int count = last - first + 1;
  for (int t = 0; t < count; ++t) {
    const int i = first + 1 + t;
    const float value = i <= n ? y[i] : 0;
    sy += value;
    sg += g[t];
    sgy += g[t] * value;
    sgg += g[t] * g[t];
  }
  const float points = static_cast<float>(count);
  const float det = points * sgg - sg * sg;
  return {std::sqrt((sy * sgg - sgy * sg) / det), (points * sgy - sy * sg) * g[half] / det};
}
