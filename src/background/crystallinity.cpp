// The share of the peaks in the scattered intensity.
#include <algorithm>
#include <cmath>

#include "background/background.h"
#include "workspace/slots.h"

namespace {

// Length of the scattering vector, in reciprocal angstrom.
float ScatteringVector(float tth) { return 2.0f * std::sin(0.5f * tth / RadToDeg) / ws.wavelen(1); }

}  // namespace

// Integrates pattern and background over the scattering vector s from cryststart to crystend, with
// the weight s squared. The background counts as the amorphous part.
Outcome Crystallinity() {
  if (ws.npts(SlotInput) < 2) return Outcome::Done;
  ws.cryststart = std::max(ws.cryststart, FirstTth(SlotInput));
  ws.crystend = std::min(ws.crystend, LastTth(SlotInput));
  if (!(ws.crystend > ws.cryststart)) return Outcome::Done;
  if (ws.wavelen(1) <= 0.1f) {
    ws.wavelen(1) = 1.5406f;
    ComputeXAxes();
  }

  const float first = ws.xval(AxisTth, SlotInput, 1), second = ws.xval(AxisTth, SlotInput, 2);
  float before = ScatteringVector(2.0f * first - second);  // one step in front of the first point
  float all = 0, amorphous = 0;
  for (int i = 1; i <= ws.npts(SlotInput); ++i) {
    const float tth = ws.xval(AxisTth, SlotInput, i);
    const float s = ScatteringVector(tth);
    if (tth >= ws.cryststart && tth <= ws.crystend) {
      all += (s - before) * ws.yval(SlotInput, i) * (s * s);
      amorphous += (s - before) * ws.yval(SlotBackground, i) * (s * s);
    }
    before = s;
  }
  const float percent = 100.0f * (all - amorphous) / all;
  ws.crystallinity = all > 0.1f && std::isfinite(percent) ? percent : 0.0f;
  ws.plotmask = PlotInput + PlotBackground;
  return Outcome::Done;
}
