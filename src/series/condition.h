// When the result of a fit in a series is not to be believed.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// "Rwp>12". Rwp is in percent; other names are columns.
struct Condition {
  std::string column;
  bool above = true;
  double limit = 0;
};

// Nothing for a text that is none.
std::optional<Condition> ReadCondition(std::string_view text);
