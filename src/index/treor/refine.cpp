#include "index/treor/refine.h"

#include <algorithm>
#include <cmath>

#include "index/treor/cell.h"
#include "index/treor/lines.h"
#include "index/treor/listing.h"

namespace {

constexpr float kLargestShift = 0.001f;  // of a and b in a cycle

struct Equation {
  std::array<int, kMostUnknowns> form;
  float s;
};

struct IndexedLine {
  int count = 0;  // reflections
  Hkl first{};
};

// A calculated line belongs to the first observed one within its tolerance.
std::vector<IndexedLine> IndexLines(const TrialCell& trial, const std::vector<TreorLine>& lines,
                                    const TreorOptions& options) {
  std::vector<IndexedLine> indexed(lines.size());
  const float smax = ReachOf(lines, options);
  for (const CalculatedLine& c : CalculatedLines(trial.system, trial.constants, smax)) {
    const float tolerance = ToleranceAt(c.s, options);
    const auto fits = [&](const TreorLine& line) { return std::fabs(line.s - c.s) <= tolerance; };
    const auto at = std::ranges::find_if(lines, fits);
    if (at == lines.end()) continue;
    IndexedLine& line = indexed[static_cast<std::size_t>(at - lines.begin())];
    if (line.count++ == 0) line.first = c.hkl;
  }
  return indexed;
}

std::vector<Equation> SingleLines(const TrialCell& trial, const std::vector<TreorLine>& lines,
                                  const TreorOptions& options) {
  std::vector<Equation> equations;
  const auto indexed = IndexLines(trial, lines, options);
  for (std::size_t i = 0; i < lines.size(); ++i)
    if (indexed[i].count == 1)
      equations.push_back({FormOf(trial.system, indexed[i].first), lines[i].s});
  return equations;
}

struct NormalEquations {
  std::array<float, kMostUnknowns * kMostUnknowns> matrix{};
  Parameters side{};
};

NormalEquations NormalEquationsOf(const std::vector<Equation>& equations, int n) {
  NormalEquations normal;
  for (const Equation& e : equations)
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j)
        normal.matrix[i * n + j] += static_cast<float>(e.form[i] * e.form[j]);
      normal.side[i] += static_cast<float>(e.form[i]) * e.s;
    }
  return normal;
}

float Residual(const Equation& e, const Parameters& parameters) {
  float s = e.s;
  for (int i = 0; i < kMostUnknowns; ++i) s -= static_cast<float>(e.form[i]) * parameters[i];
  return s;
}

// The mean square of the residuals; 0 if there are no more equations than parameters.
float Variance(const std::vector<Equation>& equations, const Parameters& parameters, int n) {
  float sum = 0;
  for (const Equation& e : equations) sum += Residual(e, parameters) * Residual(e, parameters);
  const int spare = static_cast<int>(equations.size()) - n;
  return spare > 0 ? sum / static_cast<float>(spare) : 0;
}

bool RunsAway(const Constants& from, const Constants& to) {
  return !(std::fabs(to.a - from.a) <= kLargestShift && std::fabs(to.b - from.b) <= kLargestShift);
}

// False if the cycles end here, with the cell as it was.
bool Cycle(TrialCell& trial, const std::vector<TreorLine>& lines, const TreorOptions& options,
           Listing& listing) {
  const int n = ParametersOf(trial.system);
  const auto equations = SingleLines(trial, lines, options);
  trial.singles = static_cast<int>(equations.size());
  if (trial.singles < n) {
    ListFewEquations(listing);
    return false;
  }
  NormalEquations normal = NormalEquationsOf(equations, n);
  if (!InvertInPlace(normal.matrix, n)) return false;
  Parameters parameters{};
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) parameters[i] += normal.matrix[i * n + j] * normal.side[j];
  const Constants constants = ConstantsOf(trial.system, parameters);
  if (RunsAway(trial.constants, constants)) return false;
  trial.constants = constants;
  const float variance = Variance(equations, parameters, n);
  for (std::size_t i = 0; i < trial.covariance.size(); ++i)
    trial.covariance[i] = variance * normal.matrix[i];
  ListCycle(listing, std::span(parameters).first(n));
  return true;
}

}  // namespace

void RefineCell(TrialCell& trial, const std::vector<TreorLine>& lines, const TreorOptions& options,
                Listing& listing) {
  trial.covariance.fill(0);
  if (lines.empty()) return;
  for (int cycle = 1; cycle <= kCycles; ++cycle)
    if (!Cycle(trial, lines, options, listing)) return;
}

UnitCell CellDeviations(const TrialCell& trial, float wave) {
  const int n = ParametersOf(trial.system);
  const Parameters parameters = ParametersOf(trial.system, trial.constants);
  // How the cell follows each parameter, by a step of its own deviation to both sides.
  std::array<UnitCell, kMostUnknowns> slope{};
  for (int j = 0; j < n; ++j) {
    const float step = std::sqrt(trial.covariance[j * n + j]);
    Parameters up = parameters, down = parameters;
    up[j] += step;
    down[j] -= step;
    const auto high = CellOf(trial.system, ConstantsOf(trial.system, up), wave);
    const auto low = CellOf(trial.system, ConstantsOf(trial.system, down), wave);
    if (!high || !low || !(step > 0)) continue;
    for (int i = 1; i <= 6; ++i) slope[j](i) = (high->cell(i) - low->cell(i)) / (2.0f * step);
  }
  UnitCell deviation{};
  for (int i = 1; i <= 6; ++i) {
    float variance = 0;
    for (int j = 0; j < n; ++j)
      for (int k = 0; k < n; ++k)
        variance += slope[j](i) * slope[k](i) * trial.covariance[j * n + k];
    deviation(i) = std::sqrt(std::max(variance, 0.0f));
  }
  return deviation;
}
