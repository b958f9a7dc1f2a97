// Raw data of Philips diffractometers, "V3RD" and "V5RD". Places in bytes:
//      84 instrument, byte                          146 sample, 20 letters
//      94 alpha1, alpha2 and the ratio of their     214 step, begin and end of the scan, doubles
//         intensities, doubles                      250 counts of V3RD, 810 of V5RD
// A count is kept as ten times its square root in 16 bits, the fraction of its square cut off.
#include <array>
#include <cmath>
#include <utility>

#include "patternfiles/import/binaryfile.h"
#include "patternfiles/import/binaryreaders.h"

namespace {

constexpr std::array kInstruments{
    "Philips PW1800",    "Philips PW1710", "Philips PW1840", "Philips PW3710", "",
    "Philips X'Pert MPD"};

double CountOfRoot(const BinaryFile& bytes, std::size_t place) {
  const std::uint32_t root = bytes.Word(place);
  return root * root / 100;
}

// A moving scan has one count for each step, taken from the begin of the step to its end: the point
// is in the middle. One that stands still at each point has a count more than steps.
EvenRange Grid(const BinaryFile& bytes, std::size_t counts) {
  EvenRange range{.step = bytes.Double(214), .place = counts, .record = 2};
  const double begin = bytes.Double(222), end = bytes.Double(230);
  const double steps = std::round((end - begin) / range.step);
  if (!(range.step > 0 && steps >= 1 && steps < 1e7)) throw NotReadable("its range has no steps");
  range.points = static_cast<std::size_t>(steps);
  const bool still = bytes.Behind(counts) / range.record == range.points + 1;
  range.points += still;
  range.start = still ? begin : begin + range.step / 2;
  return range;
}

}  // namespace

MeasuredFile ReadPhilipsRd(const ImportSource& source) {
  const BinaryFile bytes(source.bytes);
  EvenRange range = Grid(bytes, source.bytes.starts_with("V3") ? 250 : 810);
  if (const std::size_t kind = bytes.At<std::uint8_t>(84); kind < kInstruments.size())
    range.told.instrument = kInstruments[kind];
  range.told.wavelengths = {Wavelength(bytes.Double(94)), Wavelength(bytes.Double(102))};
  range.told.ratio = Ratio(bytes.Double(110));
  range.told.sample = bytes.Text(146, 20);
  MeasuredFile file;
  AddRange(file, range, bytes, CountOfRoot);
  return file;
}
