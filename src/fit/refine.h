// Least-squares refinement of the whole pattern.
#pragma once

#include "crystal/fit.h"
#include "fit/model.h"
#include "fit/parameters.h"
#include "workspace/lines.h"

enum class RefineEnd {
  Done,             // at rest, or after the last cycle allowed
  ZeroDerivatives,  // of parameters that the range does not show
  NoInverse,        // of the normal matrix
  Diverged,         // beyond all numbers, or such data
  Stopped,          // by the report
};

struct RefineResult {
  RefineEnd end = RefineEnd::Done;
  int zeroderivatives = 0;
  float rp = 0, rwp = 0, gof = 0;  // of the final pattern; gof 0: no more points than parameters
  int points = 0, npar = 0;
  int cycles = 0;  // begun; the last of a fit that is done only computes the pattern
};

// Refines what bears a number, with unit weights. Needs all stages of the model to have been run.
//
// Each cycle writes its R values to the log, and for each value that moves a line with the new
// value, its e.s.d. and the shift in e.s.d.s. `report` gets the cycle and Rwp before the shifts.
// From cycle 3 on an intensity that stays at 1 and still wants to fall is taken out: its number
// becomes 0, npar may fall.
//
// A fit that is done leaves its results in the model's parameters; cellesd, and the other e.s.d.s,
// are those of the last shifts. After any other end the caller brings back what was there before.
RefineResult Refine(FitModel& model, ParameterNumbers& numbers, LineWriter& log,
                    const FitReport& report);
