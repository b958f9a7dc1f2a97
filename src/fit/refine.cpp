// Least-squares refinement of the whole pattern.
#include "fit/refine.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "crystal/cellmetric.h"
#include "crystal/matrix.h"
#include "fit/derivatives.h"
#include "fit/normalequations.h"
#include "fit/profiles.h"  // for PutShape
#include "workspace/record.h"
#include "workspace/text.h"  // for nint

namespace {

constexpr float kZeroDerivative = 1.0e-30f;
constexpr float kLeastArea = 1.0f, kRemovedArea = 0.01f;
constexpr int kRemovalFrom = 3;  // cycle

float FiniteOrZero(float value) { return std::isfinite(value) ? value : 0.0f; }
float Ratio(float part, float whole) { return whole > 0 ? part / whole : 0.0f; }

bool AreFinite(const ResidualSums& s) {
  return std::isfinite(s.residual) && std::isfinite(s.total) && std::isfinite(s.residualsquares) &&
         std::isfinite(s.totalsquares);
}

struct RFactors {
  float rp, rwp, gof;
};

RFactors FactorsOf(const ResidualSums& s, int npar) {
  return {Ratio(s.residual, s.total), std::sqrt(Ratio(s.residualsquares, s.totalsquares)),
          std::sqrt(s.residualsquares / static_cast<float>(s.points - npar))};
}

void LogCycle(LineWriter& log, int cycle, const RFactors& r, int npar) {
  log.Write(WriteRecord<"(a,i5,3(a,f10.4),a,i5)">("Cycle", cycle, "  Rp =", r.rp, "  Rwp =", r.rwp,
                                                  "  GOF =", r.gof, " npar =", npar));
}

// The inverse of the damped normal matrix: covariances but for the scale.
struct Inverse {
  std::vector<float> cells;
  int npar;
  float operator()(int l, int k) const { return cells[(l - 1) + npar * (k - 1)]; }
};

int CountZeroDerivatives(const Inverse& matrix) {
  int count = 0;
  for (int k = 1; k <= matrix.npar; ++k) count += std::fabs(matrix(k, k)) < kZeroDerivative;
  return count;
}

bool Invert(Inverse& matrix, float damping) {
  if (damping > 1)
    for (int k = 0; k < matrix.npar; ++k) matrix.cells[k * (matrix.npar + 1)] *= damping;
  int order = matrix.npar;
  return MatrixInverse(matrix.cells.data(), order, matrix.npar) >= 0;
}

void ClearEsds(FitParameters& fit) {
  fit.cellesd.fill(0);
  fit.bgesd.fill(0);
  fit.fwhmesd.fill(0);
  fit.shapeesd.fill(0);
  fit.zeroesd = fit.volumeesd = 0;
}

struct Correlation {
  float size = 0;
  int k = 0, l = 0;
};

Correlation LargestCorrelation(const Inverse& inverse) {
  Correlation largest;
  for (int k = 1; k <= inverse.npar; ++k)
    for (int l = k + 1; l <= inverse.npar; ++l) {
      const float size = std::fabs(inverse(k, l)) / std::sqrt(inverse(k, k) * inverse(l, l));
      if (size > largest.size && std::isfinite(size)) largest = {size, k, l};
    }
  return largest;
}

// How the volume follows the cell's constants, by angstrom and by degree.
std::array<double, 6> VolumeGradient(const UnitCell& cell) {
  double edge[3], cosine[3], sine[3];
  for (int k = 0; k < 3; ++k) {
    edge[k] = cell(k + 1);
    cosine[k] = std::cos(cell(k + 4) / static_cast<double>(RadToDeg));
    sine[k] = std::sin(cell(k + 4) / static_cast<double>(RadToDeg));
  }
  double squared = 1 + 2 * cosine[0] * cosine[1] * cosine[2];
  for (double c : cosine) squared -= c * c;
  const double product = edge[0] * edge[1] * edge[2], root = std::sqrt(squared);
  std::array<double, 6> gradient;
  for (int k = 0; k < 3; ++k) {
    const double others = cosine[(k + 1) % 3] * cosine[(k + 2) % 3];
    gradient[k] = product * root / edge[k];
    gradient[k + 3] = product * sine[k] * (cosine[k] - others) / root / RadToDeg;
  }
  return gradient;
}

// From the covariances of the constants; those with one number move together.
double VolumeEsd(const UnitCell& cell, const ParameterNumbers& p, const Inverse& inverse,
                 double gof) {
  const std::array<double, 6> gradient = VolumeGradient(cell);
  double variance = 0;
  for (int k = 0; k < 6; ++k)
    for (int l = 0; l < 6; ++l) {
      const int row = p.profparam(CellNumbers + k), column = p.profparam(CellNumbers + l);
      if (row > 0 && column > 0) variance += gradient[k] * gradient[l] * inverse(row, column);
    }
  return std::sqrt(std::fabs(variance)) * gof;
}

// One run of the refinement.
struct Refinement {
  FitModel& model;
  ParameterNumbers& numbers;
  LineWriter& log;
  std::vector<float> previous;  // shift of each parameter
  std::vector<RowState> rows = {};
  Inverse inverse = {};
  std::vector<RefinedValue> values = {};
  bool more = true;  // some shift was large

  bool ApplyShifts(const NormalEquations& equations, float gof, int cycle);
  bool MoveRows();
  void PutRowShapes();
  void RemoveMarked();
  void KeepPrecision(float gof);

 private:
  float ShiftOf(const NormalEquations& equations, int k);
  void Move(const RefinedValue& value, float shift, float ratio, int cycle);
};

// A shift against the previous one is halved, and counts as halved for the next one.
float Refinement::ShiftOf(const NormalEquations& equations, int k) {
  float shift = 0;
  for (int l = 1; l <= inverse.npar; ++l) shift += equations.Right(l) * inverse(l, k);
  const float before = previous[k];
  if ((shift < 0 && before > 0) || (shift > 0 && before < 0)) shift *= 0.5f;
  return previous[k] = shift;
}

// Intensities stay at 1 or above; one that stays and wants to fall is marked for removal.
void Refinement::Move(const RefinedValue& v, float shift, float ratio, int cycle) {
  const bool intensity = v.kind == ParameterKind::Intensity;
  if (intensity && cycle >= kRemovalFrom && *v.value <= kLeastArea && ratio < -model.fit.maxshift)
    numbers.intparam(v.index) = -v.number;
  *v.value += shift;
  if (intensity && *v.value <= kLeastArea) *v.value = kLeastArea;
}

// False if a shift is not a number.
bool Refinement::ApplyShifts(const NormalEquations& equations, float gof, int cycle) {
  values = RefinedValues(model, numbers);
  ClearEsds(model.fit);
  for (int k = 1; k <= inverse.npar; ++k) {
    const float esd = std::sqrt(std::fabs(inverse(k, k))) * gof;
    const float shift = ShiftOf(equations, k), ratio = shift / esd;
    if (!std::isfinite(shift)) return false;
    for (const RefinedValue& v : values) {
      if (v.number != k) continue;
      Move(v, shift, ratio, cycle);
      if (v.esd) *v.esd = FiniteOrZero(esd);
      log.Write(WriteRecord<"(3f12.4)">(*v.value, esd, ratio));
    }
    if (std::fabs(ratio) >= model.fit.maxshift) more = true;
  }
  return true;
}

// Puts the rows where the cell has them now; false if one has no place.
bool Refinement::MoveRows() {
  const Metric metric = ReciprocalMetric(model.fit.cell);
  for (int j = 1; model.fit.fitposmode == 2 && j <= model.Rows(); ++j) {
    const float d = InverseD(metric, UnpackHkl(nint(model.peaks(phkl, j))));
    model.peaks(ptth, j) = TwoRadToDeg * std::asin(0.5f * d * model.wavelength);
  }
  for (int j = 1; j <= model.Rows(); ++j)
    if (!std::isfinite(model.peaks(ptth, j))) return false;
  return true;
}

// Those that the cycle has worked with.
void Refinement::PutRowShapes() {
  for (int j = 1; j <= model.Rows(); ++j) PutShape(model, j, rows[j - 1].shape);
}

// Takes the marked rows out. A number that no row bears any more is closed up.
void Refinement::RemoveMarked() {
  const std::span<int> list = numbers.intparam.row().first(model.Rows());
  for (int j = 0; j < model.Rows(); ++j) {
    if (list[j] >= 0) continue;
    const int number = -std::exchange(list[j], 0);
    model.peaks(pint, j + 1) = kRemovedArea;
    if (std::ranges::any_of(list, [&](int other) { return std::abs(other) == number; })) continue;
    for (int& other : list)
      if (std::abs(other) > number) other += other > 0 ? -1 : 1;
    --numbers.npar;
  }
}

// What the last solution tells of the volume and of parameters that go together.
void Refinement::KeepPrecision(float gof) {
  FitParameters& fit = model.fit;
  fit.volumeesd = FiniteOrZero(static_cast<float>(VolumeEsd(fit.cell, numbers, inverse, gof)));
  const Correlation largest = LargestCorrelation(inverse);
  fit.fitcorrelation = largest.size;
  fit.fitcorrelated.clear();
  if (largest.k > 0)
    fit.fitcorrelated =
        ParameterName(values, model, largest.k) + ", " + ParameterName(values, model, largest.l);
}

void KeepResults(const RefineResult& result, FitParameters& fit) {
  fit.fitrp = result.rp;
  fit.fitrwp = result.rwp;
  fit.fitgof = result.gof;
  fit.fitpoints = result.points;
  fit.fitnpar = result.npar;
  fit.fitcycles = result.cycles;
}

}  // namespace

RefineResult Refine(FitModel& model, ParameterNumbers& numbers, LineWriter& log,
                    const FitReport& report) {
  const FitParameters& fit = model.fit;
  Refinement run{model, numbers, log, std::vector<float>(numbers.npar + 1)};
  NormalEquations equations(numbers.npar);
  ResidualSums sums;
  RefineResult result;
  ClearEsds(model.fit);
  const auto ended = [&](RefineEnd end) {
    result.end = end;
    return result;
  };
  for (int cycle = 1; cycle <= fit.ncycles; ++cycle) {
    result.cycles = cycle;
    run.rows = PrepareRows(model);
    sums = AccumulatePattern(model, numbers, run.rows, equations);
    if (!AreFinite(sums)) return ended(RefineEnd::Diverged);
    if (!run.more || fit.ncycles <= cycle) break;
    run.more = false;
    run.inverse = {equations.Matrix(numbers.npar), numbers.npar};
    result.zeroderivatives = CountZeroDerivatives(run.inverse);
    if (result.zeroderivatives > 0) return ended(RefineEnd::ZeroDerivatives);
    if (!Invert(run.inverse, fit.diagdamp)) {
      log.Write("Matrix inversion error");
      return ended(RefineEnd::NoInverse);
    }
    const RFactors r = FactorsOf(sums, numbers.npar);
    LogCycle(log, cycle, r, numbers.npar);
    if (!report(cycle, r.rwp)) return ended(RefineEnd::Stopped);
    if (!run.ApplyShifts(equations, r.gof, cycle) || !run.MoveRows())
      return ended(RefineEnd::Diverged);
    run.PutRowShapes();
    run.KeepPrecision(r.gof);
    run.RemoveMarked();
  }
  const RFactors r = FactorsOf(sums, numbers.npar);
  LogCycle(log, result.cycles, r, numbers.npar);
  result.rp = r.rp, result.rwp = r.rwp, result.gof = FiniteOrZero(r.gof);
  result.points = sums.points, result.npar = numbers.npar;
  if (result.cycles > 0) KeepResults(result, model.fit);
  model.fit.nbkgcycles = 0;
  return result;
}
