// The views one by one, for LayView() and DrawView().
#pragma once

#include "plot/page.h"
#include "plot/plot.h"
#include "plot/scales.h"

ViewComplaint LayPatternPlot();
void DrawPatternPlot();
// The whole pattern and a form about its measurement, for paper alone.
ViewComplaint LayReport();
void DrawReport();
// The x axis of patterns, from the library's origin.
void DrawPatternAxis(const PageLayout& page, const Range& x, float xfactor);
// The analysis plots are drawn on the page as it is laid for all plots.
ViewComplaint DrawWidthPlot();  // FWHM and peak shape against two-theta
ViewComplaint DrawSizePlot();   // particle size, Williamson-Hall
