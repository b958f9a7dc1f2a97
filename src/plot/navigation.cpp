// What the user's hand does with the pattern plot.
#include "plot/navigation.h"

#include <algorithm>

#include "plot/dataposition.h"
#include "plot/freezoom.h"
#include "plot/guestview.h"
#include "plot/plot.h"
#include "plot/zoomhistory.h"
#include "workspace/workspace.h"

namespace {

constexpr int kPattern = 1;  // viewmode

bool CanZoom() {
  if (Guest()) return true;
  return ws.viewmode == kPattern && ws.plotmask > 0 && ws.npts(ActiveSlot()) > 1;
}

DataPoint ClampToView(DataPoint at) {
  return {std::clamp(at.x, ws.viewxmin, std::max(ws.viewxmin, ws.viewxmax)),
          std::clamp(at.y, ws.viewymin, std::max(ws.viewymin, ws.viewymax))};
}

void ReadOut(float x, float y) {
  const DataPoint at = ToData(x, y);
  const auto view = Guest();
  if (!view) return ShowReadOuts(at);
  if (InView(at)) view->readout(at.x, at.y);
}

void TakeBand(DataPoint from, DataPoint to) {
  ws.bandx1 = std::min(from.x, to.x);
  ws.bandx2 = std::max(from.x, to.x);
  ws.bandy1 = std::min(from.y, to.y);
  ws.bandy2 = std::max(from.y, to.y);
  ws.plotxmin = ws.bandx1;
  ws.plotxmax = ws.bandx2;
}

// Left of the frame is the y axis. With Shift a turn towards the user goes on to the right.
void Turn(const Message& wheel) {
  const DataPoint at = ToData(wheel.x, wheel.y);
  const float notches = static_cast<float>(wheel.value1) / WheelNotch;
  const bool vertical = (wheel.modifiers & ModifierControl) || wheel.x < ws.plotx0;
  if (wheel.modifiers & ModifierShift)
    ScrollX(notches);
  else
    (vertical ? ZoomY : ZoomX)(at, notches);
  RefreshView();
  NoteZoom(true);
}

// The arrows, which for the pattern are commands. With Shift they go along the other axis.
bool GuestKey(const Message& message) {
  constexpr float kPage = 10, kStep = 2;  // notches
  const int key = message.value1;
  if (!Guest() || message.type != MessageKey || key < KeyLeft || key > KeyDown) return false;
  const bool shift = message.modifiers & ModifierShift, pages = key == KeyLeft || key == KeyRight;
  const Range x{ws.viewxmin, ws.viewxmax}, y{ws.viewymin, ws.viewymax};
  const DataPoint middle{(x.lo + x.hi) / 2, (y.lo + y.hi) / 2};
  if (pages && shift)
    PanFrom(x, y, {0, key == KeyRight ? y.hi - y.lo : y.lo - y.hi});
  else if (pages)
    ScrollX(key == KeyLeft ? kPage : -kPage);
  else
    (shift ? ZoomY : ZoomX)(middle, key == KeyDown ? kStep : -kStep);
  RefreshView();
  NoteZoom();
  return true;
}

// The view follows the mouse. Each place counts from the start of the drag, so that the way there
// leaves no trace in the last digits, and none at all when it is broken off.
void Pan(const Message& press) {
  const PatternData pattern = ws;
  const PerPattern start = ws;
  const Range x{start.viewxmin, start.viewxmax}, y{start.viewymin, start.viewymax};
  const DataPoint perunit{ws.xperunit, ws.yperunit};
  const auto follow = [&](float tox, float toy) {
    PanFrom(x, y, {(press.x - tox) * perunit.x, (press.y - toy) * perunit.y});
    RefreshView();
  };
  float endx = press.x, endy = press.y;
  int ending = 0;
  WGrInput(GraphicsPan, press.x, press.y, endx, endy, ending, follow);
  static_cast<PatternData&>(ws) = pattern;
  static_cast<PerPattern&>(ws) = start;
  if (ending != MessageMouseUp || (endx == press.x && endy == press.y))
    return ShowComplaint(DrawView());
  follow(endx, endy);
  NoteZoom();
}

}  // namespace

void ShowFullPattern() {
  ws.viewxmin = ws.viewxmax = ws.viewymin = ws.viewymax = 0;
  ws.bandx1 = ws.bandx2 = ws.bandy1 = ws.bandy2 = 0;
  RefreshView();
}

bool DrawBand(const Message& press, bool pick) {
  IGrColour("Cyan");
  float endx = press.x, endy = press.y;
  int ending = 0;
  WGrInput(GraphicsBand, press.x, press.y, endx, endy, ending, ReadOut);
  WCursorShape(0);
  IGrColour("Black");
  if (ending != MessageMouseUp) return true;
  const bool click = endx == press.x && endy == press.y;
  if (click && pick) return false;
  TakeBand(ClampToView(ToData(press.x, press.y)), ClampToView(ToData(endx, endy)));
  RefreshView();
  NoteZoom();
  return true;
}

bool Navigate(const Message& message) {
  if (message.type == MessageMouseMove) ReadOut(message.x, message.y);
  if (GuestKey(message)) return true;
  const bool shift = message.modifiers & ModifierShift;
  const int key = message.type == MessageKey ? message.value1 : 0;
  const bool full = message.type == MessageDoubleClick || key == KeyHome;
  const bool moves = message.type == MessageWheel || message.type == MessagePan;
  if (!full && !moves && key != KeyBackspace) return false;
  if (!CanZoom()) return true;
  if (message.type == MessageWheel) Turn(message);
  if (message.type == MessagePan) Pan(message);
  if (key == KeyBackspace) shift ? ZoomForward() : ZoomBack();
  if (full) {
    ShowFullPattern();
    NoteZoom();
  }
  return true;
}
