// Keys and mouse on the plot.
#include <algorithm>

#include "plot/dataposition.h"
#include "plot/plot.h"
#include "shell/shell.h"
#include "workspace/workspace.h"

namespace {

DataPoint ClampToView(DataPoint at) {
  return {std::clamp(at.x, ws.viewxmin, std::max(ws.viewxmin, ws.viewxmax)),
          std::clamp(at.y, ws.viewymin, std::max(ws.viewymin, ws.viewymax))};
}

void ClipCurvesTo(float xmin, float xmax) {
  ws.plotxmin = xmin;
  ws.plotxmax = xmax;
}

// A band that is broken off leaves the last finished one, and the curves' limits, as they are.
void DrawBand(float x, float y) {
  const float bandx = ws.bandx1, bandy = ws.bandy1, xmin = ws.plotxmin, xmax = ws.plotxmax;
  ClipCurvesTo(ws.viewxmin, ws.viewxmax);
  const DataPoint from = ClampToView(ToData(x, y));
  ws.bandx1 = from.x;
  ws.bandy1 = from.y;
  IGrColour("Cyan");
  float endx = x, endy = y;
  int ending = 0;
  WGrInput(3, x, y, endx, endy, ending);
  if (ending == MessageMouseUp) {
    const DataPoint to = ClampToView(ToData(endx, endy));
    ws.bandx2 = to.x;
    ws.bandy2 = to.y;
    if (ws.bandx2 < ws.bandx1) std::swap(ws.bandx1, ws.bandx2);
    if (ws.bandy2 < ws.bandy1) std::swap(ws.bandy1, ws.bandy2);
    ClipCurvesTo(ws.bandx1, ws.bandx2);
  } else {
    ws.bandx1 = bandx;
    ws.bandy1 = bandy;
    ClipCurvesTo(xmin, xmax);
  }
  WCursorShape(0);
  IGrColour("Black");
  RefreshView();
}

void PageLeft(float first, float last) {
  const float oldmin = ws.viewxmin, oldmax = ws.viewxmax;
  ws.viewxmax = oldmin;
  ws.viewxmin = 2 * oldmin - oldmax;
  if (ws.viewxmin < first) ws.viewxmin = first;
  if (oldmin > last) ws.viewxmax = last;
  if (ws.viewxmax <= first) ws.viewxmax = last;
}

void PageRight(float first, float last) {
  const float oldmin = ws.viewxmin, oldmax = ws.viewxmax;
  ws.viewxmin = oldmax;
  ws.viewxmax = 2 * oldmax - oldmin;
  if (oldmax < first) ws.viewxmin = first;
  if (ws.viewxmax > last) ws.viewxmax = last;
  if (ws.viewxmin >= last) ws.viewxmin = first;
}

// Widens the view by a share of its width on each side, or narrows it for a negative share.
void Zoom(float share, float first, float last) {
  const float width = ws.viewxmax - ws.viewxmin;
  ws.viewxmin -= width * share;
  ws.viewxmax += width * share;
  if (ws.viewxmin < first) ws.viewxmin = first;
  if (ws.viewxmax > last) ws.viewxmax = last;
}

// Within the ends of the pattern on the axis on show.
template <class Change>
Outcome ChangeRange(Change change) {
  const float first = ws.xval(ws.xaxismode, SlotInput, 1),
              last = ws.xval(ws.xaxismode, SlotInput, ws.npts(SlotInput));
  change(std::min(first, last), std::max(first, last));
  ws.bandx1 = ws.bandx2 = 0;
  ws.viewymin = ws.viewymax = 0;
  ClipCurvesTo(ws.viewxmin, ws.viewxmax);
  return Outcome::Done;
}

Outcome OnLeft(const Arguments&) { return ChangeRange(PageLeft); }
Outcome OnRight(const Arguments&) { return ChangeRange(PageRight); }
Outcome OnUp(const Arguments&) {
  return ChangeRange([](float first, float last) { Zoom(0.5f, first, last); });
}
Outcome OnDown(const Arguments&) {
  return ChangeRange([](float first, float last) { Zoom(-0.25f, first, last); });
}

// From KeyLeft on.
constexpr Command kKeys[] = {
    {.item = {}, .title = "Page left", .run = OnLeft, .redraw = Redraw::Quiet},
    {.item = {}, .title = "Page right", .run = OnRight, .redraw = Redraw::Quiet},
    {.item = {}, .title = "Zoom out", .run = OnUp, .redraw = Redraw::Quiet},
    {.item = {}, .title = "Zoom in", .run = OnDown, .redraw = Redraw::Quiet},
};

}  // namespace

void OnKey(int key) {
  if (key < KeyLeft || key > KeyDown || ws.npts(SlotInput) < 1) return;
  RunCommand(kKeys[key - KeyLeft]);
}

void OnMouse(const Message& message) {
  if (ws.viewmode == 0) return;
  if (message.type == MessageMouseMove) ShowReadOuts(ToData(message.x, message.y));
  if (message.type == MessageMouseDown && message.value1 == MouseLeft)
    DrawBand(message.x, message.y);
}

std::pair<float, float> PlotPosition(float x, float y) {
  const auto units = [](float from, float perunit) { return perunit != 0 ? from / perunit : 0.0f; };
  return {ws.plotx0 + units(x - ws.viewxmin, ws.xperunit),
          ws.ploty0 + units(y - ws.viewymin, ws.yperunit)};
}
