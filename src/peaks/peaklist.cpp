// The rules of the peak list that all its writers share.
#include "peaks/peaklist.h"

#include <algorithm>

#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

int PeakRows() { return std::min(ws.npeaks, MaxPeaks); }

bool RoomForPeak() {
  if (PeakRows() < MaxPeaks) return true;
  TellListFull();
  return false;
}

void TellListFull() {
  WindowOutStatusBar(3, WriteRecord<"('Peak list is full: ',i3,' peaks')">(MaxPeaks));
}

void SortPeaks() { RowSort(&ws.peaks(ptth, 1), MaxPeaks + 1, pmult, PeakRows(), ptth); }

void RemovePeak(int row, int fields) {
  const int rows = PeakRows();
  for (int field = ptth; field <= fields; ++field)
    for (int i = row; i < rows; ++i) ws.peaks(field, i) = ws.peaks(field, i + 1);
  ws.npeaks = rows - 1;
}
