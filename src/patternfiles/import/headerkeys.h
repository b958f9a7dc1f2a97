// What the keys in front of the counts mean: the same few things under the names of many programs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "patternfiles/import/measured.h"

struct TextHeader {
  MeasuredScan scan;  // without points
  std::optional<double> start, step;
  double temperature = 0;  // as it stands, 0 where not stated
};

// Letters and digits alone, in lower case, Greek ones by their names: "2 Theta (deg)" is
// "2thetadeg".
std::string KeyOf(std::string_view text);
// Takes the value if the key is known and the value can be one; a unit may stand in brackets behind
// the key, or behind the value.
bool TakeKey(TextHeader& header, std::string_view key, std::string_view value);
// The same for a whole line: "Lambda = 1.5406", "# Wavelength: 4.066e-11 m", "Sample,Quartz",
// "wavelength 1.5406".
bool TakeKeyLine(TextHeader& header, std::string_view line);
