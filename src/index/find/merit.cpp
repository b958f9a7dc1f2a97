// The figures of merit that everyone knows.
#include "index/find/merit.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t kLines = 20;
// Equal by symmetry, in parts of Q: what is left of rounding.
constexpr double kEqual = 1e-7;

}  // namespace

FiguresOfMerit MeritOf(std::span<const ObservedLine> lines, const Assessment& assessment) {
  const MatchedPositions matched = MatchLines(lines, assessment.reciprocal, assessment.zero);
  double q = 0, qerror = 0, error = 0;
  std::size_t taken = 0;
  for (const CalculatedPosition& p : matched.positions) {
    if (p.line < 0) continue;
    const ObservedLine& line = lines[static_cast<std::size_t>(p.line)];
    // The nearest reflection is the one that the line is given to.
    double deviation = DeviationOf(line, p.q, assessment.zero);
    for (const CalculatedReflection& r : matched.At(p))
      if (const double other = DeviationOf(line, r.q, assessment.zero);
          std::abs(other) < std::abs(deviation))
        deviation = other;
    q = std::max(p.q, line.q - assessment.zero * line.slope);
    qerror += std::abs(deviation) * line.slope;
    error += std::abs(deviation);
    if (++taken == kLines) break;
  }
  FiguresOfMerit merit{};
  if (taken == 0) return merit;
  double last = 0;
  for (const CalculatedReflection& r : matched.reflections) {
    if (r.q > q * (1 + kEqual) && merit.possible > 0) break;
    if (r.q > last * (1 + kEqual)) ++merit.possible;
    last = r.q;
  }
  const double n = static_cast<double>(taken);
  merit.f20error = error / n;
  // Lines that lie on their positions to the last digit have no finite figure.
  merit.m20 = q / (2 * std::max(qerror / n, 1e-9) * merit.possible);
  merit.f20 = n / (std::max(merit.f20error, 1e-6) * merit.possible);
  return merit;
}
