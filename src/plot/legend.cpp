// The names of the curves that stand beside the pattern's own.
#include "plot/legend.h"

#include <algorithm>

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
  return rows;
}

Legend::Legend(const PageLayout& page, std::vector<LegendRow> rows)
    : page_(page),
      rows_(std::move(rows)),
      height_(1.2f * page.textheight),
      glyphx_(WInfoGrReal(GraphicsGlyphX)),
      glyphy_(WInfoGrReal(GraphicsGlyphY)) {
  for (const LegendRow& row : rows_) width_ = std::max(width_, RowWidth(row));
}

float Legend::RowWidth(const LegendRow& row) const {
  return page_.scale * 10 + (NameWidth(row.name, height_) + (kSample + kGap) * height_) * glyphx_;
}
void Legend::Draw(bool left) const {
  const float edge = page_.scale * 10, sample = kSample * height_ * glyphx_,
              gap = kGap * height_ * glyphx_;
  for (int k = 1; k <= static_cast<int>(rows_.size()); ++k) {
    const LegendRow& row = rows_[k - 1];
    const float y = ws.plotheight - Top(k);
    SetPen(1, 1, row.colour);
    LineAt(left ? edge : ws.plotwidth - RowWidth(row), y - 0.5f * height_ * glyphy_, sample, 0);
    DrawName(left ? edge + sample + gap : ws.plotwidth - edge, y, row.name, height_, 0,
             left ? 7 : 5);
  }
}
