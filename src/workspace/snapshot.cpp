// Snapshots of the pattern: taken before each command that changes it.
#include "workspace/snapshot.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int kRows = AxisQ + 1;  // of a slot: three axes and the counts

// Points kept even of a slot that holds fewer: a step is read from the first two, whatever npts is.
constexpr int kLeast = 2;

std::span<float> RowOf(int slot, int row) {
  return row <= AxisQ ? ws.xval.row(row, slot) : ws.yval.row(slot);
}

// Some commands go by the number of points of another slot.
std::size_t PointsOf(int slot) {
  return static_cast<std::size_t>(std::max({CountsEnd(slot), ws.npts(slot), kLeast}));
}

// Bit for bit: what is not a number equals itself here.
bool Holds(const SlotRow& kept, std::span<const float> used) {
  return kept.size() == used.size() &&
         std::memcmp(kept.data(), used.data(), used.size_bytes()) == 0;
}

using KeptSlot = decltype(Snapshot::rows)::value_type;

// From the same slot before, or from another one, as the axes of most are those of slot 1.
void KeepSlot(int slot, KeptSlot& kept, const KeptSlot& other) {
  const std::size_t n = PointsOf(slot);
  for (int row = 1; row <= kRows; ++row) {
    const std::span<const float> used = RowOf(slot, row).first(n);
    auto& keeper = kept[row - 1];
    if (keeper && Holds(*keeper, used)) continue;
    const auto& same = other[row - 1];
    keeper = same && Holds(*same, used) ? same
                                        : std::make_shared<const SlotRow>(used.begin(), used.end());
  }
}

template <class Part>
bool IsNow(const Part& kept) {
  return kept == static_cast<const Part&>(ws);
}

bool SlotIsNow(const KeptSlot& kept, int slot) {
  const std::size_t n = PointsOf(slot);
  for (int row = 1; row <= kRows; ++row)
    if (!Holds(*kept[row - 1], RowOf(slot, row).first(n))) return false;
  return true;
}

}  // namespace

Snapshot TakeSnapshot(const Snapshot* before) {
  Snapshot now{.data = ws, .fit = ws, .options = ws, .npts = ws.npts, .structures = {}, .rows = {}};
  if (before) {
    now.structures = before->structures;
    now.rows = before->rows;
  }
  if (!now.structures || !IsNow(*now.structures))
    now.structures = std::make_shared<const StructureTables>(ws);
  for (int slot = 1; slot <= MaxSlots; ++slot)
    KeepSlot(slot, now.rows[slot - 1], now.rows[SlotInput - 1]);
  return now;
}

bool IsAsIn(const Snapshot& snapshot) {
  if (!(IsNow(snapshot.data) && IsNow(snapshot.fit) && IsNow(snapshot.options) &&
        snapshot.npts == ws.npts && IsNow(*snapshot.structures)))
    return false;
  for (int slot = 1; slot <= MaxSlots; ++slot)
    if (!SlotIsNow(snapshot.rows[slot - 1], slot)) return false;
  return true;
}

void RestoreSnapshot(const Snapshot& snapshot) {
  static_cast<PatternData&>(ws) = snapshot.data;
  static_cast<FitParameters&>(ws) = snapshot.fit;
  static_cast<PerPattern&>(ws) = snapshot.options;
  static_cast<StructureTables&>(ws) = *snapshot.structures;
  ws.npts = snapshot.npts;
  for (int slot = 1; slot <= MaxSlots; ++slot) {
    ClearCounts(slot);
    for (int row = 1; row <= kRows; ++row)
      std::ranges::copy(*snapshot.rows[slot - 1][row - 1], RowOf(slot, row).begin());
  }
}
