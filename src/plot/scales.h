// Ranges and their scales; places of ticks, for axes and grids.
#pragma once

#include <algorithm>
#include <cmath>

struct Range {
  float lo, hi;
  bool Holds(float value) const { return value >= lo && value <= hi; }
  // What is not a number counts as 0.
  float Limit(float value) const {
    return std::max(lo, std::min(hi, value == value ? value : 0.0f));
  }
  void Widen(float value) {
    lo = std::min(lo, value);
    hi = std::max(hi, value);
  }
  bool operator==(const Range&) const = default;
};

// Smallest and largest of the finite values taken; 0 before the first.
struct Extremes {
  float low = 0, high = 0;
  bool any = false;

  void Take(float value) {
    if (!std::isfinite(value)) return;
    low = any ? std::min(low, value) : value;
    high = any ? std::max(high, value) : value;
    any = true;
  }
};

// A range rounded outward to two digits of its far end.
Range Rounded(float low, float high);
// Drawing units per data unit; 0 for an empty range.
float ScaleOf(const Range& range, float length);

float Log10(float value);

// Ticks of an axis stand at lo + start + i * step for i from 0 to count, those at multiples of
// `major` carry labels. All 0 for a range without ticks.
struct Ticks {
  int count = 0;
  float start = 0, step = 0, major = 0;
};

Ticks LayTicks(float length, float lo, float hi);

// Whether a value is a multiple of `unit`, to a thousandth of a step or the precision of a real.
bool IsMultiple(float value, float unit, float step);
