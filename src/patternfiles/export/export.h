// The pattern for other programs: slot 1 as it stands, whole and with all digits, and what has been
// found out about it.
#pragma once

#include <string>
#include <vector>

#include "workspace/command.h"

// ---- Contents, as lines of a file -------------------------------------------------------------

// Two-theta, counts, d and Q of a slot. Slot 1 comes with the background, the calculated pattern
// and the difference, as far as they are on show, and with the overlays on the same two-theta.
std::vector<std::string> PatternAsCsv(int slot);
// Two-theta, counts, and the square root of the counts as their e.s.d., 1 at least.
std::vector<std::string> PatternAsXye();
// A block of the powder dictionary.
std::vector<std::string> PatternAsPdCif();

// ---- What is on show beside the counts --------------------------------------------------------

// By the points of slot 1, not a number where there is none; empty without the curve.
std::vector<float> ShownBackground();
std::vector<float> ShownCalculated();
// Whether all points of slot 1 are whole numbers, and none below 0.
bool HasCounts();
// The overlays, from 1, whose two-theta values are not those of slot 1.
std::vector<int> OverlaysApart();

// ---- Commands, by number ----------------------------------------------------------------------

enum PatternExport { ExportCsv, ExportXye, ExportPdCif };
// Asks for the name, and with csv for that of each overlay apart, which may be left out.
Outcome AskPatternExport(Arguments& arguments);
Outcome ExportPattern(const Arguments& arguments);
// What there is to know of the file besides: " without a wavelength, ..."; may be blank.
std::string ExportRemark(int number);
