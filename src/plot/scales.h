// Places of ticks, for axes and grids.
#pragma once

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
