// What the pattern readers share.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "workspace/lines.h"
#include "workspace/record.h"

inline constexpr int DataWidth = 40;      // characters read of a line with one point
inline constexpr int RowWidth = 276;      // and of a line with a row of counts
inline constexpr int PointLimit = 19991;  // of most formats

// Shows a box that names the file and what is wrong with it, and returns 0, a reader's result. The
// reason is the reader's own if that has failed; without any the file ends too early.
int ReadFailure(const std::string& caption, const std::string& text, const LineReader& in,
                const std::string& reason = "");
// Reasons: a header's last line is missing, the line read last is no number, the data end before
// the first point or hold none that counts.
std::string NoLine(std::string_view key);
std::string NoNumber(const LineReader& in);
std::string NoPoints(int n);

// Drops lines in front of the data; false if there are not so many.
bool SkipLines(LineReader& in, int lines);

// Whether a line begins with a key. A blank at the key's end must be one in the line too, and
// behind the line's end there are blanks.
bool HasKey(std::string_view line, std::string_view key);
// Columns first to last of a line, counted from 1; blank where there are none.
std::string_view Columns(std::string_view line, int first, int last = 1 << 20);

// A header line "KEY=value", the value in a field of ten columns with six implied decimals.
struct RealKey {
  std::string_view key;
  float* value;
};
// Takes the value if the line has one of the keys; what is no number leaves it as it was.
void ReadRealKeys(std::string_view line, int slot, std::span<const RealKey> keys);
// The file of slot 1 has stated the wavelength that stands in scanwave.
void StateWavelength(int slot);

// Reads lines of `fields` counts each into a slot until the file ends, a line begins with something
// else than a number, or the last index has reached `limit`. Returns the last index. Where a line
// holds fewer numbers, so do all that follow, while every line still begins `fields` points
// further.
int ReadCountRows(LineReader& in, int slot, const Format& format, int fields, int limit);

// Two numbers parted by a comma, the first in a field of `width` columns: where it fills the field,
// the comma behind it goes, for it would stand for an empty second one.
void DropCommaBehind(std::string& line, std::size_t width);

// Two-theta of points 1 to n from the first and the step. Where the grid leaves the range of
// numbers it stays at its start.
void FillGrid(int slot, int n, float start, float step);

// Sets npts to the last of n points with a count above 0, or with any but 0 where negative counts
// are data too. False, and npts as it was, if there is none.
bool CutAtLastPoint(int slot, int n, bool negative = false);

// What every reader does for slot 1 at its end: the copy in slot 3, wavelen(2) and wavelen(3) from
// scanwave, the sample's name and a blank remark.
void FinishInput(const std::string& sample, bool copyx = true);

// Total counting time of slot 1, as header line 8 keeps it.
void SetExposure(float seconds);

// A date "month/day..." in columns 1 to 10, taken apart. Where a slash is missing, so is what
// follows it.
struct SlashDate {
  std::string month, day;  // two digits
  std::string rest;        // from the second slash on
};
SlashDate SplitDate(std::string_view text);
