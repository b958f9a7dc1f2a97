// The background of the whole-pattern fit.
#pragma once

#include "fit/model.h"

// Terms of the background polynomial: `bgorder`, or the nearest number there can be.
int BackgroundTerms(const FitParameters& fit);

// Fills background and net: in the range of the fit with the polynomial of `bgorder` terms, or,
// with 0 terms, everywhere with the estimated background, scaled so that the points without
// reflections keep one percent of their counts. `cycles` are those of the estimator.
void AssignBackground(FitModel& model, int cycles);
