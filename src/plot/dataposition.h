// Positions of the mouse on the pattern plot in data units of the view on show.
#pragma once

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

// Writes a position within the view to the status bar.
void ShowReadOuts(DataPoint at);
