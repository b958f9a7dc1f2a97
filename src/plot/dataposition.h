// Positions of the mouse on the pattern plot in data units of the view on show, and what they are
// in the pattern: two-theta in degrees and counts.
#pragma once

#include "plot/scales.h"  // for Log10
#include "workspace/workspace.h"

struct DataPoint {
  float x, y;
};

inline DataPoint ToData(float x, float y) {
  return {(x - ws.plotx0) * ws.xperunit + ws.viewxmin, (y - ws.ploty0) * ws.yperunit + ws.viewymin};
}

inline bool InView(DataPoint at) {
  return at.x >= ws.viewxmin && at.x <= ws.viewxmax && at.y >= ws.viewymin && at.y <= ws.viewymax;
}

// From two-theta to the x axis on show and back, with the wavelength of its d and Q; 0 where there
// is no such place.
float ShownX(float tth);
float TwoThetaOf(float shownx);

inline bool LogarithmicY() { return ws.yaxismode == 2; }

// Counts as the y axis shows them; what has no logarithm stands at 0.
inline float ShownY(float counts) {
  if (!LogarithmicY()) return counts;
  return counts > 0 ? Log10(counts) : 0.0f;
}

// d in angstrom of a two-theta above 0, with the wavelength of the axes.
float SpacingOf(float tth);

DataPoint ShownPosition(DataPoint stored);
DataPoint StoredPosition(DataPoint shown);

// Writes a position within the view to the status bar: as the axes show it, and as two-theta, d and
// Q with the wavelength that they stand for, which is marked if nobody has stated it.
void ShowReadOuts(DataPoint at);
// Takes a wavelength that is no longer in use off the status bar.
void RefreshWavelength();
