// Columns of numbers: how a line is parted into cells, and which columns are meant by the headings.
#pragma once

#include <string_view>
#include <vector>

#include "patternfiles/import/measured.h"

struct ColumnChoice {
  int x = -1, y = -1, esd = -1;  // from 0, -1 where there is none
  bool named = false;            // chosen by headings
  ScanAxis axis = ScanAxis::TwoTheta;
  double scale = 1;          // of the positions, into the unit of the axis
  std::string_view foreign;  // the heading of positions that are no angles: "Time (s)"
};

inline constexpr std::size_t kMostCells = 32;  // of a line; what follows is left out

// Parts a line at tabs, semicolons, bars, at commas if they part (and are no decimal points), and
// at blanks if they do; two such signs in a row leave an empty cell between them. Texts in double
// quotes are one cell, with the quotes.
void SplitCells(std::string_view line, bool commas, bool blanks,
                std::vector<std::string_view>& cells);

// What the line names, if it is a line of headings over so many columns; without a position in it
// x and y are -1.
ColumnChoice ColumnsNamed(std::string_view line, std::size_t columns);
// The axis and the unit that a label tells: "Q (nm-1)"; TwoTheta for what says nothing.
ColumnChoice AxisNamed(std::string_view label);
