// Formatted records: writing.
#include <array>
#include <charconv>
#include <cmath>

#include "workspace/record.h"

namespace {

using Item = Format::Item;
using Kind = Format::Kind;

// Records under construction.
class RecordWriter {
 public:
  std::string text;

  // Room for the next n characters; blanks fill what was skipped before.
  char* Room(std::size_t n) {
    const std::size_t place = start_ + at_;
    if (text.size() < place + n) text.resize(place + n, ' ');
    at_ += n;
    return text.data() + place;
  }
  void Put(std::string_view characters) {
    std::copy(characters.begin(), characters.end(), Room(characters.size()));
  }
  // At the right end of a field of w characters; asterisks if there are too many.
  void PutRight(std::size_t w, std::string_view characters) {
    char* field = Room(w);
    if (characters.size() > w) {
      std::fill_n(field, w, '*');
    } else {
      std::fill_n(field, w - characters.size(), ' ');
      std::copy(characters.begin(), characters.end(), field + w - characters.size());
    }
  }
  void NextRecord() {
    text += '\n';
    start_ = text.size();
    at_ = 0;
  }
  void Skip(std::size_t n) { at_ += n; }
  void Tab(std::size_t column) { at_ = column - 1; }

 private:
  std::size_t start_ = 0, at_ = 0;
};

// With at least item.digits digits; none at all for 0 if item.digits is 0.
void WriteInteger(RecordWriter& record, const Item& item, int value) {
  char text[Format::MaxWidth + 16];
  const int minimum = std::max(item.digits, item.digits < 0 ? 1 : 0);
  char digits[16];
  const unsigned magnitude = value < 0 ? 0u - static_cast<unsigned>(value) : value;
  const char* last = std::to_chars(digits, std::end(digits), magnitude).ptr;
  const int n = magnitude == 0 ? 0 : static_cast<int>(last - digits);
  char* end = text;
  if (value < 0) *end++ = '-';
  end = std::fill_n(end, std::max(minimum - n, 0), '0');
  end = std::copy_n(digits, n, end);
  record.PutRight(item.width, {text, static_cast<std::size_t>(end - text)});
}

// Room for the longest double with all decimals of the widest field, and a sign in front.
using NumberText = std::array<char, 700>;

// The magnitude of a real as 0.12345E+02, or as 0.12345+123 if the exponent has three digits.
char* ToExponentForm(char* to, double magnitude, int digits) {
  char text[Format::MaxWidth + 16];
  char* const last =
      std::to_chars(text, std::end(text), magnitude, std::chars_format::scientific, digits - 1).ptr;
  char* const e = std::find(text, last, 'e');
  int exponent = 0;
  std::from_chars(e + (e[1] == '+' ? 2 : 1), last, exponent);
  if (magnitude != 0) ++exponent;
  to = std::copy_n("0.", 2, to);
  *to++ = text[0];
  if (digits > 1) to = std::copy(text + 2, e, to);
  const int size = std::abs(exponent);
  if (size < 100) *to++ = 'E';
  *to++ = exponent < 0 ? '-' : '+';
  if (size < 10) *to++ = '0';
  return std::to_chars(to, to + 4, size).ptr;
}

// The magnitude of a real as 12.345, with the point even if no decimals follow.
char* ToFixedForm(char* to, char* last, double magnitude, int decimals) {
  to = std::to_chars(to, last, magnitude, std::chars_format::fixed, decimals).ptr;
  if (decimals == 0) *to++ = '.';
  return to;
}

std::string_view NotFinite(double value, int width) {
  if (std::isnan(value)) return "NaN";
  if (value > 0) return width < 8 ? "Inf" : "Infinity";
  return width < 9 ? "-Inf" : "-Infinity";
}

void WriteReal(RecordWriter& record, const Item& item, double value) {
  if (!std::isfinite(value)) return record.PutRight(item.width, NotFinite(value, item.width));
  NumberText text;
  char* first = text.data() + 1;  // a minus has its place in front
  char* const last = text.data() + text.size() - 1;
  char* const end = item.kind == Kind::Fixed
                        ? ToFixedForm(first, last, std::abs(value), item.digits)
                        : ToExponentForm(first, std::abs(value), item.digits);
  // What is rounded to zero has no sign.
  const char* const digits = std::find_if(first, end, [](char c) { return c > '0' && c <= '9'; });
  const bool negative = value < 0 && digits != end;
  // The zero in front of the point goes if the field needs its place and other digits are there.
  if (end - first + negative > item.width && item.digits > 0 && *first == '0') ++first;
  if (negative) *--first = '-';
  record.PutRight(item.width, {first, static_cast<std::size_t>(end - first)});
}

void WriteText(RecordWriter& record, const Item& item, std::string_view text) {
  const std::size_t width = item.width > 0 ? item.width : text.size();
  record.PutRight(width, text.substr(0, width));
}

// A value that its descriptor does not know shows as asterisks, as one that is too long does.
void WriteItem(RecordWriter& record, const Item& item, const WriteValue& value) {
  const bool real = item.kind == Kind::Fixed || item.kind == Kind::Exponent;
  if (const auto* text = std::get_if<std::string_view>(&value); text && item.kind == Kind::Text)
    return WriteText(record, item, *text);
  if (const auto* whole = std::get_if<int>(&value)) {
    if (item.kind == Kind::Integer) return WriteInteger(record, item, *whole);
    if (real) return WriteReal(record, item, *whole);
  }
  if (const auto* number = std::get_if<float>(&value); number && real)
    return WriteReal(record, item, *number);
  if (const auto* precise = std::get_if<double>(&value); precise && real)
    return WriteReal(record, item, *precise);
  record.Put(std::string(static_cast<std::size_t>(std::max(item.width, 1)), '*'));
}

}  // namespace

std::string WriteValues(const Format& format, std::span<const WriteValue> values) {
  const std::span<const Item> items = format.items;
  RecordWriter record;
  std::size_t next = 0;
  for (std::size_t i = 0;; ++i) {
    if (i == items.size()) {
      if (next == values.size() || format.restart == items.size()) break;
      record.NextRecord();
      i = format.restart;
    }
    const Item& item = items[i];
    switch (item.kind) {
      case Kind::Literal:
        record.Put(item.text);
        break;
      case Kind::Slash:
        record.NextRecord();
        break;
      case Kind::Skip:
        record.Skip(item.width);
        break;
      case Kind::Tab:
        record.Tab(item.width);
        break;
      default:
        if (next == values.size()) return std::move(record.text);
        WriteItem(record, item, values[next++]);
    }
  }
  return std::move(record.text);
}
