#include "index/ito/histogram.h"

#include <algorithm>
#include <numeric>

int TrialHistogram::CountOf(int first, int last) const {
  return std::accumulate(bins_.begin() + first, bins_.begin() + last + 1, 0);
}

void TrialHistogram::List(const Search& search, std::vector<Trial>& list) const {
  int threshold = search.threshold;
  for (int first = search.first; first <= search.last; first += search.step) {
    int count = 0, moment = 0;
    for (int bin = first; bin < first + kWindow; ++bin) {
      const int n = bins_[static_cast<std::size_t>(bin)];
      count += n;
      moment += n * bin;
    }
    if (count <= threshold) continue;
    const float mean = static_cast<float>(moment) / static_cast<float>(count);
    const auto at = std::find_if(list.begin(), list.end(),
                                 [&](const Trial& trial) { return count > trial.count; });
    list.insert(at, {(search.shift + mean) / search.scale, count});
    if (list.size() > search.most) list.pop_back();
    if (list.size() == search.most) threshold = std::max(threshold, list.back().count);
  }
}
