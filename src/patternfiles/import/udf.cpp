// Philips UDF: keys up to RawScan, then counts up to a slash.
//
//   SampleIdent,Sample5 ,/
//   LabdaAlpha1, 1.540598,/
//   DataAngleRange,   5.0000,  79.9800,/
//   ScanStepSize,     0.020,/
//   RawScan
//       3482,    3438,    3397,    3350,    3270,    3417,    3228,    3303
//        651,     680,     650,     656,/
#include <algorithm>
#include <string>
#include <utility>

#include "patternfiles/import/headerkeys.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/textreaders.h"

namespace {

// "Key,value,/"; a value may hold commas, and slashes too.
void TakeUdfKey(std::string_view line, TextHeader& header) {
  line = Stripped(line);
  if (line.ends_with('/')) line.remove_suffix(1);
  line = Stripped(line);
  if (line.ends_with(',')) line.remove_suffix(1);
  const std::size_t comma = line.find(',');
  if (comma != line.npos) TakeKey(header, line.substr(0, comma), line.substr(comma + 1));
}

bool TakeCounts(TextLines& lines, std::vector<double>& counts) {
  for (std::string_view line; lines.Next(line);) {
    const std::size_t slash = line.find('/');
    if (!AppendNumbers(line.substr(0, slash), counts)) return false;
    if (slash != line.npos) break;
  }
  return true;
}

}  // namespace

bool IsUdf(std::string_view bytes) {
  return HasLineStart(bytes, "DataAngleRange") &&
         (HasLineStart(bytes, "RawScan") || HasLineStart(bytes, "ScanStepSize"));
}

MeasuredFile ReadUdfScan(const ImportSource& source) {
  TextLines lines(source.bytes);
  TextHeader header;
  std::string_view line;
  bool found = false;
  while (!found && lines.Next(line)) {
    found = Stripped(line).starts_with("RawScan");
    TakeUdfKey(line, header);
  }
  if (!found) throw NotReadable("it ends in front of RawScan");
  if (!header.start || !header.step) throw NotReadable("it tells no first angle or no step");
  if (!TakeCounts(lines, header.scan.counts))
    throw NotReadable("line " + std::to_string(lines.Number()) +
                      " holds no numbers where counts should be");
  FillEvenGrid(header.scan, *header.start, *header.step);
  MeasuredFile file;
  AddScan(file, std::move(header.scan));
  return file;
}
