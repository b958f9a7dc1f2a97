// Sietronics CPI: ten lines of heading, then a count a line.
//
//   SIETRONICS XRD SCAN
//   10.00                  first two-theta
//   155.00                 last
//   0.010                  step
//   Cu                     anode
//   1.54056                wavelength
//   7-1-1988               date, the day first
//   0.600                  speed of the scan
//   CaF2+Al2O3             sample
//   SCANDATA
//   8992
#include <string>
#include <utility>

#include "patternfiles/import/headerkeys.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/textreaders.h"

namespace {

// Takes the lines up to SCANDATA, by what they are from the top.
TextHeader HeadingOf(TextLines& lines) {
  TextHeader header;
  std::string_view line;
  for (int i = 1; lines.Next(line); ++i) {
    line = Stripped(line);
    if (line.starts_with("SCANDATA")) {
      if (!header.start || !header.step) break;
      return header;
    }
    if (i == 2) header.start = ValueOf(line);
    if (i == 4) header.step = ValueOf(line);
    if (i == 6) TakeKey(header, "wavelength", line);
    if (i == 7) TakeKey(header, "date", line);
    if (i == 9) TakeKey(header, "sample", line);
  }
  throw NotReadable("its heading tells no first angle, no step or no SCANDATA");
}

}  // namespace

bool IsCpi(std::string_view bytes) { return FirstLineStarts(bytes, "SIETRONICS"); }

MeasuredFile ReadCpi(const ImportSource& source) {
  TextLines lines(source.bytes);
  TextHeader header = HeadingOf(lines);
  for (std::string_view line; lines.Next(line);)
    if (!AppendNumbers(line, header.scan.counts)) break;
  FillEvenGrid(header.scan, *header.start, *header.step);
  MeasuredFile file;
  AddScan(file, std::move(header.scan));
  return file;
}
