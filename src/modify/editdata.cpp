// Edit data: the editor on the pattern's file.
#include "modify/modify.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

Outcome EditData() {
  if (ws.patternpath.empty()) return Outcome::Idle;
  IOsCommandOnFile(ws.editorpath, ws.patternpath);
  return Outcome::Done;
}
