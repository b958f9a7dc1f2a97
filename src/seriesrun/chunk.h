// A run of files that follow each other, in a process of its own.
#pragma once

#include <cstddef>

#include "seriesrun/plan.h"

namespace seriesrun {

// Does the rows [first, last) one after the other, a chain from the first on, and writes to `pipe`
// a line of the table for each row from `from` on. Ends the process. What keeps it from going on is
// the last line, with kFatal in front.
inline constexpr char kFatal = '\a';
[[noreturn]] void RunChunk(const Plan& plan, std::size_t first, std::size_t last, std::size_t from,
                           int pipe);

}  // namespace seriesrun
