// The names of the curves that stand beside the pattern's own.
#include "plot/legend.h"

#include <algorithm>

#include "plot/structureticks.h"
#include "toolkit/toolkit.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr std::size_t kNameLength = 20;
// In letters' heights: the piece of curve in front of a name, and what parts them.
constexpr float kSample = 2, kGap = 1;

}  // namespace

std::vector<LegendRow> LegendRows() {
  std::vector<LegendRow> rows;
  if (ws.legend == 0) return rows;
  if (ws.fitshown == 0)
    for (int k = 1; k <= ws.noverlay; ++k)
      rows.push_back({colours::kOverlay[k - 1], Field(FileStem(ws.overlayname(k)), kNameLength)});
  const int primary = ActiveSlot();
  if (primary == SlotNet) rows.push_back({colours::kBlack, "Difference (A-B)"});
  if ((ws.plotmask & PlotBackground) && primary != SlotBackground)
    rows.push_back({colours::kGreen, "Background"});
  const bool fit = ws.fitshown == 1;
  if (fit || ((ws.plotmask & PlotRefined) && primary != SlotRefined)) {
    rows.push_back({colours::kOrange, fit ? "Fitted pattern" : "Refined pattern"});
    if (ws.yaxismode == 1 && (ws.plotmask & PlotResidual))
      rows.push_back({colours::kBrown, "Difference (A-C)"});
  }
  // Those below the frame have their names beside them.
  if (ws.structurescale == 1)
    for (int k = 1; k <= ws.nstructure; ++k)
      rows.push_back({StructureColour(k), Field(StructureLabel(k), kNameLength)});
  return rows;
}

int Skyline::ColumnOf(float x) {
  const float column = x / ws.plotwidth * kColumns;
  return column >= 0 ? static_cast<int>(std::min(column, kColumns - 1.0f)) : 0;
}

void Skyline::Take(float x, float y) {
  if (!(x >= 0 && x <= ws.plotwidth)) return;
  float& top = top_[ColumnOf(x)];
  top = std::max(top, y);
}

float Skyline::Over(float left, float right) const {
  return *std::max_element(top_.begin() + ColumnOf(left), top_.begin() + ColumnOf(right) + 1);
}

Legend::Legend(const PageLayout& page, std::vector<LegendRow> rows)
    : page_(page),
      rows_(std::move(rows)),
      height_(std::max(page.textheight, 1.2f * TextUnits * page.scale)),
      glyphx_(WInfoGrReal(GraphicsGlyphX)),
      glyphy_(WInfoGrReal(GraphicsGlyphY)) {
  for (const LegendRow& row : rows_) width_ = std::max(width_, RowWidth(row));
}

float Legend::RowWidth(const LegendRow& row) const {
  return page_.scale * 10 + (NameWidth(row.name, height_) + (kSample + kGap) * height_) * glyphx_;
}

float Legend::RightPlace() const { return ws.plotwidth - width_; }

// The corners come first, then what lies between them. All places where nothing is in the way are
// as good.
std::optional<float> Legend::Place(const Skyline& curves) const {
  const float right = RightPlace(), step = ws.plotwidth / 50;
  const float room = ws.plotheight - Depth(), highest = curves.Over(0, ws.plotwidth);
  std::vector<float> places{right, 0};
  for (float left = right - step; left > 0; left -= step) places.push_back(left);
  const auto top = [&](float left) { return std::max(room, curves.Over(left, left + width_)); };
  const float best = *std::ranges::min_element(places, {}, top);
  if (right < 0 || (top(best) > room && top(best) >= highest)) return {};
  return best;
}

void Legend::Draw(float left) const {
  const bool atright = left >= RightPlace();
  const float edge = page_.scale * 10, sample = kSample * height_ * glyphx_,
              gap = kGap * height_ * glyphx_;
  for (int k = 1; k <= static_cast<int>(rows_.size()); ++k) {
    const LegendRow& row = rows_[k - 1];
    const float y = ws.plotheight - Top(k);
    SetPen(1, 1, row.colour);
    LineAt(atright ? ws.plotwidth - RowWidth(row) : left + edge, y - 0.5f * height_ * glyphy_,
           sample, 0);
    DrawName(atright ? ws.plotwidth - edge : left + edge + sample + gap, y, row.name, height_, 0,
             atright ? 5 : 7);
  }
}
