// Texts, numbers and the list of scans of the readers of CIF, XML and archives.
#include "patternfiles/import/markup.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "workspace/text.h"

namespace {

void AppendUtf8(std::string& text, std::uint32_t code) {
  const auto tail = [&](int shift) { text += static_cast<char>(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0 | code >> 6);
    tail(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0 | code >> 12);
    tail(6), tail(0);
  } else {
    text += static_cast<char>(0xF0 | code >> 18);
    tail(12), tail(6), tail(0);
  }
}

// Half a surrogate pair comes out as a question mark.
std::string FromUtf16(std::string_view bytes, bool bigendian) {
  const auto unit = [&](std::size_t i) -> std::uint32_t {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    return bigendian ? first << 8 | second : second << 8 | first;
  };
  std::string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    std::uint32_t code = unit(i);
    const bool high = code >= 0xD800 && code < 0xDC00;
    if (high && i + 3 < bytes.size() && unit(i + 2) >> 10 == 0xDC00 >> 10) {
      i += 2;
      code = 0x10000 + ((code - 0xD800) << 10) + (unit(i) - 0xDC00);
    } else if (code >= 0xD800 && code < 0xE000) {
      code = '?';
    }
    AppendUtf8(text, code);
  }
  return text;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

constexpr std::string_view kBetweenNumbers = " \t\r\n,;";

}  // namespace

std::string AsUtf8(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return FromUtf16(bytes.substr(2), false);
  if (bytes.starts_with("\xFE\xFF")) return FromUtf16(bytes.substr(2), true);
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  return std::string(bytes);
}

std::string_view Stripped(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  text = text.substr(0, text.find_last_not_of(kBlanks) + 1);
  return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

std::optional<double> NumberIn(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::vector<double> NumbersIn(std::string_view text, const std::string& where) {
  std::vector<double> numbers;
  for (std::size_t at = 0; (at = text.find_first_not_of(kBetweenNumbers, at)) != text.npos;) {
    const std::size_t end = std::min(text.find_first_of(kBetweenNumbers, at), text.size());
    const auto value = NumberIn(text.substr(at, end - at));
    if (!value) {
      constexpr int kShown = 20;
      throw NotReadable(where + " hold \"" + OnOneLine(Cut(text.substr(at, end - at), kShown)) +
                        "\" where a number should be");
    }
    numbers.push_back(*value);
    at = end;
  }
  return numbers;
}

std::string PlainDate(std::string_view stamp) {
  constexpr std::string_view kShape = "0000-00-00T00:00:00";
  stamp = Stripped(stamp);
  std::size_t n = 0;
  const auto fits = [&](char c, char shape) {
    return shape == '0' ? IsDigit(c) : c == shape || (shape == 'T' && c == ' ');
  };
  while (n < std::min(stamp.size(), kShape.size()) && fits(stamp[n], kShape[n])) ++n;
  constexpr std::size_t kDay = 10, kMinute = 16;
  if (n < kDay) return OnOneLine(stamp);
  std::string date(stamp.substr(0, n < kMinute ? kDay : n < kShape.size() ? kMinute : n));
  if (date.size() == kMinute) date += ":00";
  if (date.size() > kDay) date[kDay] = ' ';
  return date;
}

std::string Squeezed(std::string_view text) {
  std::string squeezed = LowerText(text);
  std::erase_if(squeezed, [](char c) { return c == ' ' || c == '_' || c == '\t'; });
  return squeezed;
}

bool NamesTwoTheta(std::string_view axis) {
  const std::string name = Squeezed(axis);
  for (const char* known : {"2theta", "twotheta", "2\xCE\xB8", "gonio"})
    if (name.find(known) != name.npos) return true;
  return false;
}

void ScanList::Add(MeasuredScan scan) {
  constexpr std::size_t kMostScans = 1000, kMostPoints = 4'000'000;
  points_ += scan.counts.size();
  if (file_.scans.size() == kMostScans) throw NotReadable("it holds more than 1000 scans");
  if (points_ > kMostPoints) throw NotReadable("it holds more than 4 million points");
  file_.scans.push_back(std::move(scan));
}

void ScanList::Note(const std::string& text) {
  if (file_.note.find(text) != file_.note.npos) return;
  if (!file_.note.empty()) file_.note += "; ";
  file_.note += text;
}

MeasuredFile ScanList::Done(const std::string& nothing) {
  if (file_.scans.empty())
    throw NotReadable(leftout_.empty() ? nothing : "it holds " + leftout_[0]);
  if (!leftout_.empty()) {
    const std::string many = leftout_.size() > 1 ? " and more of the kind" : "";
    Note("left out: " + leftout_[0] + many);
  }
  return std::move(file_);
}
