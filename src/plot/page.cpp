// The place of a plot on screen and paper.
#include "plot/page.h"

#include <algorithm>

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

namespace {

constexpr float kLeastPixels = 9;  // height of letters that can still be read
constexpr float kMostUnits = 57;   // and of those for which the margins have room

// In a small window the letters do not shrink with the frame.
float TextHeight(float scale) {
  const float wanted = scale * TextUnits, pixels = WInfoGrReal(GraphicsPixels);
  if (!(pixels > 0)) return wanted;
  return std::max(wanted, std::min(kLeastPixels / pixels, kMostUnits));
}

}  // namespace

PageLayout BeginPage() {
  PlotInit();
  SetPen(1, 1, colours::kBlack);
  IGrUnitsRotate(OnPaper() ? 270 : 0);
  const float scale = ws.plotscalex;
  return {scale, TextHeight(scale), scale * 10};
}
