// The lines of a data set of TREOR90, and what a cell has to keep to.
#pragma once

#include <algorithm>

#include "index/treor/run.h"
#include "workspace/lines.h"

// Reads two-theta in degrees, a line on each card, up to one that is 0 or blank; of more than 99
// the rest is passed over. False if a card is no number or the end is missing.
bool ReadLines(LineReader& input, TreorSearch& search);

// Puts the first lines right by their higher orders if the keywords ask for it, takes the higher
// orders of the first lines out of search.lines, and says how many lines are tested and how many of
// them a trial must index.
void PrepareLines(TreorSearch& search);

// The tolerance of a line or calculated value.
inline float ToleranceAt(float s, const TreorOptions& options) {
  return s < options.ssqtl ? options.d1 : options.d2;
}

// How far calculated lines are of use: a little beyond the last line, and never beyond s = 1.
inline float ReachOf(const std::vector<TreorLine>& lines, const TreorOptions& options) {
  return std::min(lines.back().s + 2.0f * options.d2, 1.0f);
}

// The limits of the keywords, with the volume limit of the first stage.
void SetLimits(TreorSearch& search);
void SetVolume(SearchLimits& limits, float volume);
