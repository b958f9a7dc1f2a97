// Reads the solutions back from the listings of the indexing engines.
#pragma once

#include "workspace/lines.h"
#include "workspace/workspace.h"

// Return the number of solutions, at most 100, which fill the table from its first row. A number
// that the listing does not hold, or asterisks in its place, is 0 in a cell; a figure of merit and
// a number of lines stay then as they are in the table.
int ReadItoSolutions(LineReader& listing, SolutionTable& solutions);
int ReadTreorSolutions(LineReader& listing, SolutionTable& solutions);

// The letters of the lattices of ITO's solutions, in their order: p, a, b, c, i, f; blank where
// there is none.
std::string ReadItoCenterings(LineReader& listing);
