// What a whole-pattern fit refines.
#include "fit/parameters.h"

#include <algorithm>
#include <cmath>

#include "crystal/hklcode.h"
#include "crystal/laue.h"
#include "fit/fitbackground.h"  // for BackgroundTerms
#include "fit/intensities.h"    // for PointNear
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

// Flags of both sides first, then the ties. entry: of the left side's first in profparam.
void NumberSides(const Table<int, 6>& refine, const Table<int, 3>& tie, int entry,
                 ParameterNumbers& p) {
  for (int k = 1; k <= 6; ++k) p.profparam(entry + k - 1) = refine(k) ? ++p.npar : 0;
  for (int k = 0; k < 3; ++k)
    if (tie(k + 1)) p.profparam(entry + k) = p.profparam(entry + 3 + k) = ++p.npar;
}

void NumberCell(FitParameters& fit, ParameterNumbers& p) {
  const auto& master = LaueClassOf(fit.laueclass).master;
  for (int k = 0; k < 6; ++k) {
    int& number = p.profparam(CellNumbers + k);
    if (master[k] < 0)
      fit.cell(k + 1) = static_cast<float>(-master[k]);
    else if (master[k] == k)
      number = fit.cellrefine(k + 1) ? ++p.npar : 0;
    else
      number = p.profparam(CellNumbers + master[k]);
  }
}

// A row behind the first of those that overlap at its point has the number of the row in front.
bool SharesIntensity(const FitModel& model, int row) {
  const int point = PointNear(model, model.peaks(ptth, row));
  const int first = model.ptrefl(3, point);
  return row > 1 && model.ptrefl(4, point) > first && row > first;
}

void NumberIntensities(const FitModel& model, ParameterNumbers& p) {
  if (model.x.empty()) return;
  for (int j = 1; j <= model.Rows(); ++j)
    p.intparam(j) = SharesIntensity(model, j) ? p.intparam(j - 1) : ++p.npar;
}

using Names = const char* const[6];
constexpr Names kFwhmNames = {"left U", "left V", "left W", "right U", "right V", "right W"};
constexpr Names kShapeNames = {"left g1", "left g2", "left g3", "right g1", "right g2", "right g3"};
constexpr Names kCellNames = {"a", "b", "c", "alpha", "beta", "gamma"};

std::string RowName(const char* kind, const FitModel& model, int row) {
  const Hkl r = UnpackHkl(nint(model.peaks(phkl, row)));
  if (r.h == 0 && r.k == 0 && r.l == 0)
    return kind + (" at " + LeftAlign(RealField(model.peaks(ptth, row), 8, 3)));
  std::string name = kind;
  for (int index : {r.h, r.k, r.l}) name += " " + std::to_string(index);
  return name;
}

// Of one side, or of both for a value with a second one.
std::string SideName(Names& names, const RefinedValue& value, bool tied) {
  const std::string name = names[value.index - 1];
  return tied ? name.substr(name.find(' ') + 1) : name;
}

}  // namespace

ParameterNumbers AssignParameters(FitModel& model) {
  FitParameters& fit = model.fit;
  ParameterNumbers p;
  const int terms = BackgroundTerms(fit);
  for (int k = 1; k <= MaxChebyshev; ++k)
    if (k <= terms)
      p.bgparam(k) = ++p.npar;
    else
      fit.bgcoef(k) = 0;
  if (fit.tthzerorefine && fit.fitposmode == 2) p.zeroparam = ++p.npar;
  NumberSides(fit.fwhmrefine, fit.fwhmtie, FwhmNumbers, p);
  NumberSides(fit.shaperefine, fit.shapetie, ShapeNumbers, p);
  if (fit.fitposmode == 1)
    for (int j = 1; j <= model.Rows(); ++j) p.posparam(j) = ++p.npar;
  if (fit.fitposmode == 2) NumberCell(fit, p);
  NumberIntensities(model, p);
  return p;
}

std::vector<RefinedValue> RefinedValues(FitModel& model, const ParameterNumbers& p) {
  using enum ParameterKind;
  FitParameters& fit = model.fit;
  std::vector<RefinedValue> values;
  const auto add = [&](int number, ParameterKind kind, int index, float& value, float* esd) {
    if (number > 0) values.push_back({number, kind, index, &value, esd});
  };
  const auto sides = [&](ParameterKind kind, int entry, auto& left, auto& right, auto& esd) {
    for (int k = 1; k <= 6; ++k)
      add(p.profparam(entry + k - 1), kind, k, k <= 3 ? left(k) : right(k - 3), &esd(k));
  };
  for (int k = 1; k <= MaxChebyshev; ++k)
    add(p.bgparam(k), Background, k, fit.bgcoef(k), &fit.bgesd(k));
  for (int j = 1; j <= model.Rows(); ++j)
    add(p.intparam(j), Intensity, j, model.peaks(pint, j), nullptr);
  for (int j = 1; j <= model.Rows(); ++j)
    if (p.intparam(j) > 0) add(p.posparam(j), Position, j, model.peaks(ptth, j), nullptr);
  sides(Fwhm, FwhmNumbers, fit.fwhmleft, fit.fwhmright, fit.fwhmesd);
  sides(Shape, ShapeNumbers, fit.shapeleft, fit.shaperight, fit.shapeesd);
  for (int k = 1; k <= 6; ++k)
    add(p.profparam(CellNumbers + k - 1), Cell, k, fit.cell(k), &fit.cellesd(k));
  add(p.zeroparam, Zero, 1, fit.tthzero, &fit.zeroesd);
  return values;
}

std::string ParameterName(std::span<const RefinedValue> values, const FitModel& model, int number) {
  const auto bears = [&](const RefinedValue& v) { return v.number == number; };
  const auto found = std::ranges::find_if(values, bears);
  if (found == values.end()) return {};
  switch (found->kind) {
    case ParameterKind::Background:
      return "background " + std::to_string(found->index);
    case ParameterKind::Intensity:
      return RowName("intensity", model, found->index);
    case ParameterKind::Position:
      return RowName("position", model, found->index);
    case ParameterKind::Fwhm:
      return SideName(kFwhmNames, *found, std::ranges::count_if(values, bears) > 1);
    case ParameterKind::Shape:
      return SideName(kShapeNames, *found, std::ranges::count_if(values, bears) > 1);
    case ParameterKind::Cell:
      return kCellNames[found->index - 1];
    case ParameterKind::Zero:
      return "zero";
  }
  return {};
}
