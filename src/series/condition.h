// When the result of a fit in a series is not to be believed.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// "Rwp>12". Rwp is in percent; other names are columns.
struct Condition {
  std::string column;
  bool above = true;
  double limit = 0;
};

// Nothing for a text that is none.
std::optional<Condition> ReadCondition(std::string_view text);
// The texts of several that are parted by commas, as "Rwp>12, a<4.5"; names may hold commas, too.
// None if one of them is no condition.
std::vector<std::string> ConditionsIn(std::string_view text);
