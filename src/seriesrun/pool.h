// Many chunks at once.
#pragma once

#include <functional>

#include "seriesrun/plan.h"
#include "seriesrun/tablefile.h"

namespace seriesrun {

struct Progress {
  std::size_t done = 0, rows = 0, failed = 0;
};

// Does the rows that the table lacks in `jobs` processes and appends them in their order. `report`
// hears of progress several times a second. False if a signal has stopped it, with all rows in the
// table that could be there. Throws SeriesError where it cannot go on.
bool RunPlan(const Plan& plan, TableFile& table, int jobs,
             const std::function<void(const Progress&)>& report);

}  // namespace seriesrun
