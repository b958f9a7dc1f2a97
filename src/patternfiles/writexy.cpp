// Writer of the xy format: two-theta to four decimals and the rounded intensity.
#include "patternfiles/patternfiles.h"
#include "patternfiles/writecommon.h"
#include "workspace/text.h"

int WriteXy(const std::string& path, int slot) {
  const SaveGrid& grid = PrepareSaveGrid(slot);
  LineWriter out(path);
  if (!out.IsOpen()) return WriteFailure("Error opening xy file", out);
  bool good = true;
  for (int i = 0; i < grid.n && good; ++i)
    good = out.Write(TrimRight(RealField(grid.x[i], 8, 4) + IntField(nint(grid.y[i]), 10)));
  if (!out.Close() || !good) return WriteFailure("Error writing xy file", out);
  return 1;
}
