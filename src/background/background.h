// The Background menu: one background curve in slot 2.
#pragma once

void BackgroundFromFile();
void RefinedBackground();
void ScaleBackground();
void ScaleToInterval();
void SubtractBackground();
void Autosubtract();
void Crystallinity();
void SaveBackground();
void ClearBackground();

// Sinks y[0..n) onto its background, in place: `autosubcycles` running means of w points that are
// never allowed above the curve, and a last mean of 15 points.
void BackgroundEnvelope(float* y, int n, int w);

// Points set with the mouse beside the plot, and the curve through them.
void ManualBackgroundDialog();
void FitManualBackground();
