// Paths on their way into the Workspace.
#include "workspace/paths.h"

#include "toolkit/toolkit.h"
#include "workspace/text.h"

bool AcceptPath(const std::string& path) {
  if (FitsField(path)) return true;
  MessageBoxError("Error", TooLongPath(path));
  return false;
}
