// When the result of a fit in a series is not to be believed.
#include "series/condition.h"

#include <charconv>
#include <cmath>

std::optional<Condition> ReadCondition(std::string_view text) {
  const std::size_t sign = text.find_last_of("<>");
  if (sign == text.npos || sign == 0) return {};
  Condition condition{std::string(text.substr(0, sign)), text[sign] == '>', 0};
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data() + sign + 1, end, condition.limit);
  const bool whole = read.ptr == end && read.ec == std::errc();
  return whole && std::isfinite(condition.limit) ? std::optional(condition) : std::nullopt;
}
