// A binary file of an instrument: numbers and texts at places, and ranges of even steps.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "patternfiles/import/measured.h"

class BinaryFile {
 public:
  explicit BinaryFile(std::string_view bytes) : bytes_(bytes) {}
  std::size_t size() const { return bytes_.size(); }
  // Bytes from a place on.
  std::size_t Behind(std::size_t place) const { return place < size() ? size() - place : 0; }

  // The number at a place, its lowest byte first. Throws NotReadable where the file has ended.
  template <class T>
  T At(std::size_t place) const {
    static_assert(std::endian::native == std::endian::little);
    if (Behind(place) < sizeof(T)) throw NotReadable("it ends within a header");
    T value;
    std::memcpy(&value, bytes_.data() + place, sizeof(T));
    return value;
  }
  std::uint16_t Word(std::size_t place) const { return At<std::uint16_t>(place); }
  std::uint32_t Integer(std::size_t place) const { return At<std::uint32_t>(place); }
  double Single(std::size_t place) const { return At<float>(place); }
  double Double(std::size_t place) const { return At<double>(place); }

  // The text of a field of `length` bytes, which a NUL ends earlier, without blanks at its ends;
  // bytes above 127 are taken as Latin-1.
  std::string Text(std::size_t place, std::size_t length) const;

 private:
  std::string_view bytes_;
};

// What is told by a field of a header, or 0 if that is no such quantity: fields that an instrument
// does not know hold zeros, -1e6 or what was in memory.
double Wavelength(double field);
double Ratio(double field);
double Seconds(double field);

// A range of even steps as its header tells it.
struct EvenRange {
  MeasuredScan told{};         // all but the points
  double start = 0, step = 0;  // degrees two-theta
  std::size_t points = 0;
  std::size_t place = 0;   // of the first count
  std::size_t record = 4;  // bytes of a point, the count first
  const char* axis = "";   // of a scan that is none of two-theta: "a rocking curve"
  bool last = false;       // no other follows
};

// Takes the bytes of a point as the header states them; 4 where that is nothing sensible, or where
// counts alone make up the rest of the file.
void TakeRecord(EvenRange& range, const BinaryFile& bytes, std::size_t stated);

// Adds the range to the scans, rising. Of a range that the file ends in come the points that are
// there, and the note tells it. `count` gives that of the record at a place. Throws NotReadable
// for positions that are no angles and beyond 1000 scans and 4 million points of a file.
void AddRange(MeasuredFile& file, const EvenRange& range, const BinaryFile& bytes,
              double (*count)(const BinaryFile& bytes, std::size_t place));

// Ranges one behind the other, `ranges` or up to the one that says it is the last, with counts as
// floats. `read` takes the header at a place; what all ranges share is in `head`. What stands
// behind the first range is given up, with a note, where it cannot be read.
using RangeReader = EvenRange (*)(const BinaryFile& bytes, std::size_t place,
                                  const MeasuredScan& head);
MeasuredFile ReadRanges(const BinaryFile& bytes, std::size_t place, std::size_t ranges,
                        const MeasuredScan& head, RangeReader read);
