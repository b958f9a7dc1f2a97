// The calculated pattern.
#include "fit/calculate.h"

#include <vector>

#include "fit/splitprofile.h"

namespace {

// A row as the pattern needs it.
struct CalculatedRow {
  SplitProfile profile;
  SpectralLines lines;
  float area;
  bool empty;  // one of its sides has no width
};

CalculatedRow MakeRow(const FitModel& model, int j) {
  const auto field = [&](PeakField f) { return model.peaks(f, j); };
  const PeakShape shape{field(pfwhmr), 2 * field(pfwhm) - field(pfwhmr), field(pshaper),
                        2 * field(pshape) - field(pshaper)};
  return {MakeProfile(shape, kCalculation), LinesAt(field(ptth), model.scanwave), field(pint),
          shape.leftwidth <= 0 || shape.rightwidth <= 0};
}

void AddRow(float& y, const CalculatedRow& row, float x) {
  if (row.empty) return;
  for (const SpectralLine& line : row.lines) {
    const float d = x - line.tth;
    y += ValueAt(row.profile.At(d), d, line.ratio * row.area, kCalculation).value;
  }
}

}  // namespace

void CalculatePattern(FitModel& model) {
  std::vector<CalculatedRow> rows;
  for (int j = 1; j <= model.Rows(); ++j) rows.push_back(MakeRow(model, j));
  for (int i = 1; i <= model.Points(); ++i) {
    float& y = model.calculated[i - 1];
    y = 0;
    const float x = model.fit.tthzero + model.x[i - 1];
    if (x < model.fit.fitmin2th) continue;
    if (x > model.fit.fitmax2th) break;
    if (model.ptrefl(1, i) < 1) continue;
    for (int j = model.ptrefl(1, i); j <= model.ptrefl(2, i); ++j) AddRow(y, rows[j - 1], x);
  }
  for (int i = 0; i < model.Points(); ++i) model.calculated[i] += model.background[i];
}
