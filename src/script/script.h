// Scripts: one list of operations, applied to every pattern file of a list.
#pragma once

#include <span>

#include "workspace/command.h"

// Runs `scriptpath` and tells how it went. Done with the last file as the pattern.
Outcome RunScript();

// The dialog "Create Script" on the script of the Workspace.
Outcome AskScript();

// The rows of the menu "Script", from its popup down.
std::span<const Command> ScriptCommands();
