// What the pattern writers share.
#pragma once

#include <array>
#include <string>

#include "workspace/lines.h"
#include "workspace/workspace.h"

// The points that a writer saves.
struct SaveGrid {
  int n = 0;
  std::array<float, MaxPoints> x, y;
};

// The points of a slot from savestart to savestop on the step savestep: as they are if the step is
// that of the data, binned if it is larger, and re-gridded by a spline if it is no multiple of the
// data's, when savestep is fitted to the limits. `oddremainder` takes the remainder of binned data
// against half the width of a bin. The grid stays valid until the next call.
const SaveGrid& PrepareSaveGrid(int slot, bool oddremainder = false);
int PointsPrepared();

// Shows a box that names the file and what has failed, and returns 0, a writer's result.
int WriteFailure(const std::string& text, const LineWriter& out);

// A line with blanks up to the length of a text field.
bool WritePadded(LineWriter& out, std::string line);
