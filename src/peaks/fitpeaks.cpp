// The peaks of a list fitted one and all.
#include "peaks/fitpeaks.h"

#include <algorithm>
#include <cmath>

#include "peaks/peakgroups.h"

namespace {

// The second sweep knows the tails that reach into a group from all the others.
constexpr int kSweeps = 2;
constexpr double kTail = 20;        // FWHM to which a profile is drawn
constexpr double kSignificant = 3;  // e.s.d.s of the area from which on a peak is beyond doubt
// What a peak must be worth, in squares of a standard deviation: six parameters of nothing gain six
// on average, and rarely three times as much.
constexpr double kNeeded = 12;

struct PointRange {
  int first, end;
};

PointRange PointsWithin(std::span<const float> x, double from, double to) {
  const auto first = std::ranges::lower_bound(x, from);
  const auto end = std::upper_bound(first, x.end(), to);
  return {static_cast<int>(first - x.begin()), static_cast<int>(end - x.begin())};
}

// The pattern, and the sum of all peaks as they are known so far.
struct Sweep {
  const FittedPattern& pattern;
  const FitWavelengths& lines;
  std::vector<double> sum;
};

void AddPeaks(Sweep& sweep, const PeakGroup& group, double sign) {
  for (const ListedPeak& one : group.peaks) {
    const DoubletProfile profile(one.peak, sweep.lines);
    const double tail = kTail * one.peak.Fwhm();
    const PointRange range = PointsWithin(sweep.pattern.x, one.peak.position - tail,
                                          Alpha2Position(one.peak.position, sweep.lines) + tail);
    for (int i = range.first; i < range.end; ++i)
      sweep.sum[i] += sign * profile.At(sweep.pattern.x[i]);
  }
}

// The points of a group without what the peaks of others add to them.
GroupPoints TakePoints(const Sweep& sweep, const PeakGroup& group) {
  GroupPoints points;
  const PointRange range = PointsWithin(sweep.pattern.x, group.from, group.to);
  for (int i = range.first; i < range.end; ++i) {
    const double y = sweep.pattern.y[i];
    points.x.push_back(sweep.pattern.x[i]);
    points.y.push_back(y - sweep.sum[i]);
    points.weight.push_back(y > 0 ? 1 / y : 1);
  }
  return points;
}

// The line under a group through the estimate at its ends.
BackgroundLine StartLine(const FittedPattern& pattern, const PeakGroup& group) {
  const PointRange range = PointsWithin(pattern.x, group.from, group.to);
  if (range.end - range.first < 2) return {group.from};
  const double from = pattern.x[range.first], to = pattern.x[range.end - 1];
  const double left = pattern.background[range.first], right = pattern.background[range.end - 1];
  return {(from + to) / 2, (left + right) / 2, to > from ? (right - left) / (to - from) : 0};
}

// Of a peak whose area is unsure the points tell whether they need it: of two that overlap, areas
// can be unsure although both are needed.
bool Certain(const GroupPeak& peak) { return peak.peak.area > kSignificant * peak.areaesd; }
bool Doubtful(const ListedPeak& peak) { return !peak.needed && !Certain(peak); }

GroupResult Refine(const GroupPoints& points, PeakGroup& group, const FitWavelengths& lines) {
  std::vector<GroupPeak> peaks(group.peaks.begin(), group.peaks.end());
  const GroupResult result = FitGroup(points, peaks, group.background, lines);
  for (std::size_t k = 0; k < peaks.size(); ++k) static_cast<GroupPeak&>(group.peaks[k]) = peaks[k];
  return result;
}

// Fits a group, and takes out the peaks that the points have no need of.
void FitNeeded(const GroupPoints& points, PeakGroup& group, const FitWavelengths& lines) {
  GroupResult result = Refine(points, group, lines);
  group.rested = result.rested;
  while (group.rested) {
    const auto doubtful = std::ranges::find_if(group.peaks, Doubtful);
    if (doubtful == group.peaks.end()) return;
    doubtful->needed = true;
    PeakGroup without = group;
    without.peaks.erase(without.peaks.begin() + (doubtful - group.peaks.begin()));
    const GroupResult rest = Refine(points, without, lines);
    if (!rest.rested || rest.chi2 - result.chi2 > kNeeded * result.misfit) continue;
    group = without;
    result = rest;
  }
}

// Tells all peaks the width of those that are beyond doubt.
void TellUsualWidth(std::vector<PeakGroup>& groups) {
  std::vector<double> widths;
  for (const PeakGroup& group : groups)
    for (const ListedPeak& peak : group.peaks)
      if (group.rested && !peak.atlimit && Certain(peak)) widths.push_back(peak.peak.Fwhm());
  const double usual = UsualWidth(widths);
  if (usual == 0) return;
  for (PeakGroup& group : groups)
    for (ListedPeak& peak : group.peaks) peak.limits.usual = usual;
}

// False if the report has stopped it.
bool FitGroups(Sweep& sweep, std::vector<PeakGroup>& groups, int all, const PeaksReport& report) {
  int done = 0;  // by all sweeps, of `all` by each
  for (PeakGroup& group : groups) {
    group.background = StartLine(sweep.pattern, group);
    AddPeaks(sweep, group, 1);
  }
  for (int k = 0; k < kSweeps; ++k) {
    if (k > 0) TellUsualWidth(groups);
    for (PeakGroup& group : groups) {
      if (!report(done / kSweeps, all)) return false;
      done += static_cast<int>(group.peaks.size());
      AddPeaks(sweep, group, -1);
      FitNeeded(TakePoints(sweep, group), group, sweep.lines);
      AddPeaks(sweep, group, 1);
    }
  }
  return true;
}

PeakFit Judged(const ListedPeak& peak) {
  return {peak.peak.area > 0 && !peak.atlimit && peak.positionesd <= peak.peak.Fwhm(), peak.peak,
          peak.positionesd, peak.areaesd, peak.fwhmesd};
}

// Moves the points next to `edge`, up to `count` of them in direction `way`, by what fades from
// `offset` to nothing.
void Fade(std::vector<double>& background, int edge, int way, int count, double offset) {
  for (int k = 1; k <= count; ++k)
    background[edge + way * k] += offset * (count + 1 - k) / (count + 1);
}

// The lines under the groups, and between them the estimate, bent towards the lines over as many
// points as these have: further off, they do not know what lies there.
std::vector<double> JoinedBackground(const FittedPattern& pattern,
                                     std::span<const PeakGroup> groups) {
  std::vector<double> background(pattern.background.begin(), pattern.background.end());
  std::vector<std::pair<PointRange, const BackgroundLine*>> lines;
  for (const PeakGroup& group : groups) {
    PointRange range = PointsWithin(pattern.x, group.from, group.to);
    if (!lines.empty()) range.first = std::max(range.first, lines.back().first.end);
    if (group.rested && !group.peaks.empty() && range.first < range.end)
      lines.emplace_back(range, &group.background);
  }
  const auto above = [&](const BackgroundLine& line, int i) {
    return line.At(pattern.x[i]) - pattern.background[i];
  };
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const auto& [range, line] = lines[k];
    const int before = k == 0 ? 0 : lines[k - 1].first.end;
    const int behind = k + 1 < lines.size() ? lines[k + 1].first.first : std::ssize(background);
    const int count = range.end - range.first;
    Fade(background, range.first, -1, std::min(count, range.first - before),
         above(*line, range.first));
    Fade(background, range.end - 1, 1, std::min(count, behind - range.end),
         above(*line, range.end - 1));
    for (int i = range.first; i < range.end; ++i) background[i] = line->At(pattern.x[i]);
  }
  return background;
}

}  // namespace

PeakFits FitPeaks(const FittedPattern& pattern, std::span<const float> positions,
                  const FitWavelengths& lines, const PeaksReport& report) {
  PeakFits fits;
  fits.peaks.resize(positions.size());
  Sweep sweep{pattern, lines, std::vector<double>(pattern.x.size())};
  std::vector<PeakGroup> groups = GroupPeaks(StartPeaks(pattern, positions), lines);
  fits.stopped = !FitGroups(sweep, groups, static_cast<int>(positions.size()), report);
  if (fits.stopped) return fits;
  for (PeakGroup& group : groups) {
    const auto position = [](const ListedPeak& one) { return one.peak.position; };
    group.rested = group.rested && std::ranges::is_sorted(group.peaks, {}, position);
    if (!group.rested) AddPeaks(sweep, group, -1);
    for (const ListedPeak& peak : group.peaks)
      if (group.rested) fits.peaks[peak.row] = Judged(peak);
  }
  const std::vector<double> background = JoinedBackground(pattern, groups);
  for (std::size_t i = 0; i < background.size(); ++i)
    fits.curve.push_back(static_cast<float>(background[i] + sweep.sum[i]));
  return fits;
}
