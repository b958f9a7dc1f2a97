// The calculated pattern.
#pragma once

#include "fit/model.h"

// Fills `calculated` with the peaks in the range of the fit, and adds the background everywhere.
// Points beyond the range start from what they held.
void CalculatePattern(FitModel& model);
