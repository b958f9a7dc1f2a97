// Writer of the gdf format: the sixteen header lines kept from the file, then a count a line.
#include "patternfiles/patternfiles.h"
#include "patternfiles/writecommon.h"
#include "workspace/text.h"

int WriteGdf(const std::string& path, int slot) {
  const SaveGrid& grid = PrepareSaveGrid(slot);
  LineWriter out(path);
  if (!out.IsOpen()) return WriteFailure("Error opening gdf file", out);
  // Three decimals are all that the header keeps of the grid.
  ws.gdfhead(11) = SqueezeBlanks(RealField(ws.savestart, 10, 3));
  ws.gdfhead(12) = SqueezeBlanks(RealField(ws.savestop, 10, 3));
  ws.gdfhead(13) = SqueezeBlanks(RealField(ws.savestep, 10, 3));
  for (const std::string& line : ws.gdfhead.cells)
    if (!WritePadded(out, line)) return WriteFailure("Error writing gdf file1", out);
  bool good = true;
  for (int i = 0; i < grid.n && good; ++i)
    good = out.Write(SqueezeBlanks(IntField(nint(grid.y[i]), 9)));
  if (!out.Close() || !good) return WriteFailure("Error writing gdf file2", out);
  return 1;
}
