// Days and hours in the many ways in which instruments write them.
#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "patternfiles/import/dates.h"
#include "workspace/text.h"

namespace {

constexpr std::string_view kMonths = "janfebmaraprmayjunjulaugsepoctnovdec";

// A number, or the month of a name; 0 where none stands.
int TakePart(std::string_view& text, bool& named) {
  std::size_t n = 0;
  int value = 0;
  for (; n < text.size() && n < 4 && text[n] >= '0' && text[n] <= '9'; ++n)
    value = value * 10 + (text[n] - '0');
  named = n == 0 && text.size() >= 3;
  if (named) {
    const std::size_t month = kMonths.find(LowerText(text.substr(0, 3)));
    if (month == kMonths.npos || month % 3 != 0) return 0;
    value = static_cast<int>(month / 3) + 1;
    while (n < text.size() && UpperChar(text[n]) >= 'A' && UpperChar(text[n]) <= 'Z') ++n;
  }
  text.remove_prefix(n);
  return value;
}

// " hh:mm:ss" of what follows a date; blank where no hour stands.
std::string HourOf(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == text.npos || colon == 0 || colon > 16) return "";
  std::size_t first = colon;
  while (first > 0 && text[first - 1] >= '0' && text[first - 1] <= '9') --first;
  std::array<int, 3> part{};
  bool named;
  std::string_view rest = text.substr(first);
  for (int& value : part) {
    value = TakePart(rest, named);
    if (!rest.starts_with(':')) break;
    rest.remove_prefix(1);
  }
  const std::string half = LowerText(rest.substr(0, 3));
  if (half.find("pm") != half.npos && part[0] < 12) part[0] += 12;
  if (half.find("am") != half.npos && part[0] == 12) part[0] = 0;
  if (part[0] > 23 || part[1] > 59 || part[2] > 60) return "";
  char hour[64];
  std::snprintf(hour, sizeof hour, " %02d:%02d:%02d", part[0], part[1], part[2]);
  return hour;
}

}  // namespace

std::string IsoDate(std::string_view text) {
  text = Trim(text);
  std::array<int, 3> part{};
  std::array<bool, 3> named{};
  char sign = ' ';
  for (int i = 0; i < 3; ++i) {
    part[i] = TakePart(text, named[i]);
    if (part[i] == 0 && i < 2) return "";
    if (i == 2) break;
    if (text.empty() || std::string_view("/-. ,").find(text.front()) == std::string_view::npos)
      return "";
    sign = text.front();
    while (!text.empty() && std::string_view("/-. ,").find(text.front()) != std::string_view::npos)
      text.remove_prefix(1);
  }
  auto [year, month, day] = part;
  if (part[0] < 1000) {
    const bool monthfirst = named[0] || (!named[1] && sign == '/' && part[0] <= 12) || part[1] > 12;
    year = part[2] < 70 ? 2000 + part[2] : part[2] < 100 ? 1900 + part[2] : part[2];
    month = part[monthfirst ? 0 : 1];
    day = part[monthfirst ? 1 : 0];
  }
  if (year < 1900 || year > 2999 || month < 1 || month > 12 || day < 1 || day > 31) return "";
  char date[64];
  std::snprintf(date, sizeof date, "%04d-%02d-%02d", year, month, day);
  return date + HourOf(text);
}
