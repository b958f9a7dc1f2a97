#include "index/treor/merit.h"

#include <algorithm>
#include <cmath>

#include "index/treor/lines.h"
#include "workspace/workspace.h"  // for RadToDeg

namespace {

constexpr int kTestLines = 20, kLongTestLines = 30;
constexpr float kLargestFigure = 99999;

// Each observed line takes the next calculated one, unless the one behind that is nearer.
std::vector<LineRow> Compare(const std::vector<TreorLine>& lines,
                             const std::vector<CalculatedLine>& calculated,
                             const TreorOptions& options) {
  std::vector<LineRow> rows;
  auto next = calculated.begin();
  const auto end = calculated.end();
  for (const TreorLine& line : lines) {
    const auto distance = [&](auto c) { return std::fabs(c->s - line.s); };
    for (; next != end && next + 1 != end && distance(next + 1) < distance(next); ++next)
      rows.push_back({nullptr, *next});
    if (next != end && distance(next) <= ToleranceAt(line.s, options)) {
      rows.push_back({&line, *next++});
      continue;
    }
    if (next != end && next->s < line.s) rows.push_back({nullptr, *next++});
    rows.push_back({&line, {}});
  }
  for (; next != end; ++next) rows.push_back({nullptr, *next});
  return rows;
}

int Figure(float value) { return static_cast<int>(std::min(value, kLargestFigure) + 0.5f); }

// None for lines that fit to the bit, or not at all.
std::optional<FigureOfMerit> FigureOf(const std::vector<LineRow>& rows, int n, float last) {
  FigureOfMerit figure{n};
  int matched = 0;
  for (const LineRow& row : rows) {
    if (row.calculated && row.calculated->s <= last) ++figure.calculated;
    if (!row.observed || !row.calculated || row.observed->s > last) continue;
    ++matched;
    figure.epsilon += std::fabs(row.observed->s - row.calculated->s);
    figure.delta += std::fabs(TwoThetaAt(row.observed->s) - TwoThetaAt(row.calculated->s));
  }
  if (figure.epsilon == 0 || figure.delta == 0 || figure.calculated == 0) return std::nullopt;
  figure.epsilon /= static_cast<float>(matched);
  figure.delta /= static_cast<float>(matched);
  const auto calculated = static_cast<float>(figure.calculated);
  figure.m = Figure(last / (2.0f * figure.epsilon * calculated));
  figure.f = Figure(static_cast<float>(n) / (figure.delta * calculated));
  return figure;
}

int Unindexed(const std::vector<LineRow>& rows, float last) {
  return static_cast<int>(std::ranges::count_if(rows, [last](const LineRow& row) {
    return row.observed && !row.calculated && row.observed->s <= last;
  }));
}

}  // namespace

float TwoThetaAt(float s) {
  return 2.0f * std::atan(std::sqrt(s) / std::sqrt(std::max(1.0f - s, 0.0f))) * RadToDeg;
}

LineTest TestLines(CrystalSystem system, const Constants& constants,
                   const std::vector<TreorLine>& lines, const TreorOptions& options) {
  LineTest test;
  if (lines.empty()) return test;
  const auto calculated = CalculatedLines(system, constants, ReachOf(lines, options));
  test.rows = Compare(lines, calculated, options);
  test.observed = static_cast<int>(lines.size());
  test.calculated = static_cast<int>(calculated.size());
  for (const int n : {kTestLines, kLongTestLines, test.observed}) {
    if (n > test.observed) continue;
    const auto figure = FigureOf(test.rows, n, lines[n - 1].s);
    if (figure) test.figures.push_back(*figure);
  }
  if (!test.figures.empty()) test.m = test.figures.front().m;
  test.unindexed = Unindexed(test.rows, lines.back().s);
  test.unindexedintest = Unindexed(test.rows, lines[std::min(test.observed, kTestLines) - 1].s);
  return test;
}
