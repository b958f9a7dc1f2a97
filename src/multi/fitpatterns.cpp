// "Fit patterns": overlay 1 fitted to the pattern.
#include <algorithm>

#include "crystal/chebyshev.h"
#include "multi/commongrid.h"
#include "multi/multi.h"
#include "multi/overlayfit.h"
#include "multi/overlays.h"
#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/record.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr int kObserved = SlotOverlay + 1;  // where there is no overlay 2
constexpr float kTrySteps = 2;              // from one zero tried to the next
static_assert(MaxChebyshev <= kChebyshevTerms);

std::span<float> Background() {
  return ws.bgcoef.row().first(std::clamp(ws.fitbgorder, 1, MaxChebyshev) - 1);
}

Outcome Clear() {
  ws.fitscale = 1;
  ws.fitzero = 0;
  ws.fitbgorder = 1;
  ws.fitscalerefine = ws.fitzerorefine = 0;
  EndOverlayFit();
  ws.bgcoef.fill(0);
  WindowOutStatusBar(3, "");
  return Outcome::Done;
}

bool ReportCycle(int cycle, float r) {
  return WProgress(3, WriteRecord<"('Cycle ',i3,'  R= 'f6.4)">(cycle, r));
}

// The pattern and the overlay as it was opened, within their common range.
struct Counts {
  std::span<const float> observed, overlay;
  float step;
};

Counts CopyCommonPoints(const CommonGrid& grid) {
  for (int slot : {static_cast<int>(SlotScratch), static_cast<int>(SlotRefined)})
    CopyPoints(SlotOverlay, grid.first[1], grid.points, slot);
  if (ws.noverlay < 2) CopyPoints(SlotInput, grid.first[0], grid.points, kObserved);
  ComputeSlotAxes(SlotRefined, ws.axiswave);
  ws.fitmin2th = FirstTth(SlotScratch);
  ws.fitmax2th = LastTth(SlotScratch);
  return {IntensityOf(SlotInput).subspan(grid.first[0], grid.points),
          IntensityOf(SlotOverlay).subspan(grid.first[1], grid.points), grid.step};
}

OverlayFitResult FitAt(const Counts& counts, float zero) {
  ws.fitzero = zero;
  if (ws.debugmode && IsShift(zero))
    MessageBoxInfo("Progress", WriteRecord<"(a,i5)">("nstep", WholeSteps(zero, counts.step)));
  ResampleOverlay(TthOf(SlotScratch), counts.overlay, zero, counts.step, IntensityOf(SlotScratch));
  ws.ncycles = kOverlayFitCycles;
  const OverlayFitResult result = FitOverlay({.x = TthOf(SlotScratch),
                                              .observed = counts.observed,
                                              .overlay = IntensityOf(SlotScratch),
                                              .calculated = IntensityOf(SlotRefined),
                                              .xmin = ws.fitmin2th,
                                              .xmax = ws.fitmax2th,
                                              .coef = Background(),
                                              .scale = ws.fitscale,
                                              .refinescale = ws.fitscalerefine != 0,
                                              .diagdamp = ws.diagdamp},
                                             ReportCycle);
  ws.diagdamp = 1;
  ws.profrvalue = result.r;
  return result;
}

Outcome Tell(const OverlayFitResult& result) {
  if (result.end == FitEnd::Done) return Outcome::Done;
  if (result.end == FitEnd::Stopped) return Outcome::Cancelled;
  std::string text = "Matrix inversion error";
  if (result.end == FitEnd::Diverged) text = "The fit has gone beyond all numbers";
  if (result.zeroderivatives > 0)
    text = WriteRecord<"('Zero derivatives ',i4)">(result.zeroderivatives);
  MessageBoxError("Error", text);
  return Outcome::Failed;
}

std::string NoMinimum(float zero, const std::array<float, 3>& away, const std::array<float, 3>& r) {
  const auto at = [&](int k) {
    return LeftAlign(RealField(r[k], 10, 4)) + " at " + LeftAlign(RealField(zero + away[k], 12, 4));
  };
  return "R is " + at(0) + ", " + at(1) + " and " + at(2) +
         " degrees: no minimum lies there, try another two-theta zero";
}

// Three fits make a parabola of r, and a last one goes where it is lowest. The parabola counts from
// the zero of before: where that is far from 0, squares of zeros would differ too little.
Outcome FitZero(const Counts& counts) {
  const float before = ws.fitzero, apart = kTrySteps * counts.step;
  const std::array<float, 3> away{-apart, 0, apart};
  std::array<float, 3> r{};
  for (int k = 0; k < 3; ++k) {
    const OverlayFitResult result = FitAt(counts, before + away[k]);
    if (result.end != FitEnd::Done) return Tell(result);
    r[k] = result.r;
  }
  const auto lowest = ParabolaMinimum(away, r);
  if (lowest) return Tell(FitAt(counts, before + *lowest));
  MessageBoxError("Zero Shift Error",
                  "Problems optimizing zero shift\n" + NoMinimum(before, away, r));
  ws.fitzero = before;
  return Outcome::Failed;
}

// Limits and terms are those of the curve, whatever has been entered for a fit since then.
std::string FitLine(int i, float observed) {
  const float x = ws.xval(AxisTth, SlotRefined, i);
  const float background =
      ChebyshevValue(ws.bgcoef.row(), x, FirstTth(SlotRefined), LastTth(SlotRefined));
  std::string line = RealField(x, 10, 4);
  for (float y : {ws.yval(SlotRefined, i), observed, 0 - background}) line += IntField(nint(y), 10);
  return line;
}

}  // namespace

Outcome FitPatterns() {
  if (ws.fitpatmode == FitPatternsClear) return Clear();
  ws.fitshown = 0;
  if (ws.noverlay < 1) {
    MessageBoxError("Pattern Error", "There is no pattern to fit: open one first");
    return Outcome::Failed;
  }
  const auto grid = FindCommonGrid(1, StepComplaint::Plain);
  if (!grid) return Outcome::Failed;
  const Counts counts = CopyCommonPoints(*grid);
  std::ranges::fill(ws.bgcoef.row().subspan(Background().size()), 0.0f);
  const Outcome outcome = ws.fitzerorefine ? FitZero(counts) : Tell(FitAt(counts, ws.fitzero));
  ws.fitshown = outcome == Outcome::Done;
  return outcome;
}

Outcome SaveFittedPattern(const std::string& path) {
  LineWriter file(path);
  if (!file.IsOpen()) {
    MessageBoxError("File error", FileMessage("Error opening fit file", path, file.Reason()));
    return Outcome::Failed;
  }
  bool good = true;
  const std::span<const float> observed = IntensityOf(SlotInput).subspan(PointsBeforeFit());
  const int n = static_cast<int>(std::min(IntensityOf(SlotRefined).size(), observed.size()));
  for (int i = 1; i <= n && good; ++i) good = file.Write(FitLine(i, observed[i - 1]));
  if (file.Close() && good) return Outcome::Done;
  MessageBoxError("File Error", FileMessage("Error writing fit file", path, file.Reason()));
  return Outcome::Failed;
}
