// The pattern, all that belongs to it and its view, as they were at some moment.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "workspace/workspace.h"

// Two-theta, d, Q or counts of a slot.
using SlotRow = std::vector<float>;

struct Snapshot {
  PatternData data;
  FitParameters fit;
  PerPattern options;
  Table<int, MaxSlots> npts;
  // What did not change between two snapshots is shared by them, and what is the same in several
  // slots by those.
  std::shared_ptr<const StructureTables> structures;
  std::array<std::array<std::shared_ptr<const SlotRow>, 4>, MaxSlots> rows;

  bool operator==(const Snapshot&) const = default;
};

// Keeps the points in use. What is equal to that of `before` is taken from there, so that two such
// snapshots compare equal if nothing has changed.
Snapshot TakeSnapshot(const Snapshot* before = nullptr);
void RestoreSnapshot(const Snapshot& snapshot);

// Whether a snapshot taken now would be equal.
bool IsAsIn(const Snapshot& snapshot);
