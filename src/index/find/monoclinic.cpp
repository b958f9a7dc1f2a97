// Monoclinic cells: four lines tell the constants of A h^2 + B k^2 + C l^2 + E hl.
#include <algorithm>
#include <cmath>
#include <optional>

#include "index/find/monoclinic.h"

namespace {

constexpr int kMostOfFirst = 70;  // positions up to the last line of the first check

constexpr std::size_t kBaseLines = 7;

// How many of the simplest indices the first to fourth base line are given, which stand in the
// order of the lines.
constexpr std::array<std::size_t, 4> kIndices = {16, 24, 32, 40};

// The larger the squares the later; of equal ones those with h and l of one sign, which lie further
// out in a reduced zone, and those with k.
double Complexity(const Hkl& r) {
  return r.h * r.h + r.k * r.k + r.l * r.l + (r.h * r.l > 0 ? 0.5 : 0) + 0.1 * std::abs(r.k);
}

std::vector<Hkl> SimplestIndices() {
  std::vector<Hkl> indices;
  for (int h = -4; h <= 4; ++h)
    for (int k = 0; k <= 4; ++k)
      for (int l = 0; l <= 4; ++l)
        if (l > 0 || h > 0 || (h == 0 && k > 0)) indices.push_back({h, k, l});
  std::ranges::stable_sort(indices, {}, Complexity);
  indices.resize(kIndices.back());
  return indices;
}

using Row = std::array<double, 4>;  // of A, B, C and E

Row RowOf(const Hkl& r) {
  const Form t = TermsOf(r);
  return {t[0], t[1], t[2], t[4]};
}

double Dot(const Row& a, const Row& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
}

// The metrics that three lines of given indices leave: q1 unit[0] + q2 unit[1] + q3 unit[2] + t
// null, with any t.
struct Family {
  std::array<Row, 3> unit;
  Row null;
};

// None if the indices depend on each other.
std::optional<Family> FamilyOf(const std::array<Row, 3>& rows) {
  const auto without = [&](std::size_t out) {
    Axes minor;
    for (std::size_t row = 0; row < 3; ++row)
      for (std::size_t x = 0, at = 0; x < 4; ++x)
        if (x != out) minor[row][at++] = rows[row][x];
    return minor;
  };
  Family family;
  std::size_t out = 0;  // the constant that is left to t
  for (std::size_t x = 0; x < 4; ++x) {
    family.null[x] = (x % 2 == 0 ? 1 : -1) * Determinant(without(x));
    if (std::abs(family.null[x]) > std::abs(family.null[out])) out = x;
  }
  if (family.null[out] == 0) return std::nullopt;
  const Axes inverse = Inverse(without(out));
  for (std::size_t line = 0; line < 3; ++line)
    for (std::size_t x = 0, at = 0; x < 4; ++x)
      family.unit[line][x] = x == out ? 0 : inverse[at++][line];
  return family;
}

struct Range {
  double least = -1e9, most = 1e9;
  // Keeps where value + t slope >= 0; false if nothing is left.
  bool Keep(double value, double slope) {
    if (slope > 0) least = std::max(least, -value / slope);
    if (slope < 0) most = std::min(most, -value / slope);
    return least <= most && (slope != 0 || value >= 0);
  }
};

// The t that leave a reduced zone, A <= C and -A <= E <= 0, and axes within their limits.
std::optional<Range> RangeOf(const Row& base, const Row& null) {
  constexpr double kSlack = 0.01 * kLeastSquare;
  Range t;
  if (t.Keep(base[0] - kLeastSquare, null[0]) && t.Keep(base[1] - kLeastSquare, null[1]) &&
      t.Keep(base[2] - base[0] + kSlack, null[2] - null[0]) && t.Keep(kSlack - base[3], -null[3]) &&
      t.Keep(base[0] + base[3] + kSlack, null[0] + null[3]))
    return t;
  return std::nullopt;
}

class Monoclinic {
 public:
  Monoclinic(const SearchLines& lines, TrialList& list)
      : lines_(lines), list_(list), n_(std::min(kBaseLines, lines.q.size())) {
    for (const Hkl& r : SimplestIndices()) rows_.push_back(RowOf(r));
  }

  void Search() {
    for (std::size_t i = 0; i < kIndices[0]; ++i)
      for (std::size_t j = 0; j < kIndices[1]; ++j)
        for (std::size_t k = 0; k < kIndices[2]; ++k)
          if (const auto family = FamilyOf({rows_[i], rows_[j], rows_[k]})) Search(*family);
  }

 private:
  // The fourth line with its indices: what t gains by each unit of Q.
  struct FourthLine {
    const Row* row;
    double gain;
  };
  const SearchLines& lines_;
  TrialList& list_;
  std::size_t n_;
  std::vector<Row> rows_;
  std::vector<FourthLine> fourths_;

  void Search(const Family& family) {
    fourths_.clear();
    for (const Row& row : rows_)
      if (const double along = Dot(row, family.null); along != 0)
        fourths_.push_back({&row, 1 / along});
    const auto& q = lines_.q;
    const auto& [unit, null] = family;
    for (std::size_t a = 0; a < n_; ++a)
      for (std::size_t b = a + 1; b < n_; ++b)
        for (std::size_t c = b + 1; c + 1 < n_; ++c) {
          Row base;
          for (std::size_t x = 0; x < 4; ++x)
            base[x] = unit[0][x] * q[a] + unit[1][x] * q[b] + unit[2][x] * q[c];
          if (const auto range = RangeOf(base, null)) Slide(base, null, *range, c + 1);
        }
  }

  void Slide(const Row& base, const Row& null, const Range& range, std::size_t first) {
    for (const auto& [row, gain] : fourths_) {
      const double start = Dot(*row, base);
      for (std::size_t d = first; d < n_; ++d) {
        const double t = (lines_.q[d] - start) * gain;
        if (t < range.least || t > range.most) continue;
        const MonoclinicForm form{base[0] + t * null[0], base[1] + t * null[1],
                                  base[2] + t * null[2], base[3] + t * null[3]};
        if (PassesFirst(form, lines_)) Try(form, lines_, list_);
      }
    }
  }
};

}  // namespace

bool PassesFirst(const MonoclinicForm& form, const SearchLines& lines) {
  const auto a = static_cast<float>(form.a), b = static_cast<float>(form.b),
             c = static_cast<float>(form.c), e = static_cast<float>(form.e);
  const float most = lines.first.Most();
  std::uint32_t hit = 0;
  int positions = -1;  // 000 is none
  // The positions of one h and l; false if the first is beyond the range.
  const auto column = [&](int h, float el, float cl) {
    const float fh = static_cast<float>(h), zone = fh * (a * fh + el) + cl;
    if (zone > most) return false;
    for (int k = 0;; ++k) {
      const float q = zone + b * static_cast<float>(k * k);
      if (q > most) return true;
      hit |= lines.first.At(q);
      ++positions;
    }
  };
  for (int l = 0;; ++l) {
    const float fl = static_cast<float>(l), el = e * fl, cl = c * fl * fl;
    const int middle = static_cast<int>(-el / (2 * a));
    bool inside = false;
    for (int h = middle; (l > 0 || h == 0) && column(h, el, cl); --h) inside = true;
    for (int h = middle + 1; column(h, el, cl); ++h) inside = true;
    if (!inside) break;
    if (positions > kMostOfFirst) return false;
  }
  return std::popcount(hit) >= lines.leastoffirst;
}

void Try(const MonoclinicForm& form, const SearchLines& lines, TrialList& list) {
  const auto [a, b, c, e] = form;
  const double most = lines.second.Most();
  ParityCounts counts;
  int total = 0;
  // For each l the h that stay within the range lie about -E l / 2 A.
  for (int l = 0;; ++l) {
    const double middle = -e * l / (2 * a), lowest = l * l * (c - e * e / (4 * a));
    if (lowest > most) break;
    const double reach = std::sqrt((most - lowest) / a);
    for (int h = static_cast<int>(std::ceil(middle - reach));
         h <= static_cast<int>(std::floor(middle + reach)); ++h) {
      if (l == 0 && h < 0) continue;
      const double zone = a * h * h + c * l * l + e * h * l;
      for (int k = 0;; ++k) {
        const double q = zone + b * k * k;
        if (q > most) break;
        if (h == 0 && k == 0 && l == 0) continue;
        if (++total > 2 * kMostPositions) return;
        counts.Add(static_cast<unsigned>((h & 1) << 2 | (k & 1) << 1 | (l & 1)),
                   lines.second.At(static_cast<float>(q)));
      }
    }
  }
  AddCentered(lines, {a, b, c, 0, e, 0}, counts, std::array{kP, kA, kC, kI}, list);
}

void SearchForMonoclinic(const SearchLines& lines, TrialList& list) {
  Monoclinic(lines, list).Search();
}
