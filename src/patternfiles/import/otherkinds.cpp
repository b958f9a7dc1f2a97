// What else is dropped on the program: files that hold no scan, or one in a form that is not read.
// They are known by what they begin with.
#include <algorithm>

#include "patternfiles/import/binaryreaders.h"

namespace {

using namespace std::string_view_literals;

constexpr char kDetectorPicture[] =
    "it is a picture of an area detector; integrate it first, and open the pattern of that";
constexpr char kPicture[] = "it is a picture, and holds no counts";
constexpr char kPacked[] = "it is packed; unpack it first, and open what was in it";
constexpr char kOffice[] = "it is a document of an office program; save its table as csv";

bool Holds(std::string_view bytes, std::string_view word) { return bytes.find(word) != bytes.npos; }

bool Always(std::string_view) { return true; }
// Few letters at the begin may be those of a text.
bool IsBinary(std::string_view bytes) { return Holds(bytes.substr(0, 16), "\0"sv); }
bool IsBzip(std::string_view bytes) { return Holds(bytes.substr(0, 10), "1AY&SY"); }
bool IsStoe(std::string_view bytes) { return Holds(bytes.substr(0, 32), "Powdat"); }
bool IsFrame(std::string_view bytes) { return Holds(bytes.substr(0, 512), "VERSION:"); }
bool IsEdf(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, 2048);
  return Holds(head, "HeaderID") || Holds(head, "ByteOrder") || Holds(head, "HEADER_BYTES");
}
bool IsMar(std::string_view bytes) {
  return IsBinary(bytes) && Holds(bytes.substr(0, 1024), "mar research");
}
// None of the archives that instruments write; the names in an archive stand in it as they are.
bool IsForeignZip(std::string_view bytes) {
  return !Holds(bytes, "RawData") && !Holds(bytes, "Profile") && !Holds(bytes, "Experiment");
}
bool IsOffice(std::string_view bytes) {
  return (Holds(bytes.substr(0, 4096), "[Content_Types].xml") ||
          Holds(bytes.substr(0, 256), "opendocument")) &&
         IsForeignZip(bytes);
}

struct Kind {
  std::string_view mark;
  bool (*also)(std::string_view bytes);
  const char* trouble;
};

constexpr Kind kKinds[] = {
    {"\x89HDF\r\n\x1a\n", Always, "it is a file of HDF5 or NeXus; save the pattern in it as text"},
    {"II*\0"sv, Always, kDetectorPicture},  // TIFF
    {"MM\0*"sv, Always, kDetectorPicture},
    {"{", IsEdf, kDetectorPicture},
    {"###CBF", Always, kDetectorPicture},
    {"", IsMar, kDetectorPicture},
    {"FORMAT :", IsFrame, kDetectorPicture},  // frames of Bruker
    {"SIMPLE  =", Always, kDetectorPicture},  // FITS
    {"\x89PNG\r\n", Always, kPicture},
    {"\xff\xd8\xff", Always, kPicture},  // JPEG
    {"GIF8", Always, kPicture},
    {"BM", IsBinary, kPicture},
    {"%PDF-", Always, "it is a document (PDF), and holds no counts"},
    {"{\\rtf", Always, "it is a formatted text; save it as plain text"},
    {"PK\3\4", IsOffice, kOffice},
    {"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1", Always, kOffice},
    {"PK\3\4", IsForeignZip, kPacked},
    {"\x1f\x8b", Always, kPacked},  // gzip
    {"BZh", IsBzip, kPacked},
    {"\xfd\x37zXZ", Always, kPacked},
    {"7z\xbc\xaf\x27\x1c", Always, kPacked},
    {"Rar!\x1a", Always, kPacked},
    {"\x28\xb5\x2f\xfd", Always, kPacked},  // Zstandard
    {"RAW_1.", IsStoe, "it holds raw data of a Stoe diffractometer; export them as xy"},
    {"FI", IsBinary, "it holds binary raw data of a Rigaku diffractometer; export them as RAS"},
};

const Kind* KindOf(std::string_view bytes) {
  const auto fits = [&](const Kind& kind) {
    return bytes.starts_with(kind.mark) && kind.also(bytes);
  };
  const auto kind = std::ranges::find_if(kKinds, fits);
  return kind == std::end(kKinds) ? nullptr : kind;
}

}  // namespace

bool IsOtherKind(std::string_view bytes) { return KindOf(bytes) != nullptr; }

MeasuredFile RefuseOtherKind(const ImportSource& source) {
  throw NotReadable(KindOf(source.bytes)->trouble);
}
