// The search for the cell of the peak list: its lines, the search with all its sources, and what is
// told of it.
#pragma once

#include "index/foundcells.h"
#include "workspace/command.h"

struct LineList {
  std::vector<ObservedLine> lines;
  std::vector<int> numbers;  // of their rows in the peak list
  // Peaks that have been left out: the alpha2 lines of others, and what no fit bears out.
  std::size_t alpha2 = 0, noise = 0;
};

float WavelengthInUse();
// The peaks that have been measured, from a list in its order.
LineList MeasuredLines();
// The lines that a cell of the table leaves.
LineList UnexplainedLines(const FoundTable& table, std::size_t row);

// Searches with both engines beside and shows how far it has come. The table stays as it was where
// there is no cell, which a box tells, or where it was stopped before there was one.
Outcome SearchFor(const LineList& list, FoundTable& table);
