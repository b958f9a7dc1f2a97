// A view that a room above the plots puts in the place of the pattern: viewmode 5. It has a frame
// of its own, in which band, wheel, pan and keys zoom as they do in the pattern plot, and comes
// back with the limits it was left with.
#pragma once

#include <optional>

#include "plot/patternranges.h"
#include "plot/plot.h"

inline constexpr int GuestViewMode = 5;

struct GuestView {
  int axes = 1;                  // another number: other axes, whose limits are others
  PatternFrame whole{};          // all that there is to be seen
  float leastx = 0, leasty = 0;  // the smallest range worth showing
  float roomright = 0;           // of the frame, in drawing units of the screen
  void (*draw)() = nullptr;
  void (*readout)(float x, float y) = nullptr;  // a position in the frame
};
inline constexpr int MostGuestAxes = 4;

// Asked for the view whenever it is needed; gives nothing where there is nothing to be seen.
void InviteGuest(std::optional<GuestView> (*view)());
// What these axes show has changed: they begin with all of it.
void ForgetGuestZoom(int axes);

// While it is on show.
std::optional<GuestView> Guest();

// The limits as they are come back with these axes: before a load that forgets them.
void KeepOwnLimits();

// For LayView() and DrawView().
void TakeOwnLimits();
void LayGuestView();
