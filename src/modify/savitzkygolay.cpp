// Savitzky-Golay filter of the active pattern, by tables of convolution integers.
#include <vector>

#include "modify/filters.h"
#include "modify/modify.h"
#include "workspace/slots.h"

namespace {

constexpr int kWidest = 25;
constexpr int kDefault = 9;

struct Convolution {
  int window;
  float norm;
  float c[kWidest / 2 + 1];  // from the centre outward
};

// Two entries do not follow the rule of the others, and patterns filtered so far depend on them:
// the norm of window 23, ten times the sum of its integers and more, and the sixth integer of
// window 25.
constexpr Convolution kConvolutions[] = {
    {5, 35, {17, 12, -3}},
    {7, 21, {7, 6, 3, -2}},
    {9, 231, {59, 54, 39, 14, -21}},
    {11, 429, {89, 84, 69, 44, 9, -36}},
    {13, 143, {25, 24, 21, 16, 9, 0, -11}},
    {15, 1105, {167, 162, 147, 122, 87, 42, -13, -78}},
    {17, 323, {43, 42, 39, 34, 27, 18, 7, -6, -21}},
    {19, 2261, {269, 264, 249, 224, 189, 144, 89, 24, -51, -136}},
    {21, 3059, {329, 324, 309, 284, 249, 204, 149, 84, 9, -76, -171}},
    {23, 8059, {79, 78, 75, 70, 63, 54, 43, 30, 15, -2, -21, -42}},
    {25, 5175, {467, 462, 447, 422, 387, 322, 287, 222, 147, 62, -33, -138, -253}},
};

const Convolution& ConvolutionOf(int w) {
  for (const Convolution& c : kConvolutions)
    if (c.window == w) return c;
  return ConvolutionOf(kDefault);
}

}  // namespace

// With h the half window, the h points at the start take the value of the h-th window from there,
// and the h points at the end have no window and become 0.
void SGFilter(std::span<float> y, int w) {
  const Convolution& table = ConvolutionOf(w);
  const int n = static_cast<int>(y.size()), half = table.window / 2;
  if (n < table.window) return;
  std::vector<float> out(n);
  for (int k = 0; k < n - 2 * half; ++k)
    for (int j = -half; j <= half; ++j) out[k] += table.c[j < 0 ? -j : j] * y[k + half + j];
  for (int i = 0; i < n; ++i) {
    int k = i - half;
    if (i < half) k = half;
    if (i > n - half - 1) k = n - half - 1;
    y[i] = out[k] / table.norm;
  }
}

Outcome SavitzkyGolay() {
  SGFilter(IntensityOf(ActiveSlot()), 2 * ws.sgwindow + 1);
  return Outcome::Done;
}
