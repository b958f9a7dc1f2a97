// Rigaku RAS: keys of the instrument, then angle, counts and the factor of the attenuator, scan
// after scan.
//
//   *RAS_DATA_START
//   *RAS_HEADER_START
//   *FILE_SAMPLE "quartz"
//   *HW_XG_WAVE_LENGTH_ALPHA1 "1.540593"
//   *MEAS_SCAN_AXIS_X "TwoThetaTheta"
//   *RAS_HEADER_END
//   *RAS_INT_START
//   5.0000 1234 1.0000
//   *RAS_INT_END
//
// Rigaku text: the same instrument's older way.
//
//   *START   =  5.00
//   *STEP    =  0.02
//   *COUNT   =  3501
//     54,   52,   61,   48
//   *END
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "patternfiles/import/headerkeys.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/textreaders.h"
#include "workspace/text.h"

namespace {

[[noreturn]] void RefuseLine(const TextLines& lines) {
  throw NotReadable("line " + std::to_string(lines.Number()) +
                    " holds no numbers where counts should be");
}

[[noreturn]] void RefuseAxis(const std::string& axis) {
  throw NoPattern("its scans run over " + axis + ", not over two-theta");
}

bool IsTwoTheta(const std::string& axis) {
  const std::string key = KeyOf(axis);
  return key.empty() || key.starts_with('2') || key.find("2theta") != key.npos ||
         key.find("twotheta") != key.npos;
}

struct RigakuScan {
  TextHeader header;
  std::string axis;
  std::string unit = "deg/min";  // of the speed
  double speed = 0;
};

void TakeRigakuKey(std::string_view key, std::string_view value, RigakuScan& scan) {
  if (key == "MEAS_SCAN_AXIS_X" || key == "SCAN_AXIS") {
    scan.axis = Unquoted(value);
  } else if (key == "MEAS_SCAN_SPEED" || key == "SPEED") {
    scan.speed = ValueOf(value).value_or(0);
  } else if (key == "MEAS_SCAN_SPEED_UNIT" || key == "SPEED_UNIT") {
    scan.unit = LowerText(Unquoted(value));
  } else {
    TakeKey(scan.header, key, value);
  }
}

// The scan with the counts that it got, and nothing of them left behind.
MeasuredScan EndScan(RigakuScan& scan) {
  MeasuredScan ended = std::move(scan.header.scan);
  const double step = scan.header.step.value_or(0);
  if (scan.unit.starts_with("deg") && scan.speed > 0 && step > 0)
    ended.seconds = step / scan.speed * (scan.unit.find("sec") == scan.unit.npos ? 60 : 1);
  scan.header.scan = {};
  return ended;
}

// Angle, counts and the attenuator's factor a line; 0 and none stand for 1.
void TakeRasPoints(TextLines& lines, MeasuredScan& scan) {
  std::vector<double> point;
  for (std::string_view line; lines.Next(line) && !line.starts_with('*');) {
    point.clear();
    if (!AppendNumbers(line, point) || point.size() == 1) RefuseLine(lines);
    if (point.empty()) continue;
    const double factor = point.size() > 2 && point[2] != 0 ? point[2] : 1;
    scan.x.push_back(point[0]);
    scan.counts.push_back(point[1] * factor);
    CheckPoints(scan.x.size());
  }
}

}  // namespace

bool IsRas(std::string_view bytes) { return FirstLineStarts(bytes, "*RAS_"); }

MeasuredFile ReadRas(const ImportSource& source) {
  MeasuredFile file;
  TextLines lines(source.bytes);
  RigakuScan scan;
  std::string otheraxis;
  for (std::string_view line; lines.Next(line);) {
    line = Stripped(line);
    const std::size_t blank = line.find_first_of(" \t");
    if (line.starts_with("*RAS_HEADER_START")) {
      scan = {};
    } else if (line.starts_with("*RAS_INT_START")) {
      TakeRasPoints(lines, scan.header.scan);
      MeasuredScan ended = EndScan(scan);
      if (IsTwoTheta(scan.axis)) {
        AddScan(file, std::move(ended));
      } else {
        otheraxis = scan.axis;
      }
    } else if (line.starts_with('*') && blank != line.npos) {
      TakeRigakuKey(line.substr(1, blank - 1), line.substr(blank), scan);
    }
  }
  if (file.scans.empty() && !otheraxis.empty()) RefuseAxis(otheraxis);
  LabelScans(file, "scan");
  return file;
}

bool IsRigakuText(std::string_view bytes) {
  return FirstLineStarts(bytes, "*") && HasLineStart(bytes, "*START") &&
         HasLineStart(bytes, "*STEP");
}

namespace {

void EndGroup(RigakuScan& group, MeasuredFile& file) {
  if (group.header.scan.counts.empty()) return;
  if (!IsTwoTheta(group.axis)) RefuseAxis(group.axis);
  if (!group.header.start || !group.header.step)
    throw NotReadable("it tells no first angle or no step");
  const MeasuredScan keys = Unmeasured(group.header.scan);
  MeasuredScan scan = EndScan(group);
  FillEvenGrid(scan, *group.header.start, *group.header.step);
  AddScan(file, std::move(scan));
  group.header = {keys, {}, {}};  // the next group tells its own angles
}

}  // namespace

MeasuredFile ReadRigakuText(const ImportSource& source) {
  MeasuredFile file;
  TextLines lines(source.bytes);
  RigakuScan group;
  for (std::string_view line; lines.Next(line);) {
    line = Stripped(line);
    if (line.starts_with('*')) {
      EndGroup(group, file);
      const std::size_t sign = std::min(line.find('='), line.size() - 1);
      TakeRigakuKey(Stripped(line.substr(1, sign - 1)), line.substr(sign + 1), group);
    } else if (!AppendNumbers(line, group.header.scan.counts)) {
      RefuseLine(lines);
    }
  }
  EndGroup(group, file);
  LabelScans(file, "scan");
  return file;
}
