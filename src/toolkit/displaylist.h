// The display list: what has been drawn since the area was cleared, in user units.
//
// One source for every medium. It is painted on the window, rasterised, printed, written as EPS,
// SVG or PDF, and looked at by tests.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct DrawPoint {
  float x, y;
  bool operator==(const DrawPoint&) const = default;
};

struct DrawRect {
  float x1, y1, x2, y2;
  bool operator==(const DrawRect&) const = default;
};

struct Pen {
  int linetype = 0;          // 0 solid, 1 to 4 dashes
  float width = 1;           // in thin lines
  std::uint32_t colour = 0;  // red + 256 green + 65536 blue
  bool operator==(const Pen&) const = default;
};

// A polyline in one pen: points [first, first + count) of the list.
struct Stroke {
  Pen pen;
  std::size_t first, count;
};

struct DrawnText {
  float x, y, height, angle;  // height in user units of y, angle in degrees
  int alignment;              // -1 left, 0 centre, 1 right
  std::uint32_t colour;
  std::string text;
};

// Levels of equal cells, row by row from the lowest. Where cells are smaller than what a target can
// show, the highest level is seen, so that no narrow line gets lost. Level 0 shows nothing.
struct RasterCells {
  int columns = 0, rows = 0;
  std::vector<std::uint8_t> levels;
};

using LevelColours = std::array<std::uint32_t, 256>;  // as that of a pen

struct Raster {
  std::shared_ptr<const RasterCells> cells;
  LevelColours colours;
  DrawRect place;       // of all cells, y upward
  DrawRect window;      // what is seen of them, within that
  std::size_t strokes;  // that lie below it
};

struct DisplayList {
  DrawRect area{0, 0, 1, 1};         // fractions of the target, y upward
  DrawRect units{0, 0, 1000, 1000};  // user units of the area's corners
  std::vector<DrawPoint> points;
  std::vector<Stroke> strokes;
  std::vector<Raster> rasters;  // by rising numbers of strokes
  std::vector<DrawnText> texts;
};

// Calls one of two functions for each raster and stroke in the order in which they were drawn.
template <class OnRaster, class OnStroke>
void ForEachDrawn(const DisplayList& list, OnRaster raster, OnStroke stroke) {
  auto next = list.rasters.begin();
  for (std::size_t k = 0; k <= list.strokes.size(); ++k) {
    for (; next != list.rasters.end() && next->strokes == k; ++next) raster(*next);
    if (k < list.strokes.size()) stroke(list.strokes[k]);
  }
}

// The list of the screen's last redraw.
const DisplayList& ScreenList();

// Writers of a list as a picture; each returns false if the file could not be written whole.
// Sizes are in points (1/72 inch) of the whole target. EPS and SVG have a tight bounding box.
bool WriteEps(const DisplayList& list, const std::string& path, const std::string& title,
              float width, float height);
bool WriteSvg(const DisplayList& list, const std::string& path, const std::string& title,
              float width, float height);
// What WriteSvg writes.
std::string SvgText(const DisplayList& list, const std::string& title, float width, float height);
// One page of `pagewidth` by `pageheight` points with the list, `width` by `height`, in its middle.
bool WritePdf(const DisplayList& list, const std::string& path, const std::string& title,
              float width, float height, float pagewidth, float pageheight);
