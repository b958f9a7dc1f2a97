// The pattern, all that belongs to it and its view, as they were at some moment.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "workspace/workspace.h"

// The points of a slot: two-theta, d, Q and counts, one run after the other.
using SlotPoints = std::vector<float>;

struct Snapshot {
  PatternData data;
  FitParameters fit;
  PerPattern options;
  Table<int, MaxSlots> npts;
  // Slots that did not change between two snapshots are shared by them.
  std::array<std::shared_ptr<const SlotPoints>, MaxSlots> points;

  bool operator==(const Snapshot&) const = default;
};

// Keeps the points in use. Slots equal to those of `before` are taken from there, so that two such
// snapshots compare equal if nothing has changed.
Snapshot TakeSnapshot(const Snapshot* before = nullptr);
void RestoreSnapshot(const Snapshot& snapshot);

// Memory that the snapshot takes for points which none of `others` shares.
std::size_t BytesOf(const Snapshot& snapshot, std::span<const Snapshot* const> others);
