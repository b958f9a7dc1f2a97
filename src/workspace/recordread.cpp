// Formatted records: reading.
#include <charconv>
#include <cmath>

#include "workspace/record.h"
#include "workspace/text.h"

namespace {

using Item = Format::Item;
using Kind = Format::Kind;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// One sign in front of a number is taken off; true if it was a minus.
bool TakeSign(std::string_view& text) {
  if (text.empty() || (text[0] != '+' && text[0] != '-')) return false;
  const bool negative = text[0] == '-';
  text.remove_prefix(1);
  return negative;
}

// The digits and the point at the start of a number.
std::string_view Mantissa(std::string_view text) {
  std::size_t n = 0;
  for (bool point = false; n < text.size() && (IsDigit(text[n]) || (text[n] == '.' && !point)); ++n)
    point = point || text[n] == '.';
  return text.substr(0, n);
}

// An exponent by a letter, a sign or both, and its digits; false for anything else.
bool ReadExponent(std::string_view text, int& exponent) {
  constexpr int enough = 100000;
  if (std::string_view("eEdD").find(text[0]) != std::string_view::npos) text.remove_prefix(1);
  const bool negative = TakeSign(text);
  if (text.empty()) return false;
  for (exponent = 0; !text.empty(); text.remove_prefix(1)) {
    if (!IsDigit(text[0])) return false;
    exponent = std::min(exponent * 10 + (text[0] - '0'), enough);
  }
  if (negative) exponent = -exponent;
  return true;
}

// Of a number out of range: too small, not too large, if its first digit comes behind the point.
bool IsTiny(std::string_view mantissa, int exponent) {
  const int point = static_cast<int>(std::min(mantissa.find('.'), mantissa.size()));
  const int first =
      static_cast<int>(std::min(mantissa.find_first_of("123456789"), mantissa.size()));
  return point - first + exponent < 0;
}

// Any number that std::from_chars does not take as it stands: the digits and the exponent are put
// in the form that it takes.
template <class Real>
bool ReadUnusualReal(std::string_view text, int decimals, Real& value) {
  char plain[Format::MaxWidth + 16];
  const std::string_view mantissa = Mantissa(text);
  int exponent = 0;
  if (mantissa.find_first_of("0123456789") == std::string_view::npos) return false;
  if (mantissa.size() < text.size() && !ReadExponent(text.substr(mantissa.size()), exponent))
    return false;
  if (mantissa.find('.') == std::string_view::npos) exponent -= decimals;
  char* end = std::copy(mantissa.begin(), mantissa.end(), plain);
  *end++ = 'e';
  end = std::to_chars(end, std::end(plain), exponent).ptr;
  const std::errc error = std::from_chars(plain, end, value).ec;
  if (error == std::errc::result_out_of_range && IsTiny(mantissa, exponent))
    value = 0;
  else if (error != std::errc() || !std::isfinite(value))
    return false;
  return true;
}

// A real without blanks in it; none at all is 0.
template <class Real>
bool ReadReal(std::string_view text, int decimals, Real& value) {
  Real number = 0;
  if (text.empty()) {
    value = 0;
    return true;
  }
  const bool negative = TakeSign(text);
  if (text.empty() || (!IsDigit(text[0]) && text[0] != '.')) return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool plain = error == std::errc() && end == text.data() + text.size() &&
                     (decimals == 0 || text.find('.') != std::string_view::npos);
  if (!plain && !ReadUnusualReal(text, decimals, number)) return false;
  value = negative ? -number : number;
  return true;
}

bool ReadInteger(std::string_view text, int& value) {
  value = 0;
  if (text.empty()) return true;
  const std::size_t sign = text[0] == '+' || text[0] == '-' ? 1 : 0;
  if (text.size() == sign || !IsDigit(text[sign])) return false;
  if (text[0] == '+') text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

// The place in a text of records that is being read.
class RecordReader {
 public:
  explicit RecordReader(std::string_view text) : rest_(text) { NextRecord(); }

  // False behind the last record.
  bool NextRecord() {
    if (ended_) return false;
    const std::size_t end = rest_.find('\n');
    ended_ = end == std::string_view::npos;
    record_ = rest_.substr(0, end);
    if (!ended_) rest_.remove_prefix(end + 1);
    at_ = 0;
    return true;
  }
  void Skip(std::size_t n) { at_ += n; }
  void Tab(std::size_t column) { at_ = column - 1; }

  std::size_t Left() const { return record_.size() - std::min(at_, record_.size()); }
  // The next n characters, or what is left of them.
  std::string_view TakeText(std::size_t n) {
    const std::string_view field = record_.substr(std::min(at_, record_.size()), n);
    at_ += n;
    return field;
  }
  // The same, or up to a comma, which is taken as well; put together in `room` without blanks.
  std::string_view TakeNumber(std::size_t n, char (&room)[Format::MaxWidth]) {
    const std::string_view field = record_.substr(std::min(at_, record_.size()), n);
    at_ += n;
    std::size_t used = 0, kept = 0;
    for (; used < field.size() && field[used] != ','; ++used) {
      room[kept] = field[used];
      kept += field[used] != ' ';
    }
    if (used < field.size()) at_ += used + 1 - n;
    return {room, kept};
  }

 private:
  std::string_view rest_, record_;
  std::size_t at_ = 0;
  bool ended_ = false;
};

// A value for one descriptor; false if the field holds no such value.
bool ReadItem(RecordReader& reader, const Item& item, const ReadTarget& target) {
  if (item.kind == Kind::Text) {
    auto* text = std::get_if<std::string*>(&target);
    if (!text) return false;
    const std::size_t width = item.width > 0 ? item.width : reader.Left();
    (*text)->assign(TrimRight(reader.TakeText(width)));
    return true;
  }
  char room[Format::MaxWidth];
  const std::string_view field = reader.TakeNumber(item.width, room);
  int whole = 0;
  if (item.kind == Kind::Integer && !ReadInteger(field, whole)) return false;
  const int decimals = std::max(item.digits, 0);
  if (auto* number = std::get_if<float*>(&target)) {
    if (item.kind != Kind::Integer) return ReadReal(field, decimals, **number);
    **number = static_cast<float>(whole);
  } else if (auto* precise = std::get_if<double*>(&target)) {
    if (item.kind != Kind::Integer) return ReadReal(field, decimals, **precise);
    **precise = whole;
  } else if (auto* integer = std::get_if<int*>(&target)) {
    if (item.kind != Kind::Integer) return false;
    **integer = whole;
  } else {
    return false;
  }
  return true;
}

}  // namespace

int ReadValues(std::string_view text, const Format& format, std::span<const ReadTarget> targets) {
  const std::span<const Item> items = format.items;
  RecordReader reader(text);
  std::size_t next = 0;
  for (std::size_t i = 0; next < targets.size(); ++i) {
    if (i == items.size()) {
      if (format.restart == items.size() || !reader.NextRecord()) break;
      i = format.restart;
    }
    const Item& item = items[i];
    bool good = true;
    switch (item.kind) {
      case Kind::Literal:
        reader.Skip(item.text.size());
        break;
      case Kind::Slash:
        good = reader.NextRecord();
        break;
      case Kind::Skip:
        reader.Skip(item.width);
        break;
      case Kind::Tab:
        reader.Tab(item.width);
        break;
      default:
        good = ReadItem(reader, item, targets[next]);
        next += good;
    }
    if (!good) break;
  }
  return static_cast<int>(next);
}

bool ReadFreeReal(std::string_view text, float& value) {
  text = Trim(text);
  return !text.empty() && text.size() <= Format::MaxWidth && ReadReal(text, 0, value);
}
