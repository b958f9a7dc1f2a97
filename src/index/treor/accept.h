// From a candidate of a search to a solution.
#pragma once

#include "index/treor/run.h"

// Refines and lists a candidate and tests its figure of merit; one that passes is refined and
// tested again with all lines. True if it has passed both times: then it is the solution.
bool AcceptCandidate(TreorSearch& search, const TreorCandidate& candidate);
