// What the pattern writers share: the grid asked for, padded lines.
#include "patternfiles/writecommon.h"

#include <algorithm>
#include <cmath>

#include "crystal/regrid.h"
#include "toolkit/toolkit.h"
#include "workspace/text.h"

namespace {

SaveGrid grid;

void TakePointsInLimits(int slot) {
  grid.n = 0;
  for (int i = 1; i <= ws.npts(slot); ++i) {
    const float x = ws.xval(AxisTth, slot, i);
    if (x > ws.savestop) break;
    if (!(x >= ws.savestart)) continue;
    grid.x[grid.n] = x;
    grid.y[grid.n] = ws.yval(slot, i);
    ++grid.n;
  }
}

}  // namespace

const SaveGrid& PrepareSaveGrid(int slot, bool oddremainder) {
  TakePointsInLimits(slot);
  const float dx = ws.xval(AxisTth, slot, 2) - ws.xval(AxisTth, slot, 1);
  if (dx == 0) return grid;  // no step of its own to compare with
  const int size = nint(ws.savestep / dx);
  float divisor = dx;
  if (size > 1) {
    grid.n = BinMeans(grid.x, grid.y, grid.n, size, dx);
    if (oddremainder) divisor = static_cast<float>(size - 1) * 0.5f * dx;
  }
  const float rest = std::fmod(ws.savestep, divisor);
  if (rest > 0.1f * ws.savestep && rest < 0.9f * ws.savestep) {
    const int n = Regrid(grid.x, grid.y, grid.n, ws.savestart, ws.savestep, ws.savestop);
    if (n > 0) grid.n = n;
  }
  return grid;
}

int PointsPrepared() { return grid.n; }

int WriteFailure(const std::string& text, const LineWriter& out) {
  MessageBoxError("Error", FileMessage(text, out.Path(), out.Reason()));
  return 0;
}

bool WritePadded(LineWriter& out, std::string line) {
  line = Cut(line, TextLength);
  line.resize(std::max<std::size_t>(line.size(), TextLength), ' ');
  return out.Write(line);
}
