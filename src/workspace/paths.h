// Paths on their way into the Workspace.
#pragma once

#include <string>

// False, after a box, for a path that no field can hold: what is left of it would name another
// file.
bool AcceptPath(const std::string& path);
