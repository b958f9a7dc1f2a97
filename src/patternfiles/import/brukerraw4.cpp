// Raw data of Bruker diffractometers, version 4, "RAW4.00". Places in bytes:
//     file     12 date, 24 time, 12 letters each       61 parts, each with its kind and its length
//     part      0 kind, int      4 length, int
//              10 a text: 12 its name, 24 letters      36 the text
//              30 source: 72 mean wavelength, 80 alpha1, 88 alpha2, 104 ratio, doubles
//     range     0 kind 0 or 160, which ends the parts; 160 bytes, its own parts, the points
//              32 type of the scan, 24 letters         92 seconds, float
//              72 start, 80 step, doubles             112 wavelength, double
//              88 points, int                         136 bytes of a point, 140 bytes of the parts
#include <algorithm>
#include <array>
#include <limits>

#include "patternfiles/import/binaryfile.h"
#include "patternfiles/import/binaryreaders.h"
#include "patternfiles/import/dates.h"
#include "workspace/text.h"

namespace {

constexpr std::size_t kRangeHeader = 160;

bool IsRange(std::uint32_t kind) { return kind == 0 || kind == kRangeHeader; }

void TakeText(const BinaryFile& bytes, std::size_t place, std::size_t length, MeasuredScan& head) {
  const std::string name = LowerText(bytes.Text(place + 12, 24));
  if (length > 36 && name.starts_with("sample") && head.sample.empty())
    head.sample = bytes.Text(place + 36, length - 36);
}

// Only wavelengths that agree with their mean are believed.
void TakeSource(const BinaryFile& bytes, std::size_t place, MeasuredScan& head) {
  const double mean = Wavelength(bytes.Double(place + 72)),
               alpha1 = Wavelength(bytes.Double(place + 80)),
               alpha2 = Wavelength(bytes.Double(place + 88));
  if (alpha1 == 0 || mean < alpha1 || mean > std::max(alpha1, alpha2)) return;
  head.wavelengths = {alpha1, alpha2};
  head.ratio = Ratio(bytes.Double(place + 104));
}

// What the parts in front of the first range tell; the place of that range is left in `place`.
MeasuredScan Head(const BinaryFile& bytes, std::size_t& place) {
  MeasuredScan head;
  head.date = IsoDate(bytes.Text(12, 12) + " " + bytes.Text(24, 12));
  for (place = 61; !IsRange(bytes.Integer(place));) {
    const std::uint32_t kind = bytes.Integer(place);
    const std::size_t length = std::max(bytes.Integer(place + 4), 8u);
    if (kind == 10 && length >= 36) TakeText(bytes, place, length, head);
    if (kind == 30 && length >= 112) TakeSource(bytes, place, head);
    place += length;
  }
  return head;
}

const char* OtherAxis(const std::string& scantype) {
  struct Axis {
    const char *word, *told;
  };
  static constexpr Axis kAxes[] = {{"rocking", "a rocking curve"},
                                   {"chi", "a scan of chi"},
                                   {"phi", "a scan of phi"},
                                   {"psi", "a scan of psi"},
                                   {"pole", "a pole figure"}};
  for (const Axis& axis : kAxes)
    if (LowerText(scantype).find(axis.word) != std::string::npos) return axis.told;
  return "";
}

EvenRange Range4(const BinaryFile& bytes, std::size_t place, const MeasuredScan& head) {
  if (!IsRange(bytes.Integer(place))) throw NotReadable("the header of a range is no such");
  EvenRange range{.told = head};
  range.axis = OtherAxis(bytes.Text(place + 32, 24));
  range.start = bytes.Double(place + 72);
  range.step = bytes.Double(place + 80);
  range.points = bytes.Integer(place + 88);
  range.told.seconds = Seconds(bytes.Single(place + 92));
  if (head.wavelengths[0] == 0) range.told.wavelengths[0] = Wavelength(bytes.Double(place + 112));
  range.place = place + kRangeHeader + bytes.Integer(place + 140);
  TakeRecord(range, bytes, bytes.Integer(place + 136));
  range.last = bytes.Behind(range.place) < range.points * range.record + kRangeHeader;
  return range;
}

}  // namespace

MeasuredFile ReadBrukerRaw4(const ImportSource& source) {
  const BinaryFile bytes(source.bytes);
  std::size_t place = 0;
  const MeasuredScan head = Head(bytes, place);
  return ReadRanges(bytes, place, std::numeric_limits<std::size_t>::max(), head, Range4);
}
