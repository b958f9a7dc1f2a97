// What the peak table shows of the peak list.
#pragma once

#include <span>
#include <string>
#include <vector>

// Columns of the table, and their heads in a dialog.
enum PeakColumn {
  ColumnNumber = 1,
  ColumnTth,
  ColumnD,
  ColumnArea,
  ColumnHeight,
  ColumnFwhm,
  ColumnShape,
  ColumnHkl,
  ColumnMultiplicity,
  ColumnOrigin,
};
inline constexpr const char* kPeakHeads =
    "No.|2\u03b8 (deg.)|d (\u00c5)|Area|Height|FWHM (deg.)|Shape|h k l|Mult.|Origin";

// A row of the list as the table shows it. What is not known of a peak is blank.
std::vector<std::string> PeakCells(int row);
// The rows of the list by the values of a column, a negative one for falling values. Rows that have
// none come last.
std::vector<int> PeaksBy(int column);
// Rows with all digits below lines of heads with units, parted by tabs or commas. E.s.d.s, indices
// and whether the last fit has failed are columns of their own.
std::vector<std::string> PeakLines(std::span<const int> rows, char separator);

// Rows as a csv file. Blank, or the text of the box that tells why there is none.
std::string WritePeakTable(const std::string& path, std::span<const int> rows);
