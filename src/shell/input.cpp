// Keys and mouse on the plot.
#include <algorithm>

#include "plot/dataposition.h"
#include "plot/guestview.h"
#include "plot/navigation.h"
#include "shell/shell.h"
#include "workspace/workspace.h"

namespace {

void ClipCurvesTo(float xmin, float xmax) {
  ws.plotxmin = xmin;
  ws.plotxmax = xmax;
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
  ws.viewexact = 0;
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

void OnKey(const Message& message) {
  const int key = message.value1;
  if (Guest()) {
    Navigate(message);
    return;
  }
  if (ws.npts(SlotInput) < 1) return;
  if (key >= KeyLeft && key <= KeyDown) RunCommand(kKeys[key - KeyLeft]);
  Navigate(message);
}

void OnMouse(const Message& message) {
  if (ws.viewmode == 0) return;
  if (message.type == MessageMouseDown && message.value1 == MouseLeft) DrawBand(message, false);
  Navigate(message);
}

std::pair<float, float> PlotPosition(float x, float y) {
  const auto units = [](float from, float perunit) { return perunit != 0 ? from / perunit : 0.0f; };
  return {ws.plotx0 + units(x - ws.viewxmin, ws.xperunit),
          ws.ploty0 + units(y - ws.viewymin, ws.yperunit)};
}
