// The pattern that a command of the Modify menu works on.
#pragma once

#include <span>

#include "workspace/workspace.h"

// Two-theta and intensity of the points in use of a slot.
inline std::span<float> TthOf(int slot) { return ws.xval.row(AxisTth, slot).first(ws.npts(slot)); }
inline std::span<float> IntensityOf(int slot) { return ws.yval.row(slot).first(ws.npts(slot)); }

// Step of the first two points; 0 for fewer.
float FirstStepOf(int slot);

// True if the active pattern is that of slot 1. If not, says so to the user.
bool RawOnlyCheck();

// Multiplies value by factor, unless the factor is not a finite number.
void MultiplyIfFinite(float& value, float factor);
