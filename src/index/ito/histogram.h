// Histograms of a constant that many lines would agree on.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

// A value of a constant, and how many lines, each as often as it is indexed, speak for it.
struct Trial {
  float value;
  int count;
};

class TrialHistogram {
 public:
  static constexpr int kMostBins = 5000;
  static constexpr int kWindow = 6;  // bins of a tolerance

  void Count(int bin) { ++bins_[static_cast<std::size_t>(bin)]; }
  int CountOf(int first, int last) const;

  // The windows that begin from `first` to `last` in steps and hold more than `threshold`.
  struct Search {
    int first, last, step, threshold;
    std::size_t most;    // that are listed
    float shift, scale;  // the value of a mean bin is (shift + bin) / scale
  };
  // Places them in a list that falls with the counts.
  void List(const Search& search, std::vector<Trial>& list) const;

 private:
  std::array<int, kMostBins + kWindow> bins_{};  // bin 0 first
};
