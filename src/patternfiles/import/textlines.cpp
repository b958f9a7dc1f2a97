// Lines and numbers of text files.
#include "patternfiles/import/textlines.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "patternfiles/import/utf8.h"

namespace {

constexpr std::size_t kHead = 32768;  // bytes that tell the format of a file

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\0';
}
bool IsSeparator(char c) { return IsBlank(c) || c == ',' || c == ';'; }

// The e.s.d. of counts; those of none are not 0.
double RootOf(double counts) { return std::sqrt(std::max(counts, 1.0)); }

// Of the number at the front of the text; 0 if there is none.
std::size_t LengthOfNumber(std::string_view text, bool comma) {
  const auto at = [&](std::size_t i) { return i < text.size() ? text[i] : '\0'; };
  std::size_t i = at(0) == '+' || at(0) == '-' ? 1 : 0;
  const std::size_t first = i;
  while (IsDigit(at(i))) ++i;
  std::size_t digits = i - first;
  if (at(i) == '.' || (comma && at(i) == ',' && digits > 0 && IsDigit(at(i + 1)))) {
    const std::size_t point = i++;
    while (IsDigit(at(i))) ++i;
    digits += i - point - 1;
  }
  if (digits == 0) return 0;
  const char letter = at(i);
  if (letter != 'e' && letter != 'E' && letter != 'd' && letter != 'D') return i;
  std::size_t power = i + 1;
  if (at(power) == '+' || at(power) == '-') ++power;
  if (!IsDigit(at(power))) return i;
  while (IsDigit(at(power))) ++power;
  return power;
}

}  // namespace

TextLines::TextLines(std::string_view bytes) : rest(bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) {
    rest.remove_prefix(3);
  } else if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    decoded = AsUtf8(bytes);
    rest = decoded;
  }
}

bool TextLines::Next(std::string_view& line) {
  if (rest.empty()) return false;
  ++number;
  // The next LF is looked for once, however many lines end with a CR in front of it.
  if (feed < rest.data()) feed = rest.data() + std::min(rest.find('\n'), rest.size());
  line = {rest.data(), feed};
  const std::size_t end = std::min(line.find('\r'), line.size());
  line = line.substr(0, end);
  rest.remove_prefix(end);
  rest.remove_prefix(rest.starts_with("\r\n") ? 2 : rest.empty() ? 0 : 1);
  return true;
}

bool LooksText(std::string_view bytes) {
  TextLines lines(bytes.substr(0, kHead));
  std::size_t all = 0, nul = 0, control = 0;
  for (std::string_view line; lines.Next(line);) {
    all += line.size() + 1;
    for (const char c : line) {
      if (static_cast<unsigned char>(c) >= ' ') continue;
      nul += c == '\0';
      control += !IsBlank(c) && c != '\v' && c != '\x1A';
    }
  }
  return nul * 10 <= all && control * 200 <= all;
}

bool HasLineStart(std::string_view bytes, std::string_view word) {
  const TextLines lines(bytes.substr(0, kHead));
  const std::string_view text = lines.Rest();
  for (std::size_t at = 0; (at = text.find(word, at)) != text.npos; ++at)
    if (at == 0 || text[at - 1] == '\n' || text[at - 1] == '\r') return true;
  return false;
}

bool FirstLineStarts(std::string_view bytes, std::string_view word) {
  TextLines lines(bytes.substr(0, kHead));
  for (std::string_view line; lines.Next(line);)
    if (!Stripped(line).empty()) return Stripped(line).starts_with(word);
  return false;
}

std::string_view Stripped(std::string_view text) {
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view Unquoted(std::string_view text) {
  text = Stripped(text);
  const bool quoted = text.size() > 1 && text.front() == text.back() &&
                      (text.front() == '"' || text.front() == '\'');
  return quoted ? Stripped(text.substr(1, text.size() - 2)) : text;
}

bool TakeNumber(std::string_view& text, double& value, bool comma) {
  const std::size_t length = LengthOfNumber(text, comma);
  if (length == 0) return false;
  std::string_view digits = text.substr(0, length);
  text.remove_prefix(length);
  if (digits.front() == '+') digits.remove_prefix(1);
  std::string plain;
  if (std::any_of(digits.begin(), digits.end(),
                  [](char c) { return c == ',' || c == 'd' || c == 'D'; })) {
    plain = digits;
    std::replace(plain.begin(), plain.end(), ',', '.');
    std::replace(plain.begin(), plain.end(), 'd', 'e');
    std::replace(plain.begin(), plain.end(), 'D', 'e');
    digits = plain;
  }
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (read.ec != std::errc()) value = std::numeric_limits<double>::quiet_NaN();
  return true;
}

std::optional<double> NumberOf(std::string_view word, bool comma) {
  word = Stripped(word);
  if (word.size() > 1 && word.front() == '"') word = Unquoted(word);
  double value;
  if (!TakeNumber(word, value, comma) || !word.empty()) return std::nullopt;
  return value;
}

std::optional<double> ValueOf(std::string_view text) {
  text = Unquoted(text);
  double value;
  if (!TakeNumber(text, value, true)) return std::nullopt;
  if (!text.empty() && std::string_view(":/-.").find(text.front()) != std::string_view::npos)
    return std::nullopt;
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

bool AppendNumbers(std::string_view line, std::vector<double>& numbers) {
  for (;;) {
    while (!line.empty() && IsSeparator(line.front())) line.remove_prefix(1);
    if (line.empty()) return true;
    double value;
    if (!TakeNumber(line, value)) return false;
    if (!line.empty() && !IsSeparator(line.front())) return false;
    numbers.push_back(value);
    CheckPoints(numbers.size() / 3);  // a point may take three numbers
  }
}

bool AppendColumns(std::string_view line, std::size_t width, std::vector<double>& numbers) {
  for (; !line.empty(); line.remove_prefix(std::min(width, line.size()))) {
    const std::string_view column = Stripped(line.substr(0, width));
    if (column.empty()) continue;
    const auto value = NumberOf(column);
    if (!value) return false;
    numbers.push_back(*value);
    CheckPoints(numbers.size() / 3);
  }
  return true;
}

bool AppendMeanCounts(std::string_view line, std::vector<double>& counts,
                      std::vector<double>& esd) {
  const std::size_t old = counts.size();
  for (; !line.empty(); line.remove_prefix(std::min<std::size_t>(8, line.size()))) {
    const std::string_view field = line.substr(0, 8);
    if (Stripped(field).empty()) continue;
    const std::string_view number = Stripped(field.substr(0, 2));
    const auto detectors = number.empty() ? 1 : NumberOf(number);
    const auto mean = NumberOf(field.substr(std::min<std::size_t>(2, field.size())));
    if (!detectors || !mean) {
      counts.resize(old);
      esd.resize(old);
      return false;
    }
    counts.push_back(*mean);
    esd.push_back(RootOf(*mean) / std::sqrt(std::max(*detectors, 1.0)));
    CheckPoints(counts.size());
  }
  return true;
}

void CheckPoints(std::size_t points) {
  if (points > kMostPoints) throw NotReadable("it holds more than 4000000 points");
}

void CheckScans(std::size_t scans) {
  if (scans > kMostScans) throw NotReadable("it holds more than 1000 scans");
}

void AddScan(MeasuredFile& file, MeasuredScan scan) {
  if (scan.x.empty()) return;
  CheckScans(file.scans.size() + 1);
  std::size_t points = scan.x.size();
  for (const MeasuredScan& other : file.scans) points += other.x.size();
  CheckPoints(points);
  file.scans.push_back(std::move(scan));
}

void LabelScans(MeasuredFile& file, const std::string& word) {
  if (file.scans.size() < 2) return;
  int number = 0;
  for (MeasuredScan& scan : file.scans) {
    const std::string rest = scan.label.empty() ? "" : ", " + scan.label;
    scan.label = word + ' ' + std::to_string(++number) + rest;
  }
}

void DropPlainEsd(MeasuredScan& scan) {
  for (std::size_t i = 0; i < scan.esd.size(); ++i)
    if (scan.esd[i] != RootOf(scan.counts[i])) return;
  scan.esd.clear();
}

MeasuredScan Unmeasured(const MeasuredScan& scan) {
  MeasuredScan heading;
  heading.wavelengths = scan.wavelengths;
  heading.ratio = scan.ratio;
  heading.sample = scan.sample;
  heading.instrument = scan.instrument;
  heading.date = scan.date;
  return heading;
}

void FillEvenGrid(MeasuredScan& scan, double start, double step) {
  scan.x.resize(scan.counts.size());
  for (std::size_t i = 0; i < scan.x.size(); ++i) scan.x[i] = start + static_cast<double>(i) * step;
}
