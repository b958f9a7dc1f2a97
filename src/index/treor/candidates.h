// The best cells of a search.
#pragma once

#include <vector>

#include "index/treor/run.h"

// Puts a cell into its place: more lines come first, and with as many lines the smaller cell. One
// that is listed already, by axes in another order, is left out, and so is one behind the last of
// five places, or ten for triclinic cells: false.
bool StoreCandidate(std::vector<TreorCandidate>& candidates, TreorCandidate candidate);
