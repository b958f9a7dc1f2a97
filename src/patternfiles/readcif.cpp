// The cif format: a subset of the powder dictionary, a key a line, then an intensity a line.
//
//   _diffrn_radiation_wavelength   1.54056
//   _pd_meas_2theta_range_min      5.00000
//   _pd_meas_2theta_range_inc      0.02000
//   loop_
//     _pd_meas_intensity_total
//   (one line is dropped here)
//    151
//    132
//   #--end
//
// The key above the data has two blanks in front. What is no number, such as a line
// with "_" or "#" in front, ends the data.
#include "patternfiles/patternfiles.h"
#include "patternfiles/readcommon.h"
#include "workspace/workspace.h"

namespace {

constexpr std::string_view kWavelengthKey = "_diffrn_radiation_wavelength";
constexpr std::string_view kStartKey = "_pd_meas_2theta_range_min";
constexpr std::string_view kStepKey = "_pd_meas_2theta_range_inc";
constexpr std::string_view kDataKey = "  _pd_meas_intensity_total";

bool ReadValue(std::string_view line, std::string_view key, float& value) {
  return HasKey(line, key) &&
         ReadRecord<"(f15.6)">(Columns(line, static_cast<int>(key.size()) + 1), value);
}

int ReadData(LineReader& in, int slot) {
  std::string line;
  float y;
  int n = 0;
  while (n < PointLimit && in.Read(line, DataWidth) && ReadRecord<"(f20.0)">(line, y))
    ws.yval(slot, ++n) = y;
  return n;
}

}  // namespace

int ReadCif(int slot, const std::string& path) {
  ClearCounts(slot);
  LineReader in(path);
  if (!in.IsOpen()) return ReadFailure("File error", "Error opening cif", in);
  float start = 0, step = 0;
  std::string line;
  do {
    if (!in.Read(line))
      return ReadFailure("File Error", "Error reading cif1", in, NoLine(kDataKey));
    if (ReadValue(line, kWavelengthKey, ws.scanwave(1))) {
      ws.scanwave(2) = ws.wavelen(slot) = ws.scanwave(1);
      ws.scanwave(3) = 0;
      StateWavelength(slot);
    }
    ReadValue(line, kStartKey, start);
    ReadValue(line, kStepKey, step);
  } while (!HasKey(line, kDataKey));
  if (!SkipLines(in, 1)) return ReadFailure("File Error", "Error reading cif2", in);

  const int n = ReadData(in, slot);
  FillGrid(slot, n, start, step);
  if (!CutAtLastPoint(slot, n))
    return ReadFailure("File Error", "Nothing read from cif", in, NoPoints(n));
  if (slot != SlotInput) return 1;

  ws.scanwave(1) = ws.scanwave(2) = ws.wavelen(SlotInput);
  ws.scanwave(3) = 0;
  FinishInput(ws.stem20);
  return 1;
}
