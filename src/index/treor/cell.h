// The direct cell of constants in sin^2(theta).
#pragma once

#include <optional>

#include "index/treor/run.h"

struct CellAndVolume {
  UnitCell cell{};   // angstrom, degrees
  float volume = 0;  // cubic angstrom
};

// None if the constants are those of no cell: one not above 0, a cosine beyond 1, no volume.
std::optional<CellAndVolume> CellOf(CrystalSystem system, const Constants& constants, float wave);
