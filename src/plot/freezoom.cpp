// Zoom and pan of the pattern plot with limits that are not rounded.
#include "plot/freezoom.h"

#include <algorithm>
#include <cmath>

#include "plot/guestview.h"
#include "plot/patternranges.h"
#include "plot/penplot.h"  // for NearestIndex
#include "workspace/workspace.h"

namespace {

constexpr float kNotch = 1.25f;       // a notch of the wheel
constexpr float kScroll = 0.1f;       // share of the view, by a notch across
constexpr float kMostNotches = 100;   // at once
constexpr float kLeastSteps = 10;     // of the pattern, in the smallest view
constexpr float kLeastCounts = 5;     // in height, or
constexpr float kLeastShare = 0.01f;  // of the whole, for counts that are ratios
constexpr float kResolution = 1e-5f;  // of a real, with places to spare within the frame

float FactorOf(float notches) {
  return std::pow(kNotch, -std::clamp(notches, -kMostNotches, kMostNotches));
}

float SizeOf(const Range& range) { return std::max(std::abs(range.lo), std::abs(range.hi)); }

std::optional<PatternFrame> Whole() {
  if (const auto view = Guest()) return view->whole;
  return FullFrame();
}

// Some steps of the pattern, as wide as they are near this place on the axis on show.
float LeastWidth(float x) {
  if (const auto view = Guest()) return view->leastx;
  const int slot = ActiveSlot(), n = ws.npts(slot);
  const float* xs = ws.xval.row(ws.xaxismode, slot).data();
  const int i = std::clamp(NearestIndex(x, xs, n), 1, n - 1);
  return std::max(kLeastSteps * std::abs(xs[i] - xs[i - 1]), kResolution * std::abs(x));
}

float HeightInCounts(const Range& y) {
  return LogarithmicY() ? std::pow(10.0f, y.hi) - std::pow(10.0f, y.lo) : y.hi - y.lo;
}

// The curve can be pulled out of the frame, but not out of reach.
Range ReachOfY(const Range& full) {
  if (Guest()) return full;
  const float height = full.hi - full.lo;
  return {full.lo - height, full.hi + height};
}

Range ViewX() { return {ws.viewxmin, ws.viewxmax}; }
Range ViewY() { return {ws.viewymin, ws.viewymax}; }

// A view that stays as it is remains rounded if it was.
void Show(const Range& x, const Range& y) {
  if (x == ViewX() && y == ViewY()) return;
  if (x.lo < x.hi && y.lo < y.hi) PutExactView(x, y);
}

}  // namespace

Range ZoomedAbout(const Range& range, float at, float factor, const Range& ends, float least) {
  if (factor < 1) factor = std::max(factor, std::min(1.0f, least / (range.hi - range.lo)));
  const Range zoomed{std::max(at - (at - range.lo) * factor, ends.lo),
                     std::min(at + (range.hi - at) * factor, ends.hi)};
  return zoomed.lo < zoomed.hi ? zoomed : range;
}

Range Shifted(const Range& range, float by, const Range& ends) {
  const float shift =
      std::clamp(by, std::min(0.0f, ends.lo - range.lo), std::max(0.0f, ends.hi - range.hi));
  return {range.lo + shift, range.hi + shift};
}

void ZoomX(DataPoint about, float notches) {
  const auto full = Whole();
  if (!full) return;
  const float at = ViewX().Limit(about.x);
  Show(ZoomedAbout(ViewX(), at, FactorOf(notches), full->x, LeastWidth(at)), ViewY());
}

void ZoomY(DataPoint about, float notches) {
  const auto full = Whole();
  if (!full) return;
  const float at = ViewY().Limit(about.y);
  if (const auto view = Guest())
    return Show(ViewX(), ZoomedAbout(ViewY(), at, FactorOf(notches), full->y, view->leasty));
  const float counts = std::min(kLeastCounts, kLeastShare * HeightInCounts(full->y));
  const float least = std::max(LogarithmicY() ? 0.0f : counts, kResolution * SizeOf(ViewY()));
  const Range y = ZoomedAbout(ViewY(), at, FactorOf(notches), ReachOfY(full->y), least);
  if (notches < 0 || !LogarithmicY() || HeightInCounts(y) >= counts) Show(ViewX(), y);
}

void ScrollX(float notches) {
  PanFrom(ViewX(), ViewY(), {-notches * kScroll * (ws.viewxmax - ws.viewxmin), 0});
}

void PanFrom(const Range& x, const Range& y, DataPoint by) {
  const auto full = Whole();
  if (full) Show(Shifted(x, by.x, full->x), Shifted(y, by.y, ReachOfY(full->y)));
}
