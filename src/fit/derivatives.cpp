// The calculated intensity of a point and its derivatives by all refined values.
#include "fit/derivatives.h"

#include <algorithm>
#include <cmath>

#include "crystal/cellmetric.h"
#include "crystal/chebyshev.h"
#include "fit/fitbackground.h"  // for BackgroundTerms
#include "fit/profiles.h"       // for ShapeAt
#include "workspace/text.h"     // for nint

namespace {

constexpr float kLeastArea = 0.5f;

RowState PrepareRow(FitModel& model, int j) {
  float& area = model.peaks(pint, j);
  if (area < kLeastArea) area = kLeastArea;
  const float tth = model.peaks(ptth, j), theta = tth / 2 / RadToDeg;
  RowState row;
  row.shape = ShapeAt(model.fit, tth);
  row.profile = MakeProfile(row.shape, kRefinement);
  row.lines = LinesAt(tth, model.scanwave);
  row.area = std::max(1.0f, area);
  row.tangent = std::tan(theta);
  row.cosine = std::cos(theta);
  row.gradient = {};
  if (model.fit.fitposmode != 2) return row;
  row.gradient = CellGradient(model.fit.laueclass, nint(model.peaks(phkl, j)), model.fit.cell);
  for (int k = 3; k < 6; ++k) row.gradient[k] = -row.gradient[k];
  return row;
}

float AddBackground(const FitModel& model, const ParameterNumbers& p, int i, float x,
                    Derivatives& d) {
  const FitParameters& fit = model.fit;
  const int terms = BackgroundTerms(fit);
  if (terms == 0) return model.background[i - 1];
  float basis[MaxChebyshev], y = 0;
  ChebyshevBasis({basis, static_cast<std::size_t>(terms)}, x, fit.fitmin2th, fit.fitmax2th);
  for (int k = 1; k <= terms; ++k) {
    y += fit.bgcoef(k) * basis[k - 1];
    d.Add(p.bgparam(k), basis[k - 1]);
  }
  return y;
}

// By the position of the row's line, the squared width and the shape of the side of the point.
struct LineDerivatives {
  float value, position, width, shape;
};

LineDerivatives DifferentiateLine(const ProfileSide& s, float d, float area) {
  constexpr ProfileConstants c = kRefinement;
  const ProfileValue v = ValueAt(s, d, area, c);
  const float F = s.factor, w = s.width, e = s.shape;
  const float E = (1 - e) * v.gauss + c.c4 * e * (v.lorentz * v.lorentz) / c.c1;
  const float P = d / (c.c3 * c.c3 * (w * w));
  const float S = 2 * F * area * d * P;
  return {v.value, 2 * F * area * E * P / w, (S * E / w - v.value) * 0.5f / w / w,
          (v.lorentz - v.gauss) * area * F / w};
}

void AddSide(const ParameterNumbers& p, bool left, const LineDerivatives& v, float tangent,
             float tth, Derivatives& d) {
  const int side = left ? 0 : 3;
  d.Add(p.profparam(FwhmNumbers + side), v.width * (tangent * tangent));
  d.Add(p.profparam(FwhmNumbers + side + 1), v.width * tangent);
  d.Add(p.profparam(FwhmNumbers + side + 2), v.width);
  d.Add(p.profparam(ShapeNumbers + side), v.shape);
  d.Add(p.profparam(ShapeNumbers + side + 1), v.shape * tth);
  d.Add(p.profparam(ShapeNumbers + side + 2), v.shape * (tth * tth));
}

void AddCell(const FitModel& model, const ParameterNumbers& p, const RowState& row, float position,
             Derivatives& d) {
  for (int k = 0; k < 6; ++k)
    if (const int number = p.profparam(CellNumbers + k))
      d.Add(number, row.gradient[k] * position * RadToDeg * model.wavelength / row.cosine);
}

float AddRow(const FitModel& model, const ParameterNumbers& p, const RowState& row, int j, float x,
             float y, Derivatives& d) {
  for (const SpectralLine& line : row.lines) {
    const float distance = x - line.tth, area = line.ratio * row.area;
    const LineDerivatives v = DifferentiateLine(row.profile.At(distance), distance, area);
    y += v.value;
    AddSide(p, distance < 0, v, row.tangent, line.tth, d);
    d.Add(p.intparam(j), v.value / area);
    if (model.fit.fitposmode == 1) d.Add(p.posparam(j), v.position);
    if (model.fit.fitposmode != 2) continue;
    AddCell(model, p, row, v.position, d);
    d.Add(p.zeroparam, -v.position);
  }
  return y;
}

}  // namespace

std::vector<RowState> PrepareRows(FitModel& model) {
  std::vector<RowState> rows;
  for (int j = 1; j <= model.Rows(); ++j) rows.push_back(PrepareRow(model, j));
  return rows;
}

float EvaluatePoint(const FitModel& model, const ParameterNumbers& numbers,
                    std::span<const RowState> rows, int i, float x, Derivatives& d) {
  float y = AddBackground(model, numbers, i, x, d);
  const int first = model.ptrefl(1, i);
  if (first < 1) return y;
  for (int j = first; j <= model.ptrefl(2, i); ++j)
    if (numbers.intparam(j) >= 1) y = AddRow(model, numbers, rows[j - 1], j, x, y, d);
  return y;
}
