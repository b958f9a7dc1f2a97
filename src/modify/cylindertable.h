// Absorption factors A* of a cylinder.
#pragma once

inline constexpr int kCylinderRows = 93;     // mu R from 0 to 8 by 0.1, then from 9 to 20 by 1
inline constexpr int kFineRows = 81;         // of them with a step of 0.1
inline constexpr int kCylinderColumns = 19;  // theta from 0 to 90 degrees by 5

extern const float CylinderTable[kCylinderRows][kCylinderColumns];

// mu R of a row, counted from 0.
constexpr float CylinderRow(int row) {
  return row < kFineRows ? static_cast<float>(row) / 10.0f
                         : static_cast<float>(row - kFineRows + 9);
}
