// What patterns need in common to be added or fitted point by point: a step and a range.
#pragma once

#include <array>
#include <optional>

#include "workspace/workspace.h"

// The points of slot 1 and of overlays 1 and up that lie in the range of them all.
struct CommonGrid {
  float step = 0;
  int points = 0;                            // of every pattern
  std::array<int, 1 + MaxOverlays> first{};  // of slot 1 and of each overlay, counted from 0
};

enum class StepComplaint { Plain, Numbered };

// The grid that slot 1 shares with its first overlays. Nothing, after a box "Pattern Error", if
// their steps differ or no range of theirs is common; the box tells the number of the overlay
// behind the step when it is asked to.
std::optional<CommonGrid> FindCommonGrid(int overlays, StepComplaint complaint);
