// Indexing: its commands.
#pragma once

#include <span>

#include "workspace/command.h"

// The rows of the menu "Index".
std::span<const Command> IndexCommands();
