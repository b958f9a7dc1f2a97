// A pattern on another grid: means of neighbours, and a spline at equal steps.
#include "crystal/regrid.h"

#include <algorithm>
#include <vector>

#include "crystal/spline.h"
#include "workspace/text.h"

int BinMeans(std::span<float> x, std::span<float> y, int n, int size, float step) {
  const int bins = std::max(n - 1, 0) / size;
  for (int b = 0; b < bins; ++b) {
    const int first = b * size;
    float sum = 0;
    for (int k = 0; k < size; ++k) sum += y[first + k];
    y[b] = sum / static_cast<float>(size);
    x[b] = x[first] + static_cast<float>(size - 1) * 0.5f * step;
  }
  return bins;
}

int Regrid(std::span<float> x, std::span<float> y, int n, float start, float& step, float stop) {
  constexpr int kMost = 19995;
  const int m = std::min(nint((stop - start) / step), kMost - 1) + 1;
  if (n < 2 || m < 2) return 0;
  step = (stop - start) / static_cast<float>(m - 1);
  const std::vector<float> fromx(x.begin(), x.begin() + n), fromy(y.begin(), y.begin() + n);
  std::vector<float> y2(n);
  SplineSetup(fromx, fromy, NaturalEnd, NaturalEnd, y2);
  for (int j = 0; j < m; ++j) x[j] = step * static_cast<float>(j) + start;
  SplineEval(fromx, fromy, y2, x.first(m), y);
  return m;
}
