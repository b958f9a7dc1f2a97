// Formatted records: the interpreter of edit descriptors.
#include "workspace/record.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "workspace/text.h"

namespace {

using Item = Format::Item;
using Kind = Format::Kind;

constexpr int MaxWidth = 256;            // of a numeric field
constexpr std::size_t MaxItems = 10000;  // of a format with its repetitions written out

[[noreturn]] void Fault(std::string_view format, const char* what) {
  std::fprintf(stderr, "format %.*s: %s\n", static_cast<int>(format.size()), format.data(), what);
  std::abort();
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Writes a format's items out flat: repetitions and groups are gone, and only the place where the
// format starts again for further values is kept.
class Parser {
 public:
  Parser(std::string_view text, std::vector<Item>& items) : text_(text), items_(items) {
    SkipBlanks();
    if (Number() >= 0) SkipBlanks();  // a statement label
    Expect('(');
    List(0);
    SkipBlanks();
    if (at_ != text_.size()) Fault(text_, "text behind the last parenthesis");
  }
  std::size_t restart() const { return restart_; }

 private:
  std::string_view text_;
  std::vector<Item>& items_;
  std::size_t at_ = 0, restart_ = 0;

  char Peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  void SkipBlanks() {
    while (Peek() == ' ') ++at_;
  }
  void Expect(char c) {
    if (Peek() != c) Fault(text_, "a parenthesis is missing");
    ++at_;
  }
  // An unsigned number, or -1.
  int Number() {
    int value = -1;
    const auto end = std::from_chars(text_.data() + at_, text_.data() + text_.size(), value).ptr;
    if (!IsDigit(Peek())) return -1;
    at_ = static_cast<std::size_t>(end - text_.data());
    return value;
  }

  // What stands between an opened parenthesis and its end.
  void List(int depth) {
    if (depth > 20) Fault(text_, "too many groups in one another");
    for (;;) {
      while (Peek() == ' ' || Peek() == ',') ++at_;
      if (Peek() == ')') break;
      int count = Number();
      SkipBlanks();
      const std::size_t first = items_.size();
      if (Peek() == '(') {
        ++at_;
        List(depth + 1);
        if (depth == 0) restart_ = first;
      } else {
        count = Descriptor(count);
      }
      Repeat(first, count < 0 ? 1 : count);
    }
    ++at_;
  }

  void Repeat(std::size_t first, int count) {
    const std::vector<Item> group(items_.begin() + static_cast<std::ptrdiff_t>(first),
                                  items_.end());
    items_.resize(first);
    if (first + group.size() * static_cast<std::size_t>(count) > MaxItems) Fault(text_, "too long");
    for (int k = 0; k < count; ++k) items_.insert(items_.end(), group.begin(), group.end());
  }

  // Adds one descriptor and returns how often it stands there.
  int Descriptor(int count) {
    const char letter = Peek();
    ++at_;
    switch (LowerChar(letter)) {
      case 'i':
        return Add(NumberField(Kind::Integer), count);
      case 'f':
        return Add(NumberField(Kind::Fixed), count);
      case 'e':
        return Add(NumberField(Kind::Exponent), count);
      case 'a':
        return Add({Kind::Text, std::max(Number(), 0)}, count);
      case 't':
        return Add({Kind::Tab, std::max(Number(), 1)}, 1);
      case 'x':
        return Add({Kind::Skip, std::max(count, 1)}, 1);
      case 'h':
        return Add(Letters(count), 1);
      case '/':
        return Add({Kind::Slash}, count);
      case '\'':
      case '"':
        return Add(Quoted(letter), count);
      default:
        Fault(text_, "an unknown descriptor");
    }
  }
  int Add(Item item, int count) {
    items_.push_back(std::move(item));
    return count;
  }
  Item NumberField(Kind kind) {
    Item item{kind, Number()};
    if (item.width < 1 || item.width > MaxWidth) Fault(text_, "a field without a proper width");
    if (Peek() == '.') {
      ++at_;
      item.digits = Number();
    }
    const int least = kind == Kind::Exponent ? 1 : kind == Kind::Fixed ? 0 : -1;
    if (item.digits < least || item.digits > item.width)
      Fault(text_, "a field without proper decimals");
    return item;
  }
  Item Letters(int count) {
    if (count < 1 || static_cast<std::size_t>(count) > text_.size() - at_)
      Fault(text_, "a text that is longer than the format");
    at_ += static_cast<std::size_t>(count);
    return {Kind::Literal, 0, -1,
            std::string(text_.substr(at_ - static_cast<std::size_t>(count), count))};
  }
  Item Quoted(char quote) {
    std::string text;
    for (; at_ < text_.size(); ++at_) {
      if (text_[at_] == quote && (++at_ >= text_.size() || text_[at_] != quote))
        return {Kind::Literal, 0, -1, std::move(text)};
      text += text_[at_];
    }
    Fault(text_, "a text without its end");
  }
};

bool TakesValue(const Item& item) { return item.kind <= Kind::Text; }

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
  char plain[MaxWidth + 16];
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
  if (text[0] == '+') text.remove_prefix(1);
  if (text.empty() || (text[0] == '-' && !IsDigit(text.back()))) return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

// The field without blanks; `room` takes it if some stand between its characters.
std::string_view WithoutBlanks(std::string_view field, char (&room)[MaxWidth]) {
  field = Trim(field);
  if (field.find(' ') == std::string_view::npos) return field;
  char* end = std::remove_copy(field.begin(), field.end(), room, ' ');
  return {room, static_cast<std::size_t>(end - room)};
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

  // The next n characters, or what is left of them.
  std::string_view TakeText(std::size_t n) {
    const std::string_view field = record_.substr(std::min(at_, record_.size()), n);
    at_ += n;
    return field;
  }
  // The same, or up to a comma, which is taken as well.
  std::string_view TakeNumber(std::size_t n) {
    const std::size_t start = at_;
    std::string_view field = TakeText(n);
    const std::size_t comma = field.find(',');
    if (comma != std::string_view::npos) {
      field = field.substr(0, comma);
      at_ = start + comma + 1;
    }
    return field;
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
    const std::string_view field =
        TrimRight(reader.TakeText(item.width > 0 ? item.width : std::string_view::npos / 2));
    (*text)->assign(field);
    return true;
  }
  char room[MaxWidth];
  const std::string_view field = WithoutBlanks(reader.TakeNumber(item.width), room);
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
  char text[MaxWidth + 16];
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
  char text[MaxWidth + 16];
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

Format::Format(std::string_view text) {
  restart_ = Parser(text, items_).restart();
  // Without a descriptor that takes a value there is nothing to start again for.
  if (std::none_of(items_.begin() + static_cast<std::ptrdiff_t>(restart_), items_.end(),
                   TakesValue))
    restart_ = items_.size();
}

std::string WriteValues(const Format& format, std::span<const WriteValue> values) {
  const std::vector<Item>& items = format.items();
  RecordWriter record;
  std::size_t next = 0;
  for (std::size_t i = 0;; ++i) {
    if (i == items.size()) {
      if (next == values.size() || format.restart() == items.size()) break;
      record.NextRecord();
      i = format.restart();
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

int ReadValues(std::string_view text, const Format& format, std::span<const ReadTarget> targets) {
  const std::vector<Item>& items = format.items();
  RecordReader reader(text);
  std::size_t next = 0;
  for (std::size_t i = 0; next < targets.size(); ++i) {
    if (i == items.size()) {
      if (format.restart() == items.size() || !reader.NextRecord()) break;
      i = format.restart();
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
  return !text.empty() && text.size() <= MaxWidth && ReadReal(text, 0, value);
}
