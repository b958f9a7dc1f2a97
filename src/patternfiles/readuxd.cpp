// The uxd format: keys up to _2THETACOUNTS, then two-theta and intensity, a point a line.
//
//   ; (Data for Range number 1)
//   _DATEMEASURED='04-Mar-2010 20:59:14'
//   _WL1=1.540600
//   _WL2=1.544390
//   _WLRATIO=0.500000
//   _STEPTIME=0.500000
//   _2THETACOUNTS
//       5.000      187
//       5.020      183
//
// The data end at an empty line or one that holds no two numbers, such as the next range's keys.
#include "patternfiles/patternfiles.h"
#include "patternfiles/readcommon.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr std::string_view kDataKey = "_2THETACOUNTS";

int ReadData(LineReader& in, int slot) {
  std::string line;
  int n = 0;
  while (n < PointLimit && in.Read(line, DataWidth)) {
    float x, y;
    if (CleanNumberLine(line) != 0) break;
    DropCommaBehind(line, 15);
    if (!ReadRecord<"(2f15.0)">(line, x, y)) break;
    ++n;
    ws.xval(AxisTth, slot, n) = x;
    ws.yval(slot, n) = y;
  }
  return n;
}

}  // namespace

int ReadUxd(int slot, const std::string& path) {
  ClearCounts(slot);
  LineReader in(path);
  if (!in.IsOpen()) return ReadFailure("File error", "Error opening uxd file", in);
  float steptime = 0;
  const RealKey keys[] = {{"_WL1=", &ws.scanwave(1)},
                          {"_WL2=", &ws.scanwave(2)},
                          {"_WLRATIO=", &ws.scanwave(3)},
                          {"_STEPTIME=", &steptime}};
  std::string line;
  do {
    if (!in.Read(line))
      return ReadFailure("File Error", "Error reading uxd file", in, NoLine(kDataKey));
    if (HasKey(line, "_DATEMEASURED="))
      ws.scandate = Field(Columns(line, 16), 20);
    else
      ReadRealKeys(line, slot, keys);
  } while (!HasKey(line, kDataKey));

  ws.wavelen(slot) = ws.scanwave(1);
  const int n = ReadData(in, slot);
  if (!CutAtLastPoint(slot, n))
    return ReadFailure("File Error", "Nothing read from uxd file", in, NoPoints(n));
  if (slot != SlotInput) return 1;

  ws.instrument = "Bruker D8 Advance";
  SetExposure(steptime * static_cast<float>(ws.npts(SlotInput)));
  FinishInput(ws.stem20);
  return 1;
}
