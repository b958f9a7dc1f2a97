// Texts as CIF 1.1 has them: ASCII, quoted where they need it, in lines of at most 80 characters.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// In letters of ASCII: by CIF's marks for accents and Greek letters ("M\"uller", "\a-quartz"), all
// others by their number ("&#x4E2D;"); control characters become blanks.
std::string CifLetters(std::string_view text);

// "data_" and what may stand in the name of a block, 75 characters at most.
std::string CifBlockHead(std::string_view name);

// A section of a block's identifier, between two "|".
std::string CifIdSection(std::string_view text);

// A data item: a line, or several where the value is long. A blank value is unknown, "?".
std::vector<std::string> CifItem(std::string_view tag, std::string_view value);

// "yyyy-mm-ddThh:mm:ss" of a date "2014-01-31 12:00", "31/01/2014" or "31-Jan-2014", with what it
// tells of the time; blank for any other text.
std::string CifDate(std::string_view text);
