// Tables of parts put together.
#pragma once

#include "seriesrun/options.h"

namespace seriesrun {

// Writes the table of all parts in the order of the list, or without one of the parts as they are
// given. Throws SeriesError if they do not go together, or a file of the list is missing.
void JoinParts(const Options& options);

}  // namespace seriesrun
