// Control lines of TREOR90.
#pragma once

#include "index/treor/run.h"
#include "workspace/lines.h"

// Reads "KEY=value," in free order up to "END*". False for an unknown key, one that is too long, a
// value that is no number, a missing comma, or no "END*".
bool ReadKeywords(LineReader& input, TreorOptions& options);
