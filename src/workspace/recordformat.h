// Formatted records: format texts, parsed while the program is built.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

// A parsed format: its descriptors with groups and repetitions written out.
struct Format {
  static constexpr int MaxWidth = 256;  // of a numeric field
  enum class Kind : unsigned char { Integer, Fixed, Exponent, Text, Literal, Skip, Tab, Slash };
  struct Item {
    Kind kind = Kind::Slash;
    int width = 0;    // of the field (0: as long as the text); columns of a Skip; column of a Tab
    int digits = -1;  // decimals, or least digits of an integer; -1: not given
    std::string_view text{};  // of a Literal
    constexpr bool TakesValue() const { return kind <= Kind::Text; }
  };
  std::span<const Item> items;
  // The item to go on with when values are left behind the last one: the start of the last group of
  // the top level, or of the format. The number of items if none takes a value from there on.
  std::size_t restart;
};

// Writes the items of a text into `room` as far as it goes, and counts them all. Runs in the
// compiler alone: a fault is thrown there, and the text of the throw stands in the error message.
class FormatParser {
 public:
  constexpr explicit FormatParser(std::string_view text, std::span<Format::Item> room = {})
      : text_(text), room_(room) {
    SkipBlanks();
    if (Number() >= 0) SkipBlanks();  // a statement label
    Expect('(');
    List(0);
    SkipBlanks();
    if (at_ != text_.size()) throw "text behind the last parenthesis";
  }
  constexpr std::size_t count() const { return count_; }
  // Where the last group of the top level starts.
  constexpr std::size_t restart() const { return restart_; }

 private:
  using Item = Format::Item;
  using Kind = Format::Kind;

  static constexpr std::size_t kMostItems = 10000;
  static constexpr int kMostDepth = 20;

  std::string_view text_;
  std::span<Item> room_;
  std::size_t at_ = 0, count_ = 0, restart_ = 0;

  constexpr char Peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  constexpr void SkipBlanks() {
    while (Peek() == ' ') ++at_;
  }
  constexpr void Expect(char c) {
    if (Peek() != c) throw "a parenthesis is missing";
    ++at_;
  }
  static constexpr char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  // An unsigned number, or -1.
  constexpr int Number() {
    constexpr int most = 99999999;
    int value = -1;
    for (; Peek() >= '0' && Peek() <= '9'; ++at_) {
      value = std::max(value, 0) * 10 + (Peek() - '0');
      if (value > most) throw "a number that is too large";
    }
    return value;
  }

  // What stands between an opened parenthesis and its end.
  constexpr void List(int depth) {
    if (depth > kMostDepth) throw "too many groups in one another";
    for (;;) {
      while (Peek() == ' ' || Peek() == ',') ++at_;
      if (Peek() == ')') break;
      int times = Number();
      SkipBlanks();
      const std::size_t first = count_;
      if (Peek() == '(') {
        ++at_;
        List(depth + 1);
        if (depth == 0) restart_ = first;
      } else {
        times = Descriptor(times);
      }
      Repeat(first, times < 0 ? 1 : times);
    }
    ++at_;
  }

  // The items from `first` on come to stand there a number of times.
  constexpr void Repeat(std::size_t first, int times) {
    const std::size_t group = count_ - first;
    count_ = first + group * static_cast<std::size_t>(times);
    if (count_ > kMostItems) throw "a format that is too long";
    for (std::size_t i = first + group; i < std::min(count_, room_.size()); ++i)
      room_[i] = room_[i - group];
  }
  constexpr void Add(const Item& item) {
    if (count_ < room_.size()) room_[count_] = item;
    ++count_;
  }

  // Adds one descriptor and returns how often it stands there.
  constexpr int Descriptor(int count) {
    const char letter = Peek();
    ++at_;
    switch (Lower(letter)) {
      case 'i':
        AddNumber(Kind::Integer, -1);
        return count;
      case 'f':
        AddNumber(Kind::Fixed, 0);
        return count;
      case 'e':
        AddNumber(Kind::Exponent, 1);
        return count;
      case 'a':
        Add({Kind::Text, std::max(Number(), 0)});
        return count;
      case 't':
        Add({Kind::Tab, std::max(Number(), 1)});
        return 1;
      case 'x':
        Add({Kind::Skip, std::max(count, 1)});
        return 1;
      case 'h':
        AddLetters(count);
        return 1;
      case '/':
        Add({Kind::Slash});
        return count;
      case '\'':
      case '"':
        AddQuoted(letter);
        return count;
      default:
        throw "an unknown descriptor";
    }
  }
  constexpr void AddNumber(Kind kind, int leastdigits) {
    Item item{kind, Number()};
    if (item.width < 1 || item.width > Format::MaxWidth) throw "a field without a proper width";
    if (Peek() == '.') {
      ++at_;
      item.digits = Number();
    }
    if (item.digits < leastdigits || item.digits > item.width)
      throw "a field without proper decimals";
    Add(item);
  }
  constexpr void AddLetters(int count) {
    if (count < 1 || static_cast<std::size_t>(count) > text_.size() - at_)
      throw "a text that is longer than the format";
    Add({Kind::Literal, 0, -1, text_.substr(at_, static_cast<std::size_t>(count))});
    at_ += static_cast<std::size_t>(count);
  }
  // A doubled quote stands for one: a literal ends with the first of both, and another begins.
  // (string_view::find is no constant expression for GCC under sanitizers.)
  constexpr void AddQuoted(char quote) {
    for (bool doubled = true; doubled;) {
      const std::size_t first = at_;
      while (at_ < text_.size() && text_[at_] != quote) ++at_;
      if (at_ == text_.size()) throw "a text without its end";
      doubled = at_ + 1 < text_.size() && text_[at_ + 1] == quote;
      Add({Kind::Literal, 0, -1, text_.substr(first, at_ - first + doubled)});
      at_ += doubled ? 2 : 1;
    }
  }
};

// A format text as a template argument.
template <std::size_t N>
struct FormatText {
  char text[N];
  constexpr FormatText(const char (&literal)[N]) { std::copy_n(literal, N, text); }
  constexpr std::string_view view() const { return {text, N - 1}; }
};

template <FormatText F>
struct ParsedFormat {
  std::array<Format::Item, FormatParser(F.view()).count()> items;
  std::size_t restart;
  consteval ParsedFormat() : items(), restart(FormatParser(F.view(), items).restart()) {
    // Without a descriptor that takes a value there is nothing to start again for.
    if (std::none_of(items.begin() + restart, items.end(), [](auto& i) { return i.TakesValue(); }))
      restart = items.size();
  }
};

template <FormatText F>
inline constexpr ParsedFormat<F> kParsedFormat;

template <FormatText F>
constexpr Format FormatOf() {
  return {kParsedFormat<F>.items, kParsedFormat<F>.restart};
}
