// A binary file of an instrument: numbers and texts at places, and ranges of even steps.
#include "patternfiles/import/binaryfile.h"

#include <algorithm>

#include "workspace/text.h"

namespace {

constexpr std::size_t kMostScans = 1000, kMostPoints = 4'000'000;  // of a file

double Within(double value, double least, double most) {
  return value >= least && value <= most ? value : 0;
}

bool IsAngle(double degrees) { return degrees >= -180 && degrees <= 360; }

void CheckPositions(const EvenRange& range) {
  const double steps = range.points > 0 ? static_cast<double>(range.points - 1) : 0;
  if (!IsAngle(range.start) || !IsAngle(range.start + steps * range.step))
    throw NotReadable("its positions are no angles");
  if (steps > 0 && range.step == 0) throw NotReadable("all its counts are of one position");
}

void CheckLimits(const MeasuredFile& file, std::size_t points) {
  if (file.scans.size() >= kMostScans) throw NotReadable("it holds more than 1000 scans");
  for (const MeasuredScan& scan : file.scans) points += scan.x.size();
  if (points > kMostPoints) throw NotReadable("it holds more than 4 million points");
}

void AddNote(std::string& note, const std::string& text) {
  if (!note.empty()) note += "; ";
  note += text;
}

std::string RangeName(std::size_t number) { return "range " + std::to_string(number); }

// Labels are of use only where there is a choice.
void NumberScans(std::vector<MeasuredScan>& scans) {
  for (std::size_t i = 0; i < scans.size(); ++i) {
    std::string& label = scans[i].label;
    label = scans.size() == 1 ? "" : RangeName(i + 1) + (label.empty() ? "" : ", " + label);
  }
}

double CountAsFloat(const BinaryFile& bytes, std::size_t place) { return bytes.Single(place); }

}  // namespace

std::string BinaryFile::Text(std::size_t place, std::size_t length) const {
  if (Behind(place) < length) throw NotReadable("it ends within a header");
  std::string text;
  for (const char c : bytes_.substr(place, length)) {
    if (c == '\0') break;
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x80) text += static_cast<char>(0xc0 | byte >> 6);
    text += byte < ' ' ? ' ' : static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3f));
  }
  return std::string(Trim(text));
}

double Wavelength(double field) { return Within(field, 0.01, 20); }
double Ratio(double field) { return Within(field, 1e-3, 1); }
double Seconds(double field) { return Within(field, 1e-6, 1e6); }

void TakeRecord(EvenRange& range, const BinaryFile& bytes, std::size_t stated) {
  const bool sensible = stated >= 4 && stated <= 1024 && stated % 4 == 0;
  if (sensible && bytes.Behind(range.place) != 4 * range.points) range.record = stated;
}

void AddRange(MeasuredFile& file, const EvenRange& range, const BinaryFile& bytes,
              double (*count)(const BinaryFile& bytes, std::size_t place)) {
  CheckPositions(range);
  const std::size_t there = std::min(range.points, bytes.Behind(range.place) / range.record);
  CheckLimits(file, there);
  if (there < range.points)
    AddNote(file.note, "the file ends behind " + std::to_string(there) + " of " +
                           std::to_string(range.points) + " points");
  MeasuredScan& scan = file.scans.emplace_back(range.told);
  for (std::size_t i = 0; i < there; ++i) {
    scan.x.push_back(range.start + static_cast<double>(i) * range.step);
    scan.counts.push_back(count(bytes, range.place + i * range.record));
  }
  if (range.step >= 0) return;
  std::ranges::reverse(scan.x);
  std::ranges::reverse(scan.counts);
}

MeasuredFile ReadRanges(const BinaryFile& bytes, std::size_t place, std::size_t ranges,
                        const MeasuredScan& head, RangeReader read) {
  MeasuredFile file;
  const char* otheraxis = nullptr;
  for (std::size_t number = 1; number <= ranges; ++number) {
    try {
      const EvenRange range = read(bytes, place, head);
      if (*range.axis)
        otheraxis = range.axis;
      else if (range.points > 0)
        AddRange(file, range, bytes, CountAsFloat);
      if (range.last || range.points > bytes.Behind(range.place) / range.record) break;
      place = range.place + range.points * range.record;
    } catch (const NotReadable& failure) {
      if (file.scans.empty()) throw;
      AddNote(file.note,
              RangeName(number) + " and what follows could not be read: " + failure.what());
      break;
    }
  }
  if (otheraxis && file.scans.empty()) throw NoPattern(std::string("it holds ") + otheraxis);
  if (otheraxis) AddNote(file.note, std::string("left out: ") + otheraxis);
  NumberScans(file.scans);
  return file;
}
