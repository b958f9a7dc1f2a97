// Scales: rounded ranges, places of ticks, search in lists.
#include "plot/scales.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <span>

#include "plot/penplot.h"
#include "workspace/workspace.h"  // for Log10OfE

float Log10(float value) { return std::log(value) * Log10OfE; }

namespace {

// Ten to the power of the integer part of log10 |value| plus `shift`, a tenth of it for small
// values.
float Decade(float value, float shift) {
  const float log = Log10(std::abs(value));
  return std::pow(10.0f, std::trunc(log) + shift) / (log < 0 ? 10.0f : 1.0f);
}

}  // namespace

Range Rounded(float low, float high) {
  const bool upward = std::abs(high) >= std::abs(low) && !(low == high && high < 0);
  const float far = upward ? high : low, near = upward ? low : high;
  const float s = upward ? 1.0f : -1.0f;
  if (far == 0) return {0, 0};
  const float p = std::max(Decade(far, -1), FLT_MIN);
  const auto whole = [=](float steps) { return std::trunc(steps) * p + 0.0f; };  // no minus zero
  const float farlimit = whole(s * 0.99999f + far / p);
  const bool sameside = near * s > 0;
  const float nearlimit = whole(sameside ? near / p : near / p - s * 0.99999f);
  const Range range{std::clamp(upward ? nearlimit : farlimit, -FLT_MAX, FLT_MAX),
                    std::clamp(upward ? farlimit : nearlimit, -FLT_MAX, FLT_MAX)};
  return range.lo == range.hi ? Range{range.lo - p, range.hi + p} : range;
}

float ScaleOf(const Range& range, float length) {
  return range.lo == range.hi ? 0.0f : std::min(length / (range.hi - range.lo), FLT_MAX);
}

void NiceRange(float* list, int n, float length) {
  Extremes extremes;
  for (int i = 0; i < n; ++i) extremes.Take(list[i]);
  const Range range = Rounded(extremes.low, extremes.high);
  list[n] = range.lo;
  list[n + 1] = ScaleOf(range, length);
  list[n + 2] = range.hi;
}

namespace {

// A row holds from `atleast` on, up to the row above it.
struct StepRow {
  float atleast, step, count;
};

// From the number of steps for each quarter of a unit to the tick step.
constexpr StepRow kTickStep[] = {
    {10, 10, 0.1f},  {5, 5, 0.2f},    {2, 2, 0.5f},  {0.5f, 1, 1},
    {0.2f, 0.5f, 2}, {0.1f, 0.2f, 5}, {0, 0.1f, 10},
};
// From the number of ticks for each label to the major step. The table is uneven in its middle.
constexpr StepRow kMajorStep[] = {
    {10, 20, 0},  {5, 10, 0},      {2, 5, 0},       {1, 2, 0},
    {0.5f, 5, 0}, {0.2f, 0.2f, 0}, {0.1f, 0.1f, 0}, {0, 0.05f, 0},
};

const StepRow& RowFor(std::span<const StepRow> rows, float value) {
  for (const StepRow& row : rows)
    if (value >= row.atleast) return row;
  return rows.back();
}

}  // namespace

bool IsMultiple(float value, float unit, float step) {
  const float rest = std::abs(std::fmod(value, unit));
  const float tolerance = step / 1000 + std::abs(value) * FLT_EPSILON;
  return rest < tolerance || unit - rest < tolerance;
}

Ticks LayTicks(float length, float lo, float hi) {
  Ticks ticks;
  const float range = std::abs(hi - lo);
  const float quarters = std::round(length * 4);
  const float labels = std::min(10.0f, std::round(length * 0.5f)) + 1;
  float step = Decade(range, 0), steps = range / step;
  if (!(step > 0) || !std::isfinite(steps) || !(quarters > 0)) return ticks;

  const StepRow& row = RowFor(kTickStep, steps / quarters);
  step *= row.step;
  steps *= row.count;
  const int count = static_cast<int>(steps + 0.001f);
  if (!(step > 0) || lo + step == lo) return ticks;
  ticks.count = count;
  ticks.step = step;
  ticks.major = step * RowFor(kMajorStep, static_cast<float>(count) / labels).step;

  const float from = std::min(lo, hi);
  float best = ticks.major;
  for (int i = 0; i <= count; ++i) {
    const float value = from + static_cast<float>(i) * step;
    if (IsMultiple(value, ticks.major, step)) return ticks;
    const float rest = std::fmod(value, ticks.major);
    best = std::min(best, rest < 0 ? -rest : ticks.major - rest);
  }
  ticks.start = best;
  if (from + best + static_cast<float>(count) * step > std::max(lo, hi) + step / 1000)
    --ticks.count;
  return ticks;
}

void GridSteps(float length, float lo, float hi, int& count, float& start, float& step) {
  const Ticks ticks = LayTicks(length, lo, hi);
  count = ticks.count;
  start = ticks.start;
  step = ticks.step;
}

int NearestIndex(float value, const float* list, int n) {
  if (n < 2) return 1;
  const bool rising = list[1] >= list[0];
  // The first place whose value is not passed yet.
  const auto place =
      std::partition_point(list, list + n, [=](float v) { return rising ? v < value : v > value; });
  const auto near = std::min<std::ptrdiff_t>(place - list, n - 1);
  if (near > 0 && std::abs(list[near - 1] - value) < std::abs(list[near] - value))
    return static_cast<int>(near);
  return static_cast<int>(near) + 1;
}
