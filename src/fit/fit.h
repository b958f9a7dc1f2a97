// The whole-pattern fit: its commands.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "fit/model.h"
#include "workspace/command.h"

// Calculates (`fitrun` 2) or refines (1) the whole pattern by the fields of the fit. Leaves slots 2
// to 4, the peak list as reflections and all curves on show.
Outcome GeneralFit();
// The dialog "Peak fit" beside the plot; `fitrun` tells the button that has closed it.
Outcome AskFit(Arguments& arguments);

// What there is to read of the last refinement, line by line.
struct ResultLine {
  const char* label;
  std::string text;
};
std::vector<ResultLine> FitResultLines();
// The same as csv with all digits: name, value, e.s.d. of what was refined, and unit.
std::vector<std::string> FitResultCsv();
Outcome ShowFitResults();

// What of the fit stands in the menu "Peak fit", and at its end.
std::span<const Command> FitCommands();
std::span<const Command> FitResultCommands();
