// Smooth: the moving average of the active pattern.
#include <algorithm>
#include <vector>

#include "crystal/runningmeans.h"
#include "modify/filters.h"
#include "modify/modify.h"
#include "workspace/slots.h"

namespace {

// Replaces list[m .. n-m-1] by the means of the 2m + 1 values around each.
void AverageInside(std::span<float> list, int m) {
  const int n = static_cast<int>(list.size()), w = 2 * m + 1;
  std::vector<float> mean(RoundedToBlocks(n - 2 * m)), padded(mean.size() + 2 * m);
  std::copy(list.begin(), list.end(), padded.begin());
  RunningMeans(padded.data(), w, mean.data(), n - 2 * m);
  std::copy_n(mean.begin(), n - 2 * m, list.begin() + m);
}

}  // namespace

void MovingAverage(std::span<float> x, std::span<float> y, int w) {
  const int n = static_cast<int>(y.size()), m = (w - 1) / 2;
  if (w < 2 || w > n) return;
  std::vector<float> head(m), tail(m);  // means of the first and of the last k + m values
  float first = 0, last = 0;
  for (int i = 0; i < 2 * m; ++i) {
    first += y[i];
    last += y[n - 1 - i];
    if (i < m) continue;
    head[i - m] = first / static_cast<float>(i + 1);
    tail[i - m] = last / static_cast<float>(i + 1);
  }
  AverageInside(x, m);
  AverageInside(y, m);
  std::copy(head.begin(), head.end(), y.begin());
  std::copy(tail.begin(), tail.end(), y.rbegin());
}

Outcome SmoothPattern() {
  if (ws.smoothwindow < 3) return Outcome::Idle;
  const int slot = ActiveSlot();
  std::vector<float> x(TthOf(slot).begin(), TthOf(slot).end());
  MovingAverage(x, IntensityOf(slot), ws.smoothwindow | 1);
  return Outcome::Done;
}
