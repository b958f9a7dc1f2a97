// One format after the other is asked whether the file is its own.
#include "patternfiles/import/import.h"

#include <cmath>
#include <exception>

#include "patternfiles/import/bytes.h"
#include "patternfiles/import/formats.h"

namespace {

constexpr int kMostMiB = 256;

const ImportFormat* FormatOf(std::string_view bytes) {
  for (const auto& group : {BinaryFormats(), MarkedUpFormats(), TextFormats()})
    for (const ImportFormat& format : group)
      if (format.recognises(bytes)) return &format;
  return nullptr;
}

// Drops points that are none, and scans without any.
void Mend(MeasuredFile& file) {
  for (MeasuredScan& scan : file.scans) {
    const std::size_t all = std::min(scan.x.size(), scan.counts.size());
    const bool withesd = scan.esd.size() >= all;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < all; ++i) {
      if (!std::isfinite(scan.x[i]) || !std::isfinite(scan.counts[i])) continue;
      scan.x[kept] = scan.x[i];
      scan.counts[kept] = scan.counts[i];
      if (withesd) scan.esd[kept] = scan.esd[i];
      ++kept;
    }
    scan.x.resize(kept);
    scan.counts.resize(kept);
    scan.esd.resize(withesd ? kept : 0);
  }
  std::erase_if(file.scans, [](const MeasuredScan& scan) { return scan.x.empty(); });
}

void Read(const std::string& path, Imported& imported) {
  const std::string& bytes = imported.bytes = BytesOf(path, kMostMiB);
  if (bytes.empty()) throw NotReadable("it is empty");
  const ImportFormat* format = FormatOf(bytes);
  if (!format) throw NotReadable("it holds nothing that is known as a pattern");
  imported.format = format->name;
  if (!format->read)
    throw NotReadable(std::string("this program has been built without ") + format->needs +
                      ", which reads " + format->name);
  imported.file = format->read({bytes, path});
  Mend(imported.file);
  if (imported.file.scans.empty()) throw NotReadable("no points in it");
}

}  // namespace

Imported ImportFile(const std::string& path) {
  Imported imported;
  try {
    Read(path, imported);
  } catch (const NoPattern& failure) {
    imported.trouble = failure.what();
    imported.isnopattern = true;
  } catch (const std::exception& failure) {
    imported.trouble = failure.what();
  }
  if (!imported.trouble.empty()) imported.file.scans.clear();
  return imported;
}
