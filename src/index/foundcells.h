// What the table of found cells shows, and its texts.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "index/find/findcell.h"

// "orthorhombic P"
std::string LatticeText(const FoundCell& cell);
// Names of all that have found it: "Search + ITO".
std::string OriginText(const FoundCell& cell);
// Lattice and free constants in few words: "orthorhombic P 4.76 5.82 10.21, M20 35".
std::string ShortText(const FoundCell& cell);

// Numbers of the class with the full symmetry of the lattice, and of its centering.
int ClassNumberOf(const FoundCell& cell);
int CenteringNumberOf(const FoundCell& cell);

// Added to every measured two-theta, as the whole-pattern fit has it.
double ZeroOf(const FoundCell& cell);

struct FoundTable {
  std::vector<FoundCell> cells;
  std::vector<ObservedLine> lines;  // that they were found for
  std::vector<int> numbers;         // of their rows in the peak list
  std::string summary;              // how the search ended
};

inline constexpr const char* kFoundHeads =
    "No.|Lattice|a (\u00c5)|b (\u00c5)|c (\u00c5)|\u03b1 (\u00b0)|\u03b2 (\u00b0)|\u03b3 (\u00b0)|"
    "V (\u00c5\u00b3)|M20|F20|Indexed|Zero (\u00b0)|ln odds|Origin|Relation";

// A row as the table shows it; rows count from 0.
std::vector<std::string> FoundTexts(const FoundTable& table, std::size_t row);
// All rows with more digits below a line of heads with units, parted by tabs or commas.
std::vector<std::string> FoundLines(const FoundTable& table, char separator);
// "lines 7, 12 at 23.41, 31.02"; "none".
std::string UnexplainedText(const FoundTable& table, std::size_t row);
