#pragma once

#include "index/engine.h"
#include "index/ito/lattices.h"

// Builds lattices of the zones, or takes the trial lattices of the problem where it has any, and
// refines them. Gives those with enough lines and merit; the listing tells what becomes of each.
// A report that asks to end sets `stopped`, and what has been refined by then is given.
std::vector<Lattice> LatticeStage(const ItoProblem& problem, const std::vector<Zone>& zones,
                                  Listing& listing, EngineRun& run);
