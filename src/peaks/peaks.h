// The peak list: search, manual picking, files, and the fit of a single peak.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "workspace/command.h"

Outcome OnPeakSearch();
Outcome ManualPeakSearch();
Outcome SavePeaks(const std::string& path);
Outcome LoadPeaks(const std::string& path);
// Starts the editor on `peakfilename`.
Outcome EditPeaks();
Outcome ClearPeaks();

// Fits one split pseudo-Voigt peak on a sloping background to the visible part of slot 1. `accept`
// is asked whether the result is wanted; without it, it is.
Outcome SinglePeakFit(const std::function<bool()>& accept = {});
// Shows the results of the fit on the plot; true if the user accepts them.
bool AcceptPeakFit();

// The menu "Peak search" and the first rows of "Peak fit"; and its plots.
std::span<const Command> PeakCommands();
std::span<const Command> AnalysisCommands();
