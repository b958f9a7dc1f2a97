// The cell of a list of lines: searched for in all systems, refined, and ranked by likelihood.
//
// Nothing here knows of the Workspace or of files, so that several runs can go on at once.
#pragma once

#include <array>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "index/find/form.h"
#include "index/find/lines.h"
#include "index/find/symmetry.h"

// A cell that somebody proposes: as a rule one of another indexing engine.
struct ProposedCell {
  std::array<double, 6> cell;  // angstrom and degrees
  char centering;  // P, A, B, C, I, F or R; blank: not known, P and all others are tried
};

// One that proposes cells; it is called in a thread of its own and stops once `stopped` says so.
struct CellSource {
  std::string name;  // as the table shows it
  std::function<std::vector<ProposedCell>(const std::function<bool()>& stopped)> propose;
};

struct FoundCell {
  LatticeSystem system;
  char centering;
  std::array<double, 6> cell;  // conventional, angstrom and degrees
  std::array<double, 6> esd;   // 0 for what the system fixes
  double volume;               // of it, cubic angstrom
  double zero, zeroesd;        // degrees: the lines lie at calculated positions + zero
  double likelihood;           // natural logarithm of the odds against lines that lie anywhere
  double m20;                  // de Wolff's figure of merit, on the first 20 lines that it indexes
  double f20;                  // Smith and Snyder's, likewise,
  double f20error;             // its mean deviation, degrees,
  int f20lines;                // and its number of possible lines
  int indexed, positions;      // of all lines; calculated ones that the pattern can tell apart
  std::vector<int> unindexed;  // numbers of the other lines, from 1
  std::vector<std::string> origins;  // who has found it: "Search" or the name of a source
  int relativeof;  // number, from 0, of the better cell in the table that it is a sub- or
                   // superlattice of; -1 for none
  bool tie;        // too close to the one before it to tell which is right
};

struct FindCellTask {
  std::vector<ObservedLine> lines;
  double wavelength;                  // angstrom
  std::vector<CellSource> sources{};  // beside the search itself
  int threads = 0;                    // 0: as many as there are processors
};

// Told from the calling thread a few times a second, in parts of 1 and with the best cell so far
// (null before there is one); false asks to stop.
using FindCellReport = std::function<bool(double done, const FoundCell* best)>;

enum class FindCellEnd {
  Done,
  Stopped,      // the table holds what had been found
  TooFewLines,  // of different positions: less than kLeastLines
};
inline constexpr std::size_t kLeastLines = 6;     // for cubic to hexagonal cells
inline constexpr std::size_t kAdvisedLines = 12;  // from which on cells of low symmetry can be told
inline constexpr std::size_t kMostFound = 20;

struct FoundCells {
  FindCellEnd end;
  std::vector<FoundCell> cells;  // best first, at most kMostFound
};

// The result does not depend on the number of threads.
FoundCells FindCells(const FindCellTask& task, const FindCellReport& report = {});
