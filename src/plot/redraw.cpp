// What the main window shows.
#include "plot/page.h"
#include "plot/views.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

ViewComplaint LayView() {
  switch (ws.viewmode) {
    case 1:
      return LayPatternPlot();
    case 3:
    case 4:
      LayPage();
      return {};
    default:
      return {};
  }
}

ViewComplaint DrawView() {
  IGrAreaClear();
  switch (ws.viewmode) {
    case 1:
      DrawPatternPlot();
      return {};
    case 3:
      return DrawWidthPlot();
    case 4:
      return DrawSizePlot();
    default:
      return {};
  }
}

void RedrawView(int fullrange) {
  if (fullrange == 1) {
    ws.viewxmin = ws.viewxmax = ws.viewymin = ws.viewymax = 0;
    ws.bandx1 = ws.bandx2 = ws.bandy1 = ws.bandy2 = 0;
  }
  const ViewComplaint laid = LayView(), drawn = DrawView();
  const ViewComplaint& first = laid.empty() ? drawn : laid;
  if (!first.empty()) MessageBoxError(first.caption, first.text);
}

void UpdatePlotMenu() {
  static constexpr struct {
    int id, bit;
  } kSwitches[] = {
      {MenuPlotInput, PlotInput},       {MenuPlotBackground, PlotBackground},
      {MenuPlotRefined, PlotRefined},   {MenuPlotNet, PlotNet},
      {MenuPlotResidual, PlotResidual}, {MenuPlotPeaks, PlotPeaks},
  };
  for (const auto& row : kSwitches)
    WMenuSetState(row.id, MenuChecked, (ws.plotmask & row.bit) != 0);
}
