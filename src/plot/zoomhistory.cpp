// Back and forward through the zooms.
#include "plot/zoomhistory.h"

#include <tuple>

#include "plot/guestview.h"
#include "plot/patternranges.h"
#include "plot/plot.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

constexpr std::size_t kMostViews = 100;

ZoomHistory history;

auto Origin(const ZoomView& v) {
  return std::tie(v.xaxismode, v.yaxismode, v.loadcount, v.limitsof);
}

void Push(std::vector<ZoomView>& views, const ZoomView& view) {
  if (views.size() == kMostViews) views.erase(views.begin());
  views.push_back(view);
}

void ShowMenu() {
  WMenuSetState(MenuZoomBack, MenuEnabled, !history.back.empty());
  WMenuSetState(MenuZoomForward, MenuEnabled, !history.forward.empty());
}

// Views that look like the present one, or that the pattern has left since, are passed over.
bool Step(std::vector<ZoomView>& from, std::vector<ZoomView>& to) {
  if (ws.viewmode != 1 && !Guest()) return false;  // another plot is on show
  bool found = false;
  while (!found && !from.empty()) {
    const ZoomView view = from.back();
    from.pop_back();
    PutView(view);
    found = !SamePicture(view, history.now) && (Guest() || ViewCanBeLaid());
  }
  if (found) {
    Push(to, history.now);
    RefreshView();
  } else {
    PutView(history.now);
  }
  history.now = ViewNow();
  history.turning = false;
  ShowMenu();
  return found;
}

}  // namespace

ZoomView ViewNow() {
  return {ws.viewxmin, ws.viewxmax,  ws.viewymin,  ws.viewymax,  ws.viewexact,
          ws.bandx1,   ws.bandx2,    ws.bandy1,    ws.bandy2,    ws.plotxmin,
          ws.plotxmax, ws.xaxismode, ws.yaxismode, ws.loadcount, ws.limitsof};
}

bool SamePicture(const ZoomView& a, const ZoomView& b) {
  const auto limits = [](const ZoomView& v) {
    return std::tie(v.viewxmin, v.viewxmax, v.viewymin, v.viewymax);
  };
  return limits(a) == limits(b);
}

void PutView(const ZoomView& view) {
  ws.viewxmin = view.viewxmin;
  ws.viewxmax = view.viewxmax;
  ws.viewymin = view.viewymin;
  ws.viewymax = view.viewymax;
  ws.viewexact = view.viewexact;
  ws.bandx1 = view.bandx1;
  ws.bandx2 = view.bandx2;
  ws.bandy1 = view.bandy1;
  ws.bandy2 = view.bandy2;
  ws.plotxmin = view.plotxmin;
  ws.plotxmax = view.plotxmax;
}

const ZoomHistory& Zooms() { return history; }

void PutZooms(const ZoomHistory& zooms) {
  history = zooms;
  ShowMenu();
}

void NoteZoom(bool turning) {
  const ZoomView now = ViewNow();
  const bool changed = !SamePicture(now, history.now);
  if (Origin(now) != Origin(history.now)) {
    history.back.clear();
    history.forward.clear();
  } else if (changed) {
    if (!(turning && history.turning)) Push(history.back, history.now);
    history.forward.clear();
  }
  history.turning = turning && (changed || history.turning);
  history.now = now;
  ShowMenu();
}

bool ZoomBack() { return Step(history.back, history.forward); }
bool ZoomForward() { return Step(history.forward, history.back); }

void ForgetZooms() { PutZooms({{}, {}, ViewNow()}); }
