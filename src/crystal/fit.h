// What the least-squares fits share: how they tell of their cycles, and how they end.
#pragma once

#include <functional>

// Gets the number of a cycle and its Rw; false ends the fit there.
using FitReport = std::function<bool(int cycle, float rw)>;

enum class FitEnd {
  Done,
  NoInverse,  // of the normal matrix
  Diverged,   // beyond all numbers
  Stopped,    // by the report
};

struct FitResult {
  FitEnd end;
  int cycles = 0;  // that the fit has begun
  float rw = 0;    // of a fit that is done or stopped
};
