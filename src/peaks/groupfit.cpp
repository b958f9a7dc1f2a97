// Least-squares fit of a few peaks that overlap: Levenberg-Marquardt within limits.
#include "peaks/groupfit.h"

#include <algorithm>
#include <cmath>

#include "peaks/normalmatrix.h"

namespace {

using Values = std::vector<double>;  // of the peaks' parameters; then height and slope of the line

constexpr int kMostCycles = 60;
constexpr double kFirstDamping = 1e-3, kLastDamping = 1e10;
// A cycle that gains less, in weighted squares of a standard deviation, is the last.
constexpr double kLeastGain = 1e-3;
constexpr double kMostShape = 1.5;  // tails beyond a Lorentzian's do occur

// At first the peaks of a group move and change their widths together, and none may vanish: a fit
// that begins with all freedom gives the whole of a pair to one of them.
constexpr double kFirstStiffness = 100, kLeastStart = 0.05;

// How far from its restraint a parameter is by one standard deviation.
constexpr double kUsualShape = 0.5, kShapeSpread = 0.3;
constexpr double kSidesSpread = 0.5;      // of ln(left / right width)
constexpr double kUsualSpread = 0.7;      // of the logarithm of widths
constexpr double kNeighbourSpread = 0.3;  // of the logarithm of widths, and of shapes

// A parameter less another one, or less 0, is near to a target.
struct Restraint {
  int parameter, other;  // -1: none
  double target, spread;

  double MissedBy(const Values& p) const {
    return (p[parameter] - (other < 0 ? 0 : p[other]) - target) / spread;
  }
};

struct Fit {
  const GroupPoints& points;
  const FitWavelengths& lines;
  double middle;  // of the background
  int peaks;
  Values lowest, highest;
  std::vector<Restraint> restraints;
  double stiffness = 1;  // of the restraints

  int Parameters() const { return static_cast<int>(lowest.size()); }
};

// Sums over the points at some values of the parameters.
struct Sums {
  double chi2 = 0;
  SymmetricMatrix matrix;
  Values vector;
};

SplitPeak PeakOf(const Values& p, int k) {
  const double* v = &p[SplitParameters * k];
  return {v[Area],      v[Position],           std::exp(v[LogLeft]),
          v[LeftShape], std::exp(v[LogRight]), v[RightShape]};
}

void AddProducts(const Values& d, double residual, double weight, Sums& sums) {
  sums.chi2 += weight * residual * residual;
  for (std::size_t i = 0; i < d.size(); ++i) {
    const double weighted = weight * d[i];
    double* row = sums.matrix.Row(static_cast<int>(i));
    sums.vector[i] += weighted * residual;
    for (std::size_t j = 0; j <= i; ++j) row[j] += weighted * d[j];
  }
}

Sums SumsAt(const Fit& fit, const Values& p) {
  std::vector<DoubletProfile> profiles;
  for (int k = 0; k < fit.peaks; ++k) profiles.emplace_back(PeakOf(p, k), fit.lines);
  const int n = fit.Parameters();
  Sums sums{0, SymmetricMatrix(n), Values(n)};
  Values d(n);
  for (std::size_t i = 0; i < fit.points.x.size(); ++i) {
    const double x = fit.points.x[i];
    d[n - 2] = 1;
    d[n - 1] = x - fit.middle;
    double residual = fit.points.y[i] - p[n - 2] - p[n - 1] * d[n - 1];
    SplitDerivatives derivatives;
    for (int k = 0; k < fit.peaks; ++k) {
      residual -= profiles[k].At(x, derivatives);
      std::ranges::copy(derivatives, d.begin() + SplitParameters * k);
    }
    AddProducts(d, residual, fit.points.weight[i], sums);
  }
  return sums;
}

// Squares of what the restraints are missed by.
double Strain(const Fit& fit, const Values& p) {
  double sum = 0;
  for (const Restraint& restraint : fit.restraints) {
    const double missed = restraint.MissedBy(p);
    sum += missed * missed;
  }
  return sum;
}

void AddRestraints(const Fit& fit, const Values& p, double weight, Sums& sums) {
  for (const Restraint& restraint : fit.restraints) {
    const auto& [j, k, target, spread] = restraint;
    const double square = weight / (spread * spread);
    const double pull = weight * restraint.MissedBy(p) / spread;
    sums.matrix(j, j) += square;
    sums.vector[j] -= pull;
    if (k < 0) continue;
    sums.matrix(k, k) += square;
    sums.matrix(std::max(j, k), std::min(j, k)) -= square;
    sums.vector[k] += pull;
  }
}

// chi squared per degree of freedom
double Misfit(const Fit& fit, const Sums& sums) {
  return sums.chi2 / static_cast<double>(std::ssize(fit.points.x) - fit.Parameters());
}

// All but those that the points do not depend on, and those that stand at a limit; with a way to
// go, only those that would go beyond it.
std::vector<int> Refined(const Fit& fit, const Values& p, const SymmetricMatrix& matrix,
                         const Values* way) {
  std::vector<int> refined;
  for (int j = 0; j < fit.Parameters(); ++j) {
    const bool held = (p[j] <= fit.lowest[j] && !(way && (*way)[j] > 0)) ||
                      (p[j] >= fit.highest[j] && !(way && (*way)[j] < 0));
    if (!held && matrix(j, j) > 0) refined.push_back(j);
  }
  return refined;
}

// Takes a step that lessens squares and strain, with as much damping as that needs. False if there
// is none.
bool Step(const Fit& fit, Values& p, Sums& sums, double& damping, double& gain) {
  const double misfit = Misfit(fit, sums), weight = misfit * fit.stiffness;
  const double before = sums.chi2 + weight * Strain(fit, p);
  Sums restrained = sums;
  AddRestraints(fit, p, weight, restrained);
  const std::vector<int> refined = Refined(fit, p, restrained.matrix, &restrained.vector);
  for (; damping < kLastDamping; damping *= 10) {
    const NormalSystem system(restrained.matrix, refined, damping);
    if (system.Singular()) continue;
    Values trial = system.Solve(restrained.vector);
    for (std::size_t j = 0; j < p.size(); ++j)
      trial[j] = std::clamp(p[j] + trial[j], fit.lowest[j], fit.highest[j]);
    Sums there = SumsAt(fit, trial);
    gain = (before - there.chi2 - weight * Strain(fit, trial)) / misfit;
    if (!(gain > 0)) continue;
    p = std::move(trial);
    sums = std::move(there);
    damping /= 10;
    return true;
  }
  return false;
}

// True once the fit has come to rest.
bool Run(const Fit& fit, Values& p, Sums& sums) {
  double damping = kFirstDamping;
  if (!std::isfinite(sums.chi2)) return false;
  for (int cycle = 1; cycle <= kMostCycles; ++cycle) {
    double gain = 0;
    if (!Step(fit, p, sums, damping, gain) || gain < kLeastGain) return true;
  }
  return false;
}

void KeepPeak(const Fit& fit, const Values& p, const NormalSystem& system, double misfit, int k,
              GroupPeak& peak) {
  const int first = SplitParameters * k;
  peak.peak = PeakOf(p, k);
  peak.atlimit = false;
  for (int j : {first + Position, first + LogLeft, first + LogRight})
    peak.atlimit |= p[j] <= fit.lowest[j] || p[j] >= fit.highest[j];
  // The e.s.d. of a sum of parameters, each with its factor.
  const auto esd = [&](std::initializer_list<std::pair<int, double>> terms) {
    Values vector(p.size());
    for (const auto& [parameter, factor] : terms) vector[first + parameter] = factor;
    const Values covariance = system.Solve(vector);
    double variance = 0;
    for (std::size_t j = 0; j < vector.size(); ++j) variance += vector[j] * covariance[j];
    return std::sqrt(misfit * variance);
  };
  peak.areaesd = esd({{Area, 1}});
  peak.positionesd = esd({{Position, 1}});
  peak.fwhmesd = esd({{LogLeft, peak.peak.left / 2}, {LogRight, peak.peak.right / 2}});
}

std::vector<Restraint> RestraintsOf(std::span<const GroupPeak> peaks) {
  std::vector<Restraint> list;
  int first = 0;
  for (const GroupPeak& peak : peaks) {
    list.push_back({first + LogLeft, first + LogRight, 0, kSidesSpread});
    if (peak.limits.usual > 0)
      for (int width : {LogLeft, LogRight})
        list.push_back({first + width, -1, std::log(peak.limits.usual), kUsualSpread});
    for (int shape : {LeftShape, RightShape})
      list.push_back({first + shape, -1, kUsualShape, kShapeSpread});
    if (first > 0)
      for (int k : {LogLeft, LeftShape, LogRight, RightShape})
        list.push_back({first + k, first + k - SplitParameters, 0, kNeighbourSpread});
    first += SplitParameters;
  }
  return list;
}

Fit MakeFit(const GroupPoints& points, std::span<const GroupPeak> peaks,
            const BackgroundLine& background, const FitWavelengths& lines, Values& p) {
  const int count = static_cast<int>(peaks.size());
  Fit fit{points, lines, background.middle, count, {}, {}, RestraintsOf(peaks)};
  const auto add = [&](double value, double lowest, double highest) {
    p.push_back(std::clamp(value, lowest, highest));
    fit.lowest.push_back(lowest);
    fit.highest.push_back(highest);
  };
  for (const GroupPeak& one : peaks) {
    const PeakLimits& limits = one.limits;
    add(one.peak.area, kLeastStart * one.peak.area, HUGE_VAL);
    add(one.peak.position, limits.lowest, limits.highest);
    for (const auto& [width, shape] : {std::pair{one.peak.left, one.peak.leftshape},
                                       std::pair{one.peak.right, one.peak.rightshape}}) {
      add(std::log(width), std::log(limits.narrowest), std::log(limits.broadest));
      add(shape, 0, kMostShape);
    }
  }
  add(background.height, -HUGE_VAL, HUGE_VAL);
  add(background.slope, -HUGE_VAL, HUGE_VAL);
  return fit;
}

}  // namespace

GroupResult FitGroup(const GroupPoints& points, std::span<GroupPeak> peaks,
                     BackgroundLine& background, const FitWavelengths& lines) {
  Values p;
  Fit fit = MakeFit(points, peaks, background, lines, p);
  const int n = fit.Parameters();
  if (std::ssize(points.x) <= n) return {};
  Sums sums = SumsAt(fit, p);
  fit.stiffness = kFirstStiffness;
  Run(fit, p, sums);
  fit.stiffness = 1;
  for (int k = 0; k < fit.peaks; ++k) fit.lowest[SplitParameters * k + Area] = 0;
  if (!Run(fit, p, sums)) return {};
  const double chi2 = sums.chi2, misfit = Misfit(fit, sums);
  AddRestraints(fit, p, misfit, sums);
  const NormalSystem system(sums.matrix, Refined(fit, p, sums.matrix, nullptr));
  if (system.Singular()) return {};
  for (int k = 0; k < fit.peaks; ++k) KeepPeak(fit, p, system, misfit, k, peaks[k]);
  background.height = p[n - 2];
  background.slope = p[n - 1];
  return {true, chi2, misfit};
}
