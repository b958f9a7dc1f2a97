// The script file: two lists of files, and the commands for every file of the first.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workspace/command.h"

enum class ScriptWord {
  Read,
  Zero,
  Truncate,
  Scale,
  Smooth,
  Golay,
  Background,
  Convert,
  Skip,
  Write
};

// Reads `scriptpath`: the names of the lists and the parameters of the commands go to the
// Workspace. Gives the commands in the order of their lines; nothing, after a box, if the file
// cannot be read or a parameter is no number, which leaves the Workspace as it was. Of a TRUN line
// that is told by the status bar.
std::optional<std::vector<ScriptWord>> ReadScript();

// Marks the commands as those that the script of the Workspace holds.
void SetScriptUse(const std::vector<ScriptWord>& commands);

// Writes the script of the Workspace to `scriptpath`; nothing without a name.
Outcome WriteScript();

// `scriptpath` from the directory of the program's start.
std::string ScriptFile();

// A path as it stands in a file, taken from the folder of that file.
std::string FromFolderOf(const std::string& file, const std::string& path);
