// How well a lattice explains the lines.
//
// Two models are weighed. Lines that lie anywhere, with the mean density of the list; and a
// lattice: each of its positions is seen or not, a line on a position has a normal error, the
// others are foreign. All that is not known is integrated over: the scale of the errors (scaled
// inverse chi-square), the metric (uniform) and the zero shift, by Laplace's method.
#include "index/find/assess.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "index/find/leastsquares.h"
#include "index/find/limits.h"
#include "index/find/loggamma.h"
#include "index/find/visibility.h"

namespace {

constexpr std::size_t kUnknowns = 7;  // six of a metric and the zero shift; unused ones stay at 0
using Equations = FewEquations<kUnknowns>;
using Row = Equations::Row;

// The errors of a list are those expected times a scale about 1, which is worth three lines.
constexpr double kErrorFreedom = 3;
constexpr double kForeign = 0.01;  // share of foreign lines in those of one phase

// The zero shift: small as a rule, but any up to a tenth of a degree in one list of five.
constexpr double kZeroSigma = 0.02;
constexpr double kAnyZero = 0.2, kAnyZeroRange = 0.24;
constexpr double kMostZero = kAnyZeroRange / 2;
constexpr double kZeroReach = 0.03;  // of one refinement

constexpr double kRidge = 0.02;  // of Q of the eighth line: how far a cycle may move the metric

double Q8(std::span<const ObservedLine> lines) {
  return lines[std::min<std::size_t>(7, lines.size() - 1)].q;
}

double LogZeroPrior(double zero) {
  const double normal = std::exp(-zero * zero / (2 * kZeroSigma * kZeroSigma)) /
                        (kZeroSigma * std::sqrt(2 * std::numbers::pi));
  return std::log((1 - kAnyZero) * normal + kAnyZero / kAnyZeroRange);
}

// What the matched lines tell.
struct Evidence {
  Equations equations;  // in units of the expected errors
  // The same with each reflection of a position by itself: how sharply the lines tell constants
  // that would split positions apart.
  Equations information;
  double squares = 0;     // of deviations by errors
  double logdensity = 0;  // of the errors by the density of lines, summed
};

Evidence EvidenceOf(std::span<const ObservedLine> lines, const MatchedPositions& matched,
                    const SymmetricLattice& lattice, double zero) {
  const std::size_t p = lattice.parameters.size();
  const double density = static_cast<double>(lines.size()) / lines.back().tth;
  Evidence e;
  for (const CalculatedPosition& position : matched.positions) {
    if (position.line < 0) continue;
    const ObservedLine& line = lines[static_cast<std::size_t>(position.line)];
    const auto reflections = matched.At(position);
    const double share = 1 / static_cast<double>(reflections.size());
    // Where in a spread position the line lies depends on intensities that nobody knows.
    const double error = std::hypot(line.error, 0.29 * position.spread / line.slope);
    Row mean{};
    mean[p] = 1 / error;
    for (const CalculatedReflection& r : reflections) {
      const Form terms = TermsOf(r.hkl);
      Row row{};
      row[p] = 1 / error;
      for (std::size_t i = 0; i < p; ++i) {
        row[i] = Dot(lattice.parameters[i], terms) / (line.slope * error);
        mean[i] += row[i] * share;
      }
      e.information.Add(row, 0, share);
    }
    const double deviation = DeviationOf(line, position.q, zero) / error;
    e.equations.Add(mean, deviation, 1);
    e.squares += deviation * deviation;
    e.logdensity += std::log(density * error);
  }
  return e;
}

bool Move(Assessment& a, const Row& shift) {
  const auto& parameters = a.lattice.parameters;
  for (std::size_t i = 0; i < parameters.size(); ++i)
    for (std::size_t term = 0; term < 6; ++term)
      a.reciprocal[term] += shift[i] * parameters[i][term];
  a.zero += shift[parameters.size()];
  a.lattice.direct = Reciprocal(a.reciprocal);
  const Form& d = a.lattice.direct;
  return Determinant(a.reciprocal) > 0 && d[0] > 0 && d[1] > 0 && d[2] > 0;
}

MatchedPositions Matched(std::span<const ObservedLine> lines, const Assessment& a) {
  const double rotations = static_cast<double>(a.lattice.group.size());
  return MatchLines(lines, a.reciprocal, a.zero, kMostOfRotation * rotations);
}

// Of p constants and the zero shift.
void HoldUnused(std::size_t p, Equations& equations) {
  for (std::size_t i = p + 1; i < kUnknowns; ++i) {
    Row row{};
    row[i] = 1;
    equations.Add(row, 0, 1);
  }
}

// One cycle; the number of lines that lie on positions before it, none if it leads nowhere.
std::optional<int> Cycle(std::span<const ObservedLine> lines, double zero, Assessment& a) {
  const std::size_t p = a.lattice.parameters.size();
  const MatchedPositions matched = Matched(lines, a);
  if (matched.positions.empty()) return std::nullopt;
  Equations equations = EvidenceOf(lines, matched, a.lattice, a.zero).equations;
  const double hold = 1 / (kRidge * Q8(lines));
  for (std::size_t i = 0; i < kUnknowns; ++i) {
    Row row{};
    row[i] = 1;
    equations.Add(row, i == p ? zero - a.zero : 0,
                  i < p    ? hold * hold
                  : i == p ? 1 / (kZeroReach * kZeroReach)
                           : 1);
  }
  const auto shift = equations.Solve();
  if (!shift || !Move(a, *shift)) return std::nullopt;
  return matched.hits;
}

double LogVisibilityOf(const MatchedPositions& matched, const SymmetricLattice& lattice) {
  std::vector<Hkl> indices;
  for (const CalculatedReflection& r : matched.reflections) indices.push_back(r.hkl);
  std::vector<SeenPosition> positions;
  for (const CalculatedPosition& p : matched.positions)
    positions.push_back({std::span(indices).subspan(p.begin, p.end - p.begin), p.line >= 0});
  return LogVisibility(positions, lattice);
}

double LogForeign(double foreign, double hits, double mixtures) {
  const double anyshare =
      std::exp(LogGamma(hits + 1) + LogGamma(foreign + 1) - LogGamma(hits + foreign + 2));
  return std::log((1 - mixtures) * std::pow(kForeign, foreign) + mixtures * anyshare);
}

// False for a lattice with fewer lines than unknowns, or a zero shift that no instrument has.
bool Judge(std::span<const ObservedLine> lines, const PhaseModel& model, Assessment& a) {
  const std::size_t p = a.lattice.parameters.size();
  const MatchedPositions matched = Matched(lines, a);
  Evidence e = EvidenceOf(lines, matched, a.lattice, a.zero);
  const double hits = matched.hits, freedom = hits - static_cast<double>(p) - 1;
  if (freedom < 1 || std::abs(a.zero) > kMostZero) return false;
  // A constant that the lines do not tell costs nothing; its range is Q of the eighth line.
  const double range = std::sqrt(2 * std::numbers::pi) / Q8(lines);
  for (std::size_t i = 0; i < kUnknowns; ++i) {
    Row row{};
    row[i] = 1;
    e.information.Add(row, 0, i < p ? range * range : i == p ? 1 / (kZeroSigma * kZeroSigma) : 1);
  }
  const auto logroot = e.information.LogRootOfDeterminant();
  if (!logroot) return false;
  constexpr double nu = kErrorFreedom;
  a.hits = matched.hits;
  a.positions = static_cast<int>(matched.positions.size());
  a.likelihood = LogVisibilityOf(matched, a.lattice) +
                 LogForeign(static_cast<double>(lines.size()) - hits, hits, model.mixtures) -
                 e.logdensity - freedom / 2 * std::log(2 * std::numbers::pi) - *logroot +
                 LogGamma((nu + freedom) / 2) - LogGamma(nu / 2) + nu / 2 * std::log(nu / 2) -
                 (nu + freedom) / 2 * std::log((nu + e.squares) / 2) -
                 static_cast<double>(p) * std::log(Q8(lines)) + LogZeroPrior(a.zero);
  return true;
}

}  // namespace

std::optional<Assessment> Assess(std::span<const ObservedLine> lines,
                                 const SymmetricLattice& lattice, RefinementStart start,
                                 double zero, const PhaseModel& model) {
  constexpr std::array<std::size_t, 6> kSteps = {10,           15,           20,
                                                 kLinesJudged, kLinesJudged, kLinesJudged};
  lines = lines.first(std::min(kLinesJudged, lines.size()));
  Assessment a;
  a.lattice = lattice;
  a.zero = zero;
  a.reciprocal = Reciprocal(lattice.direct);
  for (std::size_t most : std::span(kSteps).subspan(start == RefinementStart::Rough ? 0 : 4)) {
    const auto some = lines.first(std::min(most, lines.size()));
    const auto hits = Cycle(some, zero, a);
    if (!hits) return std::nullopt;
    // Once the first lines have moved it to its place, what explains few lines is dropped.
    const auto least = most < kLinesOfSecondCheck ? 0 : model.shareexplained;
    if (*hits < least * static_cast<double>(some.size())) return std::nullopt;
  }
  if (!Judge(lines, model, a)) return std::nullopt;
  return a;
}

Assessment RefinedOnAll(std::span<const ObservedLine> lines, const Assessment& assessment) {
  constexpr int kCycles = 3;
  const std::size_t p = assessment.lattice.parameters.size();
  Assessment a = assessment;
  for (int cycle = 0; cycle < kCycles; ++cycle) {
    const MatchedPositions matched = MatchLines(lines, a.reciprocal, a.zero);
    if (matched.hits < static_cast<int>(p) + 2) return assessment;
    Equations equations = EvidenceOf(lines, matched, a.lattice, a.zero).equations;
    HoldUnused(p, equations);
    const auto shift = equations.Solve();
    if (!shift || !Move(a, *shift) || std::abs(a.zero - assessment.zero) > kZeroReach)
      return assessment;
  }
  return a;
}

std::vector<std::vector<double>> CovarianceOf(std::span<const ObservedLine> lines,
                                              const Assessment& assessment) {
  const std::size_t p = assessment.lattice.parameters.size();
  const MatchedPositions matched = MatchLines(lines, assessment.reciprocal, assessment.zero);
  Evidence e = EvidenceOf(lines, matched, assessment.lattice, assessment.zero);
  const double freedom = matched.hits - static_cast<double>(p) - 1;
  if (freedom < 1) return {};
  HoldUnused(p, e.equations);
  std::vector<std::vector<double>> covariance(p + 1);
  for (std::size_t i = 0; i <= p; ++i) {
    Row unit{};
    unit[i] = e.squares / freedom;
    const auto column = e.equations.SolveFor(unit);
    if (!column) return {};
    covariance[i].assign(column->begin(), column->begin() + static_cast<std::ptrdiff_t>(p + 1));
  }
  return covariance;
}
