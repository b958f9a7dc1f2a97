// The peak list: search, manual picking, files, and the fit of a single peak.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "workspace/command.h"

Outcome OnPeakSearch();
Outcome ManualPeakSearch();
Outcome SavePeaks(const std::string& path);
// Asks for the one to load.
Outcome AskPeakFile(Arguments& arguments);
Outcome LoadPeaks(const std::string& path);
// Starts the editor on `peakfilename`.
Outcome EditPeaks();
Outcome ClearPeaks();

// The table of the list beside the plot, until it is closed. Each deletion is an undo step.
Outcome ShowPeakTable(const UndoStep& step = {});

// Fits one split pseudo-Voigt peak on a sloping background to the visible part of slot 1. `accept`
// is asked whether the result is wanted; without it, it is.
Outcome SinglePeakFit(const std::function<bool()>& accept = {});
// Shows the results of the fit on the plot; true if the user accepts them.
bool AcceptPeakFit();

// Fits every peak of the list to slot 1, those that overlap together. A row takes position, area,
// widths and shapes with their e.s.d.s, and keeps its indices; one of which there is no fit keeps
// all and is marked. Leaves the calculated pattern in slot 4.
Outcome FitAllPeaks();

// The menu "Peak search" and the first rows of "Peak fit"; and its plots, with what follows them.
std::span<const Command> PeakCommands();
std::span<const Command> AnalysisCommands();
