// The lines of a powder pattern from the reflections of a structure.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>

#include "multi/structure.h"

namespace {

constexpr double kSameSpacing = 1e-5;  // relative
constexpr double kNameworthy = 0.2;    // of the strongest reflection of a line
constexpr double kExtinct = 1e-6;      // of the strongest line

struct Peak {
  double theta, intensity;
  Hkl hkl;
};

// As LpCorrect has it in its modes for an unpolarised beam.
double LorentzPolarisation(double theta) {
  const double cosine = std::cos(2 * theta);
  return (0.5 * cosine * cosine + 0.5) / (std::sin(theta) * std::sin(2 * theta));
}

Peak PeakOf(const StructureReflection& row, double wavelength) {
  const double theta = std::asin(wavelength / (2 * row.d));
  return {theta, row.multiplicity * row.square * LorentzPolarisation(theta), row.hkl};
}

auto PrintedRank(const Hkl& r) {
  return std::tuple((r.h >= 0) + (r.k >= 0) + (r.l >= 0), r.h, r.k, r.l);
}

// Peaks at one place are one, which bears the name of the one that tables would print.
Peak Joined(const std::vector<Peak>& peaks) {
  const double strongest = std::ranges::max_element(peaks, {}, &Peak::intensity)->intensity;
  Peak joined{peaks.front().theta, 0, {}};
  bool named = false;
  for (const Peak& peak : peaks) {
    joined.intensity += peak.intensity;
    if (peak.intensity < kNameworthy * strongest) continue;
    if (!named || PrintedRank(peak.hkl) > PrintedRank(joined.hkl)) joined.hkl = peak.hkl;
    named = true;
  }
  return joined;
}

std::vector<Peak> JoinedPeaks(std::vector<StructureReflection> rows, double wavelength) {
  std::ranges::stable_sort(rows, std::ranges::greater{}, &StructureReflection::d);
  std::vector<Peak> lines, together;
  double first = 0;
  const auto flush = [&] {
    if (!together.empty()) lines.push_back(Joined(together));
    together.clear();
  };
  for (const StructureReflection& row : rows) {
    if (row.d < first * (1 - kSameSpacing)) flush();
    if (together.empty()) first = row.d;
    const Peak peak = PeakOf(row, wavelength);
    if (std::isfinite(peak.intensity)) together.push_back(peak);
  }
  flush();
  return lines;
}

}  // namespace

std::vector<PowderLine> PowderLines(const std::vector<StructureReflection>& rows, double wavelength,
                                    std::size_t most) {
  std::vector<Peak> peaks = JoinedPeaks(rows, wavelength);
  std::ranges::stable_sort(peaks, std::ranges::greater{}, &Peak::intensity);
  if (peaks.size() > most) peaks.resize(most);
  const double strongest = peaks.empty() ? 0 : peaks.front().intensity;
  std::erase_if(peaks, [=](const Peak& p) { return !(p.intensity > kExtinct * strongest); });
  std::ranges::stable_sort(peaks, {}, &Peak::theta);
  std::vector<PowderLine> lines;
  for (const Peak& peak : peaks)
    lines.push_back({static_cast<float>(2 * peak.theta * 180 / std::numbers::pi),
                     static_cast<float>(100 * peak.intensity / strongest), peak.hkl});
  return lines;
}
