// Counts as levels of a table of colours.
#include "series/levels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace {

constexpr int kLevels = 255;

// Of the map "viridis" by S. van der Walt and N. Smith (2015), released under CC0: its colours at
// ninths from 0 to 1, as #rrggbb.
constexpr std::uint32_t kViridis[] = {0x440154, 0x482878, 0x3E4A89, 0x31688E, 0x26828E,
                                      0x1F9E89, 0x35B779, 0x6DCD59, 0xB4DE2C, 0xFDE725};

LevelColours Interpolated() {
  constexpr int pieces = static_cast<int>(std::size(kViridis)) - 1, steps = kLevels - 1;
  LevelColours colours{};
  colours[0] = 0xffffff;
  for (int level = 1; level <= kLevels; ++level) {
    const int place = (level - 1) * pieces, piece = std::min(place / steps, pieces - 1);
    const int share = place - piece * steps;
    for (const int shift : {0, 8, 16}) {
      const auto part = [&](int k) { return static_cast<int>(kViridis[k] >> (16 - shift) & 255); };
      const int value =
          (part(piece) * (steps - share) + part(piece + 1) * share + steps / 2) / steps;
      colours[level] |= static_cast<std::uint32_t>(value) << shift;
    }
  }
  return colours;
}

// A real without the lower half of its bits.
constexpr int kLeading = 16;
std::uint32_t Leading(float value) { return std::bit_cast<std::uint32_t>(value) >> kLeading; }

// Counts at a share of the scale.
double CountsAt(CountScale scale, const Range& range, double share) {
  const double lo = range.lo, hi = range.hi;
  switch (scale) {
    case CountScale::SquareRoot:
      return lo + (hi - lo) * share * share;
    case CountScale::Logarithm:
      return lo > 0 ? lo * std::pow(hi / lo, share) : hi;
    default:
      return lo + (hi - lo) * share;
  }
}

}  // namespace

const LevelColours& MapColours() {
  static const LevelColours colours = Interpolated();
  return colours;
}

float ScaledCounts(CountScale scale, const Range& range, float counts) {
  const double lo = range.lo, hi = range.hi, above = (counts - lo) / (hi - lo);
  switch (scale) {
    case CountScale::SquareRoot:
      return static_cast<float>(above > 0 ? std::sqrt(above) : above);
    case CountScale::Logarithm:
      return counts > 0 ? static_cast<float>(std::log(counts / lo) / std::log(hi / lo)) : 0.0F;
    default:
      return static_cast<float>(above);
  }
}

LevelTable::LevelTable(CountScale scale, const Range& range)
    : lowest_(range.lo), start_(Leading(std::numeric_limits<float>::infinity()) + 1) {
  for (int level = 2; level <= kLevels; ++level)
    from_[level] =
        static_cast<float>(CountsAt(scale, range, (level - 1.5) / (kLevels - 1)) - range.lo);
  int level = 1;
  for (std::uint32_t bits = 0; bits < start_.size(); ++bits) {
    const float value = std::bit_cast<float>(bits << kLeading);
    while (level < kLevels && value >= from_[level + 1]) ++level;
    start_[bits] = static_cast<std::uint8_t>(level);
  }
}

std::uint8_t LevelTable::Of(float counts) const {
  if (counts != counts) return 0;
  const float above = counts - lowest_;
  if (!(above > 0)) return 1;
  int level = start_[Leading(above)];
  while (level < kLevels && above >= from_[level + 1]) ++level;
  return static_cast<std::uint8_t>(level);
}
