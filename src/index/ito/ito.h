// The indexing engine ITO: finds zones of the reciprocal lattice among the low-order lines of a
// powder pattern and combines them into lattices.
#pragma once

#include <string>

#include "index/engine.h"

struct ItoRun : EngineRun {
  int problems = 0;  // read from the input
  int nlines = 0;    // useful lines of the last problem
};

inline constexpr int kItoLeastLines = 20, kItoMostLines = 40;

// Runs all problems of the input file and writes the listing; status is 0 in the end. A file that
// does not open or cannot be written whole is a complaint of the run.
void ItoEngine(int& status, const std::string& inputname, const std::string& outputname,
               ItoRun& run);
