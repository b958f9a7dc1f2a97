// Several patterns at once: overlays on the plot, their sum and their fit, and the summary file.
#pragma once

#include <span>
#include <string>

#include "workspace/command.h"

// The rows of the menu "Multiple patterns", from its popup down.
std::span<const Command> MultiCommands();

// Puts pattern files of the format `filetype` over the pattern, the first four at most, cut to its
// range. Where there is no room the oldest overlay goes. A file that cannot be read is told and
// left out; Failed when none could. Of a single file of any format the scans chosen, or their sum.
Outcome OpenOverlay(std::span<const std::string> paths, int filetype,
                    const ScanChoice& choice = {});
// The same with the second to fifth scan of a choice, of the file whose first one is the pattern.
void OpenScansOver(const std::string& path, const ScanChoice& choice);
// Closes overlay k, and those behind it move up; 0 closes all.
Outcome CloseOverlay(int k);

// Adds the counts of all overlays to slot 1, point by point on the range that all patterns share,
// and closes them. Points of slot 1 outside that range are lost.
Outcome AddPatterns();

// Fits overlay 1 to the pattern by fitbgorder - 1 terms of a polynomial, fitscale and fitzero, or
// with fitpatmode 2 clears the fit. Slot 4 takes the calculated pattern, slot 9 the overlay as
// shifted, slot 6 the pattern's points of the common range, if no overlay is there. Leaves its
// range, 20 cycles and no damping in the fields of the whole-pattern fit.
enum FitPatternsMode { FitPatternsRun = 1, FitPatternsClear = 2 };
Outcome FitPatterns();
// Writes two-theta, calculated and observed counts and the background below zero, a point a line.
Outcome SaveFittedPattern(const std::string& path);
