// Formatted records: the parser of format texts.
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>

#include "workspace/record.h"
#include "workspace/text.h"

namespace {

using Item = Format::Item;
using Kind = Format::Kind;

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
    if (item.width < 1 || item.width > Format::MaxWidth)
      Fault(text_, "a field without a proper width");
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

}  // namespace

Format::Format(std::string_view text) {
  restart_ = Parser(text, items_).restart();
  // Without a descriptor that takes a value there is nothing to start again for.
  if (std::none_of(items_.begin() + static_cast<std::ptrdiff_t>(restart_), items_.end(),
                   TakesValue))
    restart_ = items_.size();
}
