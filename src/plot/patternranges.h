// What the pattern plot can show at most, and whether it can show its view.
#pragma once

#include <optional>

#include "plot/scales.h"

struct PatternFrame {
  Range x, y;
};

// The frame of the full pattern with the curves on show; nothing where there is none.
std::optional<PatternFrame> FullFrame();
// Makes these the limits of the view, as they are.
void PutExactView(const Range& x, const Range& y);
// Whether the view as it stands can be laid: enough points lie in it.
bool ViewCanBeLaid();
