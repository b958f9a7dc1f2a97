// "Set manual peak positions": picks and removes peaks with the mouse beside the plot.
#include <algorithm>
#include <cmath>

#include "peaks/peaklist.h"
#include "peaks/peaks.h"
#include "peaks/snap.h"
#include "plot/beside.h"
#include "plot/dataposition.h"
#include "plot/plot.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/slots.h"

namespace {

using namespace controls;

enum ManualDialog { DialogNumber = 130, FieldCount = 1202, ButtonLower, ButtonHigher, ButtonClear };

constexpr Control kControls[] = {
    Label(1201, "Left-click to add point.   Right-click to remove point"),
    Label(1206, "With Shift held the point goes to the top of its peak"),
    Label(FieldCount, "No. of peaks in list:"),
    Press(ButtonLower, "<"),
    Press(ButtonHigher, ">"),
    Ok,
    Press(ButtonClear, "Clear"),
};
constexpr DialogResource kDialog{DialogNumber, "Set manual peak positions", kControls};

// Pans by one width of the view. At the end of the pattern the view widens back over all of it.
void Pan(int button) {
  const float start = ws.xval(ws.xaxismode, SlotInput, 1),
              stop = ws.xval(ws.xaxismode, SlotInput, ws.npts(SlotInput));
  const float first = std::min(start, stop), last = std::max(start, stop);
  const float oldmin = ws.viewxmin, oldmax = ws.viewxmax;
  const bool lower = button == ButtonLower;
  ws.viewxmin = lower ? 2 * oldmin - oldmax : oldmax;
  ws.viewxmax = lower ? oldmin : 2 * oldmax - oldmin;
  if (first > ws.viewxmin) ws.viewxmin = first;
  if (ws.viewxmax > last) ws.viewxmax = last;
  if (lower && first >= ws.viewxmax) ws.viewxmax = last;
  if (!lower && ws.viewxmin >= last) ws.viewxmin = first;
  ws.viewymin = ws.viewymax = 0;
  ws.viewexact = 0;
  ws.plotxmin = ws.viewxmin;
  ws.plotxmax = ws.viewxmax;
  ws.bandx1 = ws.bandx2 = 0;  // a band would bring the old view back
}

// At the place itself, or on top of the peak it is near to.
void AddPeak(float x, bool snap) {
  const int row = AppendPeak(PeakPicked);
  if (row == 0) return;
  const float tth = TwoThetaOf(x);
  ws.peaks(ptth, row) = snap ? SnapToMaximum(TthOf(SlotInput), IntensityOf(SlotInput), tth) : tth;
}

// Takes the first position within the tolerance out of the list, not the nearest. Only the
// positions close the gap; all other fields stay in their rows.
void RemovePosition(float x, float tolerance) {
  for (int i = 1; i <= PeakRows(); ++i)
    if (std::fabs(ShownX(ws.peaks(ptth, i)) - x) < tolerance) return RemovePeak(i, ptth);
}

void OnPick(const Message& mouse) {
  const DataPoint at = ToData(mouse.x, mouse.y);
  if (!InView(at)) return;
  if (mouse.value1 == MouseLeft) AddPeak(at.x, mouse.modifiers & ModifierShift);
  if (mouse.value1 == MouseRight) RemovePosition(at.x, PickReach().x);
}

// False ends the picking.
bool OnMessage(const Message& message) {
  const bool pans = message.value1 == ButtonLower || message.value1 == ButtonHigher;
  if (message.type == MessageMouseDown) OnPick(message);
  WDialogPutInteger(FieldCount, ws.npeaks);
  if (message.type == MessageButton && pans) Pan(message.value1);
  return message.type != MessageButton || pans;
}

}  // namespace

// All other commands wait until the dialog is closed. Positions are kept as two-theta, whatever the
// axis on show.
Outcome ManualPeakSearch() {
  if (ws.npts(SlotInput) < 1) return Outcome::Done;
  ws.plotmask = PlotInput + PlotPeaks;
  RefreshView();
  WMessageEnable(MessageMouseDown, 1);  // and left on: the main loop zooms by mouse
  WRegisterDialogs({&kDialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(DialogNumber);
  WDialogPutInteger(FieldCount, ws.npeaks);
  const int button = RunBeside(DialogNumber, OnMessage);
  if (ws.npeaks >= 2) SortPeaks();
  if (button == ButtonClear) ws.npeaks = 0;
  WDialogUnload();
  return Outcome::Done;
}
