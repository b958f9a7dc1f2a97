// The pattern as xye, for programs that weight points by their e.s.d.
//
//   5.02 151 12.288206
#include <algorithm>
#include <cmath>
#include <span>

#include "patternfiles/export/export.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

std::vector<std::string> PatternAsXye() {
  const std::span<const float> stated = StatedEsds();
  std::vector<std::string> lines;
  for (int i = 1; i <= ws.npts(SlotInput); ++i) {
    const float x = ws.xval(AxisTth, SlotInput, i), y = ws.yval(SlotInput, i);
    if (!std::isfinite(x) || !std::isfinite(y)) continue;  // a line of it would be no numbers
    const float esd = stated.empty() ? std::sqrt(std::max(y, 1.0f)) : stated[i - 1];
    lines.push_back(AllDigits(x) + ' ' + AllDigits(y) + ' ' + AllDigits(esd));
  }
  return lines;
}
