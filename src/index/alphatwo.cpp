// Peaks that a search finds for the second line of a K alpha doublet.
#include "index/alphatwo.h"

#include <algorithm>
#include <cmath>

#include "peaks/splitpeak.h"

namespace {

constexpr double kRatio = 0.5;  // of the intensities of alpha2 and alpha1
constexpr double kLeastRatio = 0.25,
                 kMostRatio = 0.9;  // as a search reads them off, tails included
constexpr double kAtPlace = 0.35;   // of the width
constexpr double kToldApart = 0.8;  // of the width: how far from the alpha1 line
constexpr double kStrong = 3;       // times the weakest peak: the alpha2 line would have been found

constexpr int kLeastPairs = 3;  // fewer come about by chance

bool IsAlpha2Of(const PeakOfList& peak, const PeakOfList& other, double place) {
  return std::abs(peak.tth - place) < kAtPlace * other.fwhm &&
         peak.intensity > kLeastRatio * other.intensity &&
         peak.intensity < kMostRatio * other.intensity;
}

}  // namespace

std::vector<bool> AreAlpha2(std::span<const PeakOfList> peaks, double alpha1, double alpha2) {
  std::vector<bool> seconds(peaks.size());
  if (peaks.empty() || !(alpha1 > 0 && alpha2 > alpha1)) return seconds;
  const FitWavelengths doublet{static_cast<float>(alpha1), static_cast<float>(alpha2), kRatio};
  const double weakest = std::ranges::min(peaks, {}, &PeakOfList::intensity).intensity;
  int strong = 0, paired = 0;
  for (std::size_t i = 0; i < peaks.size(); ++i) {
    const double place = Alpha2Position(peaks[i].tth, doublet);
    if (!(place - peaks[i].tth > kToldApart * peaks[i].fwhm)) continue;
    if (seconds[i] || !(kRatio * peaks[i].intensity > kStrong * weakest)) continue;
    bool found = false;
    for (std::size_t j = 0; j < peaks.size(); ++j)
      if (j != i && IsAlpha2Of(peaks[j], peaks[i], place)) seconds[j] = found = true;
    ++strong;
    paired += found;
  }
  if (paired < kLeastPairs || 2 * paired < strong) seconds.assign(peaks.size(), false);
  return seconds;
}
