// The views that the user has zoomed to, to go back to and forward.
#pragma once

#include <vector>

// The fields of the view, and what they belong to.
struct ZoomView {
  float viewxmin, viewxmax, viewymin, viewymax;
  int viewexact;
  float bandx1, bandx2, bandy1, bandy2;
  float plotxmin, plotxmax;
  int xaxismode, yaxismode, loadcount, limitsof;
};

ZoomView ViewNow();
// The same limits: bands and rounding are ways to them.
bool SamePicture(const ZoomView& a, const ZoomView& b);
void PutView(const ZoomView& view);

struct ZoomHistory {
  std::vector<ZoomView> back, forward;  // the last one is the next to come back
  ZoomView now{};
  bool turning = false;  // the view has come by a wheel
};

// The history as it stands, and the same put back for a command that leaves no trace.
const ZoomHistory& Zooms();
void PutZooms(const ZoomHistory& zooms);
// To be called after what may have changed the view. Keeps the view of before, but for one turn
// after another of the wheel, of which the first one counts. Another pattern or axis forgets all.
void NoteZoom(bool turning = false);
// Shows the view of before, or the one from which that has gone back; false if there is none.
bool ZoomBack();
bool ZoomForward();
void ForgetZooms();
