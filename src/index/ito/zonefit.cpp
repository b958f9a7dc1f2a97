#include <cmath>
#include <utility>

#include "index/ito/wholenumbers.h"
#include "index/ito/zones.h"

bool NormalForm(Zone& zone, const ItoProblem& problem, Listing* test) {
  constexpr int most = 100;  // steps; each but the last makes the zone smaller
  auto& [a, b, f, quality, number, centred] = zone;
  const float equal = problem.eqtol;
  if (test) test->Put<"1(15h input of norm  , 3f10.2 )">(a, b, f);
  for (int step = 0; step < most; ++step) {
    if (!(a >= problem.abclimit && b >= problem.abclimit)) return false;
    if (a > b) std::swap(a, b);
    if (std::abs(b - f) < equal) {
      const float quarter = b / 4;
      b = a - quarter;
      a = quarter;
      f = 0;
    } else if (f > equal && std::abs(a - b) <= equal) {
      a = (a + b - f) / 4;
      b = a + f / 2;
      f = 0;
    } else if (std::abs(a - f) <= equal) {
      a = a / 4;
      b = b - a;
      f = 0;
    } else if (a - f > 0) {
      if (f < equal) f = 0;
      return true;
    } else {
      b = a + b - f;
      f = std::abs(f - 2 * a);
    }
  }
  return false;
}

namespace {

// The normal equations of a, b and f.
struct ZoneEquations {
  float hhhh = 0, hhkk = 0, hhhk = 0, kkkk = 0, kkhk = 0, hkhk = 0;
  float hhq = 0, kkq = 0, hkq = 0;

  void Add(int h, int k, float miss) {
    const float hh = static_cast<float>(h * h), kk = static_cast<float>(k * k),
                hk = static_cast<float>(h * k);
    hhhh += hh * hh, hhkk += hh * kk, hhhk += hh * hk;
    kkkk += kk * kk, kkhk += kk * hk, hkhk += hk * hk;
    hhq += hh * miss, kkq += kk * miss, hkq += hk * miss;
  }

  // False if they are singular.
  bool ShiftRectangle(Zone& zone) const {
    const float det = hhhh * kkkk - hhkk * hhkk;
    if (!(det > 0.1f)) return false;
    zone.a += (hhq * kkkk - kkq * hhkk) / det;
    zone.b += (kkq * hhhh - hhq * hhkk) / det;
    return true;
  }

  bool ShiftSkew(Zone& zone) const {
    const float c11 = kkkk * hkhk - kkhk * kkhk, c12 = hhhk * kkhk - hhkk * hkhk,
                c13 = hhkk * kkhk - hhhk * kkkk, c22 = hhhh * hkhk - hhhk * hhhk,
                c23 = hhkk * hhhk - hhhh * kkhk, c33 = hhhh * kkkk - hhkk * hhkk;
    const float det = hhhh * c11 + hhkk * c12 + hhhk * c13;
    if (!(det >= 1.0f)) return false;
    zone.a += (hhq * c11 + kkq * c12 + hkq * c13) / det;
    zone.b += (hhq * c12 + kkq * c22 + hkq * c23) / det;
    zone.f += (hhq * c13 + kkq * c23 + hkq * c33) / det;
    return true;
  }
};

// The first line in whose window q lies, or none.
const ItoLine* LineAt(float q, const ItoProblem& problem) {
  for (const ItoLine& line : problem.lines)
    if (q >= line.low && q <= line.high) return &line;
  return nullptr;
}

}  // namespace

ZoneHits ZoneFit(Zone& zone, const ItoProblem& problem, float qmax, Listing* test) {
  constexpr float least = 0.1f;  // of a cross constant that is one
  ZoneHits hits;
  const bool skew = zone.f > least;
  if (!skew) zone.f = 0;
  const int hlim = std::min(Whole(std::sqrt(qmax / zone.a)), ZoneTable::kMost);
  const int klim = std::min(Whole(std::sqrt(qmax / zone.b)), ZoneTable::kMost);
  ZoneEquations equations;
  for (int h = skew ? -hlim : 0; h <= hlim; ++h) {
    // Of the row k = 0 the half with positive h is enough.
    for (int k = h > 0 ? 0 : 1; k <= klim; ++k) {
      const float q = zone.a * static_cast<float>(h * h) + zone.b * static_cast<float>(k * k) +
                      zone.f * static_cast<float>(h * k);
      if (q > qmax) break;
      if (!(q >= 1.0f)) continue;
      const int bin = std::clamp(Whole(0.99f + q / problem.binwidth), 1, 10);
      float& cell = hits.table(h, k);
      cell = -problem.probability[static_cast<std::size_t>(bin)];
      const ItoLine* line = LineAt(q, problem);
      if (!line) continue;
      cell = -cell;
      hits.lines.set(static_cast<std::size_t>(line - problem.lines.data()));
      equations.Add(h, k, line->q - q);
    }
  }
  const bool shifted = skew ? equations.ShiftSkew(zone) : equations.ShiftRectangle(zone);
  if (test && !shifted) test->Put<"3(12h not refined)">();
  if (test)
    test->Put<"('  zone ',3f10.2,' indexes',i3,' of',i3,' lines')">(
        zone.a, zone.b, zone.f, static_cast<int>(hits.lines.count()),
        static_cast<int>(problem.lines.size()));
  return hits;
}

float ZoneProbability(ZoneTable table, int i, int j, bool centred) {
  constexpr float highest = 9998999552.0f;
  constexpr int multiples = 8;
  const int hmost = 4 * i + 1, kmost = 4 * j + 1;
  int total = 0, hits = 0;
  float chance = 1;
  // One row through the origin: the first of its points that is seen stands for all of them.
  const auto rate = [&](int h, int k) {
    bool counted = false;
    for (int n = 1; n <= multiples && ZoneTable::Holds(n * h, n * k); ++n) {
      if (centred && (n * h + n * k) % (2 * i) != 0) continue;
      const float entry = table(n * h, n * k);
      if (entry != 0 && !counted) ++total, counted = true;
      if (entry < 0) continue;
      if (entry == 0) return;
      chance *= entry;
      ++hits;
      for (int m = 1; ZoneTable::Holds(m * n * h, m * n * k); ++m) table(m * n * h, m * n * k) = 0;
      return;
    }
  };
  for (int h = 0; h <= hmost; h += i)
    for (int k = 0; k <= kmost; k += j) {
      if (h == 0 && k == 0) continue;
      rate(h, k);
      if (h > 0 && k > 0) rate(-h, k);
    }
  if (total > 4 * hits) return 0.01f;
  const int m = total < 2 * hits ? total - hits : hits;
  for (int r = 1; r <= m; ++r)
    chance = chance * static_cast<float>(total - r + 1) / static_cast<float>(r);
  return chance > 1 / highest ? 1 / chance : highest;
}
