// Start values of the intensities.
#pragma once

#include "fit/model.h"

// The point nearest to a position, counted from 1; the first or last one for a position beyond the
// pattern. The pattern must have points.
int PointNear(const FitModel& model, float tth);

// The net height at the peak, shared out among the rows that overlap there, times 1.25 FWHM; 1
// where that is next to nothing.
void AssignIntensities(FitModel& model);

// A second pass over rows in groups: takes the height one point in front of the peak, for each row
// whose predecessor overlaps with others at that point.
void ReassignIntensities(FitModel& model);
