// The lines of the structures that the pattern is compared with.
#include "plot/structureticks.h"

#include <algorithm>
#include <cmath>

#include "plot/dataposition.h"
#include "workspace/slots.h"

namespace {

// In drawing units of the screen. The label of a row stands over its ticks.
constexpr float kRow = 42, kLabel = 14, kLongest = 17, kShortest = 3, kGap = 5;

constexpr int kColours[MaxStructures] = {
    RgbColour(0, 114, 178),   RgbColour(213, 94, 0),   RgbColour(0, 158, 115),
    RgbColour(204, 121, 167), RgbColour(51, 34, 136),  RgbColour(230, 159, 0),
    RgbColour(136, 34, 85),   RgbColour(86, 180, 233),
};

// Calls draw(x, intensity) for the lines of a structure that the axis shows.
template <class Draw>
void ForEachLine(int k, const Range& x, Draw draw) {
  for (int i = 1; i <= ws.nstructureline(k); ++i)
    if (const float place = ShownX(ws.structuretth(k, i)); place > 0 && x.Holds(place))
      draw(place, ws.structureint(k, i));
}

bool AreRows() { return ws.structurescale == 0; }

}  // namespace

int StructureColour(int k) { return kColours[k - 1]; }

std::string StructureLabel(int k) {
  const std::string &name = ws.structurename(k), &formula = ws.structureformula(k);
  return name + (formula.empty() || formula == name ? "" : " " + formula);
}

float StructureRoom() {
  return AreRows() ? ws.plotscaley * kRow * static_cast<float>(ws.nstructure) : 0.0f;
}

void DrawStructureRows(const PageLayout& page, const Range& x, float xfactor, float top) {
  if (!AreRows()) return;
  for (int k = 1; k <= ws.nstructure; ++k) {
    const float floor = top - page.scale * (kRow * static_cast<float>(k) - kGap);
    SetPen(1, 1, StructureColour(k));
    DrawName(page.scale * 5, floor + page.scale * (kRow - 2 * kGap), StructureLabel(k),
             std::min(page.textheight, page.scale * kLabel), 0, 7);
    SetPen(1, 2, StructureColour(k));
    ForEachLine(k, x, [&](float place, float intensity) {
      const float length = kShortest + (kLongest - kShortest) * std::sqrt(intensity / 100);
      LineAt((place - x.lo) * xfactor, floor, page.scale * length, 90);
    });
  }
}

void DrawStructureSticks(const Range& x, float xfactor, const Range& y, float yfactor) {
  if (AreRows()) return;
  Extremes counts;
  for (const float value : IntensityOf(ActiveSlot())) counts.Take(value);
  for (int k = 1; k <= ws.nstructure; ++k) {
    SetPen(1, 2, StructureColour(k));
    ForEachLine(k, x, [&](float place, float intensity) {
      const float height = counts.low + (counts.high - counts.low) * intensity / 100;
      const float top = (y.Limit(ShownY(height)) - y.lo) * yfactor;
      if (top > 0) LineAt((place - x.lo) * xfactor, 0, top, 90);
    });
  }
}
