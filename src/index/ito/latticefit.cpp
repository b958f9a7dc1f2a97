#include "index/ito/latticefit.h"

#include <algorithm>
#include <cmath>

#include "index/ito/lattices.h"
#include "index/ito/wholenumbers.h"

bool TypeAllows(int type, const Hkl& r) {
  const bool kl = (r.k + r.l) % 2 == 0, hl = (r.h + r.l) % 2 == 0, hk = (r.h + r.k) % 2 == 0;
  switch (type) {
    case TypeA:
      return kl;
    case TypeB:
      return hl;
    case TypeC:
      return hk;
    case TypeI:
      return (r.h + r.k + r.l) % 2 == 0;
    case TypeF:
      return kl && hl && hk;
    default:
      return true;
  }
}

namespace {

constexpr std::size_t kConstants = 6;
constexpr std::size_t kCounted = 20;  // lines of the figure of merit
using Row = std::array<float, kConstants>;

std::array<float*, kConstants> ConstantsOf(Lattice& x) {
  return {&x.a, &x.b, &x.c, &x.d, &x.e, &x.f};
}

Row RowOf(const Hkl& r) {
  const auto h = static_cast<float>(r.h), k = static_cast<float>(r.k), l = static_cast<float>(r.l);
  return {h * h, k * k, l * l, k * l, l * h, h * k};
}

// Which signs of the indices give lines of their own: a pair of indices that a cross constant
// couples takes both signs, and of each line and its opposite one is enough.
bool IsOneOfItsMates(const Hkl& r, const Lattice& x) {
  const int coupled = (x.d != 0) + (x.e != 0) + (x.f != 0);
  const auto first = [](int u, int v) { return u > 0 || (u == 0 && v >= 0); };
  if (coupled == 0) return r.h >= 0 && r.k >= 0 && r.l >= 0;
  if (coupled == 1) {
    if (x.d != 0) return r.h >= 0 && first(r.k, r.l);
    if (x.e != 0) return r.k >= 0 && first(r.h, r.l);
    return r.l >= 0 && first(r.h, r.k);
  }
  return r.h > 0 || (r.h == 0 && first(r.k, r.l));
}

// The lines of a lattice with q between 1 and `limit`.
void Generate(const Lattice& x, float limit, int type, std::vector<Calculated>& calculated) {
  // As large as indices become in patterns of use; bounds the time that a nonsensical cell takes.
  constexpr int mostindex = 40;
  constexpr std::size_t mostlines = 5000;
  const auto bound = [&](float constant) {
    return std::min(Whole(std::sqrt(limit / constant)) + 1, mostindex);
  };
  const int hmost = bound(x.a), kmost = bound(x.b), lmost = bound(x.c);
  calculated.clear();
  for (int h = 0; h <= hmost; ++h)
    for (int k = -kmost; k <= kmost; ++k)
      for (int l = -lmost; l <= lmost; ++l) {
        const Hkl r{h, k, l};
        if (!IsOneOfItsMates(r, x) || !TypeAllows(type, r)) continue;
        const Row row = RowOf(r);
        const float q =
            row[0] * x.a + row[1] * x.b + row[2] * x.c + row[3] * x.d + row[4] * x.e + row[5] * x.f;
        if (q > 1.0f && q < limit && calculated.size() < mostlines) calculated.push_back({r, q});
      }
}

// The normal matrix of the constants that are refined, with its right side, in double rows.
class Equations {
 public:
  explicit Equations(Lattice& x) {
    const auto constants = ConstantsOf(x);
    for (std::size_t i = 0; i < kConstants; ++i)
      if (i < 3 || *constants[i] != 0) refined_.push_back(i);
  }
  std::size_t Size() const { return refined_.size(); }

  void Add(const Hkl& r, float miss, float weight) {
    const Row row = RowOf(r);
    for (std::size_t i = 0; i < Size(); ++i) {
      const float wx = weight * row[refined_[i]];
      for (std::size_t j = 0; j < Size(); ++j) matrix_[i][j] += wx * row[refined_[j]];
      right_[i] += wx * miss;
    }
    squares_ += weight * miss * miss;
    weights_ += weight;
  }

  // Inverts the matrix by Gauss-Jordan elimination with full pivoting: the largest element of a
  // matrix of squares stands on its diagonal. False if it is singular.
  bool Invert() {
    constexpr float leastpivot = 0.0001f, leastdeterminant = 0.001f;
    std::array<bool, kConstants> done{};
    float determinant = 1;
    for (std::size_t step = 0; step < Size(); ++step) {
      std::size_t pivot = Size();
      for (std::size_t i = 0; i < Size(); ++i)
        if (!done[i] && (pivot == Size() || matrix_[i][i] > matrix_[pivot][pivot])) pivot = i;
      if (!(matrix_[pivot][pivot] > leastpivot)) return false;
      done[pivot] = true;
      determinant *= matrix_[pivot][pivot];
      Eliminate(pivot);
    }
    return determinant >= leastdeterminant;
  }

  // Behind Invert.
  void Shift(Lattice& x) const {
    const auto constants = ConstantsOf(x);
    for (std::size_t i = 0; i < Size(); ++i) {
      float shift = 0;
      for (std::size_t j = 0; j < Size(); ++j) shift += matrix_[i][j] * right_[j];
      *constants[refined_[i]] += shift;
    }
  }

  float Variance() const {
    const auto n = static_cast<float>(Size());
    return weights_ > n + 1 ? squares_ / (weights_ - n) : 0;
  }
  void Esds(float variance, Row& esd) const {
    for (std::size_t i = 0; i < Size(); ++i)
      esd[refined_[i]] = std::sqrt(std::max(variance * matrix_[i][i], 0.0f));
  }

 private:
  std::vector<std::size_t> refined_;
  std::array<std::array<float, kConstants>, kConstants> matrix_{};
  Row right_{};
  float squares_ = 0, weights_ = 0;

  void Eliminate(std::size_t pivot) {
    const std::size_t n = Size();
    const float inverse = 1 / matrix_[pivot][pivot];
    matrix_[pivot][pivot] = 1;
    for (std::size_t j = 0; j < n; ++j) matrix_[pivot][j] *= inverse;
    for (std::size_t i = 0; i < n; ++i) {
      if (i == pivot) continue;
      const float factor = matrix_[i][pivot];
      matrix_[i][pivot] = 0;
      for (std::size_t j = 0; j < n; ++j) matrix_[i][j] -= factor * matrix_[pivot][j];
    }
  }
};

// Gives each line the calculated ones within its window, `widening` tolerances wider than that.
void Match(const ItoProblem& problem, std::size_t nlines, int widening, LatticeFit& fit) {
  fit.candidates.assign(nlines, {});
  for (const Calculated& c : fit.calculated) {
    bool used = false;
    for (std::size_t i = 0; i < nlines; ++i) {
      const ItoLine& line = problem.lines[i];
      const float more = (line.high - line.q) * static_cast<float>(widening);
      if (c.q < line.low - more) break;
      if (c.q > line.high + more) continue;
      auto& candidates = fit.candidates[i];
      if (candidates.size() == LatticeFit::kMostCandidates) continue;
      candidates.push_back({c.hkl, c.q, used});
      used = true;
    }
  }
}

// The type that all indexed lines fit; the later one of several.
int ChooseType(const LatticeFit& fit, int lines) {
  int chosen = TypeP;
  for (int type = TypeA; type <= TypeF; ++type) {
    const auto fits = [&](const Calculated& c) { return TypeAllows(type, c.hkl); };
    const auto count =
        std::count_if(fit.candidates.begin(), fit.candidates.end(),
                      [&](const auto& of) { return std::any_of(of.begin(), of.end(), fits); });
    if (count >= lines) chosen = type;
  }
  return chosen;
}

// One cycle: lines, merit, type and shifts.
void Cycle(Lattice& x, const ItoProblem& problem, std::size_t nlines, int widening, bool first,
           LatticeFit& fit) {
  constexpr float farthest = 9.0f, leastmiss = 0.001f, mostmerit = 99999.0f;
  for (float* cross : {&x.d, &x.e, &x.f})
    if (std::abs(*cross) <= problem.eqtol) *cross = 0;
  const std::size_t counted = std::min(problem.lines.size(), kCounted);
  Generate(x, problem.lines[nlines - 1].high + 1.0f, first ? TypeP : Whole(x.type), fit.calculated);
  fit.ncalc = static_cast<int>(
      std::count_if(fit.calculated.begin(), fit.calculated.end(),
                    [&](const Calculated& c) { return c.q < problem.lines[counted - 1].high; }));
  Match(problem, nlines, widening, fit);

  Equations equations(x);
  float misses = 0;
  std::size_t lines = 0, last = 0;
  for (std::size_t i = 0; i < nlines; ++i) {
    const float q = problem.lines[i].q;
    const auto& candidates = fit.candidates[i];
    if (lines < kCounted) last = i;
    if (candidates.empty()) continue;
    float nearest = farthest, sum = 0;
    const auto chance = [&](const Calculated& c) {
      const float miss = std::min(std::abs(q - c.q), farthest);
      nearest = std::min(nearest, miss);
      return std::exp(-miss * miss);
    };
    for (const Calculated& c : candidates) sum += chance(c);
    for (const Calculated& c : candidates) equations.Add(c.hkl, q - c.q, chance(c) / sum);
    if (lines < kCounted) misses += nearest, ++lines;
  }
  x.lines = static_cast<float>(lines);
  if (first) x.type = static_cast<float>(ChooseType(fit, static_cast<int>(lines)));
  x.merit = fit.ncalc == 0
                ? 0
                : std::min(problem.lines[last].q * x.lines /
                               (std::max(misses, leastmiss) * 2 * static_cast<float>(fit.ncalc)),
                           mostmerit);
  fit.variance = equations.Variance();
  fit.singular = !equations.Invert();
  fit.esd = {};
  if (fit.singular) return;
  equations.Esds(fit.variance, fit.esd);
  equations.Shift(x);
}

}  // namespace

void PutSingular(Listing& listing) { listing.Put<"9931(1h ,14x,19hmatrix is singular )">(); }

LatticeFit Refpar(Lattice& lattice, const ItoProblem& problem, int cycles, FitLines which,
                  Listing* test) {
  LatticeFit fit;
  const std::size_t all = problem.lines.size();
  const std::size_t nlines = which == FitLines::All ? all : std::min(all, kCounted);
  for (int cycle = 1; cycle <= cycles; ++cycle) {
    Cycle(lattice, problem, nlines, cycles - cycle, lattice.lines < 1, fit);
    if (test) {
      test->Put<"('  refpar',i3,6f9.2,f9.0,f9.1,f9.0)">(cycle, lattice.a, lattice.b, lattice.c,
                                                        lattice.d, lattice.e, lattice.f,
                                                        lattice.lines, lattice.merit, lattice.type);
    }
  }
  return fit;
}
