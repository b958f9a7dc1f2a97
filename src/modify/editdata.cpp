// Edit data: the editor on the pattern's file.
#include "modify/modify.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

void EditData() {
  if (!ws.patternpath.empty()) IOsCommandOnFile(ws.editorpath, ws.patternpath);
}
