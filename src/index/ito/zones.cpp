#include "index/ito/zones.h"

#include <algorithm>
#include <cmath>

#include "index/ito/wholenumbers.h"

namespace {

struct Formulation {
  const char* label;
  int i, j;
  bool centred;
  float a, b, f;  // factors of the quartered constants
};
constexpr Formulation kFormulations[] = {
    {"a  and  b  doubled", 1, 1, false, 1, 1, 1},
    {"b  doubled", 2, 1, false, 4, 1, 2},
    {"a  doubled", 1, 2, false, 1, 4, 2},
    {"unchanged zone", 2, 2, false, 4, 4, 4},
    {"a and b doubled, centered", 1, 1, true, 1, 1, 1},
    {"unchanged zone,  centered", 2, 2, true, 4, 4, 4},
};

// The orders up to which a cross constant is looked for: more than two where the lines end soon.
struct Orders {
  int h = 2, k = 2;
};

Orders SearchOrders(float a, float b, float fmax, const ItoProblem& problem, Listing* test) {
  constexpr int most = 4;
  const float last = problem.lines.back().q;
  if (last > 4 * (a + b + fmax)) return {};
  const Orders orders{std::min(Whole(std::sqrt(last / a)), most),
                      std::min(Whole(std::sqrt(last / b)), most)};
  if (test && (orders.h != 2 || orders.k != 2))
    test->Put<"991(' search with h and k up to',2i3)">(orders.h, orders.k);
  return orders;
}

// The later one of two that are as likely.
const Formulation& BestFormulation(const ZoneTable& table, float& quality, Listing* test) {
  const Formulation* best = nullptr;
  for (const Formulation& f : kFormulations) {
    const float q = ZoneProbability(table, f.i, f.j, f.centred);
    if (test) test->Put<"(5x,a,t35,f14.1)">(std::string_view(f.label), q);
    if (best && q < quality) continue;
    best = &f;
    quality = q;
  }
  return *best;
}

}  // namespace

std::vector<Trial> Finzon(float a, float b, const ItoProblem& problem, Listing* test) {
  constexpr std::size_t mostlisted = 10, mostreturned = 5;
  constexpr int window = TrialHistogram::kWindow;
  const float scale = window / problem.cards.tol2;
  const float fmax = 1.95f * std::sqrt(a * b);
  const int bins = std::min(Whole(fmax * scale), TrialHistogram::kMostBins);
  const auto [hmax, kmax] = SearchOrders(a, b, fmax, problem, test);

  TrialHistogram histogram;
  for (int h = 1; h <= hmax; ++h)
    for (int k = 1; k <= kmax; ++k)
      for (const ItoLine& line : problem.lines) {
        const float base = line.q - static_cast<float>(h * h) * a - static_cast<float>(k * k) * b;
        const int bin = Whole(0.5f + std::abs(base) * scale / static_cast<float>(h * k));
        if (bin <= bins) histogram.Count(bin);
      }

  // In a rectangle h k and h -k are one line, which counts twice.
  const int equal = std::clamp(Whole(0.5f + problem.eqtol * scale), 1, TrialHistogram::kMostBins);
  const int rectangular = 2 * histogram.CountOf(0, equal);
  const int threshold = rectangular > 5 ? 4 : rectangular;
  std::vector<Trial> trials{{0, rectangular}};
  histogram.List({equal, bins - window, 2, threshold, mostlisted, 0, scale}, trials);

  std::vector<Trial> found;
  for (const Trial& trial : trials) {
    const auto twin = std::ranges::find_if(
        found, [&](const Trial& one) { return std::abs(one.value - trial.value) < problem.eqtol; });
    if (twin != found.end())
      twin->value = (twin->value + trial.value) / 2;
    else
      found.push_back(trial);
  }
  if (found.size() > mostreturned) found.resize(mostreturned);
  return found;
}

LineSet Evalu8(Zone& zone, const ItoProblem& problem, Listing* test) {
  constexpr int passes = 2;
  float qmax = 0;
  for (int pass = 1; pass <= passes; ++pass) {
    zone.quality = 0;
    zone.centred = false;
    if (!NormalForm(zone, problem, test)) return {};
    qmax = std::min(16.5f * (zone.a + zone.b + zone.f), problem.lines.back().high);
    ZoneFit(zone, problem, qmax, test);
    if (!NormalForm(zone, problem, test)) return {};
    zone.a /= 4, zone.b /= 4, zone.f /= 4;
    const ZoneHits hits = ZoneFit(zone, problem, qmax, test);
    const Formulation& best = BestFormulation(hits.table, zone.quality, test);
    zone.a *= best.a, zone.b *= best.b, zone.f *= best.f;
    zone.centred = best.centred;
    if (zone.f < 0.01f || !zone.centred || pass == passes) break;
    // Along the two shortest vectors of the net.
    const float difference = zone.a + zone.b - zone.f, edges = zone.b - zone.a;
    zone.a = difference;
    zone.b = 2 * zone.f + difference;
    zone.f = std::abs(2 * edges);
    if (test)
      test->Put<"3(43h0a centered skew zone has been reformulated,3f10.2,i4)">(zone.a, zone.b,
                                                                               zone.f, zone.number);
  }
  const float quality = zone.quality;
  const LineSet lines = ZoneFit(zone, problem, qmax, test).lines;
  zone.quality = NormalForm(zone, problem, test) ? quality : 0;
  return lines;
}
