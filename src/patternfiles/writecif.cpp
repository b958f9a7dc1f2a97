// Writer of the cif format: wavelength and grid of the slot, then an intensity a line.
#include "patternfiles/patternfiles.h"
#include "patternfiles/writecommon.h"
#include "workspace/text.h"

int WriteCif(const std::string& path, int slot) {
  const SaveGrid& grid = PrepareSaveGrid(slot, true);
  LineWriter out(path);
  if (!out.IsOpen()) return WriteFailure("Error opening cif file", out);
  // The lines tell of the slot's own points, not of the grid that is saved.
  const float first = ws.xval(AxisTth, slot, 1);
  const float last = grid.n > 0 ? ws.xval(AxisTth, slot, grid.n) : first;
  const float dx = ws.xval(AxisTth, slot, 2) - first;
  const std::string head[] = {
      "# Powder CIF created by KESTREL",
      "data-" + OnOneLine(path),
      "_diffrn_radiation_wavelength " + RealField(ws.wavelen(1), 10, 5),
      "# Scan information data",
      "_pd_meas_2theta_range_min " + RealField(first, 10, 5),
      "_pd_meas_2theta_range_max " + RealField(last, 10, 5),
      "_pd_meas_2theta_range_inc " + RealField(dx, 10, 5),
      "# 2-Theta scan data",
      "loop_",
      "  _pd_meas_intensity_total",
  };
  int number = 0;  // of the line that failed, as the message has it
  const auto write = [&](const std::string& line) { return WritePadded(out, line); };
  const auto failure = [&] {
    return WriteFailure("Error writing cif" + std::to_string(number), out);
  };
  for (const std::string& line : head) {
    ++number;
    if (!write(line)) return failure();
  }
  number = 11;
  for (int i = 0; i < grid.n; ++i)
    if (!write(RealField(grid.y[i], 15, 5))) return failure();
  number = 12;
  if (!write("_pd_meas_2theta_range_inc " + IntField(grid.n, 10))) return failure();
  number = 13;
  if (!write("#--eof--eof--eof--eof--eof--eof--#") || !out.Close()) return failure();
  return 1;
}
