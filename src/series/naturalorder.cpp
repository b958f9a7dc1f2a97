// The order of names that people expect.
#include "series/naturalorder.h"

#include <algorithm>

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The digits at the front, without leading zeros.
std::string_view TakeNumber(std::string_view& text) {
  const auto end = std::ranges::find_if_not(text, IsDigit);
  std::string_view digits(text.begin(), end);
  text = std::string_view(end, text.end());
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

}  // namespace

bool NaturalOrder(std::string_view one, std::string_view other) {
  std::string_view a = one, b = other;
  while (!a.empty() && !b.empty()) {
    if (IsDigit(a.front()) && IsDigit(b.front())) {
      const std::string_view m = TakeNumber(a), n = TakeNumber(b);
      if (m.size() != n.size()) return m.size() < n.size();
      if (m != n) return m < n;
    } else {
      if (a.front() != b.front()) return a.front() < b.front();
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  if (a.empty() && b.empty()) return one < other;
  return a.empty();
}
