#pragma once

#include "index/engine.h"
#include "index/ito/lattices.h"

// Orders the accepted lattices, prints the best ones at length, and writes the tables of the most
// probable solutions with their direct constants, which end the listing of a problem. Windows of
// the problem are widened where the cards prefer crystal systems.
void PutSolutions(std::vector<Lattice> lattices, ItoProblem& problem, Listing& listing,
                  EngineRun& run);
