// UXD: keys in front of each range, then its counts.
//
//   ; (Data for Range number 1)
//   _DRIVE='COUPLED'
//   _STEPTIME=1.000000
//   _STEPSIZE=0.020000
//   _START=10.000000
//   _2THETACOUNTS              or _COUNTS, and below it
//       10.000     187             187  183  178  178  183
//       10.020     183
//
// The marker in front of the counts tells what stands there: rates for ..CPS, a position in front
// of each for 2THETA.., the time behind each for ..TIME.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "patternfiles/import/headerkeys.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/textreaders.h"
#include "workspace/text.h"

namespace {

struct Marker {
  std::size_t numbers = 0;  // a point; 0 for a line that is no marker
  bool positions = false;
};

Marker MarkerOf(std::string_view line) {
  if (!line.starts_with('_') || line.find('=') != line.npos) return {};
  const std::size_t counts = std::min(line.find("COUNTS"), line.find("CPS"));
  if (counts == line.npos) return {};
  const bool positions = counts > 1, times = line.ends_with("TIME");
  return {std::size_t{1} + positions + times, positions};
}

// The drives that change two-theta; the others move the sample alone.
bool ScansTwoTheta(const std::string& drive) {
  for (const char* other : {"PHI", "KHI", "CHI", "X", "Y", "Z", "OMEGA", "ROCKING", "AUX", "TIME"})
    if (drive.starts_with(other)) return false;
  return true;
}

struct Range {
  TextHeader header;
  std::string drive = "COUPLED";
  std::optional<double> twotheta, theta;  // of the drives before the scan
  Marker marker;
  std::vector<double> numbers;
};

MeasuredScan ScanOf(const Range& range, std::size_t number) {
  MeasuredScan scan = range.header.scan;
  const Marker& marker = range.marker;
  for (std::size_t i = 0; i + marker.numbers <= range.numbers.size(); i += marker.numbers) {
    if (marker.positions) scan.x.push_back(range.numbers[i]);
    scan.counts.push_back(range.numbers[i + marker.positions]);
  }
  if (!marker.positions) {
    const auto& drive = range.drive == "THETA" ? range.theta : range.twotheta;
    const auto& start = range.header.start ? range.header.start : drive;
    if (!start || !range.header.step)
      throw NotReadable("range " + std::to_string(number) + " tells no start or no step");
    FillEvenGrid(scan, *start, *range.header.step);
  }
  if (range.header.temperature != 0)
    scan.label = "temperature " + Fixed(range.header.temperature, 1);
  return scan;
}

class UxdReader {
 public:
  MeasuredFile Read(std::string_view bytes);

 private:
  void TakeLine(std::string_view line, int number);
  void TakeKeyOf(std::string_view line);
  void EndRange();

  Range range;
  std::size_t ranges = 0;  // that have ended
  MeasuredFile file;
  std::string otherdrive;
};

void UxdReader::TakeKeyOf(std::string_view line) {
  const std::size_t sign = line.find('=');
  if (sign == line.npos) return;
  if (range.marker.numbers > 0) EndRange();
  const std::string_view key = line.substr(1, sign - 1), value = Unquoted(line.substr(sign + 1));
  if (key == "DRIVE") {
    range.drive = UpperText(value);
  } else if (key == "2THETA") {
    range.twotheta = ValueOf(value);
  } else if (key == "THETA") {
    range.theta = ValueOf(value);
  } else {
    TakeKey(range.header, key, value);
  }
}

// What stands in front of the first range holds for the others too, but for start, step and time.
void UxdReader::EndRange() {
  Range ended = std::exchange(range, {});
  range.header.scan = Unmeasured(ended.header.scan);
  ++ranges;
  if (!ScansTwoTheta(ended.drive)) {
    otherdrive = ended.drive;
    return;
  }
  if (ended.drive == "THETA") file.note = "the positions are those of the drive THETA";
  AddScan(file, ScanOf(ended, ranges));
}

void UxdReader::TakeLine(std::string_view line, int number) {
  if (const std::size_t remark = line.find(';'); !line.starts_with('_'))
    line = line.substr(0, remark);
  line = Stripped(line);
  if (line.empty()) return;
  if (const Marker marker = MarkerOf(line); marker.numbers > 0) {
    if (range.marker.numbers > 0) EndRange();
    range.marker = marker;
  } else if (line.starts_with('_')) {
    TakeKeyOf(line);
  } else if (range.marker.numbers > 0 && !AppendNumbers(line, range.numbers)) {
    throw NotReadable("line " + std::to_string(number) +
                      " holds no numbers where counts should be");
  }
}

MeasuredFile UxdReader::Read(std::string_view bytes) {
  TextLines lines(bytes);
  for (std::string_view line; lines.Next(line);) TakeLine(line, lines.Number());
  if (range.marker.numbers > 0) EndRange();
  if (file.scans.empty() && !otherdrive.empty())
    throw NoPattern("its ranges run over " + otherdrive + ", not over two-theta");
  LabelScans(file, "range");
  return std::move(file);
}

}  // namespace

bool IsUxd(std::string_view bytes) {
  return HasLineStart(bytes, "_FILEVERSION=") || HasLineStart(bytes, "_DRIVE=") ||
         HasLineStart(bytes, "_2THETACOUNTS") || HasLineStart(bytes, "_2THETACPS");
}

MeasuredFile ReadUxdRanges(const ImportSource& source) { return UxdReader().Read(source.bytes); }
