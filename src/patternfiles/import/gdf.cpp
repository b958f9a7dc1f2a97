// GDF: sixteen lines of heading, then a whole count a line. The fourth line names the sample, the
// seventh tells the date, the month first, the tenth has a value between > and <, and 11 to 13 the
// first and the last two-theta and the step.
//
//   7251
//   fluorite
//   ...
//        5.000
//      150.000
//        0.020
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "patternfiles/import/dates.h"
#include "patternfiles/import/headerkeys.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/textreaders.h"

namespace {

struct CameraHeading {
  std::array<std::string, 17> line;  // from 1

  std::optional<double> Number(std::size_t i) const { return NumberOf(line[i]); }
};

bool TakeHeading(TextLines& lines, CameraHeading& heading) {
  std::string_view line;
  for (std::size_t i = 1; i < heading.line.size(); ++i) {
    if (!lines.Next(line)) return false;
    heading.line[i] = Stripped(line.substr(0, 200));
  }
  return true;
}

}  // namespace

bool IsCameraText(std::string_view bytes) {
  TextLines lines(bytes.substr(0, 8192));
  CameraHeading heading;
  std::string_view first;
  if (!TakeHeading(lines, heading) || !lines.Next(first) || !NumberOf(first)) return false;
  const auto start = heading.Number(11), stop = heading.Number(12), step = heading.Number(13);
  const bool marked = heading.line[10].find('>') < heading.line[10].find('<');
  return marked && heading.Number(3) && start && stop && step && *step > 0 &&
         *stop > *start + *step;
}

MeasuredFile ReadCameraText(const ImportSource& source) {
  TextLines lines(source.bytes);
  CameraHeading heading;
  TakeHeading(lines, heading);
  TextHeader header;
  TakeKey(header, "sample", heading.line[4]);
  TakeKey(header, "date", heading.line[7]);
  MeasuredScan& scan = header.scan;
  for (std::string_view line; lines.Next(line);)
    if (!AppendNumbers(line, scan.counts)) break;
  FillEvenGrid(scan, heading.Number(11).value_or(0), heading.Number(13).value_or(0));
  MeasuredFile file;
  AddScan(file, std::move(scan));
  return file;
}
