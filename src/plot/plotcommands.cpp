// The Plot menu: switches of the curves.
#include "plot/plot.h"
#include "plot/zoomhistory.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

Outcome FlipSwitch(const Arguments& arguments) {
  ws.plotmask ^= arguments.number;
  UpdatePlotMenu();
  return Outcome::Done;
}

Outcome FlipLegend(const Arguments&) {
  ws.legend = 1 - ws.legend;
  return Outcome::Done;
}

constexpr Command Switch(int id, const char* text, int bit) {
  return {.item = {id, text, MenuPopupPlot},
          .number = bit,
          .run = FlipSwitch,
          .redraw = Redraw::Full,
          .undo = true};
}

constexpr Command kCommands[] = {
    {.item = {MenuPopupPlot, "Plot", 0, true}},
    Switch(MenuPlotInput, "(A) (Modified) Input pattern", PlotInput),
    Switch(MenuPlotBackground, "(B) Background", PlotBackground),
    Switch(MenuPlotRefined, "(C) Refined pattern", PlotRefined),
    Switch(MenuPlotNet, "Difference (A-B)", PlotNet),
    Switch(MenuPlotResidual, "Difference (A-C)", PlotResidual),
    Switch(MenuPlotPeaks, "Peak positions", PlotPeaks),
    {.item = {MenuFullPattern, "Full pattern", MenuPopupPlot, false, "F1"},
     .viewmode = 1,
     .run = [](const Arguments&) { return Outcome::Done; },
     .redraw = Redraw::Full,
     .undo = true},
    {.item = {MenuZoomBack, "Zoom back", MenuPopupPlot, false, "Backspace"},
     .run = [](const Arguments&) { return ZoomBack() ? Outcome::Done : Outcome::Idle; }},
    {.item = {MenuZoomForward, "Zoom forward", MenuPopupPlot, false, "Shift+Backspace"},
     .run = [](const Arguments&) { return ZoomForward() ? Outcome::Done : Outcome::Idle; }},
    {.item = {MenuLegend, "Legend", MenuPopupPlot}, .run = FlipLegend, .redraw = Redraw::Keep},
};

}  // namespace

std::span<const Command> PlotCommands() { return kCommands; }
