// The rows of the peak list made ready for the fit.
#include "fit/profiles.h"

#include <cmath>

#include "crystal/hklcode.h"
#include "workspace/text.h"  // for RowSort

namespace {

constexpr float kLowest = 1.0f, kHighest = 170.0f;  // two-theta of a row
constexpr float kNearest = 2.01f;                   // distance of two rows, in steps
constexpr float kLeastArea = 0.99f;
constexpr float kWidthFloor = 0.0004f;  // of a squared FWHM

void CopyRow(FitModel& model, int from, int to) {
  for (int field = ptth; field <= pmult; ++field) model.peaks(field, to) = model.peaks(field, from);
}

// Deletes what is unwanted from row `first` on. The row behind a deleted one is not looked at.
template <class Unwanted>
void DeleteRows(FitModel& model, int first, Unwanted unwanted) {
  for (int j = first; j <= model.npeaks; ++j) {
    if (!unwanted(j)) continue;
    for (int k = j; k < model.npeaks; ++k) CopyRow(model, k + 1, k);
    --model.npeaks;
  }
}

void KeepIntense(FitModel& model) {
  int kept = 0;
  for (int j = 1; j <= model.npeaks; ++j)
    if (model.peaks(pint, j) > kLeastArea) CopyRow(model, j, ++kept);
  model.npeaks = kept;
}

float Width(const Table<float, 3>& uvw, float t) {
  const float squared = uvw(1) * (t * t) + uvw(2) * t + uvw(3);
  return std::sqrt(squared <= 0 ? kWidthFloor : squared);
}

float Shape(const Table<float, 3>& g, float u) { return g(1) + g(2) * u + g(3) * (u * u); }

// Entries `entry` and the next of all points: first and last of the rows within so many FWHM. A row
// that the points have passed is left behind with all rows in front of it.
void AssignReach(FitModel& model, float reach, int entry) {
  int pointer = 1;
  for (int i = 1; i <= model.Points(); ++i) {
    const float x = model.fit.tthzero + model.x[i - 1];
    int first = pointer, last = 0;
    for (int j = pointer; j <= model.Rows(); ++j) {
      const float tth = model.peaks(ptth, j), distance = reach * model.peaks(pfwhm, j);
      if (tth - distance > x) break;
      if (x > tth + distance) first = pointer = j + 1;
      last = j;
    }
    const bool none = first > last;
    model.ptrefl(entry, i) = none ? 0 : first;
    model.ptrefl(entry + 1, i) = none ? 0 : last;
  }
}

}  // namespace

bool PreparePeaks(FitModel& model) {
  model.npeaks = model.Rows();
  if (model.fit.fitposmode == 1)
    for (int j = 1; j <= model.npeaks; ++j) model.peaks(phkl, j) = PackHkl({});
  const auto tth = [&](int j) { return model.peaks(ptth, j); };
  DeleteRows(model, 1, [&](int j) { return !(tth(j) > kLowest && tth(j) <= kHighest); });
  if (model.npeaks < 2) return false;
  RowSort(&model.peaks(ptth, 1), MaxPeaks + 1, pmult, model.npeaks, ptth);
  const float nearest = kNearest * model.Step();
  DeleteRows(model, 2, [&](int j) { return tth(j) - tth(j - 1) <= nearest; });
  for (int j = 1; j <= model.npeaks; ++j)
    if (tth(j) < model.fit.fitmin2th || tth(j) > model.fit.fitmax2th) model.peaks(pint, j) = 0;
  KeepIntense(model);
  return true;
}

PeakShape ShapeAt(const FitParameters& fit, float tth) {
  const float t = std::tan(0.5f * tth / RadToDeg);
  return {Width(fit.fwhmleft, t), Width(fit.fwhmright, t), Shape(fit.shapeleft, tth),
          Shape(fit.shaperight, tth)};
}

void PutShape(FitModel& model, int row, const PeakShape& s) {
  model.peaks(pfwhm, row) = 0.5f * s.rightwidth + 0.5f * s.leftwidth;
  model.peaks(pshape, row) = 0.5f * s.rightshape + 0.5f * s.leftshape;
  model.peaks(pfwhmr, row) = s.leftwidth;
  model.peaks(pshaper, row) = s.leftshape;
}

void AssignProfiles(FitModel& model) {
  for (int j = 1; j <= model.Rows(); ++j)
    PutShape(model, j, ShapeAt(model.fit, model.peaks(ptth, j)));
  AssignReach(model, static_cast<float>(model.fit.nfwhmpeak), 1);
  AssignReach(model, model.fit.minfwhmsep, 3);
}
