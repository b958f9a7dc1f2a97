// Auto peak search: runs of negative second difference of the smoothed pattern.
#include <algorithm>
#include <cmath>
#include <vector>

#include "background/background.h"
#include "background/curve.h"
#include "crystal/runningmeans.h"
#include "peaks/gaussmatch.h"
#include "peaks/peaklist.h"
#include "peaks/peaks.h"
#include "toolkit/toolkit.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

using List = std::vector<float>;  // from index 1; element 0 is not in use

// Sums over a window of m points, or m - 1 for an even m, divided by m, wherever it fits; else 0.
List MiddleMeans(const List& y, int m) {
  const int h = (m - 1) / 2, first = m / 2 + 1, size = static_cast<int>(y.size());
  List means(y.size());
  const int n = size - h - first;
  if (n < 1) return means;
  List padded(y.begin() + first - h, y.end()), inner(RoundedToBlocks(n));
  padded.resize(inner.size() + static_cast<std::size_t>(2 * h));
  RunningMeans(padded.data(), 2 * h + 1, m, inner.data(), n);
  std::copy_n(inner.begin(), n, means.begin() + first);
  return means;
}

// Moving average of both lists with a window of m points. Unlike the one of the Modify menu, which
// is only given odd windows, it takes even ones as they are: they scale a list by (m - 1)/m and
// leave point m/2 at 0. At the ends the window of y shrinks to what the list has, and x stays. A
// list too short for the ends does nothing.
void MovingAverage(List& x, List& y, int m) {
  const int n = static_cast<int>(y.size()) - 1, h = (m - 1) / 2;
  if (m < 2 || 2 * h > n) return;
  List xmean = MiddleMeans(x, m), ymean = MiddleMeans(y, m);
  float head = 0, tail = 0;
  for (int count = 1; count <= 2 * h; ++count) {
    head += y[count];
    tail += y[n + 1 - count];
    const int i = count - h;
    if (i < 1) continue;
    xmean[i] = x[i];
    xmean[n + 1 - i] = x[n + 1 - i];
    ymean[i] = head / static_cast<float>(count);
    ymean[n + 1 - i] = tail / static_cast<float>(count);
  }
  x.swap(xmean);
  y.swap(ymean);
}

// Falls from each point to the next, kept at the later one: d(i) = y(i-1) - y(i) from point `first`
// on, 0 before.
List Fall(const List& y, int first) {
  List d(y.size());
  for (std::size_t i = first; i < y.size(); ++i) d[i] = y[i - 1] - y[i];
  return d;
}

// Runs of negative e whose length lies within [lo, hi]. A run still open at the end is dropped.
// With lo = 0 an empty run counts too; it takes over the place of a run that was too long just
// before it.
std::vector<Candidate> FindRuns(const List& e, int lo, int hi) {
  constexpr float highest = 1.0e30f;
  std::vector<Candidate> found;
  Candidate open;
  int run = 0;
  float best = highest;
  for (int i = 3; i < static_cast<int>(e.size()); ++i) {
    if (e[i] < 0) {
      ++run;
      if (e[i] < best) {
        best = e[i];
        open.at = i;
      }
      open.width = run;
      continue;
    }
    if (lo <= run && run <= hi) {
      found.push_back(open);
      open = {};
    }
    run = 0;
    best = highest;
  }
  return found;
}

// Puts the background into slot 2, for the Background menu too: a window of about one degree, or
// two for broad peaks.
void SearchBackground(int n, float s) {
  int window = std::clamp(nint(1.0f / s), -MaxPoints, MaxPoints) + 1;
  if (ws.pkmaxfwhm > 0.5f) window = 2 * window - 1;
  PutBackgroundOnInputGrid();
  std::copy_n(&ws.yval(SlotInput, 1), n, &ws.yval(SlotBackground, 1));
  BackgroundEnvelope(ws.yval.row(SlotBackground).first(n), window, ws.autosubcycles);
}

}  // namespace

// Replaces the list by the peaks of slot 1, in degrees and counts, and leaves a background in
// slot 2. Fields that the search does not know keep what they held. A second difference is centred
// one point before the one it is kept at, so positions lie one step high; that stays. With more
// peaks than the list holds, `npeaks` ends one above the limit.
Outcome OnPeakSearch() {
  if (ws.debugmode) MessageBoxInfo("Progress", "Entering OnPeakSearch");
  ws.npeaks = 0;
  const int n = ws.npts(SlotInput);
  if (n < 2) return Outcome::Done;
  const float s = ws.xval(AxisTth, SlotInput, 2) - ws.xval(AxisTth, SlotInput, 1);
  if (s == 0) return Outcome::Done;
  SearchBackground(n, s);

  List x(n + 1), raw(n + 1);
  std::copy_n(&ws.xval(AxisTth, SlotInput, 1), n, &x[1]);
  std::copy_n(&ws.yval(SlotInput, 1), n, &raw[1]);
  List smooth = raw;
  MovingAverage(x, smooth, ws.pksmooth);
  List fall = Fall(smooth, 2);
  MovingAverage(x, fall, ws.pksmooth);

  const std::vector<Candidate> found =
      FindRuns(Fall(fall, 3), nint(ws.pkminfwhm / s), nint(ws.pkmaxfwhm / s));
  for (int j = 1; j <= static_cast<int>(found.size()); ++j) {
    const Candidate& c = found[j - 1];
    const GaussianMatch match = GaussMatch(raw, c, s);
    if (match.height <= 0 || match.root <= 0) continue;  // not a number passes
    // The background is read at the candidate's ordinal number, not at its point.
    const float background = ws.yval(SlotBackground, j);
    if (ws.pksigma * std::sqrt(background) > raw[c.at] - background) continue;
    if (++ws.npeaks > MaxPeaks) {
      TellListFull();
      break;
    }
    ws.peaks(ptth, ws.npeaks) = x[c.at];
    ws.peaks(pint, ws.npeaks) = raw[c.at];
    ws.peaks(pfwhm, ws.npeaks) = s * static_cast<float>(c.width);
  }
  RelistPeaks(ws.npeaks, PeakSearched);
  if (ws.npeaks > 0) ws.plotmask = PlotInput + PlotBackground + PlotPeaks;
  return Outcome::Done;
}
