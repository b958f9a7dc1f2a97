// Counts as levels of a table of colours.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "plot/scales.h"
#include "toolkit/displaylist.h"

enum class CountScale { Linear, SquareRoot, Logarithm };

// Viridis, whose lightness rises from the lowest level to the highest, so that it can be read on
// grey paper and by eyes that do not see red or green. Level 0, which shows nothing, has none.
const LevelColours& MapColours();

// From 0 to 1 on a scale whose ends are those of the range; beyond them that, or less or more.
float ScaledCounts(CountScale scale, const Range& range, float counts);

// Levels from 1 to 255 of counts; 0 for what is not a number. The same as rounding 254 times
// ScaledCounts, only by a search that is much faster.
class LevelTable {
 public:
  LevelTable(CountScale scale, const Range& range);
  std::uint8_t Of(float counts) const;

 private:
  float lowest_;
  std::array<float, 256> from_{};    // the least counts above the lowest that have the level
  std::vector<std::uint8_t> start_;  // the level at which the search begins, by leading bits
};
