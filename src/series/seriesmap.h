// The patterns of a series on one grid.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

inline constexpr std::size_t MostMapRows = 4000, MostMapColumns = 4000;

struct SeriesMap {
  std::vector<float> tth;     // rising, of each column
  std::vector<float> counts;  // row by row; not a number where a pattern has none
  std::vector<int> files;     // the file of each row, from 1
  std::size_t total = 0;      // files of the series
  std::string note;           // what has been left out; blank: nothing

  std::size_t Columns() const { return tth.size(); }
  std::size_t Rows() const { return files.size(); }
  std::span<const float> Row(std::size_t row) const {
    return std::span(counts).subspan(row * Columns(), Columns());
  }
};

// Reads the first scan of each file, by several threads. The grid is that of the first file that
// can be read, others are interpolated to it, and one that cannot be read leaves its row blank. Of
// more than MostMapRows files so many are read, evenly chosen; columns beyond MostMapColumns are
// joined, the highest counts stand. `report` hears how much is done, from 0 to 1, and stops it by
// false; nothing then. Without a pattern the map is empty.
std::optional<SeriesMap> ReadSeriesMap(std::span<const std::string> files,
                                       const std::function<bool(float done)>& report);

// For ReadSeriesMap: counts between the points of a pattern of rising two-theta, and not a number
// beyond its ends.
std::vector<float> CountsOnGrid(std::span<const float> tth, std::span<const float> counts,
                                std::span<const float> grid);
