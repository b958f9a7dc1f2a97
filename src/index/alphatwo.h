// Peaks that a search finds for the second line of a K alpha doublet.
#pragma once

#include <span>
#include <vector>

#include "index/find/lines.h"

// Which of the peaks, in any order, are the alpha2 lines of others. None, unless three at least,
// and half of the strong peaks whose alpha2 line can be told apart, have one: a pattern without
// alpha2 loses no line to chance. Wavelengths in angstrom; alpha2 not above alpha1 for none.
std::vector<bool> AreAlpha2(std::span<const PeakOfList> peaks, double alpha1, double alpha2);
