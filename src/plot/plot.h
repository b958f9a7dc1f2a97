// The views of the main window.
#pragma once

// Draws what `viewmode` names; with 1 the zoom is forgotten first.
void RedrawView(int fullrange);

void DrawPatternPlot();
void DrawWidthPlot();  // FWHM and peak shape against two-theta
void DrawSizePlot();   // particle size, Williamson-Hall

// Sets the check marks of the Plot menu from `plotmask`.
void UpdatePlotMenu();
