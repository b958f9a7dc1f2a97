// What the main window shows.
#include "plot/plot.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

void RedrawView(int fullrange) {
  if (fullrange == 1) {
    ws.viewxmin = ws.viewxmax = ws.viewymin = ws.viewymax = 0;
    ws.bandx1 = ws.bandx2 = ws.bandy1 = ws.bandy2 = 0;
  }
  IGrAreaClear();
  switch (ws.viewmode) {
    case 1:
      return DrawPatternPlot();
    case 3:
      return DrawWidthPlot();
    case 4:
      return DrawSizePlot();
    default:
      return;
  }
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
