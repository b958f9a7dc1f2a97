// The inverse of a normal matrix at the largest order of a fit, against a plain inverse in blocks
// of columns by the same algorithm.
//
// The counter "ratio" of BM_Inverse is how many times longer it takes than the plain one.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <random>
#include <vector>

#include "crystal/matrix.h"

namespace {

constexpr int kOrder = 230;

// Sums of products of bell curves that overlap, as a pattern's peaks do.
std::vector<float> NormalMatrix() {
  std::vector<float> a(kOrder * kOrder);
  for (int j = 0; j < kOrder; ++j)
    for (int i = 0; i < kOrder; ++i)
      a[i + kOrder * j] = 1000 * std::exp(-0.5f * static_cast<float>((i - j) * (i - j)));
  return a;
}

// Columns j0 to j1 of a right side through the decomposition, a column at a time with the rows
// innermost, for which the compiler may take vectors.
void SolveBlock(const std::vector<float>& lu, std::vector<float>& b, int j0, int j1) {
  const int n = kOrder;
  for (int j = j0; j < j1; ++j) {
    float* c = &b[n * j];
    for (int k = 0; k < n; ++k)
      for (int i = k + 1; i < n; ++i) c[i] -= lu[i + n * k] * c[k];
    for (int k = n - 1; k >= 0; --k) {
      c[k] /= lu[k + n * k];
      for (int i = 0; i < k; ++i) c[i] -= lu[i + n * k] * c[k];
    }
  }
}

[[gnu::noinline]] void PlainInverse(std::vector<float>& a) {
  constexpr int n = kOrder, block = 32;
  std::vector<int> row(n);
  for (int i = 0; i < n; ++i) row[i] = i;
  for (int j = 0; j < n; ++j) {
    int p = j;
    for (int i = j; i < n; ++i)
      if (std::fabs(a[i + n * j]) > std::fabs(a[p + n * j])) p = i;
    for (int k = 0; k < n; ++k) std::swap(a[p + n * k], a[j + n * k]);
    std::swap(row[p], row[j]);
    for (int i = j + 1; i < n; ++i) a[i + n * j] /= a[j + n * j];
    for (int k = j + 1; k < n; ++k)
      for (int i = j + 1; i < n; ++i) a[i + n * k] -= a[i + n * j] * a[j + n * k];
  }
  std::vector<float> b(n * n);
  for (int i = 0; i < n; ++i) b[i + n * row[i]] = 1;
  for (int j = 0; j < n; j += block) SolveBlock(a, b, j, std::min(j + block, n));
  a = b;
}

void Inverse(std::vector<float>& a) {
  int n = kOrder;
  MatrixInverse(a.data(), n, kOrder);
}

template <class Routine>
double BestTime(Routine routine) {
  double best = 1e9;
  for (int r = 0; r < 20; ++r) {
    std::vector<float> a = NormalMatrix();
    const std::clock_t start = std::clock();
    routine(a);
    best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    benchmark::DoNotOptimize(a.data());
  }
  return best;
}

template <class Routine>
void Time(benchmark::State& state, Routine routine) {
  const std::vector<float> matrix = NormalMatrix();
  for (auto _ : state) {
    std::vector<float> a = matrix;
    routine(a);
    benchmark::DoNotOptimize(a.data());
  }
}

void BM_PlainInverse(benchmark::State& state) { Time(state, PlainInverse); }

void BM_Inverse(benchmark::State& state) {
  Time(state, Inverse);
  state.counters["ratio"] = BestTime(Inverse) / BestTime(PlainInverse);
}

BENCHMARK(BM_PlainInverse)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Inverse)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
