// The peak list: search, manual picking, files, and the fit of a single peak.
#pragma once

void OnPeakSearch();
void ManualPeakSearch();
void SavePeaks();
void LoadPeaks();
void EditPeaks();
void ClearPeaks();

// Fits one split pseudo-Voigt peak on a sloping background to the visible part of slot 1.
void SinglePeakFit();
