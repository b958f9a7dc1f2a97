// One file of a series: the recipe done to it in a process of its own.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "seriesrun/recipe.h"
#include "workspace/workspace.h"

namespace seriesrun {

// What a whole-pattern fit has found.
struct FitFound {
  bool fitted = false;  // with finite numbers
  float rwp = 0;        // percent
  FitValues values;
};

struct RowResult {
  std::string date;                 // of the measurement; blank: not stated
  std::vector<std::string> values;  // of the columns, as far as the recipe came
  std::vector<std::string> boxes;
  std::string failed;    // why it did not come to its end; blank: it did
  bool badline = false;  // a line could not be done at all: perhaps it is wrong for every file
  FitFound fit;
};

// Does the recipe with its places filled in, the first whole-pattern fit with these start values if
// there are any, in a process forked from this one, which has started up and must not have done
// anything to a pattern. `limit` in seconds, 0 for none. Throws SeriesError if there is no process
// to be had.
RowResult RunRow(const Recipe& recipe, const Places& places, const std::optional<FitValues>& start,
                 int limit);

}  // namespace seriesrun
