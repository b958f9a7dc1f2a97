// What the vector formats share: places on the page, drawing operators, numbers, titles.
#pragma once

#include <functional>
#include <string>

#include "toolkit/displaylist.h"
#include "toolkit/raster.h"

// From the units of a list to points on a target of some size, y upward or downward.
struct PageMap {
  PageMap(const DisplayList& list, float width, float height, bool upward = true);
  double X(float x) const { return xstart + (x - xunit) * xscale; }
  double Y(float y) const { return ystart + (y - yunit) * yscale; }
  double xstart, ystart, xunit, yunit, xscale, yscale;
};

struct PageBox {
  double x1, y1, x2, y2;
};

// Points of a pen of width 1.
inline constexpr double ThinLine = 0.5;

// What the list covers, half the pen width around the strokes included. An empty list covers all.
PageBox CoveredBox(const DisplayList& list, const PageMap& map, float width, float height);

// Appends at most three decimals, without zeros at the end.
void AppendNumber(std::string& out, double value);
// Appends each number and a blank behind it.
void AppendNumbers(std::string& out, std::initializer_list<double> values);

// The list in the path and text operators that PDF has, and that the EPS files define for
// themselves: m l S w RG d for strokes, BT Tf rg Tm Tj ET for texts, q re W n cm Q around what
// `image` writes for each raster, in a unit square with its lower left corner at (0, 0).
using ImageOperators = std::function<std::string(const Raster&, const LevelPicture&)>;
std::string PathOperators(const DisplayList& list, const PageMap& map, const ImageOperators& image);

// All colours in hexadecimal, of level 0 that of paper.
std::string HexColours(const LevelColours& colours);

// The character of a UTF-8 text that begins at `at`, which moves behind it; a byte that is none
// stands for itself.
char32_t NextCharacter(std::string_view text, std::size_t& at);
// All of them.
std::u32string Characters(std::string_view text);

bool WriteWholeFile(const std::string& path, const std::string& content);
