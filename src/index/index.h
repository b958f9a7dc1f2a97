// Indexing: its commands.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "workspace/command.h"

// The rows of the menu "Index".
std::span<const Command> IndexCommands();

// The solutions of an engine that were read last, below a line of heads with units, as csv.
std::vector<std::string> SolutionLines();
