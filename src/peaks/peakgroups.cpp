// What of a list of peaks is fitted together, and where its fit begins.
#include "peaks/peakgroups.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kNearest = 1.5;   // steps; of peaks nearer than that, points tell nothing
constexpr int kTopReach = 2;       // points from a listed position to the top of its peak
constexpr double kUsualWidth = 5;  // steps; where no peak shows its width
// Widths at the start, in units of the list's median: one seen in noise is too small, one without
// valleys beside it too large.
constexpr double kNarrowStart = 0.5, kBroadStart = 4;
constexpr double kKept = 0.25;     // part of the way to a neighbour that a position keeps from it
constexpr double kWidthRange = 5;  // times and parts of the width at the start

// Five FWHM between two peaks leave room for a background of their own, and tails of less than one
// part in twenty; tails beyond the reach of a group are taken off the others.
constexpr double kOverlap = 2.5;  // FWHM to either side
constexpr double kMargin = 5;     // FWHM of points beyond the outer peaks
// 50 parameters: the cost of a cycle goes with their square.
constexpr std::size_t kMostTogether = 8;

int NearestPoint(std::span<const float> x, float place) {
  const int n = static_cast<int>(x.size());
  const int above = static_cast<int>(std::ranges::lower_bound(x, place) - x.begin());
  if (above == 0) return 0;
  return above < n && x[above] - place < place - x[above - 1] ? above : above - 1;
}

double StepAt(std::span<const float> x, int i) {
  const int last = static_cast<int>(x.size()) - 1;
  const int from = std::max(0, i - 1), to = std::min(last, i + 1);
  return to > from ? static_cast<double>(x[to] - x[from]) / (to - from) : 0;
}

// The top of a peak, and the points that are nearer to it than to its neighbours.
struct Place {
  int row;
  int from, to, top;
};

double Net(const FittedPattern& pattern, int i) { return pattern.y[i] - pattern.background[i]; }

// Twice the distance at which the nearer side falls to half of the height; 0 if none does. The
// other side may bear an alpha2 line or a neighbour.
double SeenWidth(const FittedPattern& pattern, const Place& place) {
  const double half = Net(pattern, place.top) / 2;
  double width = 0;
  for (int way : {-1, 1}) {
    int i = place.top;
    while (i >= place.from && i <= place.to && Net(pattern, i) > half) i += way;
    if (i == place.top || i < place.from || i > place.to) continue;
    const double seen = 2 * std::fabs(static_cast<double>(pattern.x[i] - pattern.x[place.top]));
    if (width == 0 || seen < width) width = seen;
  }
  return width;
}

std::vector<Place> FindPlaces(const FittedPattern& pattern, std::span<const float> positions) {
  std::vector<Place> places;
  for (int row = 0; row < static_cast<int>(positions.size()); ++row) {
    const float at = positions[row];
    if (!(at >= pattern.x.front() && at <= pattern.x.back())) continue;
    const int point = NearestPoint(pattern.x, at);
    const double step = StepAt(pattern.x, point);
    if (!(step > 0)) continue;
    if (!places.empty() && !(at - positions[places.back().row] > kNearest * step)) continue;
    places.push_back({row, 0, static_cast<int>(pattern.x.size()) - 1, point});
  }
  for (std::size_t k = 1; k < places.size(); ++k)
    places[k - 1].to = places[k].from = (places[k - 1].top + places[k].top) / 2;
  for (Place& place : places) {
    const int first = std::max(place.from, place.top - kTopReach);
    const int last = std::min(place.to, place.top + kTopReach);
    for (int i = first; i <= last; ++i)
      if (Net(pattern, i) > Net(pattern, place.top)) place.top = i;
  }
  return places;
}

ListedPeak StartPeak(const FittedPattern& pattern, const Place& place, float position, double width,
                     double usual) {
  ListedPeak peak;
  peak.row = place.row;
  peak.peak = {.position = position, .left = width, .right = width};
  const double counts = std::max(1.0, static_cast<double>(pattern.y[place.top]));
  const double height = Net(pattern, place.top);
  peak.peak.area = AreaOfHeight(peak.peak, height > 0 ? height : std::sqrt(counts));
  peak.limits = {std::max(position - width, static_cast<double>(pattern.x.front())),
                 std::min(position + width, static_cast<double>(pattern.x.back())),
                 std::min(width, usual) / kWidthRange, std::max(width, usual) * kWidthRange};
  return peak;
}

double RightEnd(const ListedPeak& peak, const FitWavelengths& lines) {
  return Alpha2Position(peak.peak.position, lines) + kOverlap * peak.peak.Fwhm();
}

// Adds the run to the groups; cut, if it is too long, in the widest gap of its middle half, so that
// equal distances are halved.
void AddRun(std::span<const ListedPeak> run, std::vector<PeakGroup>& groups) {
  if (run.size() <= kMostTogether) {
    groups.emplace_back().peaks.assign(run.begin(), run.end());
    return;
  }
  const auto gap = [&](std::size_t k) { return run[k].peak.position - run[k - 1].peak.position; };
  std::size_t cut = run.size() / 2;
  for (std::size_t k = run.size() / 4; k <= run.size() - run.size() / 4; ++k)
    if (gap(k) > gap(cut)) cut = k;
  AddRun(run.first(cut), groups);
  AddRun(run.subspan(cut), groups);
}

// A group takes its margins, but nothing that is nearer to another.
void SetRanges(std::vector<PeakGroup>& groups, const FitWavelengths& lines) {
  for (PeakGroup& group : groups) {
    const SplitPeak &first = group.peaks.front().peak, &last = group.peaks.back().peak;
    group.from = first.position - kMargin * first.Fwhm();
    group.to = Alpha2Position(last.position, lines) + kMargin * last.Fwhm();
  }
  for (std::size_t k = 1; k < groups.size(); ++k) {
    const SplitPeak &before = groups[k - 1].peaks.back().peak,
                    &behind = groups[k].peaks.front().peak;
    const double middle = (Alpha2Position(before.position, lines) + behind.position) / 2;
    groups[k - 1].to =
        std::min(groups[k - 1].to, std::max(middle, before.position + before.Fwhm()));
    groups[k].from = std::max(groups[k].from, std::min(middle, behind.position - behind.Fwhm()));
  }
}

}  // namespace

double UsualWidth(std::vector<double> widths) {
  std::erase(widths, 0.0);
  if (widths.empty()) return 0;
  const auto middle = widths.begin() + std::ssize(widths) / 2;
  std::ranges::nth_element(widths, middle);
  return *middle;
}

std::vector<ListedPeak> StartPeaks(const FittedPattern& pattern, std::span<const float> positions) {
  if (pattern.x.size() < 2) return {};
  const std::vector<Place> places = FindPlaces(pattern, positions);
  std::vector<double> widths;
  for (const Place& place : places) widths.push_back(SeenWidth(pattern, place));
  const double usual = UsualWidth(widths);
  std::vector<ListedPeak> peaks;
  for (std::size_t k = 0; k < places.size(); ++k) {
    const double step = StepAt(pattern.x, places[k].top);
    const double middle = usual > 0 ? usual : kUsualWidth * step;
    const double seen = widths[k] > 0 ? widths[k] : middle;
    const double width =
        std::max(step, std::clamp(seen, kNarrowStart * middle, kBroadStart * middle));
    peaks.push_back(StartPeak(pattern, places[k], positions[places[k].row], width, middle));
    if (k == 0) continue;
    PeakLimits &before = peaks[k - 1].limits, &behind = peaks[k].limits;
    const double low = peaks[k - 1].peak.position, high = peaks[k].peak.position;
    before.highest = std::min(before.highest, high - kKept * (high - low));
    behind.lowest = std::max(behind.lowest, low + kKept * (high - low));
  }
  return peaks;
}

std::vector<PeakGroup> GroupPeaks(std::span<const ListedPeak> peaks, const FitWavelengths& lines) {
  std::vector<PeakGroup> groups;
  std::size_t first = 0;
  double end = 0;
  for (std::size_t k = 0; k < peaks.size(); ++k) {
    const SplitPeak& peak = peaks[k].peak;
    if (k > first && peak.position - kOverlap * peak.Fwhm() > end) {
      AddRun(peaks.subspan(first, k - first), groups);
      first = k;
    }
    const double right = RightEnd(peaks[k], lines);
    end = k == first ? right : std::max(end, right);
  }
  if (first < peaks.size()) AddRun(peaks.subspan(first), groups);
  SetRanges(groups, lines);
  return groups;
}
