// "Fit all peaks": every peak of the list is fitted, together with those that it overlaps.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "background/background.h"
#include "peaks/fitpeaks.h"
#include "peaks/peaklist.h"
#include "peaks/peaks.h"
#include "toolkit/toolkit.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

// Under all peaks up to about a degree wide.
std::vector<float> EstimatedBackground() {
  const auto y = IntensityOf(SlotInput);
  std::vector<float> background(y.begin(), y.end());
  const float step = FirstStepOf(SlotInput);
  const int window = step > 0 ? std::clamp(nint(1 / step), 1, MaxPoints) + 1 : 1;
  BackgroundEnvelope(background, window, ws.autosubcycles);
  // Sums of the largest numbers there are go beyond them.
  for (std::size_t i = 0; i < y.size(); ++i)
    if (!std::isfinite(background[i])) background[i] = y[i];
  return background;
}

// A row keeps its indices, and all that it held if there is no fit of it.
void PutFit(const PeakFit& fit, int row) {
  if (!fit.fitted) {
    ws.peakfailed(row) = 1;
    return;
  }
  const SplitPeak& p = fit.peak;
  const double fields[] = {p.position, p.area, p.Fwhm(), p.Shape(), p.right, p.rightshape};
  for (int field = ptth; field <= pshaper; ++field)
    ws.peaks(field, row) = static_cast<float>(fields[field - ptth]);
  NotePeak(row, PeakFitted,
           {static_cast<float>(fit.positionesd), static_cast<float>(fit.areaesd),
            static_cast<float>(fit.fwhmesd)});
}

void PutCurve(const std::vector<float>& curve) {
  const std::size_t n = curve.size();
  std::ranges::copy(curve, ws.yval.row(SlotRefined).begin());
  for (int axis = AxisTth; axis <= AxisQ; ++axis)
    std::ranges::copy(ws.xval.row(axis, SlotInput).first(n),
                      ws.xval.row(axis, SlotRefined).begin());
  ws.npts(SlotRefined) = ws.npts(SlotInput);
}

void TellFitted(int fitted, int all) {
  const std::string peaks = std::to_string(all) + (all == 1 ? " peak fitted" : " peaks fitted");
  WindowOutStatusBar(3, fitted == all ? peaks
                                      : std::to_string(fitted) + " of " + peaks + ", " +
                                            std::to_string(all - fitted) + " did not converge");
}

}  // namespace

Outcome FitAllPeaks() {
  const int rows = PeakRows();
  if (rows < 1) {
    MessageBoxError("Error", "No peaks in list");
    return Outcome::Failed;
  }
  SortPeaks();
  const std::vector<float> background = EstimatedBackground();
  const PeakFits fits = FitPeaks(
      {TthOf(SlotInput), IntensityOf(SlotInput), background}, ws.peaks.row(ptth).first(rows),
      {ws.scanwave(1), ws.scanwave(2), ws.scanwave(3)}, [](int done, int all) {
        return WProgress(3, std::to_string(done) + " of " + std::to_string(all));
      });
  if (fits.stopped) return Outcome::Cancelled;
  for (int row = 1; row <= rows; ++row) PutFit(fits.peaks[row - 1], row);
  SortPeaks();
  EndOverlayFit();
  PutCurve(fits.curve);
  ws.plotmask = PlotInput + PlotRefined + PlotResidual + PlotPeaks;
  TellFitted(static_cast<int>(std::ranges::count_if(fits.peaks, &PeakFit::fitted)), rows);
  return Outcome::Done;
}
