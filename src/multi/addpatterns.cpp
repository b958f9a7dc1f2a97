// The sum of all patterns.
#include "multi/commongrid.h"
#include "multi/multi.h"
#include "multi/overlays.h"
#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/slots.h"

namespace {

void Progress(const char* text, int points) {
  if (ws.debugmode) MessageBoxInfo("Progress", WriteRecord<"(a,i5)">(text, points));
}

void CutTo(const CommonGrid& grid, int slot, int first) {
  CopyPoints(slot, first, grid.points, slot);
}

}  // namespace

// Points are matched by their number in the common range.
Outcome AddPatterns() {
  if (ws.noverlay < 1) return Outcome::Idle;
  const auto grid = FindCommonGrid(ws.noverlay, StepComplaint::Numbered);
  if (!grid) return Outcome::Failed;
  CutTo(*grid, SlotInput, grid->first[0]);
  Progress("mstep truncated", grid->points);
  const std::span<float> sum = IntensityOf(SlotInput);
  for (int k = 1; k <= ws.noverlay; ++k) {
    CutTo(*grid, OverlaySlot(k), grid->first[k]);
    const std::span<const float> y = IntensityOf(OverlaySlot(k));
    for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += y[i];
  }
  Progress("mstep end", grid->points);
  ws.noverlay = 0;
  EndOverlayFit();
  return Outcome::Done;
}
