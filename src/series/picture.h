// What is seen of a series: its patterns as a map or as curves one above the other, or a column of
// its table. It is drawn as viewmode 5, in the window and wherever the window's view goes.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "series/levels.h"
#include "series/seriesmap.h"

enum class SeriesKind { Map = 1, Waterfall, Column };

// A value of each file, not a number where there is none.
struct SeriesValues {
  std::string name{};
  std::vector<double> values{};
  std::vector<double> esds{};  // as many, or none

  bool empty() const { return values.empty(); }
};

struct SeriesPicture {
  SeriesKind kind = SeriesKind::Map;
  std::string title{};
  std::shared_ptr<const SeriesMap> map{};  // of map and waterfall
  CountScale scale = CountScale::Linear;
  bool coloured = false;  // the curves of the waterfall
  SeriesValues along{};   // up the map, or across the column's plot; empty: the number of the file
  SeriesValues column{}, second{};  // the second one may be empty
};

// From now on this is what viewmode 5 shows; its zoom is forgotten where other axes come with it.
void ShowSeries(const SeriesPicture& picture);
const SeriesPicture& ShownSeries();

// The file, from 1, that is shown at a place of the drawing in user units; 0 if there is none.
int SeriesRowAt(float x, float y);
