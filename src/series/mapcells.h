// A map of a series as cells between straight axes.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "series/levels.h"
#include "series/seriesmap.h"

struct MapCells {
  std::shared_ptr<const RasterCells> cells;  // none where there is nothing to be seen
  Range x{}, y{};                            // of the outer edges
  std::vector<int> rows;  // that of the map, from 0, which each row of cells shows; -1: none
};

// The range from which to which counts are told apart; a logarithm has no lower end than a
// ten-thousandth of the upper one.
Range CountRange(const SeriesMap& map, CountScale scale);

// On the x axis on show. Upward by the number of the file, or by a value of each file: a row
// reaches half the way to its neighbours, but no farther than usual ones are apart, and where two
// rows meet the highest counts stand. A file whose value is no number is left out.
MapCells CellsOfMap(const SeriesMap& map, std::span<const double> values, const LevelTable& levels);
