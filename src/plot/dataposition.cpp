// Read-outs of the mouse position in the status bar.
#include "plot/dataposition.h"

#include "toolkit/toolkit.h"
#include "workspace/record.h"

void ShowReadOuts(DataPoint at) {
  if (!InView(at)) return;
  WindowOutStatusBar(1, WriteRecord<"(a,f7.2)">("TwoTh", at.x));
  WindowOutStatusBar(2, WriteRecord<"(a,f10.0)">("Int", at.y));
}
