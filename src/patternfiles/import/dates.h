// Dates of instruments.
#pragma once

#include <string>
#include <string_view>

// "14-Oct-1996 9:30", "10/14/96" or "14.10.1996" as "1996-10-14 09:30:00"; without a time the date
// alone. Empty if it is no date. 3/4/2020 is the fourth of March, as instruments write it, 3-4-2020
// and 3.4.2020 are the third of April.
std::string IsoDate(std::string_view text);
