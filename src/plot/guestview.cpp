// The frame of a view from above.
#include "plot/guestview.h"

#include <algorithm>
#include <array>

#include "plot/page.h"
#include "plot/zoomhistory.h"
#include "workspace/workspace.h"

namespace {

std::optional<GuestView> (*guest)() = nullptr;
// Of the views that are not on show; 0 is the pattern plot.
std::array<ZoomView, MostGuestAxes + 1> kept{};

int AxesOnShow() {
  const auto view = Guest();
  return view ? view->axes : 0;
}

bool IsRange(float lo, float hi, float least) { return hi - lo >= least; }

}  // namespace

void InviteGuest(std::optional<GuestView> (*view)()) { guest = view; }

void ForgetGuestZoom(int axes) {
  kept[axes] = {};
  if (ws.limitsof == axes) ForgetZoom();
}

std::optional<GuestView> Guest() {
  return ws.viewmode == GuestViewMode && guest ? guest() : std::nullopt;
}

void KeepOwnLimits() { kept[ws.limitsof] = ViewNow(); }

// Those of another pattern, or on other axes, are no use.
void TakeOwnLimits() {
  const int axes = AxesOnShow();
  if (ws.limitsof == axes) return;
  const ZoomView now = ViewNow(), then = kept[axes];
  kept[ws.limitsof] = now;
  ForgetZoom();
  ws.limitsof = axes;
  const bool sameaxis = then.xaxismode == now.xaxismode && then.yaxismode == now.yaxismode;
  if (sameaxis && (axes != 0 || then.loadcount == now.loadcount)) PutView(then);
}

void LayGuestView() {
  LayPage();
  const auto view = Guest();
  if (!view) return;
  ws.plotwidth -= ws.plotscalex * view->roomright;
  Range x{ws.viewxmin, ws.viewxmax}, y{ws.viewymin, ws.viewymax};
  if (IsRange(ws.bandx1, ws.bandx2, view->leastx) && IsRange(ws.bandy1, ws.bandy2, view->leasty)) {
    x = {ws.bandx1, ws.bandx2};
    y = {ws.bandy1, ws.bandy2};
  }
  if (!(x.lo < x.hi)) x = view->whole.x;
  if (!(y.lo < y.hi)) y = view->whole.y;
  PutExactView(x, y);
  ws.xperunit = (x.hi - x.lo) / ws.plotwidth;
  ws.yperunit = (y.hi - y.lo) / ws.plotheight;
}
