// The menu item of series, and its dialog.
#pragma once

#include <span>

#include "workspace/command.h"

std::span<const Command> SeriesCommands();
