// Scripts: one list of operations, applied to every pattern file of a list.
#pragma once

#include <span>

#include "workspace/command.h"

// The rows of the menu "Script", from its popup down.
std::span<const Command> ScriptCommands();
