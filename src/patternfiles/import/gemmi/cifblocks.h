// The blocks of a CIF, by the names of the older dictionaries.
#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What stands under one name: a column of a loop, or a single value. As in the file, with quotes.
struct CifValues {
  const std::string* first;
  std::size_t stride, count;
  const std::string& operator[](std::size_t i) const { return first[i * stride]; }
};

struct CifBlock {
  std::string name;
  std::map<std::string, CifValues, std::less<>> values;  // names in lower case
  // Null if there is none.
  const CifValues* Find(std::string_view tag) const;
  // None unless there is one value that is a number.
  std::optional<double> Number(std::string_view tag) const;
  // The first value that is known of these names, on one line.
  std::string Text(std::initializer_list<const char*> tags) const;
};

struct CifBlocks : std::vector<CifBlock> {
  std::shared_ptr<const void> document;  // keeps the values
};

// Without quotes, on one line; unknown ones are blank.
std::string CifText(const std::string& value);
// Throws NotReadable with the line that is no CIF.
CifBlocks ParseCif(std::string_view bytes);

// "1234(12)": the value and its standard uncertainty, which counts in the last digits.
struct CifNumber {
  double value, su = 0;
};
std::optional<CifNumber> CifNumberIn(std::string_view text);
// Unknown ones are no numbers; throws NotReadable at other texts.
std::vector<double> CifNumbersIn(const CifValues& values);
