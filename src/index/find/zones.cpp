// Planes of the reciprocal lattice.
#include "index/find/zones.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr std::size_t kBaseLines = 10;
constexpr int kMostPositions2D = 60;
constexpr int kLeastHits = 4;
// Squares of the index of a base line: low orders may be absent.
constexpr std::array<int, 4> kOrders = {1, 4, 9, 16};
// Lines that the angle is read from.
constexpr std::array<std::array<int, 2>, 6> kMixed = {
    {{1, 1}, {1, -1}, {2, 1}, {2, -1}, {1, 2}, {1, -2}}};

void Reduce(ReciprocalPlane& z) {
  for (int step = 0; step < 10; ++step) {
    if (z.a > z.c) std::swap(z.a, z.c);
    if (z.e > 0) z.e = -z.e;
    if (z.e >= -z.a * 1.001) return;
    z.c += z.a + z.e;
    z.e += 2 * z.a;
  }
}

class ZoneSearch {
 public:
  ZoneSearch(const SearchLines& lines, std::size_t most) : lines_(lines), most_(most) {
    const std::size_t n = std::min(kBaseLines, lines.q.size());
    for (std::size_t i = 0; i < n; ++i)
      for (int order : kOrders) bases_.push_back(lines.q[i] / order);
    std::erase_if(bases_, [](double q) { return q < kLeastSquare; });
  }

  std::vector<ReciprocalPlane> Best() {
    for (double a : bases_)
      for (double c : bases_) {
        if (c < a) continue;
        Test({a, c, 0, 0, 0});
        for (std::size_t i = 0; i < std::min(kBaseLines, lines_.q.size()); ++i)
          for (const auto& [h, l] : kMixed) {
            const double e = (lines_.q[i] - a * h * h - c * l * l) / (h * l);
            if (e < 0 && e >= -2 * a) Test({a, c, e, 0, 0});
          }
      }
    Cut();
    return std::move(zones_);
  }

 private:
  const SearchLines& lines_;
  std::size_t most_;
  std::vector<double> bases_;
  std::vector<ReciprocalPlane> zones_;
  double worst_ = -1;

  void Cut() {
    std::ranges::sort(zones_, std::ranges::greater{}, &ReciprocalPlane::score);
    if (zones_.size() <= most_) return;
    zones_.resize(most_);
    worst_ = zones_.back().score;
  }

  void Test(ReciprocalPlane z) {
    if (z.e < -z.a) Reduce(z);
    if (z.a < kLeastSquare) return;
    const double most = lines_.second.Most();
    int positions = -1;
    for (int l = 0;; ++l) {
      const double middle = -z.e * l / (2 * z.a), lowest = l * l * (z.c - z.e * z.e / (4 * z.a));
      if (lowest > most) break;
      const double reach = std::sqrt((most - lowest) / z.a);
      const int first = l == 0 ? 0 : static_cast<int>(std::ceil(middle - reach));
      const int last = static_cast<int>(std::floor(middle + reach));
      for (int h = first; h <= last; ++h)
        z.hit |= lines_.second.At(std::min(
            lines_.second.Most(), static_cast<float>(h * (z.a * h + z.e * l) + z.c * l * l)));
      positions += last - first + 1;
      if (positions > kMostPositions2D) return;
    }
    const int hits = std::popcount(z.hit);
    if (hits < kLeastHits) return;
    z.score = lines_.chance.Score(hits, positions);
    if (z.score <= worst_) return;
    for (ReciprocalPlane& other : zones_)
      if (IsSame(z, other)) {
        if (other.score < z.score) other = z;
        return;
      }
    zones_.push_back(z);
    if (zones_.size() >= 2 * most_) Cut();
  }

  static bool IsSame(const ReciprocalPlane& x, const ReciprocalPlane& y) {
    const double tolerance = kSameMetric * x.c;
    return std::abs(x.a - y.a) < tolerance && std::abs(x.c - y.c) < tolerance &&
           std::abs(x.e - y.e) < tolerance;
  }
};

}  // namespace

std::vector<ReciprocalPlane> BestZones(const SearchLines& lines, std::size_t most) {
  return ZoneSearch(lines, most).Best();
}
