// What the pattern writers share: the grid asked for, padded lines.
#include "patternfiles/writecommon.h"

#include <algorithm>
#include <cmath>

#include "crystal/spline.h"
#include "toolkit/toolkit.h"
#include "workspace/text.h"

namespace {

constexpr int kRegridLimit = 19995;

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

// Replaces every `size` points by their mean; what is left over at the end goes.
void Bin(int size, float dx) {
  const int bins = (grid.n - 1) / size;
  for (int b = 0; b < bins; ++b) {
    const int first = b * size;
    float sum = 0;
    for (int k = 0; k < size; ++k) sum += grid.y[first + k];
    grid.y[b] = sum / static_cast<float>(size);
    grid.x[b] = grid.x[first] + static_cast<float>(size - 1) * 0.5f * dx;
  }
  grid.n = std::max(bins, 0);
}

void Regrid() {
  static std::array<float, MaxPoints> x, y, y2;
  const int m = std::min(nint((ws.savestop - ws.savestart) / ws.savestep), kRegridLimit - 1) + 1;
  if (grid.n < 2 || m < 2) return;  // nothing to interpolate, or no step between two points
  ws.savestep = (ws.savestop - ws.savestart) / static_cast<float>(m - 1);
  const std::span<const float> fromx(grid.x.data(), grid.n), fromy(grid.y.data(), grid.n);
  SplineSetup(fromx, fromy, NaturalEnd, NaturalEnd, y2);
  for (int j = 0; j < m; ++j) x[j] = ws.savestep * static_cast<float>(j) + ws.savestart;
  SplineEval(fromx, fromy, y2, {x.data(), static_cast<std::size_t>(m)}, y);
  std::copy_n(x.begin(), m, grid.x.begin());
  std::copy_n(y.begin(), m, grid.y.begin());
  grid.n = m;
}

}  // namespace

const SaveGrid& PrepareSaveGrid(int slot, bool oddremainder) {
  TakePointsInLimits(slot);
  const float dx = ws.xval(AxisTth, slot, 2) - ws.xval(AxisTth, slot, 1);
  if (dx == 0) return grid;  // no step of its own to compare with
  const int size = nint(ws.savestep / dx);
  float divisor = dx;
  if (size > 1) {
    Bin(size, dx);
    if (oddremainder) divisor = static_cast<float>(size - 1) * 0.5f * dx;
  }
  const float rest = std::fmod(ws.savestep, divisor);
  if (rest > 0.1f * ws.savestep && rest < 0.9f * ws.savestep) Regrid();
  return grid;
}

int WriteFailure(const std::string& text) {
  MessageBoxError("Error", text);
  return 0;
}

bool WritePadded(LineWriter& out, std::string line) {
  line.resize(TextLength, ' ');
  return out.Write(line);
}
