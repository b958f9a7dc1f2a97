// Alpha2 stripping: takes the K alpha 2 part off, point by point towards higher angles.
#include <algorithm>
#include <cmath>
#include <vector>

#include "crystal/spline.h"
#include "modify/common.h"
#include "modify/modify.h"

namespace {

enum Interpolation { Linear = 1, Parabolic, Spline };  // parabolic counts as linear

// One line of the K alpha 2 group: ratio of wavelengths alpha1 / alpha2, as a factor of sin theta,
// and share of the alpha1 intensity for an alpha2 / alpha1 ratio of 0.5.
struct Component {
  float ratio, weight;
};

constexpr int kSets = 6;
constexpr int kMostComponents = 9;
// The sets of 15 and 25 components have never been filled and take nothing off.
constexpr int kCount[kSets] = {3, 5, 7, 9, 0, 0};
constexpr Component kComponents[kSets][kMostComponents] = {
    {{0.998507f, 0.0051343f}, {0.997504f, 0.491686f}, {0.996699f, 0.00317966f}},
    {{0.998472f, 0.00261441f},
     {0.997936f, 0.011928f},
     {0.997504f, 0.480407f},
     {0.997163f, 0.00212181f},
     {0.996607f, 0.0029288f}},
    {{0.998563f, 0.00158007f},
     {0.998204f, 0.00346377f},
     {0.997825f, 0.0155335f},
     {0.997522f, 0.422602f},
     {0.997298f, 0.053633f},
     {0.996844f, 0.00157247f},
     {0.996516f, 0.00161527f}},
    {{0.99861f, 0.001138f},
     {0.998334f, 0.00195272f},
     {0.998055f, 0.00432446f},
     {0.997761f, 0.0192465f},
     {0.997528f, 0.394176f},
     {0.997327f, 0.079159f},
     {0.997029f, -0.00359155f},
     {0.996735f, 0.0025056f},
     {0.996463f, 0.00108939f}},
};

struct StripOptions {
  float ratio;  // of the intensities alpha2 / alpha1
  int steps;    // number of the set of components
  int interpolation;
  int start;  // points that only lose their share
};

// The pattern while it is stripped: the points in front of the present one have lost their alpha2.
struct Stripping {
  std::span<const float> x;
  std::span<const float> y;
  int count;
  float position[kMostComponents];  // two-theta of the alpha1 part of each component
  float weight[kMostComponents];
  int lo = 0, hi = 1;               // bracket of the last component
  std::vector<float> y2{}, work{};  // of the spline
};

// The last of the points up to `from` that lies below the position; -1 if there is none.
int LastBelow(std::span<const float> x, int from, float position) {
  int m = from;
  while (m >= 0 && !(position > x[m])) --m;
  return m;
}

// Straight lines between the points that bracket each component. A bracket that would hold point i
// moves down by one; a component without a bracket uses that of the one before.
float LinearSum(Stripping& s, int i) {
  float sum = 0;
  int m = i;
  for (int j = 0; j < s.count; ++j) {
    const float position = s.position[j];
    // Components mostly lie in falling order, and the search goes on from the last one.
    if (j > 0 && position > s.position[j - 1]) m = i;
    m = LastBelow(s.x, m, position);
    if (m >= 0) {
      s.hi = std::min(m + 1, i - 1);
      s.lo = s.hi - 1;
    }
    const float width = s.x[s.hi] - s.x[s.lo];
    const float rise = (position - s.x[s.lo]) * (s.y[s.hi] - s.y[s.lo]);
    sum += (s.y[s.lo] + (width != 0 ? rise / width : 0.0f)) * s.weight[j];
  }
  return sum;
}

// A spline through the points from five below the lowest component to the last stripped one. The
// weights are turned round at each point together with the positions, and stay so for the next one.
float SplineSum(Stripping& s, int i) {
  float value[kMostComponents];
  const std::size_t count = s.count;
  const int first = std::max(LastBelow(s.x, i, s.position[s.count - 1]) - 5, 0);
  const std::span<const float> x = s.x.subspan(first, i - first), y = s.y.subspan(first, i - first);
  std::reverse(s.position, s.position + s.count);
  std::reverse(s.weight, s.weight + s.count);
  SplineSetup(x, y, NaturalEnd, NaturalEnd, s.y2, s.work);
  SplineEval(x, y, s.y2, {s.position, count}, {value, count});
  float sum = 0;
  for (int j = 0; j < s.count; ++j) sum += value[j] * s.weight[j];
  return sum;
}

void Strip(std::span<const float> x, std::span<float> y, const StripOptions& options) {
  const Component* set = kComponents[options.steps - 1];
  Stripping s{.x = x, .y = y, .count = kCount[options.steps - 1], .position = {}, .weight = {}};
  for (int j = 0; j < s.count; ++j) s.weight[j] = options.ratio / 0.5f * set[j].weight;
  const bool spline = options.interpolation == Spline && s.count > 0;
  if (spline) s.y2.resize(x.size()), s.work.resize(x.size());

  // The points at the start have no neighbours to strip with.
  const int n = static_cast<int>(y.size()), start = std::min(options.start, n);
  for (int i = 0; i < start; ++i) y[i] /= 1.0f + options.ratio;
  for (int i = start; i < n; ++i) {
    const float sine = std::sin(0.5f * x[i] / RadToDeg);
    for (int j = 0; j < s.count; ++j) s.position[j] = TwoRadToDeg * std::asin(sine * set[j].ratio);
    const float sum = spline ? SplineSum(s, i) : LinearSum(s, i);
    y[i] = std::max(y[i] - (sum > 0 ? sum : 0.0f), 1.0f);  // a sum that is no number counts as 0
  }
}

void ClampOptions() {
  if (!(ws.a2ratio > 0)) ws.a2ratio = 0.5f;
  ws.a2steps = std::clamp(ws.a2steps, 1, kSets);
  ws.a2interp = std::clamp<int>(ws.a2interp, Linear, Spline);
  ws.a2start = std::max(ws.a2start, 5);
}

}  // namespace

Outcome Alpha2Strip() {
  if (!RawOnlyCheck()) return Outcome::Failed;
  ClampOptions();
  Strip(TthOf(SlotInput), IntensityOf(SlotInput),
        {ws.a2ratio, ws.a2steps, ws.a2interp, ws.a2start});
  ws.alpha2enabled = 0;
  return Outcome::Done;
}
