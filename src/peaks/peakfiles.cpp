// Peak files (.pks): saved, loaded, handed to the editor; and the list cleared.
//
// One peak a line: two-theta, intensity, FWHM, shape, right FWHM, right shape, h, k, l,
// multiplicity.
//
//    28.440    1520.3   0.0812   0.5000   0.0790   0.4800    0    0    0    1
#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "crystal/hklcode.h"
#include "peaks/peaklist.h"
#include "peaks/peaks.h"
#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/paths.h"
#include "workspace/record.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

// Indices are not written, and the multiplicity is always 1.
bool WritePeakFile(LineWriter& file) {
  const auto& p = ws.peaks;
  for (int i = 1; i <= PeakRows(); ++i)
    file.Write(WriteRecord<"(f9.3,f10.1,4f9.4,4i5)">(p(ptth, i), p(pint, i), p(pfwhm, i),
                                                     p(pshape, i), p(pfwhmr, i), p(pshaper, i), 0,
                                                     0, 0, 1));
  return file.Close();
}

// Reads a line into a row, which stays as it was if the line holds no proper numbers.
bool ReadPeak(std::string line, int row) {
  CleanNumberLine(line);
  std::array<float, 6> v{};
  Hkl r;
  int multiplicity = 0;
  if (!ReadRecord<"(6f10.0,4i5)">(line, v[0], v[1], v[2], v[3], v[4], v[5], r.h, r.k, r.l,
                                  multiplicity))
    return false;
  if (!std::ranges::all_of(v, [](float value) { return std::isfinite(value); })) return false;
  for (int field = ptth; field <= pshaper; ++field) ws.peaks(field, row) = v[field - ptth];
  ws.peaks(phkl, row) = static_cast<float>(PackHkl(r));
  ws.peaks(pmult, row) = static_cast<float>(multiplicity);
  return true;
}

// Reads up to the first line that is empty or no peak; returns the number of rows. A header line
// uses up a row, which keeps what it held.
int ReadPeakFile(LineReader& file) {
  std::string line;
  int rows = 0;
  while (file.Read(line) && !line.empty()) {
    if (rows == MaxPeaks) {
      TellListFull();
      break;
    }
    if (!line.starts_with("   TwoTh") && !ReadPeak(line, rows + 1)) break;
    ++rows;
  }
  return rows;
}

}  // namespace

Outcome SavePeaks(const std::string& path) {
  if (!AcceptPath(path)) return Outcome::Failed;
  ws.peakfilename = path;
  if (ws.debugmode) MessageBoxInfo("Progress", "File accepted");
  SortPeaks();
  LineWriter file(ws.peakfilename);
  if (!file.IsOpen()) {
    MessageBoxError("File Error", FileMessage("Error opening peak file", path, file.Reason()));
    return Outcome::Failed;
  }
  if (WritePeakFile(file)) {
    NotePeaksKept(ws.peakfilename);
    return Outcome::Done;
  }
  MessageBoxError("Error", FileMessage("Error writing peak file", path, file.Reason()));
  return Outcome::Failed;
}

Outcome LoadPeaks(const std::string& path) {
  if (!AcceptPath(path)) return Outcome::Failed;
  ws.peakfilename = path;
  LineReader file(ws.peakfilename);
  if (!file.IsOpen()) {
    MessageBoxError("File error", FileMessage("Error opening peak info file", path, file.Reason()));
    return Outcome::Failed;
  }
  RelistPeaks(ReadPeakFile(file), PeakLoaded);
  if (ws.npeaks > 0 && ws.plotmask < PlotPeaks) ws.plotmask += PlotPeaks;
  return Outcome::Done;
}

// The file is not read back; "Load peaks" does that.
Outcome EditPeaks() {
  IOsCommandOnFile(ws.editorpath, ws.peakfilename);
  return Outcome::Done;
}

// Empties the list and the curve of single-peak fits.
Outcome ClearPeaks() {
  static_cast<PeakTables&>(ws) = {};
  EndOverlayFit();
  std::ranges::fill(ws.yval.row(SlotRefined), 0.0f);
  ws.plotmask = ws.viewmode = 1;
  return Outcome::Done;
}
