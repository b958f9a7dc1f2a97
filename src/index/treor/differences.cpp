#include <algorithm>

#include "index/treor/lines.h"
#include "index/treor/listing.h"

namespace {

constexpr int kLines = 20;
constexpr float kLeastPart = 1.0f / 16.0f;  // of the first line
constexpr int kMostIndent = 20;

struct Difference {
  float value;
  int count;  // how often it comes up, itself or four, nine or sixteen times
};

// All s of the first lines and their differences, rising.
std::vector<float> DifferencesOf(const std::vector<TreorLine>& lines) {
  const std::size_t n = std::min<std::size_t>(lines.size(), kLines);
  std::vector<float> values;
  for (std::size_t i = 0; i < n; ++i) {
    values.push_back(lines[i].s);
    for (std::size_t j = 0; j < i; ++j) values.push_back(lines[i].s - lines[j].s);
  }
  std::erase_if(values, [&](float v) { return !(v >= kLeastPart * lines[0].s); });
  std::ranges::sort(values);
  return values;
}

int CountNear(const std::vector<float>& values, float value, float tolerance) {
  const auto low = std::ranges::lower_bound(values, value - tolerance);
  return static_cast<int>(std::ranges::upper_bound(values, value + tolerance) - low);
}

// Those that come up more than once; of equal ones the first.
std::vector<Difference> FrequentDifferences(const std::vector<float>& values, float tolerance) {
  std::vector<Difference> found;
  for (const float value : values) {
    if (!found.empty() && value - found.back().value <= tolerance) continue;
    int count = 0;
    for (const int n : {1, 2, 3, 4})
      count += CountNear(values, static_cast<float>(n * n) * value, tolerance);
    if (count > 1) found.push_back({value, count});
  }
  return found;
}

}  // namespace

void ListFailure(const TreorSearch& search) {
  Listing& listing = search.listing;
  listing.Put<"(/,' PROGRAM FOR DIFFERENCE ANALYSIS')">();
  const int n = std::min(static_cast<int>(search.all.size()), kLines);
  listing.Put<"(' NUMBER OF LINES USED=',I5)">(n);
  if (n > 0)
    for (const auto& d : FrequentDifferences(DifferencesOf(search.all), search.options.d1))
      listing.Lines(std::string(static_cast<std::size_t>(std::min(d.count, kMostIndent)), ' ') +
                    WriteRecord<"(F10.6,I5)">(d.value, d.count));
  listing.Put<"(/,' NO SOLUTION ACCEPTED.....THINK!')">();
  listing.Put<"76(14H TEST FINISHED)">();
}
