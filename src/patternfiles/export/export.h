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
// Two-theta, counts, and their e.s.d.s as the file has stated them, or else the square roots of the
// counts, 1 at least.
std::vector<std::string> PatternAsXye();
// A block of the powder dictionary.
std::vector<std::string> PatternAsPdCif();

// ---- Commands, by number ----------------------------------------------------------------------

enum PatternExport { ExportCsv, ExportXye, ExportPdCif };
// Asks for the name, and with csv for that of each overlay apart, which may be left out.
Outcome AskPatternExport(Arguments& arguments);
Outcome ExportPattern(const Arguments& arguments);
// What the status bar tells of the file besides: "; no wavelength, as none is stated"; or blank.
std::string ExportRemark(int number);
