// The pattern as csv.
//
//   two_theta,counts,background,calculated,difference,d,q,quartz
//   5.02,151,98.5,149.25,1.75,17.58881,0.3572263,87
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "patternfiles/export/columns.h"
#include "patternfiles/export/export.h"
#include "workspace/csv.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

std::vector<float> Difference(std::span<const float> counts, std::span<const float> calculated) {
  std::vector<float> difference(calculated.size());
  std::ranges::transform(counts, calculated, difference.begin(), std::minus());
  return difference;
}

void AddCurves(std::vector<Column>& columns) {
  if (auto background = ShownBackground(); !background.empty())
    columns.push_back({"background", std::move(background)});
  auto calculated = ShownCalculated();
  if (calculated.empty()) return;
  auto difference = Difference(IntensityOf(SlotInput), calculated);
  columns.push_back({"calculated", std::move(calculated)});
  columns.push_back({"difference", std::move(difference)});
}

void AddOverlays(std::vector<Column>& columns) {
  const std::vector<int> apart = OverlaysApart();
  for (int k = 1; k <= ws.noverlay; ++k)
    if (std::ranges::find(apart, k) == apart.end())
      columns.push_back({FileStem(ws.overlayname(k)), CopyOf(IntensityOf(SlotOverlay + k - 1))});
}

// From the two-theta: the axes of a slot that has been truncated are still those of before.
void AddAxes(std::vector<Column>& columns, float wavelength) {
  Column d{"d", columns.front().values}, q{"q", columns.front().values};
  for (float& value : d.values)
    value = value > 0 ? (wavelength * 0.5f) / std::sin(value * 0.5f / RadToDeg) : kNone;
  std::ranges::transform(d.values, q.values.begin(),
                         [](float spacing) { return 6.283185f / spacing; });
  columns.insert(columns.end(), {std::move(d), std::move(q)});
}

std::vector<Column> ColumnsOf(int slot) {
  std::vector<Column> columns{{"two_theta", CopyOf(TthOf(slot))},
                              {"counts", CopyOf(IntensityOf(slot))}};
  if (slot == SlotInput) AddCurves(columns);
  AddAxes(columns, slot == SlotInput ? ws.axiswave : ws.wavelen(slot));
  if (slot == SlotInput) AddOverlays(columns);
  return columns;
}

}  // namespace

std::vector<std::string> PatternAsCsv(int slot) {
  const std::vector<Column> columns = ColumnsOf(slot);
  std::vector<std::string> cells;
  for (const Column& column : columns) cells.push_back(column.head);
  std::vector<std::string> lines{CsvLine(cells)};
  for (std::size_t i = 0; i < columns.front().values.size(); ++i) {
    std::ranges::transform(columns, cells.begin(),
                           [i](const Column& column) { return AllDigits(column.values[i]); });
    lines.push_back(CsvLine(cells));
  }
  return lines;
}
