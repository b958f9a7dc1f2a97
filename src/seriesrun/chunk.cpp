// A run of files that follow each other, in a process of its own.
#include "seriesrun/chunk.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "seriesrun/process.h"
#include "seriesrun/rowrun.h"

namespace seriesrun {
namespace {

struct Attempt {
  RowResult result;
  std::string start;
  std::size_t recipe = 0;
};

// What the next file begins with.
struct Carried {
  FitValues values;
  std::size_t recipe;
};

// The value that a condition looks at; not a number if there is none.
double Watched(const Plan& plan, const Condition& when, const RowResult& result) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  if (when.column == "Rwp") return result.fit.fitted ? result.fit.rwp : kNone;
  const auto& columns = plan.recipes[0].columns;
  const auto column =
      static_cast<std::size_t>(std::ranges::find(columns, when.column) - columns.begin());
  if (column >= result.values.size()) return kNone;
  const std::string& text = result.values[column];
  double value = kNone;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

// How bad a result is: first by how many conditions say so, a failed row by more than all of them,
// then by the value that the first one looks at, turned so that more is worse.
using Badness = std::pair<std::size_t, double>;

Badness BadnessOf(const Plan& plan, const RowResult& result) {
  if (!result.failed.empty()) return {plan.restart.size() + 1, 0};
  Badness badness{0, 0};
  for (const Condition& when : plan.restart) {
    const double sign = when.above ? 1 : -1, value = sign * Watched(plan, when, result);
    badness.first += !(value <= sign * when.limit);
    if (&when == &plan.restart.front() && std::isfinite(value)) badness.second = value;
  }
  return badness;
}

bool IsBad(const Badness& badness) { return badness.first > 0; }

// The result that is kept of a row: the first that is good, or else the best.
Attempt DoRow(const Plan& plan, std::size_t row, const std::optional<Carried>& carried) {
  const Places places = PlacesOfRow(plan, row);
  const auto attempt = [&](std::size_t recipe, const char* start,
                           const std::optional<FitValues>& values) {
    return Attempt{RunRow(plan.recipes[recipe], places, values, plan.limit), start, recipe};
  };
  Attempt best = carried ? attempt(carried->recipe, "chain", carried->values)
                         : attempt(0, "recipe", std::nullopt);
  if (!plan.HasStarts()) return best;
  Badness badness = BadnessOf(plan, best.result);
  for (std::size_t k = carried ? 0 : 1; k < plan.recipes.size() && IsBad(badness); ++k) {
    Attempt other = attempt(k, "restart", std::nullopt);
    const Badness otherbadness = BadnessOf(plan, other.result);
    if (otherbadness >= badness) continue;
    best = std::move(other);
    badness = otherbadness;
  }
  return best;
}

}  // namespace

void RunChunk(const Plan& plan, std::size_t first, std::size_t last, std::size_t from, int pipe) {
  try {
    std::optional<Carried> carried;
    for (std::size_t row = plan.chain ? first : from; row < last; ++row) {
      const Attempt done = DoRow(plan, row, carried);
      // A result that is not to be believed is not handed on: the next file goes on from the last
      // good one.
      if (plan.chain && done.result.fit.fitted && !IsBad(BadnessOf(plan, done.result)))
        carried = Carried{done.result.fit.values, done.recipe};
      if (row < from) continue;
      if (!WriteWhole(pipe, TableLine(plan, row, done.start, done.recipe, done.result) + '\n'))
        _exit(1);
    }
  } catch (const SeriesError& error) {
    WriteWhole(pipe, kFatal + error.text + '\n');
  }
  _exit(0);
}

}  // namespace seriesrun
