// The rules of the peak list that all its writers share.
#include "peaks/peaklist.h"

#include <algorithm>

#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

// Everything that is kept of a row.
void CopyRow(const PeakTables& from, int row, int to) {
  for (int field = ptth; field <= pmult; ++field) ws.peaks(field, to) = from.peaks(field, row);
  ws.peakorigin(to) = from.peakorigin(row);
  ws.peakfailed(to) = from.peakfailed(row);
  for (int k = 1; k <= 3; ++k) ws.peakesd(k, to) = from.peakesd(k, row);
  ws.peakindexed(to) = from.peakindexed(row);
}

}  // namespace

int PeakRows() { return std::min(ws.npeaks, MaxPeaks); }

void TellListFull() {
  WindowOutStatusBar(3, WriteRecord<"('Peak list is full: ',i3,' peaks')">(MaxPeaks));
}

int AppendPeak(PeakOrigin origin) {
  if (PeakRows() == MaxPeaks) {
    TellListFull();
    return 0;
  }
  ws.peakindexed(++ws.npeaks) = 0;
  NotePeak(ws.npeaks, origin);
  return ws.npeaks;
}

void RelistPeaks(int rows, PeakOrigin origin) {
  ws.npeaks = rows;
  for (int i = 1; i <= PeakRows(); ++i) NotePeak(i, origin);
}

void NotePeak(int row, PeakOrigin origin, const PeakEsds& esds) {
  ws.peakorigin(row) = origin;
  ws.peakfailed(row) = 0;
  ws.peakesd(1, row) = esds.position;
  ws.peakesd(2, row) = esds.area;
  ws.peakesd(3, row) = esds.fwhm;
  if (origin != PeakFitted) ws.peakindexed(row) = origin > PeakFitted;
}

// Nothing but a fit writes the width of one side.
bool HasFittedProfile(int row) {
  const int origin = ws.peakorigin(row);
  return origin == PeakFitted || (origin == PeakLoaded && ws.peaks(pfwhmr, row) > 0);
}

// Sorts the places of the rows, and puts the rows in their order.
void SortPeaks() {
  const PeakTables before = ws;
  const int rows = PeakRows();
  Table<float, 2, MaxPeaks> order;
  for (int i = 1; i <= rows; ++i) {
    order(1, i) = before.peaks(ptth, i);
    order(2, i) = static_cast<float>(i);
  }
  RowSort(&order(1, 1), MaxPeaks, 2, rows, 1);
  for (int i = 1; i <= rows; ++i) CopyRow(before, nint(order(2, i)), i);
}

void RemovePeak(int row, int fields) {
  const int rows = PeakRows();
  for (int i = row; i < rows; ++i) {
    if (fields == pmult) {
      CopyRow(ws, i + 1, i);
      continue;
    }
    for (int field = ptth; field <= fields; ++field) ws.peaks(field, i) = ws.peaks(field, i + 1);
    NotePeak(i, PeakPicked);
  }
  ws.npeaks = rows - 1;
}
