// The primitive axes of centred cells.
#include "index/find/centering.h"

#include <algorithm>

namespace {

constexpr double kHalf = 0.5, kThird = 1.0 / 3;

struct Centering {
  char letter;
  Axes primitive;
};
constexpr Centering kCenterings[] = {
    {'P', {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
    {'A', {{{1, 0, 0}, {0, kHalf, kHalf}, {0, -kHalf, kHalf}}}},
    {'B', {{{kHalf, 0, -kHalf}, {0, 1, 0}, {kHalf, 0, kHalf}}}},
    {'C', {{{kHalf, kHalf, 0}, {-kHalf, kHalf, 0}, {0, 0, 1}}}},
    {'I', {{{-kHalf, kHalf, kHalf}, {kHalf, -kHalf, kHalf}, {kHalf, kHalf, -kHalf}}}},
    {'F', {{{0, kHalf, kHalf}, {kHalf, 0, kHalf}, {kHalf, kHalf, 0}}}},
    {'R',
     {{{2 * kThird, kThird, kThird}, {-kThird, kThird, kThird}, {-kThird, -2 * kThird, kThird}}}},
};

}  // namespace

const Axes& PrimitiveAxes(char centering) {
  const auto* found = std::ranges::find(kCenterings, centering, &Centering::letter);
  return (found == std::end(kCenterings) ? kCenterings : found)->primitive;
}
