// The dat format: a line with first two-theta and step, then counts, ten a line in eight columns.
//
//     10.00    0.020   80.00
//        179     147     165     172     150     165     150     158     134     146
//        167     159     139
//
// The first line may also be parted by commas: 10.0000,0.0200,80.0000
#include "patternfiles/patternfiles.h"

#include "patternfiles/readcommon.h"
#include "workspace/workspace.h"

namespace {

constexpr int kFields = 10;
constexpr int kLastLimit = 19990;

bool ReadGrid(const std::string& line, float& start, float& step) {
  std::string parted = line;
  DropCommaBehind(parted, 8);
  return ReadRecord<"(2f8.0)">(parted, start, step) || ReadRecord<"(2f10.0)">(line, start, step);
}

}  // namespace

int ReadDat(int slot, const std::string& path) {
  ClearCounts(slot);
  LineReader in(path);
  if (!in.IsOpen()) return ReadFailure("File error", "Error opening dat file", in);
  if (!SkipLines(in, ws.headerskip)) return ReadFailure("File error", "Error reading dat file", in);
  std::string line;
  float start, step;
  if (!in.Read(line, RowWidth)) return ReadFailure("File Error", "Error reading dat file", in);
  if (!ReadGrid(line, start, step))
    return ReadFailure("File Error", "Error reading dat file", in, NoNumber(in));

  const int last = ReadCountRows(in, slot, FormatOf<"(10f8.0)">(), kFields, kLastLimit);
  if (!CutAtLastPoint(slot, last))
    return ReadFailure("File Error", "Nothing read from dat file", in, NoPoints(last));
  FillGrid(slot, ws.npts(slot), start, step);
  ws.wavelen(slot) = CuKalpha1;
  if (slot != SlotInput) return 1;

  ws.scanwave(1) = CuKalpha1;
  ws.scanwave(2) = CuKalpha2;
  ws.scanwave(3) = 0;
  FinishInput(ws.stem20);
  return 1;
}
