// Several patterns at once: overlays on the plot, their sum and their fit, and the summary file.
#pragma once

#include <span>

#include "workspace/command.h"

// The rows of the menu "Multiple patterns", from its popup down.
std::span<const Command> MultiCommands();
