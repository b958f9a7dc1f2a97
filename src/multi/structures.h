// Structures on the plot: which are open, and their lines.
#pragma once

#include <span>
#include <string>

#include "workspace/command.h"

// Opens CIF files as structures to compare with, eight at most in all. A file that cannot be read
// is told and left out; Failed when none could.
Outcome OpenStructures(std::span<const std::string> paths);
// Closes structure k, and those behind it move up; 0 closes all.
Outcome CloseStructure(int k);
// Gives cell, Laue class and centering of structure k to the whole-pattern fit.
Outcome UseCellInFit(int k);

// Works the lines out anew where the pattern has another wavelength or range than they hold for.
void FollowPatternByStructures();
