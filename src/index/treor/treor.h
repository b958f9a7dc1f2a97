// The indexing engine TREOR90: gives trial indices to a few low-angle lines of a powder pattern,
// solves for the constants of the cell, and refines the cells that index most of the lines.
#pragma once

#include <string>
#include <vector>

#include "crystal/cellmetric.h"
#include "index/engine.h"

// A cell of the listing.
struct TreorSolution {
  UnitCell cell{}, esd{};  // angstrom, degrees
  float volume = 0;        // cubic angstrom
  int merit = 0;           // M of the test
  int unindexed = 0;       // lines left over in it
};

inline constexpr int kTreorMostSolutions = 100;

struct TreorRun : EngineRun {
  int datasets = 0;                        // read from the input
  int nlines = 0;                          // of the last of them
  bool solved = false;                     // it has a cell that passed the test
  std::vector<TreorSolution> solutions{};  // in the order of the listing, at most 100
};

// Runs the data sets of the input file and writes the listing. Status is 0, or 1 if a file failed,
// or 2 if the control lines are not valid; both are complaints of the run as well.
void Treor90Engine(int& status, const std::string& inputname, const std::string& outputname,
                   TreorRun& run);
