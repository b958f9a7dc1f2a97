// The rules of the peak list that all its writers share: its limit, its order, and closing gaps.
#pragma once

// Rows that hold a peak. A search that found too many leaves `npeaks` one above the limit.
int PeakRows();

// True if a peak can be added; a full list is told in the status bar.
bool RoomForPeak();
void TellListFull();

// Rising two-theta.
void SortPeaks();

// Removes a row: fields 1 to `fields` of the rows behind it move up, the others stay.
void RemovePeak(int row, int fields);
