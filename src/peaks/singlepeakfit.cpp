// "Fit single peak": fits the peak in view in two passes, sizes it, and offers it to the peak list.
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "background/curve.h"  // for ReportFitCycle
#include "peaks/peaklist.h"
#include "peaks/peakprofile.h"
#include "peaks/peaks.h"
#include "plot/dataposition.h"
#include "plot/plot.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/slots.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

using namespace controls;

enum ResultsDialog { DialogNumber = 126, FieldPosition = 1151, FieldWidth, FieldShape, FieldSize };

constexpr Control kControls[] = {
    Label(FieldPosition, "Position / Intensity"),
    // Heads of the columns that the two rows below are written in.
    Fresh(Label(1155, "Side of the peak"), "  Left           Average                 Right"),
    Label(FieldWidth, "FWHM"),
    Label(FieldShape, "Peak shape"),
    Label(FieldSize, "Particle size", "\u00c5"),
    Ok,
    Cancel,
};
constexpr DialogResource kDialog{DialogNumber, "Single peak fit results", kControls};

using Parameters = std::array<float, 8>;  // in the order of PeakProfileFit

struct Points {
  std::vector<float> x, y;
};

// The part of slot 1 that the plot shows, whatever its axis, up to the first point beyond it.
Points CollectVisible() {
  float first = TwoThetaOf(ws.plotxmin), last = TwoThetaOf(ws.plotxmax);
  if (ws.xaxismode == AxisD) std::swap(first, last);
  Points points;
  for (int i = 1; i <= ws.npts(SlotInput); ++i) {
    const float x = ws.xval(AxisTth, SlotInput, i);
    if (x > last) break;
    if (x < first) continue;
    points.x.push_back(x);
    points.y.push_back(ws.yval(SlotInput, i));
  }
  return points;
}

float MeanWidth(const Parameters& p) { return (p[6] + p[4]) / 2; }
float MeanShape(const Parameters& p) { return (p[7] + p[5]) / 2; }

// Fits from the points alone. False if that failed, could not begin, or ended beyond all numbers.
bool FitPass(const Points& points, std::vector<float>& calc, Parameters& p) {
  p = {};
  calc.resize(points.x.size());
  WindowOutStatusBar(3, "");
  const FitWavelengths lines{ws.scanwave(1), ws.scanwave(2), ws.scanwave(3)};
  const FitResult fit =
      PeakProfileFit(points.x, points.y, calc, lines, p, [](int, float) { return true; });
  if (fit.end == FitEnd::NoInverse) MessageBoxError("Error", "Matrix inversion error");
  if (fit.end != FitEnd::Done || fit.cycles == 0) return false;
  ReportFitCycle(fit.cycles, fit.rw);
  return std::isfinite(MeanWidth(p)) && std::isfinite(MeanShape(p));
}

// The points up to `spfinalhw` mean widths from the position; none for a negative width.
Points CutToPeak(const Points& all, const Parameters& p) {
  const auto reached = std::ranges::find_if(all.x, [&](float x) { return x >= p[1]; });
  const int end = static_cast<int>(all.x.size());
  const int center = std::min(static_cast<int>(reached - all.x.begin()), end - 1);
  const long long wanted =
      static_cast<long long>(nint(MeanWidth(p) / FirstStepOf(SlotInput))) * ws.spfinalhw;
  const int reach = static_cast<int>(std::clamp<long long>(wanted, -1, MaxPoints));
  const int first = std::max(0, center - reach);
  const int behind = std::max(first, std::min(end, center + reach + 1));
  const auto cut = [&](const std::vector<float>& list) {
    return std::vector<float>(list.begin() + first, list.begin() + behind);
  };
  return {cut(all.x), cut(all.y)};
}

float InstrumentWidth(float position) {
  if (ws.spmode != 2) return ws.spminhw;
  const float t = std::tan(position / 2 / RadToDeg);
  return std::sqrt(std::max(1.0e-6f, ws.spu * t * t + ws.spv * t + ws.spw));
}

// Scherrer size in angstrom with the width that is left after the instrument's, by plain
// difference. A peak narrower than the instrument's gets a negative size; 0 where there is none.
float ParticleSize(float position, float width) {
  const float net = width - InstrumentWidth(position);
  if (std::fabs(net) <= 0.001f) return 0;
  const float size = ws.wavelen(1) * RadToDeg * ws.spgeom / std::cos(position / 2 / RadToDeg) / net;
  return std::isfinite(size) ? size : 0;
}

void KeepResults(const Parameters& p) {
  ws.sparea = p[0];
  ws.spposition = p[1];
  ws.spfwhmleft = p[4];
  ws.spfwhmright = p[6];
  ws.spfwhmmean = MeanWidth(p);
  ws.spshapeleft = p[5];
  ws.spshaperight = p[7];
  ws.spshapemean = MeanShape(p);
  ws.spsize = ParticleSize(ws.spposition, ws.spfwhmmean);
}

// Puts the calculated curve at its place in slot 4; curves of earlier fits stay elsewhere.
void CurveToRefined(const Points& piece, const std::vector<float>& calc) {
  const float before = piece.x.front() - FirstStepOf(SlotInput) / 5;
  int start = 0;
  for (int i = 1; i <= ws.npts(SlotInput); ++i) {
    const float x = ws.xval(AxisTth, SlotInput, i);
    ws.xval(AxisTth, SlotRefined, i) = x;
    if (x < before)
      start = i;
    else if (x > piece.x.back() || i - start > static_cast<int>(calc.size()))
      break;
    else
      ws.yval(SlotRefined, i) = calc[i - start - 1];
  }
  ws.npts(SlotRefined) = ws.npts(SlotInput);
}

// Writes the results to the first row within the tolerance, or to a new one. The left width and
// shape are not kept: they follow from the means and the right ones. Returns the row; 0 if the list
// was full.
int UpdateList() {
  const float tolerance = ws.sphwtol * ws.spfwhmmean;
  int row = 1;
  while (row <= PeakRows() && !(std::fabs(ws.peaks(ptth, row) - ws.spposition) <= tolerance)) ++row;
  if (row > PeakRows()) row = AppendPeak(PeakFitted);
  if (row == 0) return 0;
  NotePeak(row, PeakFitted);
  const float fields[] = {ws.spposition,  ws.sparea,      ws.spfwhmmean,
                          ws.spshapemean, ws.spfwhmright, ws.spshaperight};
  for (int field = ptth; field <= pshaper; ++field) ws.peaks(field, row) = fields[field - ptth];
  return row;
}

std::string LeftMeanRight(float left, float mean, float right) {
  return WriteRecord<"(f6.3,'      ',f12.3,'      ',f16.3)">(left, mean, right);
}

}  // namespace

bool AcceptPeakFit() {
  RefreshView();
  WRegisterDialogs({&kDialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(DialogNumber);
  WDialogPutString(FieldPosition,
                   WriteRecord<"(f10.3,'  deg.    /   ',f15.1)">(ws.spposition, ws.sparea));
  WDialogPutString(FieldWidth, LeftMeanRight(ws.spfwhmleft, ws.spfwhmmean, ws.spfwhmright));
  WDialogPutString(FieldShape, LeftMeanRight(ws.spshapeleft, ws.spshapemean, ws.spshaperight));
  WDialogPutString(FieldSize, WriteRecord<"(f10.0)">(ws.spsize));
  WDialogShow(-1, -1, 0, Modal);
  const bool accepted = WInfoDialog(4) == ButtonOk;
  WDialogUnload();
  return accepted;
}

// Leaves the results, the curve in slot 4 and a row in the list. Cancel takes the row out again,
// and with it a peak that stood there before the fit. A fit that fails changes nothing.
Outcome SinglePeakFit(const std::function<bool()>& accept) {
  const Points visible = CollectVisible();
  std::vector<float> calc;
  Parameters p;
  Points piece;
  bool fitted = FitPass(visible, calc, p);
  if (fitted) {
    piece = CutToPeak(visible, p);
    fitted = FitPass(piece, calc, p);
  }
  if (!fitted) {
    MessageBoxError("Error", "Peak fit error");
    return Outcome::Failed;
  }
  KeepResults(p);
  EndOverlayFit();
  CurveToRefined(piece, calc);
  const int row = UpdateList();
  ws.plotmask = PlotInput + PlotRefined + PlotPeaks;
  if (!accept || accept()) {
    ws.plotmask = PlotInput + PlotRefined + PlotResidual + PlotPeaks;
    return Outcome::Done;
  }
  if (row > 0) RemovePeak(row, pmult);
  ws.plotmask = PlotInput;
  return Outcome::Done;
}
