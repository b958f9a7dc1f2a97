// Cubic cells: one line tells the constant.
#include <cmath>

#include "index/find/searches.h"

namespace {

constexpr std::size_t kBaseLines = 10;
constexpr int kMostSum = 60;  // of squared indices of a base line

void Try(double a, const SearchLines& lines, TrialList& list) {
  ParityCounts counts;
  const auto most = static_cast<int>(lines.second.Most() / a);
  if (most > 400) return;
  // Reflections with the same sum of squares are one position: the first is counted.
  std::array<bool, 8 * 401> seen{};
  for (int h = 0; h * h <= most; ++h)
    for (int k = 0; k <= h && h * h + k * k <= most; ++k)
      for (int l = 0; l <= k; ++l) {
        const int sum = h * h + k * k + l * l;
        if (sum == 0 || sum > most) continue;
        const unsigned parity = static_cast<unsigned>((h & 1) << 2 | (k & 1) << 1 | (l & 1));
        bool& known = seen[static_cast<std::size_t>(sum)];
        if (known) continue;
        known = true;
        counts.Add(parity, lines.second.At(static_cast<float>(a * sum)));
      }
  AddCentered(lines, {a, a, a, 0, 0, 0}, counts, std::array{kP, kI, kF}, list);
}

}  // namespace

void SearchForCubic(const SearchLines& lines, TrialList& list) {
  for (std::size_t line = 0; line < std::min(kBaseLines, lines.q.size()); ++line)
    for (int sum = 1; sum <= kMostSum; ++sum)
      if (const double a = lines.q[line] / sum; a > kLeastSquare) Try(a, lines, list);
}
