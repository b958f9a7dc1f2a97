#pragma once

#include "index/ito/problem.h"

// Tells in the listing how many lines would be higher orders of the first six, and by how much they
// would miss, for zero shifts from -0.10 to 0.10 degrees two-theta.
void ZeroCheck(const ItoProblem& problem, Listing& listing);
