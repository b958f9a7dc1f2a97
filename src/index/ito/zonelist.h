#pragma once

#include "index/engine.h"
#include "index/ito/zones.h"

// Finds and rates the zones of a problem; the best come first, at most 20. The listing gets both
// tables. A report that asks to end gives what has been rated so far, and sets `stopped`.
std::vector<Zone> FindZones(const ItoProblem& problem, Listing& listing, EngineRun& run);
