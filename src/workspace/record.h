// Formatted records: files and messages defined by edit descriptors.
//
//   std::string line = WriteRecord<"(f9.3,f10.1,4f9.4,4i5)">(x, y, w, g, wr, gr, h, k, l, m);
//   if (ReadRecord<"(2f15.0)">(line, x, y)) ...
//
// The format text stands in the code as the documentation of the file has it, and is parsed while
// the program is built: a faulty one does not compile. Known are Iw, Iw.m, Fw.d, Ew.d, A, Aw, nX,
// Tn, slashes, repeat counts, nested groups, texts in single or double quotes, nH texts, and a
// statement label in front, letters in either case. Carriage-control columns such as 1h0 are
// characters like all others. Blanks outside texts and missing commas are accepted, and a repeat
// count of 0 leaves out what it counts.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "workspace/recordformat.h"

using WriteValue = std::variant<int, float, double, std::string_view>;
using ReadTarget = std::variant<int*, float*, double*, std::string*>;

// Values in a format; records parted by "\n" (slashes, or the format used again from its last group
// when values are left). A value that does not fit its field gives asterisks.
std::string WriteValues(const Format& format, std::span<const WriteValue> values);

// Reads values from a line, or from the records of a text parted by "\n". A field ends after its
// width or at a comma; blanks inside are ignored and an all-blank field is 0; without a decimal
// point d digits are the fraction; where the line runs out the fields are blank, but a missing
// record is a failure. An exponent follows E, D or its sign. Too large for its target is
// unreadable, too small is 0. Aw takes w characters and A the rest of the record, without trailing
// blanks. Returns the number of values read: all of them, or those in front of the first that
// failed, which are set.
int ReadValues(std::string_view text, const Format& format, std::span<const ReadTarget> targets);

template <FormatText F, class... V>
std::string WriteRecord(const V&... value) {
  const WriteValue values[sizeof...(V) + 1] = {WriteValue(value)..., WriteValue(0)};
  return WriteValues(FormatOf<F>(), {values, sizeof...(V)});
}

// True if all values were read; those in front of a failure are set all the same.
template <FormatText F, class... V>
bool ReadRecord(std::string_view text, V&... value) {
  const ReadTarget targets[] = {ReadTarget(&value)...};
  return ReadValues(text, FormatOf<F>(), targets) == static_cast<int>(sizeof...(V));
}

// A real in free form: a plain decimal number with blanks around it. False for anything else, with
// value as it was.
bool ReadFreeReal(std::string_view text, float& value);
