// Reads a file by what it holds, whatever its name is.
#pragma once

#include <string>

#include "patternfiles/import/measured.h"

struct Imported {
  std::string bytes;         // the whole file, as far as it could be read
  MeasuredFile file;         // without scans if that failed
  std::string format;        // as far as it has been recognised
  std::string trouble;       // why there are no scans, as the end of a sentence
  bool isnopattern = false;  // there is nothing wrong with the file but that
};

// Of files up to 256 MiB. Scans without points are left out; values that are not finite are none.
Imported ImportFile(const std::string& path);
