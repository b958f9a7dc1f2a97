// A map of a series as cells between straight axes.
#include "series/mapcells.h"

#include <algorithm>
#include <cmath>

#include "plot/dataposition.h"  // for ShownX

namespace {

// Columns [first, last) of the map; none where they are equal.
struct Part {
  std::size_t first, last;
};

struct Across {
  Range x;
  std::vector<Part> parts;  // of each column of cells
};

// As many columns of cells as the map has. A cell without a column of the map shows the nearest.
Across LayAcross(const SeriesMap& map) {
  std::vector<float> shown;  // rising
  for (const float tth : map.tth) shown.push_back(ShownX(tth));
  const bool falling = shown.front() > shown.back();
  if (falling) std::ranges::reverse(shown);
  const std::size_t n = shown.size();
  const float width = shown.back() - shown.front();
  const float cell = n > 1 ? width / static_cast<float>(n - 1) : 1.0F;
  Across across{{shown.front() - cell / 2, shown.back() + cell / 2}, {}};
  for (std::size_t i = 0; i < n; ++i) {
    const float middle = shown.front() + static_cast<float>(i) * cell;
    const auto index = [&](float x) {
      return static_cast<std::size_t>(std::ranges::lower_bound(shown, x) - shown.begin());
    };
    Part part{index(middle - cell / 2), i + 1 < n ? index(middle + cell / 2) : n};
    if (part.first == part.last) {
      const bool nearer = part.first > 0 && (part.first == n || middle - shown[part.first - 1] <
                                                                    shown[part.first] - middle);
      part.first -= nearer;
      part.last = part.first + 1;
    }
    if (falling) part = {n - part.last, n - part.first};
    across.parts.push_back(part);
  }
  return across;
}

// Rows of cells [first, last) that a row of the map fills.
struct Band {
  int row;
  std::size_t first, last;
};

struct Upward {
  Range y{};
  std::size_t rows = 0;
  std::vector<Band> bands;
};

Upward ByNumber(const SeriesMap& map) {
  Upward up{{0.5F, static_cast<float>(map.total) + 0.5F}, map.Rows(), {}};
  for (std::size_t row = 0; row < map.Rows(); ++row)
    up.bands.push_back({static_cast<int>(row), row, row + 1});
  return up;
}

struct Placed {
  double value;
  int row;
};

// The median of the steps from one value to the next that is another; 1 for a single value.
double UsualStep(std::span<const Placed> rows) {
  std::vector<double> steps;
  for (std::size_t i = 1; i < rows.size(); ++i)
    if (rows[i].value > rows[i - 1].value) steps.push_back(rows[i].value - rows[i - 1].value);
  if (steps.empty()) return 1;
  std::ranges::nth_element(steps, steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2));
  return steps[steps.size() / 2];
}

Upward ByValue(const SeriesMap& map, std::span<const double> values) {
  constexpr double kCellsOfStep = 4, kBeyondMeasure = 1e30;
  std::vector<Placed> rows;
  for (std::size_t row = 0; row < map.Rows(); ++row) {
    const auto file = static_cast<std::size_t>(map.files[row]) - 1;
    if (file < values.size() && std::abs(values[file]) < kBeyondMeasure)
      rows.push_back({values[file], static_cast<int>(row)});
  }
  if (rows.empty()) return {};
  std::ranges::stable_sort(rows, {}, &Placed::value);
  const double step = UsualStep(rows), lo = rows.front().value - step / 2,
               hi = rows.back().value + step / 2;
  const double most = static_cast<double>(MostMapRows);
  const double cells = std::clamp(std::ceil((hi - lo) / step * kCellsOfStep), 1.0, most);
  Upward up{{static_cast<float>(lo), static_cast<float>(hi)}, static_cast<std::size_t>(cells), {}};
  const auto place = [&](double value) {
    return static_cast<std::size_t>(std::clamp((value - lo) / (hi - lo) * cells, 0.0, cells - 1));
  };
  // Beyond the ends, and beside a gap, a row is as high as usual.
  const auto reach = [&](double gap) { return gap > 2 * step ? step / 2 : gap / 2; };
  double below = step;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::size_t next = i + 1;
    while (next < rows.size() && rows[next].value == rows[i].value) ++next;
    const double above = next < rows.size() ? rows[next].value - rows[i].value : step;
    const std::size_t first = place(rows[i].value - reach(below)),
                      last = place(rows[i].value + reach(above) - 1e-6 * step);
    up.bands.push_back({rows[i].row, first, last + 1});
    if (next == i + 1) below = above;
  }
  return up;
}

void FillBand(const SeriesMap& map, const LevelTable& table, const Across& across, const Band& band,
              std::vector<std::uint8_t>& levels, RasterCells& cells) {
  const std::span<const float> counts = map.Row(band.row);
  for (std::size_t i = 0; i < counts.size(); ++i) levels[i] = table.Of(counts[i]);
  for (std::size_t row = band.first; row < band.last; ++row) {
    std::uint8_t* out = &cells.levels[row * across.parts.size()];
    for (const Part& part : across.parts) {
      for (std::size_t i = part.first; i < part.last; ++i) *out = std::max(*out, levels[i]);
      ++out;
    }
  }
}

}  // namespace

Range CountRange(const SeriesMap& map, CountScale scale) {
  constexpr float kDecades = 1e-4F;
  Extremes all, positive;
  for (const float counts : map.counts) {
    all.Take(counts);
    if (counts > 0) positive.Take(counts);
  }
  Range range{all.low, all.high};
  if (scale == CountScale::Logarithm && positive.any)
    range = {std::max(positive.low, kDecades * positive.high), positive.high};
  if (!(range.lo < range.hi)) range.hi = range.lo + std::max(1.0F, std::abs(range.lo));
  return range;
}

MapCells CellsOfMap(const SeriesMap& map, std::span<const double> values,
                    const LevelTable& levels) {
  MapCells out;
  const Upward up = map.tth.empty()  ? Upward{}
                    : values.empty() ? ByNumber(map)
                                     : ByValue(map, values);
  if (up.bands.empty()) return out;
  const Across across = LayAcross(map);
  const auto cells = std::make_shared<RasterCells>();
  cells->columns = static_cast<int>(map.Columns());
  cells->rows = static_cast<int>(up.rows);
  cells->levels.resize(map.Columns() * up.rows);
  out.rows.assign(up.rows, -1);
  std::vector<std::uint8_t> row(map.Columns());
  for (const Band& band : up.bands) {
    FillBand(map, levels, across, band, row, *cells);
    std::fill(out.rows.begin() + static_cast<std::ptrdiff_t>(band.first),
              out.rows.begin() + static_cast<std::ptrdiff_t>(band.last), band.row);
  }
  out.cells = cells;
  out.x = across.x;
  out.y = up.y;
  return out;
}
