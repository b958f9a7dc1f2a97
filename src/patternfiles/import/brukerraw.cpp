// Raw data of Siemens and Bruker diffractometers, versions 1 to 3. All have ranges one behind the
// other, each with a header of its own and counts as floats; places are in bytes.
#include <limits>
#include <utility>

#include "patternfiles/import/binaryfile.h"
#include "patternfiles/import/binaryreaders.h"
#include "patternfiles/import/dates.h"
#include "workspace/text.h"

namespace {

// Header of 152 bytes behind the mark "RAW ", which may stand before the first range only:
//     0 points, int       8 step, float   36 sample, 32 letters   148 ranges to come, int
//     4 seconds, float   20 start, float  68 alpha1, alpha2, floats
EvenRange Range1(const BinaryFile& bytes, std::size_t place, const MeasuredScan&) {
  if (bytes.Behind(place) >= 4 && bytes.Text(place, 4) == "RAW") place += 4;
  EvenRange range;
  range.points = bytes.Integer(place);
  range.told.seconds = Seconds(bytes.Single(place + 4));
  range.step = bytes.Single(place + 8);
  range.start = bytes.Single(place + 20);
  range.told.sample = bytes.Text(place + 36, 32);
  range.told.wavelengths = {Wavelength(bytes.Single(place + 68)),
                            Wavelength(bytes.Single(place + 72))};
  range.last = bytes.Integer(place + 148) == 0;
  range.place = place + 152;
  return range;
}

// Header of as many bytes as it says, 48 at least:
//     0 bytes of it, short    8 seconds, float   16 start, float
//     2 points, short        12 step, float      46 temperature in kelvin, short
EvenRange Range2(const BinaryFile& bytes, std::size_t place, const MeasuredScan& head) {
  const std::size_t header = bytes.Word(place);
  if (header < 48) throw NotReadable("the header of a range is too short");
  EvenRange range{.told = head};
  range.points = bytes.Word(place + 2);
  range.told.seconds = Seconds(bytes.Single(place + 8));
  range.step = bytes.Single(place + 12);
  range.start = bytes.Single(place + 16);
  if (const int kelvin = bytes.Word(place + 46)) range.told.label = std::to_string(kelvin) + " K";
  range.place = place + header;
  return range;
}

// What moves, by the number in the header, where that is not two-theta.
const char* OtherAxis3(std::uint32_t scantype) {
  static constexpr std::pair<std::uint32_t, const char*> kAxes[] = {
      {3, "a rocking curve"}, {4, "a scan of chi"},  {5, "a scan of phi"},  {6, "a scan along x"},
      {7, "a scan along y"},  {8, "a scan along z"}, {12, "a scan of psi"},
  };
  for (const auto& [number, axis] : kAxes)
    if (number == scantype) return axis;
  return "";
}

// Header of 304 bytes and a supplement:
//     0 bytes without the supplement, int   176 step, double     240 wavelength used, double
//     4 points, int                         192 seconds, float   252 bytes of a point, int
//    16 start of two-theta, double          196 scan type, int   256 bytes of the supplement, int
EvenRange Range3(const BinaryFile& bytes, std::size_t place, const MeasuredScan& head) {
  const std::size_t header = bytes.Integer(place);
  if (header < 304) throw NotReadable("the header of a range is too short");
  EvenRange range{.told = head};
  range.points = bytes.Integer(place + 4);
  range.start = bytes.Double(place + 16);
  range.step = bytes.Double(place + 176);
  range.told.seconds = Seconds(bytes.Single(place + 192));
  range.axis = OtherAxis3(bytes.Integer(place + 196));
  if (range.told.wavelengths[0] == 0)
    range.told.wavelengths[0] = Wavelength(bytes.Double(place + 240));
  range.place = place + header + bytes.Integer(place + 256);
  TakeRecord(range, bytes, bytes.Integer(place + 252));
  return range;
}

}  // namespace

MeasuredFile ReadBrukerRaw1(const ImportSource& source) {
  return ReadRanges(BinaryFile(source.bytes), 0, std::numeric_limits<std::size_t>::max(), {},
                    Range1);
}

// Header of 256 bytes: 4 ranges, short; 168 date and time, 20 letters; 190 alpha1, alpha2 and the
// ratio of their intensities, floats.
MeasuredFile ReadBrukerRaw2(const ImportSource& source) {
  const BinaryFile bytes(source.bytes);
  MeasuredScan head;
  head.date = IsoDate(bytes.Text(168, 20));
  head.wavelengths = {Wavelength(bytes.Single(190)), Wavelength(bytes.Single(194))};
  head.ratio = Ratio(bytes.Single(198));
  return ReadRanges(bytes, 256, bytes.Word(4), head, Range2);
}

// Header of 712 bytes: 12 ranges, int; 16 date and 26 time, 10 letters each; 326 sample, 60
// letters; 624 alpha1, 632 alpha2 and 648 the ratio of their intensities, doubles.
MeasuredFile ReadBrukerRaw3(const ImportSource& source) {
  const BinaryFile bytes(source.bytes);
  MeasuredScan head;
  head.date = IsoDate(bytes.Text(16, 10) + " " + bytes.Text(26, 10));
  head.sample = bytes.Text(326, 60);
  head.wavelengths = {Wavelength(bytes.Double(624)), Wavelength(bytes.Double(632))};
  head.ratio = Ratio(bytes.Double(648));
  return ReadRanges(bytes, 712, bytes.Integer(12), head, Range3);
}
