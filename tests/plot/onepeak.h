// A pattern of one peak, for tests that look at the pattern plot.
#pragma once

#include "plot/drawing.h"

// 401 points from 20 to 60 degrees: a floor of 100 counts and a peak of 1000 at 28.44 degrees.
inline constexpr float kPeak = 28.44f, kStep = 0.1f;
inline float Counts(float tth) { return 100 + 900 * std::exp(-(tth - kPeak) * (tth - kPeak) / 2); }
inline float D(float tth) { return 1.54056f / 2 / std::sin(tth / 2 / RadToDeg); }
inline float Q(float tth) { return 6.283185f / D(tth); }

// As the mouse leaves a rubber band.
inline void Band(float x1, float x2, float y1, float y2) {
  RedrawView(1);
  ws.bandx1 = ws.plotxmin = x1;
  ws.bandx2 = ws.plotxmax = x2;
  ws.bandy1 = y1;
  ws.bandy2 = y2;
  RedrawView(0);
}

// n points of two-theta from `first` on.
inline void FillSlot(int slot, int n, const std::function<float(float)>& counts, float first = 20,
                     float step = kStep) {
  ws.wavelen(slot) = 1.54056f;
  PutGrid(slot, first, step, n, counts);
  ComputeXAxes();
}

class PatternPlot : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    ws.viewmode = 1;
    ws.plotmask = PlotInput;
    FillSlot(SlotInput, 401, Counts);
    ws.stem20 = "silicon";
  }
};
