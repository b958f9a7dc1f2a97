#include "index/ito/lattices.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "index/ito/wholenumbers.h"

float Difference(const Lattice& one, const Lattice& other) {
  return std::abs(one.a - other.a) + std::abs(one.b - other.b) + std::abs(one.c - other.c) +
         std::abs(one.d - other.d) + std::abs(one.e - other.e) + std::abs(one.f - other.f);
}

namespace {

// A length of a zone, the constant of another row that makes the zone with it, and the cross
// constant of the two.
struct Length {
  float q, other, cross;
};

std::array<Length, 4> LengthsOf(const Zone& z) {
  return {{{z.a, z.b, z.f},
           {z.b, z.a, z.f},
           {z.a + z.b + z.f, z.a, 2 * z.a + z.f},
           {z.a + z.b - z.f, z.a, 2 * z.a - z.f}}};
}

Lattice Combine(const Length& one, const Length& other) {
  return {.a = (one.q + other.q) / 2,
          .b = one.other,
          .c = other.other,
          .e = other.cross,
          .f = one.cross};
}

}  // namespace

std::vector<Lattice> CombineZones(const Zone& first, const Zone& second, bool same) {
  constexpr float tolerance = 1.0f;
  constexpr std::size_t mostofself = 5;
  std::vector<Lattice> lattices;
  for (const Length& one : LengthsOf(first))
    for (const Length& other : LengthsOf(second))
      if (std::abs(one.q - other.q) <= tolerance && lattices.size() < (same ? mostofself : 1))
        lattices.push_back(Combine(one, other));
  return lattices;
}

namespace {

// Counts of trial values of d. The value of a mean bin is (0.5 + bin - origin) / scale.
struct DHistogram {
  TrialHistogram counts;
  int first = 1, last = 0;  // where windows begin
  float origin = 0, scale = 1;
};

// The q of h k l without the term of d.
float Base(const Lattice& x, int h, int k, int l) {
  return x.c * static_cast<float>(l * l) + x.b * static_cast<float>(k * k) +
         x.a * static_cast<float>(h * h) +
         (static_cast<float>(k) * x.f + static_cast<float>(l) * x.e) * static_cast<float>(h);
}

// Bins below zero are as wide as those above: a negative d is placed as well as a positive one.
void CountSkew(const Lattice& x, const ItoProblem& problem, float root, DHistogram& histogram) {
  constexpr int mostnegative = 2500;
  const float scale = histogram.scale;
  const int negative =
      std::min(Whole(0.5f + scale * (root - x.f * x.e) / (2.05f * x.a)), mostnegative);
  const int range = std::min(negative + Whole((x.f * x.e + root) * scale / (2.05f * x.a)),
                             TrialHistogram::kMostBins);
  for (int l = 1; l <= 2; ++l)
    for (int k = -2; k <= 2; ++k)
      for (int h = -2; k != 0 && h <= 2; ++h) {
        const float base = Base(x, h, k, l);
        for (const ItoLine& line : problem.lines) {
          const int bin =
              Whole(std::floor(0.5f + (line.q - base) * scale / static_cast<float>(k * l))) +
              negative;
          if (bin > 0 && bin <= range) histogram.counts.Count(bin);
        }
      }
  histogram.origin = static_cast<float>(negative);
  histogram.last = range - (TrialHistogram::kWindow - 1);
}

// For rectangular zones d and -d are the same, and d = 0 counts twice. Gives that count.
int CountOrthogonal(const Lattice& x, const ItoProblem& problem, float root,
                    DHistogram& histogram) {
  const float scale = histogram.scale;
  const int range = std::min(Whole(0.5f + scale * (root - x.f * x.e) / (2.05f * x.a)),
                             TrialHistogram::kMostBins / 2);
  for (int l = 1; l <= 2; ++l)
    for (int k = 1; k <= 2; ++k)
      for (int h = 0; h <= 2; ++h) {
        const float base = Base(x, h, k, l);
        for (const ItoLine& line : problem.lines) {
          const int bin = Whole(1.5f + std::abs(line.q - base) * scale / static_cast<float>(k * l));
          if (bin < range) histogram.counts.Count(bin);
        }
      }
  constexpr int asgoodaszero = 3;
  histogram.first = asgoodaszero;
  histogram.last = range - TrialHistogram::kWindow;
  histogram.origin = 1.5f;
  return 2 * histogram.counts.CountOf(1, asgoodaszero);
}

// Makes one of those that lie together.
void MergeClose(std::vector<Trial>& list, float tolerance) {
  for (auto one = list.begin(); one != list.end(); ++one)
    for (auto other = one + 1; other != list.end(); ++other) {
      if (one->count == 0 || other->count == 0 || std::abs(one->value - other->value) > tolerance)
        continue;
      const auto n = static_cast<float>(one->count), m = static_cast<float>(other->count);
      one->value = (one->value * n + other->value * m) / (n + m);
      other->count = 0;
    }
}

}  // namespace

std::vector<Lattice> Threed(const Lattice& lattice, const ItoProblem& problem) {
  constexpr std::size_t mostlisted = 8, mostkept = 4;
  constexpr float rectangular = 1.0f;
  const Lattice& x = lattice;
  const float root = std::sqrt((4 * x.a * x.c - x.e * x.e) * (4 * x.a * x.b - x.f * x.f));
  if (!(root > 0)) return {};
  const int threshold = static_cast<int>(problem.lines.size()) / 10 + 4;
  DHistogram histogram;
  histogram.scale = TrialHistogram::kWindow / problem.cards.tol3;
  std::vector<Trial> list;
  if (std::abs(x.f) + std::abs(x.e) > rectangular) {
    CountSkew(x, problem, root, histogram);
  } else {
    const int zero = CountOrthogonal(x, problem, root, histogram);
    if (zero >= threshold) list.push_back({0, zero});
  }
  histogram.counts.List({histogram.first, histogram.last, 1, threshold, mostlisted,
                         0.5f - histogram.origin, histogram.scale},
                        list);
  int least = 0;
  if (list.size() > 1) {
    MergeClose(list, problem.cards.tol3);
    least = list.front().count - 5;
  }
  std::vector<Lattice> found;
  for (const Trial& trial : list) {
    if (trial.count <= std::max(least, 0) || found.size() == mostkept) continue;
    found.push_back(lattice);
    found.back().d = trial.value;
    found.back().lines = static_cast<float>(trial.count);
  }
  return found;
}
