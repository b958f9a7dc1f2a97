// The columns of a series' table as numbers.
#include "series/columns.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>

namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

// Takes a number of digits off the front of a text; nothing if they do not stand there.
std::optional<int> TakeDigits(std::string_view& text, std::size_t digits) {
  int number = 0;
  const char* const end = text.data() + std::min(digits, text.size());
  const auto read = std::from_chars(text.data(), end, number);
  if (text.size() < digits || number < 0 || read.ptr != end) return {};
  text.remove_prefix(digits);
  return number;
}

bool Take(std::string_view& text, std::string_view signs) {
  if (text.empty() || signs.find(text.front()) == signs.npos) return false;
  text.remove_prefix(1);
  return true;
}

// "2026-03-29" off the front, as days since 1970.
std::optional<int> TakeDay(std::string_view& text) {
  const auto year = TakeDigits(text, 4);
  const bool first = year && Take(text, "-");
  const auto month = TakeDigits(text, 2);
  const bool second = first && month && Take(text, "-");
  const auto day = TakeDigits(text, 2);
  if (!second || !day) return {};
  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(unsigned(*month)),
                                         std::chrono::day(unsigned(*day))};
  if (!date.ok()) return {};
  return std::chrono::sys_days(date).time_since_epoch().count();
}

// "14:30" off the front; "0130" in a distance from universal time.
std::optional<double> TakeTime(std::string_view& text) {
  const auto hours = TakeDigits(text, 2);
  Take(text, ":");
  const auto minutes = TakeDigits(text, 2);
  if (!hours || !minutes || *hours > 24 || *minutes > 59) return {};
  return *hours + *minutes / 60.0;
}

// ":05.25" off the front, in hours; 0 where there is none.
double TakeSeconds(std::string_view& text) {
  constexpr double kOfAnHour = 3600;
  double seconds = 0;
  if (!text.starts_with(':') || text.size() < 2 || text[1] < '0' || text[1] > '9') return 0;
  const auto read = std::from_chars(text.data() + 1, text.data() + text.size(), seconds,
                                    std::chars_format::fixed);
  text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
  return seconds / kOfAnHour;
}

std::optional<double> NumberOf(std::string_view cell) {
  double value = 0;
  const auto read = std::from_chars(cell.data(), cell.data() + cell.size(), value);
  const bool whole = read.ptr == cell.data() + cell.size() && read.ec == std::errc();
  return whole && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

// A number, or hours of a date.
std::optional<double> ValueOf(std::string_view cell) {
  const auto number = NumberOf(cell);
  return number ? number : HoursOf(cell);
}

// Columns that the program has made of no number.
bool IsText(std::string_view name) {
  static constexpr std::string_view kTexts[] = {kFileColumn, kStartColumn, kRecipeColumn,
                                                kBoxesColumn, kFailedColumn};
  return std::ranges::find(kTexts, name) != std::end(kTexts);
}

std::vector<double> Numbers(const SeriesTable& table, int column, std::size_t files, auto valueof) {
  std::vector<double> values(files, kNothing);
  for (std::size_t row = 0; row < std::min(files, table.rows.size()); ++row)
    if (!HasFailed(table, row))
      values[row] = valueof(table.rows[row][static_cast<std::size_t>(column)]).value_or(kNothing);
  return values;
}

}  // namespace

std::optional<double> HoursOf(std::string_view date) {
  constexpr double kOfADay = 24;
  const auto day = TakeDay(date);
  if (!day) return {};
  double hours = *day * kOfADay;
  if (Take(date, "T ")) {
    const auto time = TakeTime(date);
    if (!time) return {};
    hours += *time + TakeSeconds(date);
    const bool behind = date.starts_with('-');
    if (Take(date, "+-")) {
      const auto away = TakeTime(date);
      if (!away) return {};
      hours += behind ? *away : -*away;
    } else {
      Take(date, "Z");
    }
  }
  return date.empty() ? std::optional(hours) : std::nullopt;
}

bool HasFailed(const SeriesTable& table, std::size_t row) {
  const int failed = table.ColumnOf(kFailedColumn);
  return failed >= 0 && !table.rows[row][static_cast<std::size_t>(failed)].empty();
}

std::vector<int> NumberColumns(const SeriesTable& table) {
  std::vector<int> columns;
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    if (IsText(table.columns[column])) continue;
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
      if (HasFailed(table, row) || !ValueOf(table.rows[row][column])) continue;
      columns.push_back(static_cast<int>(column));
      break;
    }
  }
  return columns;
}

SeriesValues ValuesOf(const SeriesTable& table, int column, std::size_t files) {
  SeriesValues out{
      table.columns[static_cast<std::size_t>(column)], Numbers(table, column, files, NumberOf), {}};
  const auto known = [](double value) { return std::isfinite(value); };
  if (std::ranges::none_of(out.values, known)) {
    out.values = Numbers(table, column, files, HoursOf);
    double earliest = kNothing;
    for (const double value : out.values) earliest = std::fmin(earliest, value);
    for (double& value : out.values) value -= earliest;
    out.name += " (h)";
  }
  if (const int esd = table.ColumnOf(table.columns[static_cast<std::size_t>(column)] + " esd");
      esd >= 0)
    out.esds = Numbers(table, esd, files, NumberOf);
  return out;
}
