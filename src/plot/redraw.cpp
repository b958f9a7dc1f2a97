// What the main window shows.
#include "plot/guestview.h"
#include "plot/page.h"
#include "plot/views.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

ViewComplaint LayView() {
  TakeOwnLimits();
  switch (ws.viewmode) {
    case 1:
      return LayPatternPlot();
    case 2:
      return LayReport();
    case 3:
    case 4:
      LayPage();
      return {};
    case GuestViewMode:
      LayGuestView();
      return {};
    default:
      return {};
  }
}

ViewComplaint DrawView() {
  IGrAreaClear();
  switch (ws.viewmode) {
    case 1:
      IGrShow(DrawPatternPlot);
      return {};
    case 2:
      DrawReport();
      return {};
    case 3:
      return DrawWidthPlot();
    case 4:
      return DrawSizePlot();
    case GuestViewMode:
      if (const auto view = Guest()) view->draw();
      return {};
    default:
      return {};
  }
}

namespace {

ViewComplaint LayAndDraw() {
  const ViewComplaint laid = LayView(), drawn = DrawView();
  return laid.empty() ? drawn : laid;
}

}  // namespace

void ForgetZoom() {
  ws.viewxmin = ws.viewxmax = ws.viewymin = ws.viewymax = 0;
  ws.bandx1 = ws.bandx2 = ws.bandy1 = ws.bandy2 = 0;
}

void RedrawView(int fullrange) {
  if (fullrange == 1) ForgetZoom();
  const ViewComplaint complaint = LayAndDraw();
  if (!complaint.empty()) MessageBoxError(complaint.caption, complaint.text);
}

void ShowComplaint(const ViewComplaint& complaint) {
  if (!complaint.empty()) WindowOutStatusBar(3, complaint.text);
}

void RefreshView() { ShowComplaint(LayAndDraw()); }

void ShowPlotMarks() {
  static constexpr struct {
    int id, bit;
  } kSwitches[] = {
      {MenuPlotInput, PlotInput},       {MenuPlotBackground, PlotBackground},
      {MenuPlotRefined, PlotRefined},   {MenuPlotNet, PlotNet},
      {MenuPlotResidual, PlotResidual}, {MenuPlotPeaks, PlotPeaks},
  };
  for (const auto& row : kSwitches)
    WMenuSetState(row.id, MenuChecked, (ws.plotmarks & row.bit) != 0);
  WMenuSetState(MenuLegend, MenuChecked, ws.legend);
}

void UpdatePlotMenu() {
  ws.plotmarks = ws.plotmask;
  ShowPlotMarks();
}
