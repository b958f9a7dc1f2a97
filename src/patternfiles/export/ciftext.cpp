// Texts as CIF 1.1 has them.
#include "patternfiles/export/ciftext.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

#include "workspace/record.h"
#include "workspace/text.h"

namespace {

constexpr std::size_t kLineLength = 80, kMostLength = 2046, kNameLength = 75;

// ---- Letters ----

// From U+00C0 on, the mark and the letter of each; blanks for those that CIF has no mark for.
constexpr std::string_view kAccented =
    "`A'A^A~A\"A%A  ,C`E'E^E\"E`I'I^I\"I  ~N`O'O^O~O\"O  /O`U'U^U\"U'Y  &s"
    "`a'a^a~a\"a%a  ,c`e'e^e\"e`i'i^i\"i  ~n`o'o^o~o\"o  /o`u'u^u\"u'y  \"y";
static_assert(kAccented.size() == 2 * 64);
// From alpha on, and the capitals by the same row.
constexpr std::string_view kGreek = "abgdezhqiklmnxoprsstufcyw";
constexpr char32_t kAccentedStart = 0xC0, kAlpha = 0x3B1, kCapitalAlpha = 0x391, kMicro = 0xB5,
                   kDegree = 0xB0, kReplacement = 0xFFFD;

// The number of the letter that a text of UTF-8 consists of.
char32_t NumberOf(std::string_view letter) {
  const auto byte = [letter](std::size_t i) { return static_cast<unsigned char>(letter[i]); };
  if (letter.size() == 1) return byte(0) < 0x80 ? byte(0) : kReplacement;
  char32_t number = byte(0) & (0x7F >> letter.size());
  for (std::size_t i = 1; i < letter.size(); ++i) number = number << 6 | (byte(i) & 0x3F);
  return number;
}

std::string ByNumber(char32_t letter) {
  char digits[16];
  const auto end = std::to_chars(digits, std::end(digits), std::uint32_t{letter}, 16).ptr;
  return "&#x" + UpperText({digits, end}) + ";";
}

std::string InAscii(char32_t letter) {
  if (letter < ' ' || letter == 0x7F) return " ";
  if (letter < 0x7F) return {static_cast<char>(letter)};
  if (letter == kMicro) return "\\m";
  if (letter == kDegree) return "\\%";
  const auto place = [letter](char32_t start) { return static_cast<std::size_t>(letter - start); };
  if (place(kAlpha) < kGreek.size()) return {'\\', kGreek[place(kAlpha)]};
  if (place(kCapitalAlpha) < kGreek.size()) return {'\\', UpperChar(kGreek[place(kCapitalAlpha)])};
  const auto accented = 2 * place(kAccentedStart);
  if (letter < kAccentedStart || accented >= kAccented.size() || kAccented[accented] == ' ')
    return ByNumber(letter);
  return "\\" + std::string(kAccented.substr(accented, 2));
}

// By what `change` makes of each letter.
template <class Change>
std::string ByLetters(std::string_view text, Change change) {
  std::string result;
  while (!text.empty()) {
    const std::string_view letter = Cut(text, 1);
    result += change(letter);
    text.remove_prefix(letter.size());
  }
  return result;
}

// What is not allowed becomes "_".
template <class Allowed>
std::string Cleaned(std::string_view text, Allowed allowed) {
  return ByLetters(Trim(text), [&](std::string_view letter) {
    return letter.size() == 1 && allowed(letter[0]) ? letter[0] : '_';
  });
}

bool IsLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (UpperChar(c) >= 'A' && UpperChar(c) <= 'Z');
}

// ---- Values ----

bool StandsAlone(std::string_view value) {
  constexpr std::string_view kReserved[] = {"data_", "loop_", "save_", "stop_", "global_"};
  if (value.find(' ') != std::string_view::npos || value == "?" || value == ".") return false;
  if (std::string_view("_#$'\"[];").find(value.front()) != std::string_view::npos) return false;
  return std::ranges::none_of(kReserved, [lower = LowerText(value)](std::string_view word) {
    return lower.starts_with(word);
  });
}

// A quote ends a value where a blank follows it, and for some readers where a comment does.
bool CanStandIn(char quote, std::string_view value) {
  return std::ranges::none_of(std::string_view(" #"), [=](char next) {
    return value.find(std::string{quote, next}) != std::string_view::npos;
  });
}

std::string Quoted(const std::string& value) {
  if (StandsAlone(value)) return value;
  for (const char quote : {'\'', '"'})
    if (CanStandIn(quote, value)) return quote + value + quote;
  return "";
}

// Where a line of a text is broken: at the last blank that keeps it short, or else at the first
// one.
std::size_t BreakOf(std::string_view text) {
  if (text.size() < kLineLength) return text.size();
  const std::size_t last = text.substr(0, kLineLength - 1).rfind(' ');
  return std::min(
      {last != std::string_view::npos ? last : text.find(' '), text.size(), kMostLength});
}

// Between lines that begin with ";", where no other line may.
std::vector<std::string> TextField(std::string_view tag, std::string_view value) {
  std::vector<std::string> lines{std::string(tag)};
  const char* start = ";";
  while (!value.empty()) {
    const std::size_t length = BreakOf(value);
    lines.push_back(start + std::string(value.substr(0, length)));
    value = Trim(value.substr(length));
    start = value.starts_with(';') ? " " : "";
  }
  lines.push_back(";");
  return lines;
}

// ---- Dates ----

std::vector<std::string_view> WordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  while (!text.empty()) {
    const auto end = std::ranges::find_if_not(text, IsLetterOrDigit);
    const auto length = static_cast<std::size_t>(end - text.begin());
    if (length > 0) words.push_back(text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return words;
}

std::optional<int> Within(std::string_view word, int lowest, int highest) {
  int value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  const bool number = error == std::errc() && end == word.data() + word.size();
  return number && value >= lowest && value <= highest ? std::optional(value) : std::nullopt;
}

std::optional<int> MonthOf(std::string_view word) {
  constexpr std::string_view kMonths = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";
  const std::size_t place = kMonths.find(UpperText(word));
  if (word.size() == 3 && place != std::string_view::npos && place % 3 == 0)
    return static_cast<int>(place / 3) + 1;
  return Within(word, 1, 12);
}

}  // namespace

std::string CifLetters(std::string_view text) {
  return std::string(
      Trim(ByLetters(text, [](std::string_view letter) { return InAscii(NumberOf(letter)); })));
}

std::string CifBlockHead(std::string_view name) {
  const auto allowed = [](char c) {
    return IsLetterOrDigit(c) || c == '-' || c == '.' || c == '+' || c == '_';
  };
  const std::string clean = Cleaned(name, allowed).substr(0, kNameLength);
  return "data_" + (clean.empty() ? "pattern" : clean);
}

std::string CifIdSection(std::string_view text) {
  const auto allowed = [](char c) {
    return IsLetterOrDigit(c) || std::string_view("#&*.:,-_+/()\\[]").find(c) != std::string::npos;
  };
  const std::string clean = Cleaned(text, allowed);
  return clean.empty() ? "unknown" : clean;
}

std::vector<std::string> CifItem(std::string_view tag, std::string_view value) {
  const std::string letters = CifLetters(value);
  const std::string quoted = letters.empty() ? "?" : Quoted(letters);
  if (quoted.empty() || tag.size() + 1 + quoted.size() > kLineLength)
    return TextField(tag, letters);
  return {std::string(tag) + ' ' + quoted};
}

std::string CifDate(std::string_view text) {
  std::vector<std::string_view> words = WordsOf(text);
  if (words.size() < 3) return "";
  if (words[0].size() < 4) std::swap(words[0], words[2]);
  const auto year = Within(words[0], 1900, 2200), month = MonthOf(words[1]),
             day = Within(words[2], 1, 31);
  if (!year || !month || !day) return "";
  std::string date = WriteRecord<"(i4,'-',i2.2,'-',i2.2)">(*year, *month, *day);
  if (words.size() < 5) return date;
  const auto hour = Within(words[3], 0, 23), minute = Within(words[4], 0, 59);
  if (!hour || !minute) return date;
  date += WriteRecord<"('T',i2.2,':',i2.2)">(*hour, *minute);
  const auto second = words.size() > 5 ? Within(words[5], 0, 59) : std::nullopt;
  return second ? date + WriteRecord<"(':',i2.2)">(*second) : date;
}
