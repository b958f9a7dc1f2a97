// The binary formats, by the mark at their begin.
#include "patternfiles/import/binaryreaders.h"

namespace {

// A text may begin with the word.
bool IsRaw1(std::string_view bytes) {
  return bytes.starts_with("RAW ") && bytes.substr(0, 156).find('\0') != bytes.npos;
}
bool IsRaw2(std::string_view bytes) {
  return bytes.starts_with("RAW2") && bytes.substr(0, 256).find('\0') != bytes.npos;
}
bool IsRaw3(std::string_view bytes) { return bytes.starts_with("RAW1.01"); }
bool IsRaw4(std::string_view bytes) { return bytes.starts_with("RAW4.00"); }
bool IsRd(std::string_view bytes) { return bytes.starts_with("V3RD") || bytes.starts_with("V5RD"); }

constexpr ImportFormat kFormats[] = {
    {"Siemens RAW, version 1", IsRaw1, ReadBrukerRaw1},
    {"Siemens RAW, version 2", IsRaw2, ReadBrukerRaw2},
    {"Bruker RAW, version 3", IsRaw3, ReadBrukerRaw3},
    {"Bruker RAW, version 4", IsRaw4, ReadBrukerRaw4},
    {"Philips RD", IsRd, ReadPhilipsRd},
    {"", IsOtherKind, RefuseOtherKind},  // its reasons name the kind
};

}  // namespace

std::span<const ImportFormat> BinaryFormats() { return kFormats; }
