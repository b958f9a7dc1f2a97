// Lines and numbers of text files, whatever wrote them: any line end, any byte order mark, decimal
// points and commas, exponents with E or D. No locale has a say.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "patternfiles/import/measured.h"

inline constexpr std::size_t kMostPoints = 4'000'000, kMostScans = 1000;  // of a file

// Walks through the lines of a file; UTF-16 with a mark is taken as UTF-8.
class TextLines {
 public:
  explicit TextLines(std::string_view bytes);
  TextLines(const TextLines&) = delete;
  bool Next(std::string_view& line);  // without its end; valid as long as this and the bytes are
  int Number() const { return number; }
  std::string_view Rest() const { return rest; }  // the lines to come

 private:
  std::string decoded;
  std::string_view rest;
  const char* feed = nullptr;  // the LF in front of which the next line ends, or the end
  int number = 0;
};

// Whether the bytes can be read as lines of text at all.
bool LooksText(std::string_view bytes);
// Whether one of the first lines, or the first that is not blank, begins with the word.
bool HasLineStart(std::string_view bytes, std::string_view word);
bool FirstLineStarts(std::string_view bytes, std::string_view word);

// Without blanks, NUL bytes and the like at both ends.
std::string_view Stripped(std::string_view text);
// The same, and without the quotes around it.
std::string_view Unquoted(std::string_view text);

// Takes a number from the front of the text. Where `comma` is set, a comma between digits is a
// decimal point. One beyond the range of real numbers is not a number.
bool TakeNumber(std::string_view& text, double& value, bool comma = false);
// The number that a word is, and nothing else behind it.
std::optional<double> NumberOf(std::string_view word, bool comma = false);
// The number with which a value of a heading begins: "1,5406 A" too; not a date, nor an hour.
std::optional<double> ValueOf(std::string_view text);
// Appends the numbers of a line, parted by blanks, commas or semicolons; false, with those in front
// of it, where something else stands.
bool AppendNumbers(std::string_view line, std::vector<double>& numbers);
// The same by columns of a fixed width; a blank one is none.
bool AppendColumns(std::string_view line, std::size_t width, std::vector<double>& numbers);
// The same by columns "(i2,f6.0)", the number of detectors, blank for one, and the mean of their
// counts, with its e.s.d.; nothing is appended where that fails.
bool AppendMeanCounts(std::string_view line, std::vector<double>& counts, std::vector<double>& esd);

// Throws what the limits of a file forbid.
void CheckPoints(std::size_t points);
void CheckScans(std::size_t scans);
void AddScan(MeasuredFile& file, MeasuredScan scan);
// Numbers the scans of a file that has several, in front of what their labels tell.
void LabelScans(MeasuredFile& file, const std::string& word);
// Leaves out e.s.d. that are no more than the roots of the counts.
void DropPlainEsd(MeasuredScan& scan);
// What a heading told of a scan, without its points and its time.
MeasuredScan Unmeasured(const MeasuredScan& scan);
// The positions of as many points as there are counts.
void FillEvenGrid(MeasuredScan& scan, double start, double step);
