// Start values of the intensities.
#include "fit/intensities.h"

#include <algorithm>
#include <cmath>

#include "workspace/text.h"  // for nint

namespace {

constexpr float kAreaOfHeight = 1.25f;  // of a peak with FWHM 1

// Point `offset` + the whole steps from the first point.
int PointAt(const FitModel& model, float tth, int offset) {
  const int steps = nint((tth - model.x[0] - model.fit.tthzero) / model.Step());
  return static_cast<int>(std::clamp<long long>(0LL + steps + offset, 1, model.Points()));
}

int Overlapping(const FitModel& model, int point) {
  return std::max(1, model.ptrefl(4, point) - model.ptrefl(3, point) + 1);
}

void PutIntensity(FitModel& model, int row, int point) {
  const float area = kAreaOfHeight * model.net[point - 1] * model.peaks(pfwhm, row) /
                     static_cast<float>(Overlapping(model, point));
  model.peaks(pint, row) = std::fabs(area) < 1 ? 1.0f : area;
}

}  // namespace

int PointNear(const FitModel& model, float tth) { return PointAt(model, tth, 1); }

void AssignIntensities(FitModel& model) {
  if (model.x.empty()) return;
  for (int j = 1; j <= model.Rows(); ++j)
    PutIntensity(model, j, PointNear(model, model.peaks(ptth, j)));
}

void ReassignIntensities(FitModel& model) {
  if (model.x.empty()) return;
  int before = 1;  // overlapping at the point of the row in front; the first row has none
  for (int j = 1; j <= model.Rows(); ++j) {
    const int point = PointAt(model, model.peaks(ptth, j), 0);
    if (before > 1) PutIntensity(model, j, point);
    before = Overlapping(model, point);
  }
}
