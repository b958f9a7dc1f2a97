// Text and list utilities that all rooms share.
#include "workspace/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace {

bool IsNumberChar(char c) { return (c >= '+' && c <= '9') || c == 'E' || c == 'e'; }

// Place behind the last character that ends a directory.
std::size_t NameStart(std::string_view path) { return path.rfind('/') + 1; }

// Bytes of the letter that a UTF-8 text begins with; 1 for a byte that belongs to no letter.
std::size_t LetterSize(std::string_view text) {
  const unsigned char lead = text[0];
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
  if (size > text.size()) return 1;
  const auto continues = [](char c) { return (c & 0xC0) == 0x80; };
  return std::ranges::all_of(text.substr(1, size - 1), continues) ? size : 1;
}

int Letters(std::string_view text) {
  int count = 0;
  for (; !text.empty(); ++count) text.remove_prefix(LetterSize(text));
  return count;
}

template <class Change>
std::string Changed(std::string_view text, Change change) {
  std::string result(text);
  for (char& c : result) c = change(c);
  return result;
}

// Text at the end of a field of w blanks; empty when it is longer than the field.
std::string RightIn(int w, std::string_view text) {
  const int blanks = w - Letters(text);
  return blanks < 0 ? "" : std::string(static_cast<std::size_t>(blanks), ' ').append(text);
}

std::string Asterisks(int w) { return std::string(static_cast<std::size_t>(std::max(w, 0)), '*'); }

// Shell's method with gaps halved from n; each gap is an insertion pass by exchanges, so that equal
// keys are never exchanged with each other.
template <class Before, class Swap>
void ExchangeSort(int n, Before before, Swap swap) {
  for (int gap = n / 2; gap > 0; gap /= 2)
    for (int i = gap; i < n; ++i)
      for (int j = i - gap; j >= 0 && before(j + gap, j); j -= gap) swap(j, j + gap);
}

}  // namespace

int nint(double value) {
  if (std::isnan(value)) return 0;
  const double lowest = std::numeric_limits<int>::min(), highest = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(std::round(value), lowest, highest));
}

int nint(float value) { return nint(static_cast<double>(value)); }

std::string_view TrimRight(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string_view Trim(std::string_view text) {
  text = TrimRight(text);
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view Cut(std::string_view text, int length) {
  if (std::ssize(text) <= length) return text;
  std::size_t end = 0;
  for (; length > 0 && end < text.size(); --length) end += LetterSize(text.substr(end));
  return text.substr(0, end);
}

std::string Field(std::string_view text, int length) {
  return std::string(TrimRight(Cut(text, length)));
}

bool FitsField(std::string_view path) { return Letters(path) <= TextLength; }

std::string TooLongPath(std::string_view path) {
  return OnOneLine(path) + " is longer than " + std::to_string(TextLength) + " characters";
}

std::string OnOneLine(std::string_view text) {
  return Changed(text, [](char c) { return c == '\n' || c == '\r' ? ' ' : c; });
}

std::string FileMessage(const std::string& text, std::string_view path, const std::string& reason) {
  return text + "\n" + OnOneLine(path) + ": " + reason;
}

int CleanNumberLine(std::string& line) {
  const std::string_view text = TrimRight(line);
  if (text.empty()) return 1;
  char* const start = line.data();
  const char* const end = start + text.size();
  char* to = start;
  for (const char* at = start; at != end;) {
    const char* const gap = at;
    while (at != end && !IsNumberChar(*at)) ++at;
    if (to == start)  // commas in front of the first number part nothing
      while (at != end && *at == ',') ++at;
    else if (at != gap && at != end && *at != ',' && to[-1] != ',')
      *to++ = ',';
    while (at != end && IsNumberChar(*at)) *to++ = *at++;
  }
  line.resize(static_cast<std::size_t>(to - start));
  return 0;
}

std::string FileDirectory(std::string_view path) {
  return std::string(path.substr(0, NameStart(path)));
}

std::string FileStem(std::string_view path) {
  const std::string_view name = TrimRight(path).substr(NameStart(path));
  return std::string(name.substr(0, name.find('.')));
}

void FileExtension(std::string& path, std::string& ext) {
  path = Field(path);
  const std::size_t point = path.rfind('.');
  if (point != std::string::npos) {
    ext = path.substr(point + 1);
    return;
  }
  const std::string tail = Field("." + ext);
  path = std::string(Cut(path, TextLength - static_cast<int>(tail.size()))) + tail;
}

int FindText(std::string_view text, std::string_view sub) {
  const std::size_t place = TrimRight(text).find(TrimRight(sub));
  return place == std::string_view::npos ? 0 : static_cast<int>(place) + 1;
}

std::string LeftAlign(std::string_view text) { return std::string(Trim(text)); }

std::string RightAlign(std::string_view text, int length) {
  return RightIn(length, Field(text, length));
}

std::string SqueezeBlanks(std::string_view text) {
  std::string result(text);
  std::erase(result, ' ');
  return result;
}

char UpperChar(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
char LowerChar(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
std::string UpperText(std::string_view text) { return Changed(text, UpperChar); }
std::string LowerText(std::string_view text) { return Changed(text, LowerChar); }

std::string RealField(float value, int w, int d) {
  d = std::max(d, 0);
  std::string stars = Asterisks(w);
  if (d < w) stars[static_cast<std::size_t>(w - 1 - d)] = '.';
  // The product of a float and a small power of ten is exact in double, so that the last decimal is
  // rounded once.
  char digits[400];
  const double scaled = std::round(std::abs(static_cast<double>(value)) * std::pow(10.0, d));
  if (!(scaled < 1e300)) return stars;
  const auto end = std::to_chars(digits, std::end(digits), scaled, std::chars_format::fixed, 0).ptr;
  std::string text(digits, end);
  if (scaled == 0) text.clear();
  const std::size_t decimals = static_cast<std::size_t>(d);
  if (text.size() < decimals) text.insert(0, decimals - text.size(), '0');
  text.insert(text.size() - decimals, ".");
  if (value < 0 && scaled > 0) text.insert(0, "-");
  const std::string field = RightIn(w, text);
  return field.empty() ? stars : field;
}

std::string IntField(int value, int w, int minimum) {
  std::string text = std::to_string(std::abs(static_cast<long long>(value)));
  if (value == 0) text.clear();
  const std::size_t least = static_cast<std::size_t>(std::max(minimum, 0));
  if (text.size() < least) text.insert(0, least - text.size(), '0');
  if (value < 0) text.insert(0, "-");
  const std::string field = RightIn(w, text);
  return field.empty() ? Asterisks(w) : field;
}

std::string ExpField(float value, int w, int d) {
  if (!std::isfinite(value)) return Asterisks(w);
  std::string text = "0.e0";
  if (value != 0) {
    char buffer[128];
    const int decimals = std::clamp(d, 1, 100) - 1;
    const auto end = std::to_chars(buffer, std::end(buffer), std::abs(value),
                                   std::chars_format::scientific, decimals)
                         .ptr;
    const std::string_view all(buffer, static_cast<std::size_t>(end - buffer));
    const std::size_t e = all.find('e');
    int exponent = 0;
    std::from_chars(buffer + e + (all[e + 1] == '+' ? 2 : 1), end, exponent);
    text = value < 0 ? "-0." : "0.";
    text += all[0];
    if (decimals > 0) text += all.substr(2, e - 2);
    text += "e" + std::to_string(exponent + 1);
  }
  const std::string field = RightIn(w, text);
  return field.empty() ? Asterisks(w) : field;
}

std::string Fixed(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

std::string AllDigits(float value) {
  if (!std::isfinite(value)) return "";
  char digits[64];
  const auto end = std::to_chars(digits, std::end(digits), value, std::chars_format::fixed).ptr;
  return {digits, end};
}

std::string WithEsd(double value, double esd, int decimals) {
  constexpr double kMost = 1e15;  // that a whole number can hold
  if (!(esd > 0 && esd < kMost) || !std::isfinite(value)) return Fixed(value, decimals);
  // Decimals that leave one digit of the e.s.d., or two where the first would be a 1.
  int digits = -static_cast<int>(std::floor(std::log10(esd / 1.95)));
  digits = std::clamp(digits, 0, 9);
  const double unit = std::pow(10.0, digits);
  return Fixed(value, digits) + "(" + std::to_string(std::lround(esd * unit)) + ")";
}

void ShellSort(float* list, int n) {
  const bool rising = n > 0;
  ExchangeSort(
      std::abs(n), [=](int i, int j) { return rising ? list[i] < list[j] : list[i] > list[j]; },
      [=](int i, int j) { std::swap(list[i], list[j]); });
}

void RowSort(float* table, int stride, int fields, int rows, int key) {
  const bool rising = key > 0;
  if (key == 0 || std::abs(key) > fields) return;
  const float* by = table + static_cast<std::ptrdiff_t>(std::abs(key) - 1) * stride;
  ExchangeSort(
      rows, [=](int i, int j) { return rising ? by[i] < by[j] : by[i] > by[j]; },
      [=](int i, int j) {
        float* field = table;
        for (int k = 0; k < fields; ++k, field += stride) std::swap(field[i], field[j]);
      });
}
