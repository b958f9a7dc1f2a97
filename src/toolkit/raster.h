// Cells of a raster as pixels of a target.
#pragma once

#include <cstdint>
#include <vector>

#include "toolkit/displaylist.h"

struct PlaceRect {
  double x1, y1, x2, y2;
};

struct LevelPicture {
  int width = 0, height = 0;
  std::vector<std::uint8_t> levels;  // from the top left
};

// Pixels over a part of the cells, given in cells from their lower left corner. Each pixel has the
// highest level of the cells that begin in it, or that of the one that it lies in.
LevelPicture HighestLevels(const RasterCells& cells, const PlaceRect& part, int width, int height);

// What a picture without pixels of its own keeps: the cells that the window touches, one by one as
// long as they are not too many.
struct KeptCells {
  DrawRect place;  // user units
  LevelPicture picture;
};
KeptCells CellsInWindow(const Raster& raster);

// The pixels that the window covers on a target of `width` by `height` pixels, y downward; of no
// size where it covers none. `place` is that of all cells there.
struct PixelPicture {
  int left = 0, top = 0;
  LevelPicture picture;
};
PixelPicture PixelsInWindow(const Raster& raster, const PlaceRect& place, int width, int height);
