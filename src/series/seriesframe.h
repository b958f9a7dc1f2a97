// The frame that the views of a series have in common.
#pragma once

#include <string>

#include "plot/page.h"
#include "plot/scales.h"

// The page with its origin at the lower left corner of the frame, and the part of the data that the
// frame shows.
struct SeriesFrame {
  SeriesFrame();
  PageLayout page;
  Range x, y;
  float xfactor, yfactor;

  float X(float value) const { return (value - x.lo) * xfactor; }
  float Y(float value) const { return (value - y.lo) * yfactor; }
};

// What is outside of a frame is left out. The line is broken by Up() and by what is no number.
class FramePen {
 public:
  explicit FramePen(const SeriesFrame& frame) : frame_(frame) {}
  void Up() { begun_ = false; }
  void To(double x, double y);

 private:
  const SeriesFrame& frame_;
  double x_ = 0, y_ = 0;
  bool begun_ = false;
};

// A title above the frame, and in its upper corner what has been left out of the picture.
void DrawSeriesTitle(const SeriesFrame& frame, const std::string& title, const std::string& note);
// Frame and axes; without a name the x axis is that of patterns.
void DrawSeriesAxes(const SeriesFrame& frame, const std::string& xname, const std::string& yname);
