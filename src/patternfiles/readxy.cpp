// The xy and chi formats: two-theta and intensity, a point a line.
//
// xy:
//   ; corundum, flat plate
//   5.0000       182
//   5.0200       176
//
// chi, with four lines in front:
//   ceria_0001.tif: 2-theta scan
//   2-Theta Angle (Degrees)
//   Intensity
//          1449
//    1.0420958E-02  3.5596943E+01
//    3.1262871E-02  3.6520355E+01
//
// Anything may part the two numbers; what follows them is not read. Lines with ";" or "_" in front
// are comments. An empty line or one that holds no two numbers ends the data, but a line of words
// only passes as the point (0, 0).
#include "patternfiles/patternfiles.h"
#include "patternfiles/readcommon.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr int kPointLimit = 19998;
constexpr int kChiHeader = 4;

int ReadColumns(int slot, const std::string& path, const std::string& kind, int headerlines) {
  ClearCounts(slot);
  LineReader in(path);
  if (!in.IsOpen()) return ReadFailure("File error", "Error opening " + kind + " file", in);
  if (!SkipLines(in, headerlines))
    return ReadFailure("File error", "Error reading " + kind + " file", in);

  ws.npts(slot) = 0;
  int n = 0;
  std::string line;
  while (n < kPointLimit && in.Read(line)) {
    if (line.starts_with(';') || line.starts_with('_')) continue;
    float x, y;
    if (CleanNumberLine(line) != 0) break;
    DropCommaBehind(line, 15);
    if (!ReadRecord<"(2f15.0)">(line, x, y)) break;
    ++n;
    ws.xval(AxisTth, slot, n) = x;
    ws.yval(slot, n) = y;
  }
  if (!CutAtLastPoint(slot, n, true))
    return ReadFailure("File error", "Nothing read from " + kind + " file", in, NoPoints(n));
  ws.wavelen(slot) = CuKalpha1;
  if (slot != SlotInput) return 1;

  for (int other = SlotBackground; other <= MaxSlots; ++other) ClearCounts(other);
  ws.scanwave(1) = CuKalpha1;
  ws.scanwave(2) = CuKalpha2;
  ws.scanwave(3) = 0;
  ws.instrument.clear();
  ws.scandate.clear();
  FinishInput(ws.stem20, false);
  return 1;
}

}  // namespace

int ReadXy(int slot, const std::string& path) {
  return ReadColumns(slot, path, "xy", ws.headerskip);
}

int ReadChi(int slot, const std::string& path) {
  return ReadColumns(slot, path, "chi", kChiHeader);
}
