// The counter of lines that a trial cell indexes, beside a plain count as it is defined: the same
// number for a monoclinic cell of 900 cubic angstrom and 19 test lines.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "index/treor/hits.h"

namespace {

constexpr Constants kCell{0.0171f, 0.0065f, 0.0043f, 0.0022f};

struct Lines {
  TreorRun run;
  Listing listing{""};  // nothing is listed
  TreorSearch search{run, listing};
  Lines() {
    search.options.use = 19;
    search.options.iq = 16;
    search.limits.d1 = 20;
    search.limits.d2 = 40;
    search.limits.ssqtl = 5000;
    for (int n = 1; n <= 19; ++n) search.lines.push_back({0, 400 + 500 * n, ""});
  }
};

int PlainCount(const TreorSearch& search) {
  const int a = LineCode(kCell.a), b = LineCode(kCell.b), c = LineCode(kCell.c),
            d = LineCode(kCell.d);
  const int top = search.lines.back().code + 60;
  const auto most = [&](int constant) { return static_cast<int>(std::sqrt(1.2 * top / constant)); };
  std::array<bool, kTreorMostLines> marked{};
  for (int l = 0; l <= most(c); ++l)
    for (int k = 0; k <= most(b); ++k)
      for (int h = -most(a); h <= most(a); ++h) {
        const int code = a * h * h + b * k * k + c * l * l + d * h * l;
        if (code == 0 || code > top) continue;
        const int tolerance = code < search.limits.ssqtl ? search.limits.d1 : search.limits.d2;
        for (std::size_t i = 0; i < search.lines.size(); ++i) {
          if (search.lines[i].code > code + tolerance) break;
          if (search.lines[i].code >= code - tolerance) marked[i] = true;
        }
      }
  return static_cast<int>(std::count(marked.begin(), marked.end(), true));
}

void Counter(benchmark::State& state) {
  const Lines lines;
  HitCounter counter(lines.search);
  for (auto _ : state) benchmark::DoNotOptimize(counter.Count(CrystalSystem::Monoclinic, kCell));
  if (counter.Count(CrystalSystem::Monoclinic, kCell) != PlainCount(lines.search)) std::abort();
}

void Plain(benchmark::State& state) {
  const Lines lines;
  for (auto _ : state) benchmark::DoNotOptimize(PlainCount(lines.search));
}

}  // namespace

BENCHMARK(Counter);
BENCHMARK(Plain);
BENCHMARK_MAIN();
