// The positions that a lattice calculates, and the lines that lie on them.
#include "index/find/positions.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "index/find/limits.h"

namespace {

std::vector<CalculatedReflection> ReflectionsUpTo(double most, const Form& reciprocal,
                                                  double mostreflections) {
  const Form direct = Reciprocal(reciprocal);
  const double volume = std::sqrt(Determinant(direct));
  const double expected = 2 * std::numbers::pi / 3 * most * std::sqrt(most) * volume;
  if (!(expected < mostreflections)) return {};
  const auto bound = [&](std::size_t axis) {
    return static_cast<int>(std::sqrt(most * direct[axis]) + 1e-6);
  };
  // A lattice like a needle has more indices to try than reflections.
  if (!(direct[0] < kLongestEdge * kLongestEdge && direct[1] < kLongestEdge * kLongestEdge &&
        direct[2] < kLongestEdge * kLongestEdge))
    return {};
  const int kmost = bound(1), lmost = bound(2);
  std::vector<CalculatedReflection> reflections;
  for (int h = 0; h <= bound(0); ++h)
    for (int k = h == 0 ? 0 : -kmost; k <= kmost; ++k)
      for (int l = h == 0 && k == 0 ? 1 : -lmost; l <= lmost; ++l)
        if (const double q = Value(reciprocal, {h, k, l}); q <= most)
          reflections.push_back({q, {h, k, l}});
  std::ranges::sort(reflections, {}, &CalculatedReflection::q);
  return reflections;
}

class Matcher {
 public:
  Matcher(std::span<const ObservedLine> lines, double zero) : lines_(lines), zero_(zero) {}

  void Gather(MatchedPositions& m) const {
    const auto& r = m.reflections;
    std::size_t line = 0;
    for (std::size_t i = 0; i < r.size();) {
      while (line + 1 < lines_.size() && Place(line) < r[i].q) ++line;
      const double same = kSameLine * lines_[line].width * lines_[line].slope;
      double sum = r[i].q;
      std::size_t end = i + 1;
      for (; end < r.size() && r[end].q - r[i].q < same; ++end) {
        if (Parted(r[end - 1].q, r[end].q, line) || Parted(r[end - 1].q, r[end].q, line + 1)) break;
        sum += r[end].q;
      }
      m.positions.push_back({sum / static_cast<double>(end - i), r[end - 1].q - r[i].q, i, end});
      i = end;
    }
  }

  void Match(MatchedPositions& m) const {
    if (m.positions.empty()) return;
    std::size_t at = 0;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      while (at + 1 < m.positions.size() && Off(m.positions[at + 1], i) < Off(m.positions[at], i))
        ++at;
      CalculatedPosition& p = m.positions[at];
      if (Off(p, i) > kMatchWindow * lines_[i].width + p.spread / 2 / lines_[i].slope) continue;
      if (p.line >= 0 && Off(p, static_cast<std::size_t>(p.line)) <= Off(p, i)) continue;
      if (p.line < 0) ++m.hits;
      p.line = static_cast<int>(i);
    }
  }

 private:
  std::span<const ObservedLine> lines_;
  double zero_;

  double Place(std::size_t i) const { return lines_[i].q - zero_ * lines_[i].slope; }

  double Off(const CalculatedPosition& p, std::size_t i) const {
    return std::abs(DeviationOf(lines_[i], p.q, zero_));
  }

  // Whether the pattern has told two reflections apart after all, with line i - 1 on the first and
  // line i on the other.
  bool Parted(double q, double next, std::size_t i) const {
    if (i == 0 || i >= lines_.size()) return false;
    const double before = Place(i - 1), after = Place(i),
                 window = kMatchWindow * lines_[i].width * lines_[i].slope;
    return before + after > 2 * q && before + after < 2 * next && std::abs(before - q) < window &&
           std::abs(after - next) < window;
  }
};

}  // namespace

MatchedPositions MatchLines(std::span<const ObservedLine> lines, const Form& reciprocal,
                            double zero, double most) {
  const ObservedLine& last = lines.back();
  MatchedPositions m;
  m.reflections = ReflectionsUpTo(last.q + (last.width - zero) * last.slope, reciprocal, most);
  const Matcher matcher(lines, zero);
  matcher.Gather(m);
  matcher.Match(m);
  return m;
}
