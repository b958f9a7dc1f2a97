// A run of files that follow each other, in a process of its own.
#include "seriesrun/chunk.h"

#include <unistd.h>

#include <charconv>
#include <cmath>
#include <limits>

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

// The value that the condition looks at; not a number if there is none.
double Watched(const Plan& plan, const RowResult& result) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  if (plan.restart->column == "Rwp") return result.fit.fitted ? result.fit.rwp : kNone;
  const auto& columns = plan.recipes[0].columns;
  for (std::size_t k = 0; k < result.values.size(); ++k) {
    if (columns[k] != plan.restart->column) continue;
    const std::string& text = result.values[k];
    double value = kNone;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
  }
  return kNone;
}

// Larger is worse; infinite for a row that has failed or has no such value.
double Badness(const Plan& plan, const RowResult& result) {
  constexpr double kWorst = std::numeric_limits<double>::infinity();
  if (!result.failed.empty()) return kWorst;
  if (!plan.restart) return 0;
  const double value = Watched(plan, result);
  if (!std::isfinite(value)) return kWorst;
  return plan.restart->above ? value : -value;
}

bool IsBad(const Plan& plan, const RowResult& result) {
  const double limit = !plan.restart         ? 0
                       : plan.restart->above ? plan.restart->limit
                                             : -plan.restart->limit;
  return Badness(plan, result) > limit;
}

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
  const std::size_t recipes = plan.restart ? plan.recipes.size() : 1;
  for (std::size_t k = carried ? 0 : 1; k < recipes && IsBad(plan, best.result); ++k) {
    Attempt other = attempt(k, "restart", std::nullopt);
    if (Badness(plan, other.result) < Badness(plan, best.result)) best = std::move(other);
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
      if (plan.chain && done.result.fit.fitted && !IsBad(plan, done.result))
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
