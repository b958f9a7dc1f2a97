// Patterns for the tests of the Modify menu.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "support/support.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

using Lines = std::vector<std::string>;

inline void PutPoints(int slot, const std::vector<float>& x, const std::vector<float>& y) {
  ws.npts(slot) = static_cast<int>(x.size());
  std::copy(x.begin(), x.end(), ws.xval.row(AxisTth, slot).begin());
  std::copy(y.begin(), y.end(), ws.yval.row(slot).begin());
}

// A fresh program with y(x) on an even grid in slot 1.
inline void PutPattern(float first, float step, int n, const std::function<double(double)>& y) {
  FreshWorkspace();
  ws.plotmask = PlotInput;
  ws.viewmode = 1;
  PutGrid(SlotInput, first, step, n, y);
  Events();
}

inline double Degrees(double x) { return x * M_PI / 180; }

inline double Gaussian(double x, double centre, double fwhm) {
  return std::exp(-4 * std::log(2.0) * (x - centre) * (x - centre) / (fwhm * fwhm));
}
