// The Background menu: one background curve in slot 2.
#pragma once

#include <span>

void BackgroundFromFile();
void RefinedBackground();
void ScaleBackground();
void ScaleToInterval();
void SubtractBackground();
void Autosubtract();
void Crystallinity();
void SaveBackground();
void ClearBackground();

// Sinks y onto its background, in place: `cycles` running means of w points that are never allowed
// above the curve, and a last mean of 15 points.
void BackgroundEnvelope(std::span<float> y, int w, int cycles);

// Points set with the mouse beside the plot, and the curve through them.
void ManualBackgroundDialog();
void FitManualBackground();
