// The slots of the overlays.
#pragma once

#include "workspace/workspace.h"

constexpr int OverlaySlot(int k) { return SlotOverlay + k - 1; }

// Copies n points of a slot, the counts and all three axes, to the front of another or of itself,
// which then has that many. `first` counts from 0.
void CopyPoints(int from, int first, int n, int to);
