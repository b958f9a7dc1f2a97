// CIF, XML and archives.
#include <algorithm>

#include "patternfiles/import/markup.h"
#include "patternfiles/import/textlines.h"
#include "workspace/text.h"

namespace {

constexpr std::size_t kHead = 64 << 10;  // bytes that tell the format of a file

// Takes the next word from a CIF, in lower case; comments are none.
std::string NextWord(std::string_view& text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  for (;;) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    if (!text.starts_with('#')) break;
    text.remove_prefix(std::min(text.find_first_of("\r\n"), text.size()));
  }
  const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
  text.remove_prefix(word.size());
  return LowerText(word);
}

// "data_" alone might as well be a heading: a name or a loop follows.
bool IsCif(std::string_view bytes) {
  const TextLines lines(bytes.substr(0, kHead));
  const std::string_view head = lines.Rest();
  std::string_view text = head;
  if (!NextWord(text).starts_with("data_")) return false;
  const std::string next = NextWord(text);
  return next.starts_with('_') || next == "loop_" || next.starts_with("data_") ||
         (next.empty() && head.starts_with("#\\#CIF"));
}

bool IsXrdml(std::string_view bytes) {
  const TextLines lines(bytes.substr(0, kHead));
  const std::string_view head = lines.Rest();
  const std::size_t at = head.find("xrdMeasurements");
  return at != head.npos && at > 0 && (head[at - 1] == '<' || head[at - 1] == ':') &&
         head[head.find_first_not_of(" \t\r\n")] == '<';
}

bool IsArchive(std::string_view bytes) { return bytes.starts_with("PK\3\4"); }

// Names stand in an archive as they are: "Experiment0/RawData0.xml".
bool HasEntry(std::string_view bytes, std::string_view name, std::string_view extension) {
  for (std::size_t at = 0; (at = bytes.find(name, at)) != bytes.npos;) {
    at += name.size();
    const std::size_t end = bytes.find_first_not_of("0123456789", at);
    if (end != bytes.npos && end > at && bytes.substr(end).starts_with(extension)) return true;
  }
  return false;
}

bool IsBrml(std::string_view bytes) {
  return IsArchive(bytes) && HasEntry(bytes, "RawData", ".xml");
}

bool IsRasx(std::string_view bytes) {
  return IsArchive(bytes) && HasEntry(bytes, "Profile", ".txt");
}

MeasuredFile RefuseArchive(const ImportSource&) {
  throw NotReadable("it is an archive without a pattern that is known");
}

#ifdef QUILLAGRAM_GEMMI
constexpr auto kPdCif = ImportPdCif;
#else
constexpr decltype(&ImportPdCif) kPdCif = nullptr;
#endif
#ifdef QUILLAGRAM_PUGIXML
constexpr auto kXrdml = ImportXrdml;
#else
constexpr decltype(&ImportXrdml) kXrdml = nullptr;
#endif
#ifdef QUILLAGRAM_LIBZIP
constexpr auto kBrml = ImportBrml, kRasx = ImportRasx;
#else
constexpr decltype(&ImportBrml) kBrml = nullptr, kRasx = nullptr;
#endif

constexpr ImportFormat kFormats[] = {
    {"powder CIF", IsCif, kPdCif, "gemmi"},
    {"PANalytical XRDML", IsXrdml, kXrdml, "pugixml"},
    {"Bruker BRML", IsBrml, kBrml, "libzip and pugixml"},
    {"Rigaku RASX", IsRasx, kRasx, "libzip and pugixml"},
    {"zip archive", IsArchive, RefuseArchive},
};

}  // namespace

std::span<const ImportFormat> MarkedUpFormats() { return kFormats; }
