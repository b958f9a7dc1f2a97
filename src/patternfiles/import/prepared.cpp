// A measured scan as the workbench can hold it.
#include "patternfiles/import/prepared.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>
#include <string_view>

namespace {

struct Point {
  double tth, counts, esd;
};

// Not a number where there is none.
double TwoThetaOf(ScanAxis axis, double x, double wavelength) {
  if (axis == ScanAxis::TwoTheta) return x;
  const double sine =
      axis == ScanAxis::D ? wavelength / (2 * x) : x * wavelength / (4 * std::numbers::pi);
  return 2 * std::asin(sine) * 180 / std::numbers::pi;
}

void Note(std::string& note, const std::string& text) { note += (note.empty() ? "" : "; ") + text; }

std::string Points(std::size_t n) { return std::to_string(n) + (n == 1 ? " point" : " points"); }

// Whether a diffractometer can have the angle, and 32 bits the counts; an e.s.d. may be missing.
bool IsPoint(const Point& point) {
  constexpr double kMostTwoTheta = 360, kMost = std::numeric_limits<float>::max();
  return std::abs(point.tth) <= kMostTwoTheta && std::abs(point.counts) <= kMost &&
         !(std::abs(point.esd) > kMost);
}

// By rising two-theta.
std::vector<Point> PointsOf(const MeasuredScan& scan, double wavelength) {
  std::vector<Point> points;
  points.reserve(scan.x.size());
  for (std::size_t i = 0; i < scan.x.size(); ++i)
    points.push_back({TwoThetaOf(scan.axis, scan.x[i], wavelength), scan.counts[i],
                      scan.esd.empty() ? 0 : scan.esd[i]});
  std::erase_if(points, [](const Point& point) { return !IsPoint(point); });
  if (!std::ranges::is_sorted(points, {}, &Point::tth))
    std::ranges::stable_sort(points, {}, &Point::tth);
  const auto same = [](const Point& a, const Point& b) {
    return static_cast<float>(a.tth) == static_cast<float>(b.tth);
  };
  points.erase(std::unique(points.begin(), points.end(), same), points.end());
  return points;
}

// Each `factor` points become one; the last ones that are fewer go.
void Merge(std::vector<Point>& points, std::size_t factor) {
  const std::size_t n = points.size() / factor;
  for (std::size_t i = 0; i < n; ++i) {
    Point sum{};
    for (std::size_t k = 0; k < factor; ++k) {
      sum.tth += points[i * factor + k].tth;
      sum.counts += points[i * factor + k].counts;
      sum.esd = std::hypot(sum.esd, points[i * factor + k].esd);
    }
    points[i] = {sum.tth / static_cast<double>(factor), sum.counts, sum.esd};
  }
  points.resize(n);
  std::erase_if(points, [](const Point& point) { return !IsPoint(point); });
}

// Steps are rounded in many files.
bool HasEvenSteps(std::span<const Point> points) {
  constexpr double kTolerance = 0.1, kRounding = 0.0011;
  if (points.size() < 3) return true;
  const double step =
      (points.back().tth - points.front().tth) / static_cast<double>(points.size() - 1);
  for (std::size_t i = 1; i < points.size(); ++i)
    if (std::abs(points[i].tth - points[i - 1].tth - step) > std::max(kTolerance * step, kRounding))
      return false;
  return true;
}

}  // namespace

bool NeedsWavelength(const MeasuredScan& scan) {
  return scan.axis != ScanAxis::TwoTheta && !(scan.wavelengths[0] > 0);
}

PreparedPattern Prepared(const MeasuredScan& scan, double wavelength, std::size_t mostpoints) {
  std::vector<Point> points =
      PointsOf(scan, NeedsWavelength(scan) ? wavelength : scan.wavelengths[0]);
  PreparedPattern pattern;
  if (const std::size_t lost = scan.x.size() - points.size(); lost > 0)
    Note(pattern.note, Points(lost) + " left out, at no two-theta of their own");
  if (points.size() > mostpoints) {
    const std::size_t factor = (points.size() + mostpoints - 1) / mostpoints;
    Note(pattern.note,
         Points(points.size()) + " merged by " + std::to_string(factor) + ", counts added");
    Merge(points, factor);
  }
  if (!HasEvenSteps(points)) Note(pattern.note, "uneven steps");
  for (std::vector<float>* column : {&pattern.tth, &pattern.counts}) column->reserve(points.size());
  for (const Point& point : points) {
    pattern.tth.push_back(static_cast<float>(point.tth));
    pattern.counts.push_back(static_cast<float>(point.counts));
    if (!scan.esd.empty()) pattern.esd.push_back(static_cast<float>(point.esd));
  }
  return pattern;
}

MeasuredScan SumOf(std::span<const MeasuredScan> scans) {
  constexpr double kTolerance = 0.1;
  MeasuredScan sum = scans.front();
  const std::size_t n = sum.x.size();
  const double step = n > 1 ? std::abs(sum.x[1] - sum.x[0]) : 1;
  for (const MeasuredScan& scan : scans.subspan(1)) {
    const bool same = scan.axis == sum.axis && scan.x.size() == n;
    if (!same || std::abs(scan.x.front() - sum.x.front()) > kTolerance * step ||
        std::abs(scan.x.back() - sum.x.back()) > kTolerance * step)
      throw NotReadable("the scans have different positions and cannot be added");
    for (std::size_t i = 0; i < n; ++i) sum.counts[i] += scan.counts[i];
    if (scan.esd.size() == n && sum.esd.size() == n)
      for (std::size_t i = 0; i < n; ++i) sum.esd[i] = std::hypot(sum.esd[i], scan.esd[i]);
    else
      sum.esd.clear();
    sum.seconds += scan.seconds;
  }
  return sum;
}

std::vector<std::size_t> ScanNumbers(std::string_view text, std::size_t most) {
  std::vector<std::size_t> numbers;
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto blanks = [&] {
    while (at != end && *at == ' ') ++at;
  };
  const auto number = [&](std::size_t& n) {
    blanks();
    const auto [behind, error] = std::from_chars(at, end, n);
    at = behind;
    blanks();
    return error == std::errc() && n >= 1 && n <= most;
  };
  do {
    std::size_t first = 0;
    if (!number(first)) return {};
    std::size_t last = first;
    if (at != end && *at == '-' && (++at, !number(last))) return {};
    for (std::size_t n = first; n <= last; ++n)
      if (std::ranges::count(numbers, n) == 0) numbers.push_back(n);
  } while (at != end && *at == ',' && ++at);
  return at == end ? numbers : std::vector<std::size_t>{};
}
