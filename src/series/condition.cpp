// When the result of a fit in a series is not to be believed.
#include "series/condition.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

std::string_view Trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

}  // namespace

std::optional<Condition> ReadCondition(std::string_view text) {
  const std::size_t sign = text.find_last_of("<>");
  if (sign == text.npos) return {};
  const std::string_view column = Trimmed(text.substr(0, sign)),
                         limit = Trimmed(text.substr(sign + 1));
  if (column.empty()) return {};
  Condition condition{std::string(column), text[sign] == '>', 0};
  const char* const end = limit.data() + limit.size();
  const auto read = std::from_chars(limit.data(), end, condition.limit);
  const bool whole = read.ptr == end && read.ec == std::errc();
  return whole && std::isfinite(condition.limit) ? std::optional(condition) : std::nullopt;
}

std::vector<std::string> ConditionsIn(std::string_view text) {
  std::vector<std::string> conditions;
  std::size_t begin = 0, next = 0;
  while (next <= text.size()) {
    const std::size_t comma = std::min(text.find(',', next), text.size());
    const std::string_view one = text.substr(begin, comma - begin);
    next = comma + 1;
    if (!ReadCondition(one)) continue;
    conditions.emplace_back(one);
    begin = next;
  }
  if (begin < next) conditions.clear();
  return conditions;
}
