// The index sets that the searches give to their base lines, in the order in which they are tried:
// h runs fastest, then k, then l; no indices sum up to more than the limits say.
#pragma once

#include <vector>

#include "crystal/hklcode.h"
#include "index/treor/run.h"

// Both: each set with h and l above 0 is followed by the one with h below.
enum class HSign { Positive, Both };
std::vector<Hkl> IndexSets(const IndexLimits& limits, HSign sign);

// Sets of systems whose axes are equivalent: h >= k, and all of them also k >= l.
enum class Equivalent { FirstTwo, All };
std::vector<Hkl> OrderedSets(const IndexLimits& limits, Equivalent axes);
