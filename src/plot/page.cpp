// The place of a plot on screen and paper.
#include "plot/page.h"

#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

bool OnPaper() { return ws.printflag == 1 && WInfoGrReal(GraphicsPaper) == 1; }

void LayPage() {
  const bool paper = OnPaper();
  const float scale = paper ? PaperScale : 1.0f;
  ws.plotscalex = ws.plotscaley = scale;
  ws.plotwidth = ws.plotheight = scale * 850;
  ws.plotx0 = ws.ploty0 = scale * 100;
  if (paper) {
    ws.ploty0 = 125;
    ws.plotwidth *= 1.1f;
    ws.plotheight *= 0.9f;
  }
}

PageLayout BeginPage() {
  PlotInit();
  SetPen(1, 1, colours::kBlack);
  IGrUnitsRotate(OnPaper() ? 270 : 0);
  const float scale = ws.plotscalex;
  return {scale, scale * 15, scale * 10};
}
