// The names of the curves that stand beside the pattern's own.
#pragma once

#include <string>
#include <vector>

#include "plot/page.h"

struct LegendRow {
  int colour;
  std::string name;
};

// Of the curves on show, the overlays first. Empty when the legend is switched off, or the pattern
// stands alone.
std::vector<LegendRow> LegendRows();

// Rows in the upper corner of the frame on the right, below the plot's title, or on the left.
class Legend {
 public:
  Legend(const PageLayout& page, std::vector<LegendRow> rows);
  bool empty() const { return rows_.empty(); }
  // Room that it takes beside the frame and below its upper edge.
  float Width() const { return width_; }
  float Depth() const { return Top(static_cast<int>(rows_.size())) + height_ * glyphy_; }
  void Draw(bool left) const;

 private:
  // From the frame's upper edge to the letters of row k, from 1; row 0 is the title.
  float Top(int k) const { return page_.scale * 20 + page_.textheight * 2 * static_cast<float>(k); }

  // From its end beside the frame to the far end of its piece of curve.
  float RowWidth(const LegendRow& row) const;

  PageLayout page_;
  std::vector<LegendRow> rows_;
  float height_;           // of the letters
  float glyphx_, glyphy_;  // what a unit of it takes along and across the rows
  float width_ = 0;
};
