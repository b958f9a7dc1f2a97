// The rows of the peak list made ready for the fit: which there are, how wide they are, and which
// points they reach.
#pragma once

#include "fit/model.h"
#include "fit/splitprofile.h"

// For the fit of individual positions: drops rows outside 1 to 170 degrees, second rows within two
// steps of another, rows outside the range of the fit and those without intensity, and sorts the
// rest. False if there were less than two rows to begin with.
bool PreparePeaks(FitModel& model);

// Width and shape at a position, from the laws in tan(theta) and two-theta. A squared width that is
// not above 0 counts as 0.0004.
PeakShape ShapeAt(const FitParameters& fit, float tth);

// Mean and left width and shape of a row.
void PutShape(FitModel& model, int row, const PeakShape& shape);

// Gives all rows their widths and shapes, and all points the rows that reach them. Needs rows in
// rising two-theta.
void AssignProfiles(FitModel& model);
