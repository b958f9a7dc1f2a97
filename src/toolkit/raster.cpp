// Cells of a raster as pixels of a target.
#include "toolkit/raster.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMostKept = 4e6;  // cells in a file

// Cells [first, last) of a pixel.
struct Cells {
  int first, last;
};

// For each of n pixels between two places along a side of `count` cells.
std::vector<Cells> CellsOfPixels(double from, double to, int n, int count) {
  const auto cell = [&](int edge) {
    const double place = from + (to - from) * edge / n;
    return static_cast<int>(std::floor(std::clamp(place, 0.0, static_cast<double>(count))));
  };
  std::vector<Cells> cells(n);
  for (int i = 0; i < n; ++i) {
    const int first = std::min(cell(i), count - 1);
    cells[i] = {first, std::max(first + 1, cell(i + 1))};
  }
  return cells;
}

// Of each of some neighbouring rows the highest levels, column by column.
void TakeHighest(const std::uint8_t* row, std::vector<std::uint8_t>& highest) {
  std::uint8_t* const out = highest.data();
  for (std::size_t i = 0; i < highest.size(); ++i) out[i] = std::max(out[i], row[i]);
}

// From a share of the place of all cells to cells.
PlaceRect InCells(const Raster& raster, const DrawRect& part) {
  const DrawRect& place = raster.place;
  const double dx = (double(place.x2) - place.x1) / raster.cells->columns;
  const double dy = (double(place.y2) - place.y1) / raster.cells->rows;
  return {(part.x1 - place.x1) / dx, (part.y1 - place.y1) / dy, (part.x2 - place.x1) / dx,
          (part.y2 - place.y1) / dy};
}

}  // namespace

LevelPicture HighestLevels(const RasterCells& cells, const PlaceRect& part, int width, int height) {
  LevelPicture picture{width, height, std::vector<std::uint8_t>(std::size_t(width) * height)};
  const auto across = CellsOfPixels(part.x1, part.x2, width, cells.columns);
  const auto up = CellsOfPixels(part.y1, part.y2, height, cells.rows);
  const int first = across.front().first, last = across.back().last;
  std::vector<std::uint8_t> highest(last - first);
  for (int y = 0; y < height; ++y) {
    std::ranges::fill(highest, 0);
    for (int row = up[y].first; row < up[y].last; ++row)
      TakeHighest(&cells.levels[std::size_t(row) * cells.columns + first], highest);
    std::uint8_t* out = &picture.levels[std::size_t(height - 1 - y) * width];
    for (const Cells& pixel : across)
      *out++ = *std::max_element(&highest[pixel.first - first], &highest[pixel.last - first]);
  }
  return picture;
}

KeptCells CellsInWindow(const Raster& raster) {
  const RasterCells& cells = *raster.cells;
  const DrawRect& place = raster.place;
  PlaceRect part = InCells(raster, raster.window);
  const auto whole = [](double& from, double& to, int count) {
    from = std::clamp(std::floor(from + 1e-3), 0.0, count - 1.0);
    to = std::clamp(std::ceil(to - 1e-3), from + 1, static_cast<double>(count));
  };
  whole(part.x1, part.x2, cells.columns);
  whole(part.y1, part.y2, cells.rows);
  double width = part.x2 - part.x1, height = part.y2 - part.y1;
  const float dx = (place.x2 - place.x1) / static_cast<float>(cells.columns),
              dy = (place.y2 - place.y1) / static_cast<float>(cells.rows);
  const auto x = [&](double column) { return place.x1 + static_cast<float>(column) * dx; };
  const auto y = [&](double row) { return place.y1 + static_cast<float>(row) * dy; };
  while (width * height > kMostKept) (width > height ? width : height) /= 2;
  return {{x(part.x1), y(part.y1), x(part.x2), y(part.y2)},
          HighestLevels(cells, part, static_cast<int>(std::ceil(width)),
                        static_cast<int>(std::ceil(height)))};
}

PixelPicture PixelsInWindow(const Raster& raster, const PlaceRect& place, int width, int height) {
  const PlaceRect window = InCells(raster, raster.window);
  const double dx = (place.x2 - place.x1) / raster.cells->columns,
               dy = (place.y2 - place.y1) / raster.cells->rows;  // downward
  const auto pixel = [](double at, int most) {
    return static_cast<int>(std::lround(std::clamp(at, 0.0, static_cast<double>(most))));
  };
  const int left = pixel(place.x1 + window.x1 * dx, width),
            right = pixel(place.x1 + window.x2 * dx, width),
            top = pixel(place.y2 - window.y2 * dy, height),
            bottom = pixel(place.y2 - window.y1 * dy, height);
  if (left >= right || top >= bottom) return {};
  const PlaceRect part{(left - place.x1) / dx, (place.y2 - bottom) / dy, (right - place.x1) / dx,
                       (place.y2 - top) / dy};
  return {left, top, HighestLevels(*raster.cells, part, right - left, bottom - top)};
}
