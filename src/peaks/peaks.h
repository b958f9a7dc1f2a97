// The peak list: search, manual picking, files, and the fit of a single peak.
#pragma once

#include <span>

void OnPeakSearch();
void ManualPeakSearch();
void SavePeaks();
void LoadPeaks();
void EditPeaks();
void ClearPeaks();

// Fits one split pseudo-Voigt peak on a sloping background to the visible part of slot 1.
void SinglePeakFit();

// Refines p[8] = area, position, background, slope, left FWHM and shape, right FWHM and shape, to N
// points; calc receives the calculated values. Returns 0, or -1 after a failed matrix inversion.
int PeakProfileFit(const float* x, const float* y, float* calc, int N, std::span<float, 8> p);
