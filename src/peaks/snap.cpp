// Where a peak lies that has been pointed at roughly.
#include "peaks/snap.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr int kReach = 10;  // points; most peaks are five to ten points wide
constexpr int kSight = 2;   // points that the walk looks ahead, over the noise of a slope

std::span<const float> InSight(std::span<const float> y, int i) {
  const int first = std::max(0, i - kSight);
  const int end = std::min(static_cast<int>(y.size()), i + kSight + 1);
  return y.subspan(first, end - first);
}

// Where the walk ends: a point that is no lower than any in sight.
int Uphill(std::span<const float> y, int i) {
  for (;;) {
    const auto highest = std::ranges::max_element(InSight(y, i));
    if (!(*highest > y[i])) return i;
    i = static_cast<int>(&*highest - y.data());
  }
}

// The place at which the slope, known in the middle of either interval, is 0.
float Vertex(std::span<const float, 3> x, std::span<const float, 3> y) {
  const float rise = (y[1] - y[0]) / (x[1] - x[0]), fall = (y[1] - y[2]) / (x[2] - x[1]);
  const float middle = (x[0] + x[1]) / 2;
  return middle + rise / (rise + fall) * ((x[1] + x[2]) / 2 - middle);
}

}  // namespace

float SnapToMaximum(std::span<const float> x, std::span<const float> y, float near) {
  if (x.empty()) return near;
  const auto distance = [near](float place) { return std::fabs(place - near); };
  const int start = static_cast<int>(std::ranges::min_element(x, {}, distance) - x.begin());
  const int top = Uphill(y, start);
  const bool atend = top == 0 || top + 1 == static_cast<int>(x.size());
  const bool plateau = std::ranges::count(InSight(y, top), y[top]) > 2;
  if (atend || plateau || std::abs(top - start) > kReach) return near;
  const float vertex = Vertex(x.subspan(top - 1).first<3>(), y.subspan(top - 1).first<3>());
  return vertex >= x[top - 1] && vertex <= x[top + 1] ? vertex : near;
}
