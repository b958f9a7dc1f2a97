// Orthorhombic cells: three lines tell the constants.
#include <algorithm>
#include <cmath>

#include "index/find/searches.h"

namespace {

constexpr std::size_t kBaseLines = 8;
constexpr int kMostOfFirst = 60;

// Indices of a base line, with a* <= b* <= c*: the longer an axis, the higher they may be.
std::vector<Hkl> BaseIndices() {
  constexpr double kMostComplex = 1.05;
  std::vector<Hkl> indices;
  for (int h = 0; h <= 8; ++h)
    for (int k = 0; k <= 4; ++k)
      for (int l = 0; l <= 3; ++l)
        if (const double complexity = h / 8.0 + k / 4.0 + l / 3.0;
            complexity > 0 && complexity <= kMostComplex)
          indices.push_back({h, k, l});
  return indices;
}

class Orthorhombic {
 public:
  Orthorhombic(const SearchLines& lines, TrialList& list) : lines_(lines), list_(list) {}

  void Search(const Axes& solution) {
    const std::size_t n = std::min(kBaseLines, lines_.q.size());
    const auto& q = lines_.q;
    for (std::size_t i = 0; i < n; ++i)
      for (std::size_t j = i + 1; j < n; ++j) {
        const auto part = [&](std::size_t row) {
          return solution[row][0] * q[i] + solution[row][1] * q[j];
        };
        const double pa = part(0), pb = part(1), pc = part(2);
        for (std::size_t k = j + 1; k < n; ++k) {
          const double a = pa + solution[0][2] * q[k];
          if (!(a > kLeastSquare)) continue;
          const double b = pb + solution[1][2] * q[k];
          if (b < a * kInOrder) continue;
          const double c = pc + solution[2][2] * q[k];
          if (c < b * kInOrder) continue;
          if (PassesFirst(static_cast<float>(a), static_cast<float>(b), static_cast<float>(c)))
            Try(a, b, c);
        }
      }
  }

 private:
  static constexpr double kInOrder = 0.99;  // errors may turn the order of like axes
  const SearchLines& lines_;
  TrialList& list_;

  bool PassesFirst(float a, float b, float c) const {
    const float most = lines_.first.Most();
    std::uint32_t hit = 0;
    int positions = -1;  // 000 is none
    for (int l = 0;; ++l) {
      const float ql = c * static_cast<float>(l * l);
      if (ql > most) break;
      for (int k = 0;; ++k) {
        const float qk = ql + b * static_cast<float>(k * k);
        if (qk > most) break;
        for (int h = 0;; ++h) {
          const float q = qk + a * static_cast<float>(h * h);
          if (q > most) break;
          hit |= lines_.first.At(q);
          ++positions;
        }
        if (positions > kMostOfFirst) return false;
      }
    }
    return std::popcount(hit) >= lines_.leastoffirst;
  }

  void Try(double a, double b, double c) const {
    const auto most = lines_.second.Most();
    ParityCounts counts;
    int total = 0;
    for (int l = 0;; ++l) {
      const double ql = c * l * l;
      if (ql > most) break;
      for (int k = 0;; ++k) {
        const double qk = ql + b * k * k;
        if (qk > most) break;
        for (int h = 0;; ++h) {
          const auto q = static_cast<float>(qk + a * h * h);
          if (q > most) break;
          if (h + k + l == 0) continue;
          if (++total > 4 * kMostPositions) return;
          counts.Add(static_cast<unsigned>((h & 1) << 2 | (k & 1) << 1 | (l & 1)),
                     lines_.second.At(q));
        }
      }
    }
    AddCentered(lines_, {a, b, c, 0, 0, 0}, counts, std::array{kP, kA, kB, kC, kI, kF}, list_);
  }
};

Axes Squares(const Hkl& r, const Hkl& s, const Hkl& t) {
  Axes rows;
  std::size_t at = 0;
  for (const Hkl& x : {r, s, t}) {
    const Form terms = TermsOf(x);
    rows[at++] = {terms[0], terms[1], terms[2]};
  }
  return rows;
}

}  // namespace

void SearchForOrthorhombic(const SearchLines& lines, TrialList& list) {
  const std::vector<Hkl> indices = BaseIndices();
  Orthorhombic search(lines, list);
  for (const Hkl& r : indices)
    for (const Hkl& s : indices)
      for (const Hkl& t : indices) {
        const Axes rows = Squares(r, s, t);
        if (Determinant(rows) != 0) search.Search(Inverse(rows));
      }
}
