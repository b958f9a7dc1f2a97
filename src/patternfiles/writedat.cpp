// Writer of the dat format: start, step and stop, then ten values a line. Only whole lines are
// written.
#include <cmath>

#include "patternfiles/patternfiles.h"
#include "patternfiles/writecommon.h"
#include "workspace/record.h"
#include "workspace/text.h"

int WriteDat(const std::string& path, int slot) {
  constexpr int kPerLine = 10;
  const SaveGrid& grid = PrepareSaveGrid(slot);
  LineWriter out(path);
  if (!out.IsOpen()) return WriteFailure("Error opening std file", out);
  ws.savestop = ws.savestep * static_cast<float>(grid.n - 1) + ws.savestart;
  const std::string head =
      WriteRecord<"(f8.4,',',f8.4,',',f8.4)">(ws.savestart, ws.savestep, ws.savestop);
  if (!out.Write(SqueezeBlanks(head))) return WriteFailure("Error writing std file1", out);
  bool good = true;
  for (int first = 0; first + kPerLine <= grid.n && good; first += kPerLine) {
    std::array<WriteValue, kPerLine> values;
    // A half goes away from zero, as in the other formats.
    for (int k = 0; k < kPerLine; ++k) values[k] = std::round(grid.y[first + k]);
    good = out.Write(WriteValues(FormatOf<"(10f8.0)">(), values));
  }
  if (!out.Close() || !good) return WriteFailure("Error writing std file2", out);
  return 1;
}
