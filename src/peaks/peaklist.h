// The rules of the peak list that all its writers share: its limit, its order, and that what is
// noted of a row goes where the row goes.
#pragma once

#include "workspace/workspace.h"

// Rows that hold a peak. A search that found too many leaves `npeaks` one above the limit.
int PeakRows();
void TellListFull();

// Standard deviations; 0 where there is none.
struct PeakEsds {
  float position = 0, area = 0, fwhm = 0;
};

// A row behind the others, whose fields hold what they held. 0 if the list is full, which is told
// in the status bar.
int AppendPeak(PeakOrigin origin);
// The list is the first `rows` rows of `peaks` now, all of one origin.
void RelistPeaks(int rows, PeakOrigin origin);
// The fields of a row have been replaced; a fit leaves its indices.
void NotePeak(int row, PeakOrigin origin, const PeakEsds& esds = {});

// Whether area, widths and shapes of a row have come from a fit, be it by a file.
bool HasFittedProfile(int row);

// Rising two-theta.
void SortPeaks();

// Removes a row: fields 1 to `fields` of the rows behind it move up, the others stay. Rows that are
// not of one peak any more count as picked.
void RemovePeak(int row, int fields);
