// The pattern as csv.
//
//   two_theta,counts,background,calculated,difference,d,q,quartz
//   5.02,151,98.5,149.25,1.75,17.588924,0.3572240,87
#include <algorithm>
#include <functional>
#include <limits>

#include "patternfiles/export/export.h"
#include "workspace/csv.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

struct Column {
  std::string head;
  std::vector<float> values;
};

std::vector<float> Copy(std::span<const float> values) { return {values.begin(), values.end()}; }

std::vector<float> Difference(std::span<const float> counts, std::span<const float> calculated) {
  std::vector<float> difference(calculated.size());
  std::ranges::transform(counts, calculated, difference.begin(), std::minus());
  return difference;
}

std::vector<Column> ColumnsOf(int slot) {
  const auto axis = [slot](int which) {
    return Copy(ws.xval.row(which, slot).first(ws.npts(slot)));
  };
  std::vector<Column> columns{{"two_theta", axis(AxisTth)}, {"counts", Copy(IntensityOf(slot))}};
  const bool pattern = slot == SlotInput;
  if (auto background = ShownBackground(); pattern && !background.empty())
    columns.push_back({"background", std::move(background)});
  if (auto calculated = ShownCalculated(); pattern && !calculated.empty()) {
    auto difference = Difference(IntensityOf(slot), calculated);
    columns.push_back({"calculated", std::move(calculated)});
    columns.push_back({"difference", std::move(difference)});
  }
  columns.push_back({"d", axis(AxisD)});
  std::ranges::replace(columns.back().values, 0.0f, kNotANumber);  // of a two-theta of 0
  columns.push_back({"q", axis(AxisQ)});
  return columns;
}

void AddOverlays(std::vector<Column>& columns) {
  const std::vector<int> apart = OverlaysApart();
  for (int k = 1; k <= ws.noverlay; ++k)
    if (std::ranges::find(apart, k) == apart.end())
      columns.push_back({FileStem(ws.overlayname(k)), Copy(IntensityOf(SlotOverlay + k - 1))});
}

}  // namespace

std::vector<std::string> PatternAsCsv(int slot) {
  std::vector<Column> columns = ColumnsOf(slot);
  if (slot == SlotInput) AddOverlays(columns);
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
