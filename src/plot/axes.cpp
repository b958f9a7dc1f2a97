// Axes with their ticks and labels.
#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <span>
#include <string>

#include "plot/penplot.h"
#include "plot/scales.h"
#include "toolkit/toolkit.h"
#include "workspace/text.h"
#include "workspace/workspace.h"  // for RadToDeg

namespace {

// An axis from the library's origin along a direction, its labels on one side.
struct AxisLine {
  float length, lo, factor, tick, textheight, angle;
  bool above;  // labels stand to the left of the direction
  float cosine = std::cos(angle / RadToDeg), sine = std::sin(angle / RadToDeg);
  // Drawing units along the axis for a unit of letters.
  float glyph =
      cosine * cosine * WInfoGrReal(GraphicsGlyphX) + sine * sine * WInfoGrReal(GraphicsGlyphY);

  float Side() const { return above ? 1.0f : -1.0f; }
  float X(float along, float away) const { return along * cosine - Side() * away * sine; }
  float Y(float along, float away) const { return along * sine + Side() * away * cosine; }
  float Place(float value) const { return (value - lo) * factor; }

  void Base() const {
    PenUp(0, 0);
    PenDown(X(length, 0), Y(length, 0));
  }
  void Tick(float along, float size) const {
    LineAt(X(along, 0), Y(along, 0), size, angle + Side() * 90);
  }
  // Letters that are large for their axis have their title nearer, so that it stays in the margin,
  // and none where the labels need it all.
  void Title(std::string_view label, float away) const {
    const float across =
        sine * sine * WInfoGrReal(GraphicsGlyphX) + cosine * cosine * WInfoGrReal(GraphicsGlyphY);
    const float margin = (above ? 10 : 8) * tick;
    away = std::min(away, margin - 1.5f * textheight * across);
    if (away < 2 * tick + 1.15f * textheight * across) return;
    DrawText(X(length / 2, away), Y(length / 2, away), label, 1.2f * textheight, angle,
             above ? 2 : 6);
  }
};

enum class Align { Left, Centre, Right };

struct AxisLabel {
  float value;
  std::string text;
  Align align = Align::Centre;
};

// More ticks than any axis has.
constexpr int kMostTicks = 512;

struct AxisLabels {
  AxisLabel label[kMostTicks];
  int count = 0;
  float unit = 0;  // all values are multiples of it
  float step = 0;
};

struct Extent {
  float begin, end;
};

// Where a label lies along its axis. It may stand out over the end of the axis by two letters, as
// far as the margin goes.
Extent LabelExtent(const AxisLine& axis, const AxisLabel& label) {
  const float width = TextWidth(label.text, axis.textheight) * axis.glyph;
  const float shift = 0.25f * axis.textheight * axis.glyph;
  float begin = axis.Place(label.value);
  if (label.align == Align::Left) begin -= shift;
  if (label.align == Align::Centre) begin -= width / 2;
  if (label.align == Align::Right) begin += shift - width;
  const float margin = std::min(2 * axis.textheight * axis.glyph, 5 * axis.tick);
  begin = std::min(begin, axis.length + margin - width);
  return {begin, begin + width};
}

// Whether the labels at multiples of `stride` units keep clear of each other.
bool Fit(const AxisLine& axis, const AxisLabels& labels, float stride) {
  float free = -FLT_MAX;
  for (const AxisLabel& label : std::span(labels.label, labels.count)) {
    if (!IsMultiple(label.value, labels.unit * stride, labels.step)) continue;
    const Extent extent = LabelExtent(axis, label);
    if (extent.begin < free) return false;
    free = extent.end + 0.5f * axis.textheight * axis.glyph;
  }
  return true;
}

// Draws all labels, or where they would touch every second, fifth, tenth and so on.
void DrawLabels(const AxisLine& axis, const AxisLabels& labels) {
  static constexpr float kStrides[] = {1, 2, 5, 10, 20, 50, 100, 200, 500};
  const float* stride = std::find_if(std::begin(kStrides), std::end(kStrides) - 1,
                                     [&](float s) { return Fit(axis, labels, s); });
  for (const AxisLabel& label : std::span(labels.label, labels.count)) {
    if (!IsMultiple(label.value, labels.unit * *stride, labels.step)) continue;
    const float along = LabelExtent(axis, label).begin, away = 2 * axis.tick;
    DrawText(axis.X(along, away), axis.Y(along, away), label.text, axis.textheight, axis.angle,
             axis.above ? 1 : 7);
  }
}

std::string Fixed(float value, int decimals) {
  char text[64];
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals).ptr;
  std::string out(text, end);
  if (decimals > 0) out.erase(out.find_last_not_of('0') + 1);
  if (out.back() == '.') out.pop_back();
  return out == "-0" ? "0" : out;
}

// Four digits of the axis's far value, and as many as tell neighbouring labels apart.
std::string LinearLabel(float value, float farsize, const Ticks& ticks) {
  if (farsize > 1.0e6f || farsize < 0.001f) return std::string(Trim(ExpField(value, 19, 5)));
  const int digits = static_cast<int>(3 - Log10(farsize));
  const int needed = static_cast<int>(std::ceil(-Log10(ticks.major) - 0.001f));
  return Fixed(value, std::clamp(std::max(digits, needed), 0, 17));
}

}  // namespace

void AxisLinear(float length, float lo, float hi, float factor, float tick, float textheight,
                float angle, std::string_view label) {
  const AxisLine axis{length, lo, factor, tick, textheight, angle, angle < 0};
  const Ticks ticks = LayTicks(length, lo, hi);
  const float farsize = std::max(std::abs(lo), std::abs(hi));
  AxisLabels labels;
  labels.unit = ticks.major;
  labels.step = ticks.step;
  axis.Base();
  for (int i = 0; i <= std::min(ticks.count, kMostTicks - 1) && ticks.step > 0; ++i) {
    const float value = lo + ticks.start + static_cast<float>(i) * ticks.step;
    const bool major = IsMultiple(value, ticks.major, ticks.step);
    axis.Tick(axis.Place(value), major ? tick : tick / 2);
    if (!major) continue;
    const Align align = labels.count == 0 ? Align::Left : Align::Centre;
    const float exact = std::round(value / ticks.major) * ticks.major;
    labels.label[labels.count++] = {value, LinearLabel(exact, farsize, ticks), align};
  }
  DrawLabels(axis, labels);
  axis.Title(label, 2 * textheight + 2 * tick);
}

namespace {

struct DegreeRow {
  float range, major, minor;  // from this range of degrees on
};
constexpr DegreeRow kDegreeSteps[] = {
    {81, 10, 2.0f}, {40, 5, 1.0f}, {20, 2, 1.0f}, {10, 1, 0.5f}, {5, 1, 0.2f}, {-FLT_MAX, 1, 0.1f},
};

struct SpacingRow {
  float major;
  int least, most;  // number of major ticks
  float spacing;
};
constexpr SpacingRow kLabelSpacing[] = {
    {1, 0, 7, 1}, {1, 8, 14, 2},  {1, 15, 999, 5},  {2, 0, 9, 2},   {2, 10, 999, 10},
    {5, 0, 3, 5}, {5, 5, 14, 10}, {5, 16, 999, 20}, {10, 0, 5, 10}, {10, 6, 999, 20},
};

float LabelSpacing(float major, int count) {
  for (const SpacingRow& row : kLabelSpacing)
    if (row.major == major && count >= row.least && count <= row.most) return row.spacing;
  return 10;
}

// Number of the first and the last multiple of `unit` in a range.
struct Multiples {
  float first, last;
  Multiples(float lo, float hi, float unit)
      : first(std::ceil(lo / unit - 0.001f)), last(std::floor(hi / unit + 0.001f)) {}
};

}  // namespace

void AxisTwoTheta(float length, float lo, float hi, float factor, float tick, float textheight,
                  std::string_view label) {
  const AxisLine axis{length, lo, factor, tick, textheight, 0, false};
  axis.Base();
  axis.Tick(0, tick);
  axis.Tick(length, tick);
  axis.Title(label, 2 * tick + 1.5f * textheight);

  const float first = std::floor(lo + 0.9999f), last = std::floor(hi);
  const float range = last - first;
  // No scan is longer than 400 degrees; what a strange file holds is shown in tens, hundreds ...
  float unit = 1;
  while (range > 400 * unit && unit < 1e30f) unit *= 10;
  if (!(hi > lo) || !(range <= 400 * unit)) return;

  const DegreeRow& row = *std::find_if(std::begin(kDegreeSteps), std::end(kDegreeSteps),
                                       [&](const DegreeRow& r) { return range >= r.range; });
  const float major = row.major * unit, minor = row.minor * unit;
  const Multiples majors(lo, hi, major), minors(lo, hi, minor);
  for (int i = 0; i < kMostTicks && minors.first + static_cast<float>(i) <= minors.last; ++i)
    axis.Tick(axis.Place((minors.first + static_cast<float>(i)) * minor), tick / 2);
  const int count = static_cast<int>(majors.last - majors.first) + 1;
  for (int i = 0; i < count; ++i)
    axis.Tick(axis.Place((majors.first + static_cast<float>(i)) * major), tick);

  AxisLabels labels;
  labels.step = minor;
  labels.unit = LabelSpacing(row.major, count) * unit;
  const Multiples spaced(first, last, labels.unit);
  for (float k = spaced.first; k <= spaced.last && labels.count < kMostTicks; ++k) {
    const float value = k * labels.unit, place = axis.Place(value);
    const Align align = place < 0.001f * length   ? Align::Left
                        : place > 0.999f * length ? Align::Right
                                                  : Align::Centre;
    labels.label[labels.count++] = {value, Fixed(value, 0), align};
  }
  DrawLabels(axis, labels);
}
