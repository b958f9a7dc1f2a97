// The cards of ITO's input: records of fixed columns, one problem behind the other.
//
//   quartz                                    the title, "end" behind the last problem
//   9004 0 0 0 3.00 4.50   1.54056            parameters in their columns
//      0.0200         4        14             zero correction, least merit, least lines
//      20.860                                 lines, up to eight on a card
//      26.640
//      ...
//                                             a blank card ends them
//   end
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "index/ito/problem.h"

// A line as it stands on its card: two-theta, q or d.
struct InputLine {
  float value = 0;
  std::string label;
};

// Whether a title stands behind the last problem: with "end" in its first or second column.
bool EndsTheRun(std::string_view title);

// Reads all cards of a problem: its parameters, combinations, trial lattices and lines. False
// behind the last problem and for a card that is missing or cannot be read, which the listing
// tells.
bool ReadCards(LineReader& input, ItoProblem& problem, std::vector<InputLine>& lines,
               Listing& listing);
