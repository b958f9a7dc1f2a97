// "Set manual peak positions": picks and removes peaks with the mouse beside the plot.
#include <cmath>

#include "peaks/peaklist.h"
#include "peaks/peaks.h"
#include "plot/dataposition.h"
#include "plot/plot.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

enum ManualDialog { DialogNumber = 130, FieldCount = 1202, ButtonLower, ButtonHigher, ButtonClear };

// Pans by one width of the view. At the end of the pattern the view widens back over all of it.
void Pan(int button) {
  const float first = ws.xval(AxisTth, SlotInput, 1);
  const float last = ws.xval(AxisTth, SlotInput, ws.npts(SlotInput));
  const float oldmin = ws.viewxmin, oldmax = ws.viewxmax;
  const bool lower = button == ButtonLower;
  ws.viewxmin = lower ? 2 * oldmin - oldmax : oldmax;
  ws.viewxmax = lower ? oldmin : 2 * oldmax - oldmin;
  if (first > ws.viewxmin) ws.viewxmin = first;
  if (ws.viewxmax > last) ws.viewxmax = last;
  if (lower && first >= ws.viewxmax) ws.viewxmax = last;
  if (!lower && ws.viewxmin >= last) ws.viewxmin = first;
  ws.viewymin = ws.viewymax = 0;
  ws.plotxmin = ws.viewxmin;
  ws.plotxmax = ws.viewxmax;
  ws.bandx1 = ws.bandx2 = 0;  // a band would bring the old view back
}

void AddPeak(float x) {
  if (!RoomForPeak()) return;
  ws.peaks(ptth, ++ws.npeaks) = x;
}

// Takes the first position within the tolerance out of the list, not the nearest. Only the
// positions close the gap; all other fields stay in their rows.
void RemovePosition(float x, float tolerance) {
  for (int i = 1; i <= PeakRows(); ++i)
    if (std::fabs(ws.peaks(ptth, i) - x) < tolerance) return RemovePeak(i, ptth);
}

void OnPick(const Message& mouse, float tolerance) {
  const DataPoint at = ToData(mouse.x, mouse.y);
  if (!InView(at)) return;
  if (mouse.value1 == MouseLeft) AddPeak(at.x);
  if (mouse.value1 == MouseRight) RemovePosition(at.x, tolerance);
  WDialogPutInteger(FieldCount, ws.npeaks);
}

// Returns the button that ends the picking. When the window is closed the picks stay, and the close
// waits for the main loop.
int PickPeaks(float tolerance) {
  for (;;) {
    Message message;
    switch (WMessage(message)) {
      case MessageClose:
        PostMessage(message);
        return ButtonOk;
      case MessageMouseMove:
        ShowReadOuts(ToData(message.x, message.y));
        continue;  // changes nothing to be drawn
      case MessageMouseDown:
        OnPick(message, tolerance);
        break;
      case MessageButton:
        if (message.value1 != ButtonLower && message.value1 != ButtonHigher) return message.value1;
        Pan(message.value1);
        break;
    }
    RedrawView(0);
  }
}

}  // namespace

// All other commands wait until the dialog is closed. Positions are those of the axis on show.
void ManualPeakSearch() {
  if (ws.npts(SlotInput) < 1) return;
  ws.plotmask = PlotInput + PlotPeaks;
  RedrawView(0);
  const float tolerance = (ws.viewxmax - ws.viewxmin) / 200;
  WMessageEnable(MessageMouseDown, 1);  // and left on: the main loop zooms by mouse
  WDialogUndefined(0, 0, 0);
  WDialogLoad(DialogNumber);
  WDialogPutInteger(FieldCount, ws.npeaks);
  WDialogShow(-1, -1, 0, SemiModeless);
  const int button = PickPeaks(tolerance);
  if (ws.npeaks >= 2) SortPeaks();
  if (button == ButtonClear) ws.npeaks = 0;
  WDialogUnload();
}
