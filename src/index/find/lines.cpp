// The lines that a cell is searched for.
#include "index/find/lines.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double kDegree = std::numbers::pi / 180;
constexpr double kSamePosition = 5e-4;  // degrees
constexpr double kUsualWidth = 0.1;     // degrees, where no width is known

// Widths that a user's file may lack.
void MendWidths(std::vector<ObservedLine>& lines) {
  std::vector<double> widths;
  for (const ObservedLine& line : lines)
    if (line.width > 0) widths.push_back(line.width);
  double median = kUsualWidth;
  if (!widths.empty()) {
    const auto middle = widths.begin() + static_cast<std::ptrdiff_t>(widths.size() / 2);
    std::ranges::nth_element(widths, middle);
    median = *middle;
  }
  for (ObservedLine& line : lines)
    if (!(line.width > median / 4 && line.width < median * 4)) line.width = median;
}

// Lines of unequal reflections are rarely better than a fiftieth of their width, whatever a fit of
// one profile tells; no error is worse than what is expected without a fit.
double ErrorOf(double esd, double width) {
  const double usual = width / 7;
  return esd > 0 ? std::min(std::hypot(esd, width / 50), usual) : usual;
}

}  // namespace

double QOfTwoTheta(double tth, double wavelength) {
  const double s = 2 * std::sin(tth * kDegree / 2) / wavelength;
  return s * s;
}

std::vector<ObservedLine> ObservedLines(std::span<const PeakOfList> peaks, double wavelength) {
  std::vector<ObservedLine> lines;
  for (const PeakOfList& peak : peaks) {
    const double slope = 2 * std::sin(peak.tth * kDegree) / (wavelength * wavelength) * kDegree;
    lines.push_back(
        {peak.tth, peak.fwhm, peak.esd, peak.intensity, QOfTwoTheta(peak.tth, wavelength), slope});
  }
  std::ranges::stable_sort(lines, {}, &ObservedLine::tth);
  const auto same = [](const ObservedLine& a, const ObservedLine& b) {
    return b.tth - a.tth < kSamePosition;
  };
  lines.erase(std::unique(lines.begin(), lines.end(), same), lines.end());
  MendWidths(lines);
  for (ObservedLine& line : lines) line.error = ErrorOf(line.error, line.width);
  return lines;
}

HitTable::HitTable(std::span<const ObservedLine> lines, std::size_t count, double shift,
                   double share)
    : bits_(kCells, 0) {
  lines = lines.first(std::min(count, lines.size()));
  lines_ = static_cast<int>(lines.size());
  const auto low = [&](const ObservedLine& line) {
    return line.q + (shift - share * line.width) * line.slope;
  };
  const auto high = [&](const ObservedLine& line) {
    return line.q + (shift + share * line.width) * line.slope;
  };
  most_ = static_cast<float>(high(lines.back()));
  scale_ = kCells / (most_ * 1.0001F);
  std::vector<double> nearest(kCells, 1e9);
  int taken = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double middle = (lines[i].q + shift * lines[i].slope) * scale_;
    const int first = std::max(0, static_cast<int>(low(lines[i]) * scale_));
    const int last = std::min(kCells - 1, static_cast<int>(high(lines[i]) * scale_));
    for (int cell = first; cell <= last; ++cell) {
      const auto at = static_cast<std::size_t>(cell);
      const double distance = std::abs(cell + 0.5 - middle);
      if (distance >= nearest[at]) continue;
      if (bits_[at] == 0) ++taken;
      nearest[at] = distance;
      bits_[at] = 1U << i;
    }
  }
  covered_ = static_cast<double>(taken) / kCells;
}
