// "General peak fit": the stages of the whole-pattern fit, one after the other.
#include <algorithm>
#include <string>
#include <utility>

#include "background/curve.h"  // for ReportFitCycle
#include "crystal/reflections.h"
#include "fit/calculate.h"
#include "fit/fit.h"
#include "fit/fitbackground.h"
#include "fit/intensities.h"
#include "fit/parameters.h"
#include "fit/profiles.h"
#include "fit/refine.h"
#include "peaks/peaklist.h"
#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

enum FitRun { RunRefine = 1, RunCalculate = 2 };
enum PositionMode { IndividualPositions = 1, UnitCellPositions = 2 };

constexpr const char* kLog = "%refine.out";
constexpr const char* kNoLog = "/dev/null";

FitModel WorkspaceModel() {
  const auto n = static_cast<std::size_t>(ws.npts(SlotInput));
  return {.x = TthOf(SlotInput),
          .y = IntensityOf(SlotInput),
          .background = ws.yval.row(SlotBackground).first(n),
          .net = ws.yval.row(SlotNet).first(n),
          .calculated = ws.yval.row(SlotRefined).first(n),
          .ptrefl = ws.ptrefl,
          .fit = ws,
          .peaks = ws.peaks,
          .npeaks = ws.npeaks,
          .scanwave = ws.scanwave,
          .wavelength = ws.wavelen.cells[0]};
}

void Progress(const char* text) {
  if (ws.debugmode) MessageBoxInfo("Progress", text);
}

// A cell without lengths takes the one of the last fit. The range lies within the pattern, and is
// all of it when it is upside down.
void PutRight(const FitModel& model) {
  const auto& cell = ws.cell.cells;
  if (std::any_of(cell.begin(), cell.begin() + 3, [](float edge) { return !(edge > 0); }))
    ws.cell = ws.cellfallback;
  ws.cellfallback = ws.cell;
  const float first = model.x.front(), last = model.x.back();
  if (!(ws.fitmin2th < ws.fitmax2th)) ws.fitmin2th = first, ws.fitmax2th = last;
  if (!(ws.fitmin2th >= first && ws.fitmin2th < last)) ws.fitmin2th = first;
  if (!(ws.fitmax2th > first && ws.fitmax2th <= last)) ws.fitmax2th = last;
}

// Replaces the peak list by the reflections of the cell. False if that has no volume.
bool PutReflections() {
  const TthRange range{ws.fitmin2th, ws.fitmax2th};
  const auto found =
      AssignReflections(ws.cell, ws.laueclass, ws.centering, range, ws.wavelen.cells[0], Progress);
  if (!found) {
    MessageBoxError("Error", "The unit cell has no volume");
    return false;
  }
  RelistPeaks(static_cast<int>(found->size()), PeakCalculated);
  for (int j = 1; j <= ws.npeaks; ++j) {
    const Reflection& r = (*found)[j - 1];
    for (int field = ptth; field <= pmult; ++field) ws.peaks(field, j) = 0;
    ws.peaks(ptth, j) = r.tth;
    ws.peaks(phkl, j) = static_cast<float>(PackHkl(r.hkl));
    ws.peaks(pmult, j) = static_cast<float>(r.multiplicity);
  }
  return true;
}

Outcome Calculate(FitModel& model) {
  if (ws.fitposmode == UnitCellPositions) {
    if (!PutReflections()) return Outcome::Failed;
    Progress("AssignReflections done");
  }
  AssignProfiles(model);
  Progress("AssignProfiles done");
  AssignBackground(model, ws.autosubcycles);
  Progress("AssignBackground done");
  AssignIntensities(model);
  Progress("AssignIntensities done");
  CalculatePattern(model);
  Progress("CalculatePattern done");
  return Outcome::Done;
}

void TellTooMany(int npar, const ParameterNumbers& numbers) {
  int intensities = 0, before = 0;
  for (int number : numbers.intparam.cells) {
    intensities += number > 0 && number != before;
    before = number;
  }
  const auto text = [](int n) { return std::to_string(n); };
  MessageBoxError("Error", text(npar) + " parameters are to be refined, and " +
                               text(MaxFitParameters) + " is the most.\n" + text(intensities) +
                               " of them are intensities: take a narrower range of two-theta, a "
                               "larger \"Min FWHM separation\", fewer background terms, or turn "
                               "off " +
                               text(npar - MaxFitParameters) + " of the others.");
}

void Tell(const RefineResult& result) {
  switch (result.end) {
    case RefineEnd::ZeroDerivatives:
      MessageBoxError("Error", WriteRecord<"('Zero derivatives ',i4)">(result.zeroderivatives));
      break;
    case RefineEnd::NoInverse:
      MessageBoxError("Error", "Matrix inversion error");
      break;
    case RefineEnd::Diverged:
      MessageBoxError("Error", "The refinement has gone beyond all numbers");
      break;
    default:
      break;
  }
}

// The cycles so far, the last ones in percent: "Rwp 21.3 15.1 8.9 %".
class CycleReport {
 public:
  bool operator()(int cycle, float rwp) {
    constexpr std::size_t kMost = 4;
    shown_.push_back(LeftAlign(RealField(100 * rwp, 8, 2)));
    if (shown_.size() > kMost) shown_.erase(shown_.begin());
    std::string text = "Rwp";
    for (const std::string& value : shown_) text += " " + value;
    WindowOutStatusBar(4, text + " %");
    return ReportFitCycle(cycle, rwp);
  }

 private:
  std::vector<std::string> shown_;
};

// The background polynomial goes where the Background menu finds it.
void KeepBackground() {
  ws.chebycoef = ws.bgcoef;
  ws.chebyused = BackgroundTerms(ws);
  ws.chebyxmin = ws.fitmin2th;
  ws.chebyxmax = ws.fitmax2th;
}

Outcome RefineModel(FitModel& model) {
  if (ws.fitposmode == IndividualPositions) PreparePeaks(model);
  if (ws.nbkgcycles >= 1 && ws.fitposmode == UnitCellPositions && !PutReflections())
    return Outcome::Failed;
  AssignProfiles(model);
  Progress("AssignProfiles done");
  if (ws.nbkgcycles >= 1) {
    AssignBackground(model, ws.autosubcycles);
    AssignIntensities(model);
    CalculatePattern(model);
  }
  if (ws.nbkgcycles == 2) ReassignIntensities(model);
  ParameterNumbers numbers = AssignParameters(model);
  if (numbers.npar > MaxFitParameters) {
    TellTooMany(numbers.npar, numbers);
    return Outcome::Failed;
  }
  ws.refineout = ws.fitlog ? kLog : "";
  LineWriter log(ws.fitlog ? kLog : kNoLog);
  if (!log.IsOpen()) {
    MessageBoxError("File Error", FileMessage("Error opening output file", kLog, log.Reason()));
    return Outcome::Failed;
  }
  const RefineResult result = Refine(model, numbers, log, CycleReport());
  if (!log.Close())
    MessageBoxError("File Error", FileMessage("Error writing output file", kLog, log.Reason()));
  if (result.end == RefineEnd::Stopped) return Outcome::Cancelled;
  if (result.end != RefineEnd::Done) {
    Tell(result);
    return Outcome::Failed;
  }
  KeepBackground();
  return Outcome::Done;
}

}  // namespace

Outcome GeneralFit() {
  if (ws.npts(SlotInput) < 1) return Outcome::Idle;
  EndOverlayFit();
  if (const auto start = std::exchange(ws.fitstart, std::nullopt))
    static_cast<FitValues&>(ws) = *start;
  FitModel model = WorkspaceModel();
  PutRight(model);
  Progress("start fitting or calculation");
  Outcome outcome = Outcome::Done;
  if (ws.fitrun == RunCalculate) outcome = Calculate(model);
  if (ws.fitrun == RunRefine) outcome = RefineModel(model);
  if (outcome != Outcome::Done) return outcome;
  ws.plotmask = PlotInput + PlotRefined + PlotResidual + PlotPeaks;
  if (ws.fitrun == 0) return outcome;
  RelistPeaks(ws.npeaks, ws.fitrun == RunRefine ? PeakFitted : PeakCalculated);
  // Background and calculated pattern lie on the points of the pattern, on every axis.
  for (int slot : {SlotBackground, SlotRefined}) {
    for (int axis = AxisTth; axis <= AxisQ; ++axis)
      std::ranges::copy(ws.xval.row(axis, SlotInput).first(model.x.size()),
                        ws.xval.row(axis, slot).begin());
    ws.npts(slot) = ws.npts(SlotInput);
  }
  return outcome;
}
