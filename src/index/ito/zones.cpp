#include "index/ito/zones.h"

#include <algorithm>
#include <cmath>

#include "index/ito/wholenumbers.h"

namespace {

constexpr int kWindow = 6;       // bins
constexpr int kMostBins = 5000;  // of a histogram

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

// Candidates in falling order of their counts.
class Candidates {
 public:
  explicit Candidates(std::size_t most) : most_(most) {}
  void Place(float value, int count) {
    const auto at = std::find_if(list_.begin(), list_.end(),
                                 [&](const CrossConstant& c) { return count > c.count; });
    list_.insert(at, {value, count});
    if (list_.size() > most_) list_.pop_back();
  }
  // What a further one has to exceed.
  int LastCount() const { return list_.size() < most_ ? 0 : list_.back().count; }
  std::vector<CrossConstant>& List() { return list_; }

 private:
  std::size_t most_;
  std::vector<CrossConstant> list_;
};

// The orders up to which a cross constant is looked for, and the count that it has to exceed.
struct Orders {
  int h = 2, k = 2, threshold = 3;
};

Orders SearchOrders(float a, float b, float fmax, const ItoProblem& problem, Listing* test) {
  Orders orders;
  const float last = problem.lines.back().q;
  if (!(last > 4 * (a + b + fmax))) {
    orders.h = std::min(Whole(std::sqrt(last / a)), 4);
    orders.k = std::min(Whole(std::sqrt(last / b)), 4);
    if (test && (orders.h != 2 || orders.k != 2))
      test->Put<"991(' search with h and k up to',2i3)">(orders.h, orders.k);
  }
  orders.threshold = 4 * orders.h * orders.k / 5;
  if (b - a < problem.eqtol) orders.threshold = 2;
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

std::vector<CrossConstant> Finzon(float a, float b, const ItoProblem& problem, Listing* test) {
  constexpr std::size_t mostlisted = 10, mostreturned = 5;
  const float scale = kWindow / problem.cards.tol2;
  const float fmax = 1.95f * std::sqrt(a * b);
  int bins = std::min(Whole(fmax * scale), kMostBins);
  auto [hmax, kmax, threshold] = SearchOrders(a, b, fmax, problem, test);

  std::vector<int> histogram(kMostBins + 1);
  for (int h = 1; h <= hmax; ++h)
    for (int k = 1; k <= kmax; ++k)
      for (const ItoLine& line : problem.lines) {
        const float base = line.q - static_cast<float>(h * h) * a - static_cast<float>(k * k) * b;
        const int bin = Whole(0.5f + std::abs(base) * scale / static_cast<float>(h * k));
        if (bin <= bins) ++histogram[static_cast<std::size_t>(bin)];
      }

  bins -= kWindow;
  const int equal = std::clamp(Whole(0.5f + problem.eqtol * scale), 1, kMostBins);
  int rectangular = histogram[0];
  for (int bin = 1; bin <= equal; ++bin) rectangular += histogram[static_cast<std::size_t>(bin)];
  rectangular *= 2;
  Candidates candidates(mostlisted);
  candidates.Place(0, rectangular);
  threshold = rectangular > 5 ? 4 : rectangular;
  for (int first = equal; first <= bins; first += 2) {
    int count = 0, moment = 0;
    for (int bin = first; bin < first + kWindow; ++bin) {
      const int n = histogram[static_cast<std::size_t>(bin)];
      count += n;
      moment += n * bin;
    }
    if (count <= threshold) continue;
    candidates.Place(static_cast<float>(moment) / static_cast<float>(count) / scale, count);
    threshold = std::max(threshold, candidates.LastCount());
  }

  std::vector<CrossConstant> found;
  for (CrossConstant& c : candidates.List()) {
    const auto twin = std::find_if(found.begin(), found.end(), [&](const CrossConstant& f) {
      return std::abs(f.f - c.f) < problem.eqtol;
    });
    if (twin != found.end())
      twin->f = (twin->f + c.f) / 2;
    else
      found.push_back(c);
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
