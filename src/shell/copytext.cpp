// Peaks and points as texts for other programs.
#include "shell/copytext.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "crystal/hklcode.h"
#include "peaks/peaklist.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

std::string Line(std::span<const std::string> cells) {
  std::string line;
  for (const std::string& cell : cells) line += cell + (&cell == &cells.back() ? '\n' : '\t');
  return line;
}

// ---- Peaks ----

float Spacing(float tth) {
  return tth > 0 ? (ws.axiswave * 0.5f) / std::sin(tth * 0.5f / RadToDeg) : 0.0f;
}

void AppendIndices(std::vector<std::string>& cells, int code) {
  const Hkl r = UnpackHkl(code);
  const bool reflection = code != 0 && code != PackHkl({}) && PackHkl(r) == code;
  for (const int index : {r.h, r.k, r.l})
    cells.push_back(reflection ? std::to_string(index) : std::string());
}

// ---- Points ----

struct Curve {
  std::string name;
  std::span<const float> counts;
};

// What is drawn beside the primary curve.
std::vector<Curve> OtherCurves(int primary) {
  std::vector<Curve> curves;
  const auto add = [&](int slot, int n, const std::string& name) {
    if (slot != primary && OnGridOf(primary, slot, n)) curves.push_back({name, ws.yval.row(slot)});
  };
  const bool fit = ws.fitshown == 1;
  if (ws.plotmask & PlotBackground) add(SlotBackground, ws.npts(SlotInput), "Background");
  if (fit || (ws.plotmask & PlotRefined))
    add(SlotRefined, ws.npts(SlotRefined), fit ? "Fitted pattern" : "Refined pattern");
  for (int k = 1; k <= ws.noverlay && !fit; ++k)
    add(SlotOverlay + k - 1, ws.npts(SlotOverlay + k - 1), FileStem(ws.overlayname(k)));
  return curves;
}

// By slot, from 1.
constexpr const char* kPrimaryNames[] = {"Pattern", "Background", "Difference (A-B)",
                                         "Refined pattern"};

}  // namespace

std::string PeaksAsText() {
  static const std::string kHeads[] = {"2\u03b8 (\u00b0)",
                                       "d (\u00c5)",
                                       "Intensity (counts; of a fit: area)",
                                       "FWHM (\u00b0)",
                                       "Shape",
                                       "h",
                                       "k",
                                       "l"};
  std::string text = Line(kHeads);
  for (int j = 1; j <= PeakRows(); ++j) {
    std::vector<std::string> cells;
    const float tth = ws.peaks(ptth, j);
    for (const float value :
         {tth, Spacing(tth), ws.peaks(pint, j), ws.peaks(pfwhm, j), ws.peaks(pshape, j)})
      cells.push_back(AllDigits(value));
    AppendIndices(cells, ws.peakindexed(j) ? nint(ws.peaks(phkl, j)) : 0);
    text += Line(cells);
  }
  return text;
}

bool HasPointsInView() { return ws.viewmode == 1 && ws.plotmask > 0 && ws.npts(ActiveSlot()) > 0; }

std::string PointsAsText() {
  const int primary = ActiveSlot();
  std::vector<Curve> curves = OtherCurves(primary);
  curves.insert(curves.begin(), {kPrimaryNames[primary - 1], ws.yval.row(primary)});
  std::vector<std::string> cells{"2\u03b8 (\u00b0)", "d (\u00c5)", "Q (\u00c5\u207b\u00b9)"};
  for (const Curve& curve : curves) cells.push_back(curve.name + " (counts)");
  std::string text = Line(cells);
  for (int i = 1; i <= ws.npts(primary); ++i) {
    const float shown = ws.xval(ws.xaxismode, primary, i);
    if (!(shown >= ws.curvexmin && shown <= ws.curvexmax)) continue;
    cells.clear();
    for (int axis = AxisTth; axis <= AxisQ; ++axis)
      cells.push_back(AllDigits(ws.xval(axis, primary, i)));
    for (const Curve& curve : curves) cells.push_back(AllDigits(curve.counts[i - 1]));
    text += Line(cells);
  }
  return text;
}
