// The names of the curves that stand beside the pattern's own.
#pragma once

#include <array>
#include <optional>
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

// How high the curves reach, by columns of the frame, also where they are cut off at its top.
class Skyline {
 public:
  // A point in drawing units from the corner of the frame.
  void Take(float x, float y);
  // Between two places of the frame.
  float Over(float left, float right) const;

 private:
  static constexpr int kColumns = 100;
  static int ColumnOf(float x);
  std::array<float, kColumns> top_{};
};

// Rows at the upper edge of the frame: on the right below the plot's title, or where the curves
// leave them room.
class Legend {
 public:
  Legend(const PageLayout& page, std::vector<LegendRow> rows);
  bool empty() const { return rows_.empty(); }
  // The left end of a place for it; none if it would cover the highest peak wherever it stood.
  std::optional<float> Place(const Skyline& curves) const;
  void Draw(float left) const;

 private:
  float RightPlace() const;
  // Room that it takes below the frame's upper edge.
  float Depth() const { return Top(static_cast<int>(rows_.size())) + height_ * glyphy_; }
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
