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

// Up to the last point that a slot uses or that holds counts: some commands go by the number of
// points of another slot.
std::size_t PointsOf(int slot) {
  const auto counts = ws.yval.row(slot);
  int last = MaxPoints;
  while (last > 0 && counts[last - 1] == 0) --last;
  return static_cast<std::size_t>(std::max({last, ws.npts(slot), kLeast}));
}

bool Holds(const SlotPoints& points, int slot) {
  const std::size_t n = PointsOf(slot);
  if (points.size() != n * kRows) return false;
  // Bit for bit: what is not a number equals itself here.
  for (int row = 1; row <= kRows; ++row)
    if (std::memcmp(&points[n * (row - 1)], RowOf(slot, row).data(), n * sizeof(float)) != 0)
      return false;
  return true;
}

std::shared_ptr<const SlotPoints> PointsNow(int slot) {
  SlotPoints points;
  points.reserve(PointsOf(slot) * kRows);
  for (int row = 1; row <= kRows; ++row) {
    const auto used = RowOf(slot, row).first(PointsOf(slot));
    points.insert(points.end(), used.begin(), used.end());
  }
  return std::make_shared<const SlotPoints>(std::move(points));
}

}  // namespace

Snapshot TakeSnapshot(const Snapshot* before) {
  Snapshot now{ws, ws, ws, ws.npts, {}};
  for (int slot = 1; slot <= MaxSlots; ++slot) {
    auto& points = now.points[slot - 1];
    if (before) points = before->points[slot - 1];
    if (!points || !Holds(*points, slot)) points = PointsNow(slot);
  }
  return now;
}

void RestoreSnapshot(const Snapshot& snapshot) {
  static_cast<PatternData&>(ws) = snapshot.data;
  static_cast<FitParameters&>(ws) = snapshot.fit;
  static_cast<PerPattern&>(ws) = snapshot.options;
  ws.npts = snapshot.npts;
  for (int slot = 1; slot <= MaxSlots; ++slot) {
    const SlotPoints& points = *snapshot.points[slot - 1];
    const std::size_t n = points.size() / kRows;
    for (int row = 1; row <= kRows; ++row)
      std::copy_n(&points[n * (row - 1)], n, RowOf(slot, row).begin());
    std::ranges::fill(ws.yval.row(slot).subspan(n), 0.0f);
  }
}

std::size_t BytesOf(const Snapshot& snapshot, std::span<const Snapshot* const> others) {
  std::size_t bytes = sizeof(Snapshot);
  for (std::size_t k = 0; k < snapshot.points.size(); ++k) {
    const auto& points = snapshot.points[k];
    const bool shared = std::ranges::any_of(
        others, [&](const Snapshot* other) { return other->points[k] == points; });
    if (!shared) bytes += points->size() * sizeof(float);
  }
  return bytes;
}
