// The patterns of a series on one grid.
#include "series/seriesmap.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>

#include "index/find/crew.h"
#include "patternfiles/import/import.h"
#include "patternfiles/import/prepared.h"
#include "workspace/workspace.h"  // for CuKalpha1, MaxPoints

namespace {

constexpr float kNothing = std::numeric_limits<float>::quiet_NaN();

// Nothing but empty lists where that fails.
PreparedPattern PatternOf(const std::string& path) {
  const Imported imported = ImportFile(path);
  if (imported.file.scans.empty()) return {};
  return Prepared(imported.file.scans.front(), CuKalpha1, MaxPoints);
}

// Whether both are the same but for rounding, as those of a series usually are.
bool SameGrid(std::span<const float> one, std::span<const float> other) {
  constexpr float kShare = 0.01F;
  if (one.size() != other.size()) return false;
  for (std::size_t i = 0; i < one.size(); ++i) {
    const float step = one[std::max<std::size_t>(i, 1)] - one[std::max<std::size_t>(i, 1) - 1];
    if (!(std::abs(one[i] - other[i]) <= kShare * step)) return false;
  }
  return true;
}

// Columns joined by so many.
std::size_t Factor(std::size_t points) { return (points + MostMapColumns - 1) / MostMapColumns; }

std::vector<float> MiddleOfColumns(std::span<const float> grid, std::size_t factor) {
  std::vector<float> columns;
  for (std::size_t at = 0; at < grid.size(); at += factor)
    columns.push_back((grid[at] + grid[std::min(at + factor, grid.size()) - 1]) / 2);
  return columns;
}

// The highest of each so many counts, as far as there are some.
void PutColumns(std::span<const float> counts, std::size_t factor, float* out) {
  for (std::size_t i = 0; i < counts.size(); ++i) {
    float& column = out[i / factor];
    if (!(column >= counts[i])) column = counts[i];
  }
}

// Row k of the map shows the file at this place of the list.
std::size_t FileOfRow(std::size_t row, std::size_t rows, std::size_t files) {
  return row * files / rows;
}

std::string NoteOf(std::size_t rows, std::size_t files, std::size_t factor, std::size_t unread) {
  std::string note;
  const auto add = [&](const std::string& text) { note += (note.empty() ? "" : "; ") + text; };
  if (rows < files)
    add(std::to_string(rows) + " of " + std::to_string(files) + " files, evenly chosen");
  if (factor > 1) add("highest of each " + std::to_string(factor) + " points");
  if (unread > 0)
    add(std::to_string(unread) + (unread == 1 ? " file" : " files") + " could not be read");
  return note;
}

}  // namespace

std::vector<float> CountsOnGrid(std::span<const float> tth, std::span<const float> counts,
                                std::span<const float> grid) {
  std::vector<float> out(grid.size(), kNothing);
  std::size_t next = 0;  // the first point that is not below
  for (std::size_t i = 0; i < grid.size(); ++i) {
    while (next < tth.size() && tth[next] < grid[i]) ++next;
    if (next == tth.size()) break;
    if (tth[next] == grid[i])
      out[i] = counts[next];
    else if (next > 0)
      out[i] = counts[next - 1] + (counts[next] - counts[next - 1]) *
                                      ((grid[i] - tth[next - 1]) / (tth[next] - tth[next - 1]));
  }
  return out;
}

std::optional<SeriesMap> ReadSeriesMap(std::span<const std::string> files,
                                       const std::function<bool(float done)>& report) {
  SeriesMap map;
  map.total = files.size();
  const std::size_t rows = std::min(files.size(), MostMapRows);
  const auto path = [&](std::size_t row) { return files[FileOfRow(row, rows, files.size())]; };
  PreparedPattern first;
  std::size_t begin = 0;  // of the rows that have not been read
  while (begin < rows && first.tth.empty()) {
    if (!report(0)) return {};
    first = PatternOf(path(begin++));
  }
  if (first.tth.empty()) return map;
  const std::vector<float>& grid = first.tth;
  const std::size_t factor = Factor(grid.size());
  map.tth = MiddleOfColumns(grid, factor);
  map.counts.assign(rows * map.Columns(), kNothing);
  for (std::size_t row = 0; row < rows; ++row)
    map.files.push_back(static_cast<int>(FileOfRow(row, rows, files.size())) + 1);

  std::atomic<std::size_t> unread = begin - 1;
  const auto put = [&](std::size_t row, const PreparedPattern& pattern) {
    float* const out = &map.counts[row * map.Columns()];
    if (SameGrid(grid, pattern.tth))
      PutColumns(pattern.counts, factor, out);
    else
      PutColumns(CountsOnGrid(pattern.tth, pattern.counts, grid), factor, out);
  };
  put(begin - 1, first);
  Crew crew(0, [&] { return report(static_cast<float>(crew.Done())); });
  crew.Expect(rows - begin);
  crew.Each(rows - begin, [&](std::size_t k) {
    const PreparedPattern pattern = PatternOf(path(begin + k));
    unread += pattern.tth.empty();
    put(begin + k, pattern);
  });
  if (crew.Stopped()) return {};
  map.note = NoteOf(rows, files.size(), factor, unread);
  return map;
}
