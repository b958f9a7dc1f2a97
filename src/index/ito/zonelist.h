#pragma once

#include "index/engine.h"
#include "index/ito/zones.h"

// Finds and rates the zones of a problem; the best come first, at most 20. The listing gets both
// tables. A report that asks to end sets `stopped`, and there are none.
std::vector<Zone> FindZones(const ItoProblem& problem, Listing& listing, EngineRun& run);
