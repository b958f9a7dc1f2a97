// The formats of the import, in groups. Which one a file has is told by its content alone.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "patternfiles/import/measured.h"

struct ImportSource {
  std::string_view bytes;  // the whole file
  const std::string& path;
};

struct ImportFormat {
  const char* name;  // "Rigaku RAS"
  // Looks at the first kilobytes as a rule; true where no other format can be meant.
  bool (*recognises)(std::string_view bytes);
  // Throws NotReadable, or what std::exception stands for. Missing in a build without what `needs`
  // names.
  MeasuredFile (*read)(const ImportSource& source);
  const char* needs = "";  // the library, as its users know it
};

std::span<const ImportFormat> BinaryFormats();    // raw data of instruments
std::span<const ImportFormat> MarkedUpFormats();  // CIF, XML, archives
std::span<const ImportFormat> TextFormats();  // lines; the last one is that of columns of numbers
