// Graphics windows beside the main one.
#include "shell/shell.h"
#include "workspace/workspace.h"

namespace {

constexpr int kOptions = 23;
constexpr int kSize = 6000;  // ten-thousandths of the main window

}  // namespace

int OpenChild() {
  if (ws.nchild >= MaxChildWindows) {
    MessageBoxError("Window error",
                    "Maximum child windows created.\rPlease close one and try again.");
    return 0;
  }
  const int handle = WindowOpenChild(kSize, kSize, kOptions, "Graphics Window");
  ws.childwin(++ws.nchild) = handle;
  return handle;
}

void CloseChild(int handle) {
  for (int k = 1; k <= ws.nchild; ++k) {
    if (ws.childwin(k) != handle) continue;
    for (int later = k; later < ws.nchild; ++later) ws.childwin(later) = ws.childwin(later + 1);
    --ws.nchild;
    WindowCloseChild(handle);
    return;
  }
}
