// Tetragonal and hexagonal cells: two lines tell the constants.
#include <algorithm>
#include <cmath>

#include "index/find/searches.h"

namespace {

constexpr std::size_t kBaseLines = 9;
constexpr int kMostOfFirst = 45;  // positions up to the last line of the first check

// The first values of the form of h and k, and the largest l to each: a long c axis shows in lines
// of small h and k.
struct BaseIndices {
  int form, mostl;
};
constexpr std::array<BaseIndices, 10> kTetragonal = {
    {{0, 30}, {1, 24}, {2, 24}, {4, 12}, {5, 12}, {8, 8}, {9, 8}, {10, 8}, {13, 4}, {16, 4}}};
constexpr std::array<BaseIndices, 10> kHexagonal = {
    {{0, 30}, {1, 24}, {3, 24}, {4, 12}, {7, 12}, {9, 8}, {12, 8}, {13, 8}, {16, 4}, {19, 4}}};

struct HkForm {
  int value;
  int h, k;
};

// One h and k for each value of the form up to a limit.
std::vector<HkForm> Forms(bool hexagonal, int most) {
  std::vector<HkForm> forms;
  for (int h = 0; h * h <= most; ++h)
    for (int k = 0; k <= h; ++k)
      if (const int value = h * h + k * k + (hexagonal ? h * k : 0); value <= most)
        forms.push_back({value, h, k});
  std::ranges::stable_sort(forms, {}, &HkForm::value);
  return forms;
}

class Uniaxial {
 public:
  Uniaxial(bool hexagonal, const SearchLines& lines, TrialList& list)
      : hexagonal_(hexagonal), lines_(lines), list_(list), forms_(Forms(hexagonal, 400)) {}

  void Search() {
    const auto& base = hexagonal_ ? kHexagonal : kTetragonal;
    const std::size_t n = std::min(kBaseLines, lines_.q.size());
    for (const BaseIndices& one : base)
      for (int l1 = 0; l1 <= one.mostl; ++l1)
        for (const BaseIndices& other : base)
          for (int l2 = 0; l2 <= other.mostl; ++l2) {
            const double determinant = one.form * l2 * l2 - other.form * l1 * l1;
            if (determinant == 0) continue;
            for (std::size_t i = 0; i < n; ++i)
              for (std::size_t j = i + 1; j < n; ++j) {
                const double a = (lines_.q[i] * l2 * l2 - lines_.q[j] * l1 * l1) / determinant;
                const double c = (one.form * lines_.q[j] - other.form * lines_.q[i]) / determinant;
                if (a > kLeastSquare && c > kLeastUniaxial && PassesFirst(a, c)) Try(a, c);
              }
          }
  }

 private:
  bool hexagonal_;
  const SearchLines& lines_;
  TrialList& list_;
  std::vector<HkForm> forms_;

  // Calls see(q, form, l) for each position up to `most` until it returns false. Of equal forms the
  // first is enough: 5 0 and 4 3 have the same parities and remainders as far as a centering asks.
  template <typename See>
  void ForPositions(double a, double c, float most, const See& see) const {
    const float fa = static_cast<float>(a), fc = static_cast<float>(c);
    int last = -1;
    for (const HkForm& form : forms_) {
      const float hk = fa * static_cast<float>(form.value);
      if (hk > most) return;
      if (form.value == last) continue;
      last = form.value;
      for (int l = form.value == 0 ? 1 : 0;; ++l) {
        const float q = hk + fc * static_cast<float>(l * l);
        if (q > most) break;
        if (!see(q, form, l)) return;
      }
    }
  }

  bool PassesFirst(double a, double c) const {
    std::uint32_t hit = 0;
    int positions = 0;
    ForPositions(a, c, lines_.first.Most(), [&](float q, const HkForm&, int) {
      hit |= lines_.first.At(q);
      return ++positions <= kMostOfFirst;
    });
    return positions <= kMostOfFirst && std::popcount(hit) >= lines_.leastoffirst;
  }

  void Try(double a, double c) const {
    constexpr int kMost = 3 * kMostPositions;  // of which R has a third
    ParityCounts counts;
    ParityCounts obverse;  // all of R in one class
    int total = 0;
    ForPositions(a, c, lines_.second.Most(), [&](float q, const HkForm& form, int l) {
      const std::uint32_t line = lines_.second.At(q);
      counts.Add(static_cast<unsigned>((form.h & 1) << 2 | (form.k & 1) << 1 | (l & 1)), line);
      if ((form.h - form.k + l) % 3 == 0 || (form.k - form.h + l) % 3 == 0) obverse.Add(0, line);
      return ++total <= kMost;
    });
    if (total > kMost) return;
    if (!hexagonal_) {
      AddCentered(lines_, {a, a, c, 0, 0, 0}, counts, std::array{kP, kI}, list_);
      return;
    }
    const Form form{a, a, c, a, 0, 0};
    AddCentered(lines_, form, counts, std::array{kP}, list_);
    AddCentered(lines_, form, obverse, std::array{CenteringClasses{'R', 0xFF}}, list_);
  }
};

}  // namespace

void SearchForTetragonal(const SearchLines& lines, TrialList& list) {
  Uniaxial(false, lines, list).Search();
}

void SearchForHexagonal(const SearchLines& lines, TrialList& list) {
  Uniaxial(true, lines, list).Search();
}
