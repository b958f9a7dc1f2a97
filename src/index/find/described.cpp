// A lattice as the table of found cells shows it.
#include "index/find/described.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "index/find/merit.h"

namespace {

std::array<double, 6> CellOf(const Form& direct) {
  const double a = std::sqrt(direct[0]), b = std::sqrt(direct[1]), c = std::sqrt(direct[2]);
  const auto angle = [](double twiceproduct, double u, double v) {
    return std::acos(std::clamp(twiceproduct / (2 * u * v), -1.0, 1.0)) * 180 / std::numbers::pi;
  };
  return {a, b, c, angle(direct[5], b, c), angle(direct[4], a, c), angle(direct[3], a, b)};
}

// Which angles and edges of a conventional cell are free.
std::array<bool, 6> FreeOf(LatticeSystem system) {
  using enum LatticeSystem;
  switch (system) {
    case Triclinic:
      return {true, true, true, true, true, true};
    case Monoclinic:
      return {true, true, true, false, true, false};
    default:
      return {true, true, true, false, false, false};
  }
}

// On the axes of the symmetry that it has now: refinement and reduction have moved the old ones.
Assessment WithItsSymmetry(const Assessment& assessment) {
  Assessment a = assessment;
  if (const auto symmetries = SymmetriesOf(a.lattice.direct); !symmetries.empty())
    a.lattice = symmetries.front();
  a.reciprocal = Reciprocal(a.lattice.direct);
  return a;
}

// An e.s.d. above this share of a constant, or this many radians of an angle, says that the lines
// do not tell it.
constexpr double kTold = 0.1;

double MostEsdOf(const FoundCell& cell, std::size_t constant) {
  return kTold * (constant < 3 ? cell.cell[constant] : 180 / std::numbers::pi);
}

// By the change of the cell with each constant; false if the lines do not tell all of them.
bool PutErrors(std::span<const ObservedLine> lines, const Assessment& a, const Axes& axes,
               FoundCell& cell) {
  const auto covariance = CovarianceOf(lines, a);
  if (covariance.empty()) return false;
  const auto& parameters = a.lattice.parameters;
  cell.zeroesd = std::sqrt(covariance.back().back());
  std::vector<std::array<double, 6>> gradients;
  for (const Form& parameter : parameters) {
    const double step = 1e-6 * a.reciprocal[0];
    Form moved = a.reciprocal;
    for (std::size_t i = 0; i < 6; ++i) moved[i] += step * parameter[i];
    auto gradient = CellOf(OnAxes(Reciprocal(moved), axes));
    for (std::size_t i = 0; i < 6; ++i) gradient[i] = (gradient[i] - cell.cell[i]) / step;
    gradients.push_back(gradient);
  }
  const auto free = FreeOf(cell.system);
  for (std::size_t i = 0; i < 6; ++i) {
    if (!free[i]) continue;
    double variance = 0;
    for (std::size_t k = 0; k < gradients.size(); ++k)
      for (std::size_t j = 0; j < gradients.size(); ++j)
        variance += gradients[k][i] * covariance[k][j] * gradients[j][i];
    cell.esd[i] = std::sqrt(std::max(0.0, variance));
    if (!(cell.esd[i] < MostEsdOf(cell, i))) return false;
  }
  return true;
}

void PutIndexed(std::span<const ObservedLine> lines, const Assessment& a, FoundCell& cell) {
  const MatchedPositions matched = MatchLines(lines, a.reciprocal, a.zero);
  std::vector<bool> indexed(lines.size());
  for (const CalculatedPosition& p : matched.positions)
    if (p.line >= 0) indexed[static_cast<std::size_t>(p.line)] = true;
  cell.positions = static_cast<int>(matched.positions.size());
  cell.indexed = matched.hits;
  for (std::size_t i = 0; i < indexed.size(); ++i)
    if (!indexed[i]) cell.unindexed.push_back(static_cast<int>(i) + 1);
}

}  // namespace

std::optional<FoundCell> Described(std::span<const ObservedLine> lines,
                                   const Assessment& assessment) {
  const Assessment a = RefinedOnAll(lines, WithItsSymmetry(assessment));
  const auto judged = lines.first(std::min(kLinesJudged, lines.size()));
  const auto [centering, rotation] = Conventional(a.lattice);
  const Axes axes = AxesOf(rotation);
  const Form direct = OnAxes(a.lattice.direct, axes);
  FoundCell cell{};
  cell.system = a.lattice.system;
  cell.centering = centering;
  cell.cell = CellOf(direct);
  cell.volume = std::sqrt(Determinant(direct));
  cell.zero = a.zero;
  cell.likelihood = a.likelihood;
  cell.relativeof = -1;
  if (!PutErrors(lines, a, axes, cell)) return std::nullopt;
  const FiguresOfMerit merit = MeritOf(judged, a);
  cell.m20 = merit.m20;
  cell.f20 = merit.f20;
  cell.f20error = merit.f20error;
  cell.f20lines = merit.possible;
  PutIndexed(lines, a, cell);
  return cell;
}
