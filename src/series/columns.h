// The columns of a series' table as numbers.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "series/picture.h"
#include "series/seriestable.h"

// Hours since the beginning of 1970 of "2026-03-29", or with " 14:30", seconds and their fractions
// and, where it is stated, the distance from universal time behind it; a "T" may stand between.
// Nothing for any other text.
std::optional<double> HoursOf(std::string_view date);

// Whether the row tells why it has failed.
bool HasFailed(const SeriesTable& table, std::size_t row);

// Places, from 0, of the columns that hold a number or a date in some row that has not failed.
std::vector<int> NumberColumns(const SeriesTable& table);

// The values of a column for so many files, not numbers where a row has failed, is not there or
// holds no number; dates as hours since the earliest. The e.s.d.s are those of the column that is
// called the same with " esd" behind.
SeriesValues ValuesOf(const SeriesTable& table, int column, std::size_t files);
