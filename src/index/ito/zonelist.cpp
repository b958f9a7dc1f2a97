#include "index/ito/zonelist.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "index/ito/teststages.h"

namespace {

constexpr std::size_t kMostZones = 200;  // that are stored
constexpr std::size_t kMostRated = 20;   // that are kept

// A zone for each cross constant of each combination; a zone given by hand as it is.
std::vector<Zone> TrialZones(const std::vector<LineCombination>& combinations,
                             const ItoProblem& problem, Listing& listing) {
  std::vector<Zone> zones;
  const auto add = [&](const Zone& zone) {
    if (zones.size() == kMostZones) return false;
    zones.push_back(zone);
    zones.back().number = static_cast<int>(zones.size());
    return true;
  };
  Listing* test = TestOutput(problem.cards, StageFinzon, listing);
  for (const LineCombination& c : combinations) {
    bool room = true;
    if (c.cross > 0) {
      // A rectangle is marked by a cross constant that is as good as none.
      room = add({.a = c.q1, .b = c.q2, .f = c.cross < 0.1f ? 0 : c.cross, .quality = c.quality});
    } else {
      for (const Trial& f : Finzon(c.q1, c.q2, problem, test))
        if (room && f.count > 0) room = add({.a = c.q1, .b = c.q2, .f = f.value});
    }
    if (!room) {
      listing.Put<"(' search for zones terminated - storage for',i4,' zones is full.')">(
          static_cast<int>(kMostZones));
      break;
    }
  }
  return zones;
}

void SortByQuality(std::vector<Zone>& zones) {
  std::stable_sort(zones.begin(), zones.end(),
                   [](const Zone& one, const Zone& other) { return one.quality > other.quality; });
}

void List(const std::vector<Zone>& zones, Listing& listing) {
  listing.Put<"9910('    nr       a       b       f     quality  from  centred')">();
  int number = 0;
  for (const Zone& z : zones)
    listing.Put<"9911(1h , i4, 3f8.1,f12.1, 2f6.0)">(
        ++number, z.a, z.b, z.f, z.quality, static_cast<float>(z.number), z.centred ? 1.0f : 0.0f);
}

float Difference(const Zone& one, const Zone& other) {
  return std::abs(one.a - other.a) + std::abs(one.b - other.b) + std::abs(one.f - other.f);
}

// The best ones, each once.
void Select(std::vector<Zone>& zones, const ItoProblem& problem, Listing& listing) {
  SortByQuality(zones);
  listing.Put<"('0the zones that have been found')">();
  List(zones, listing);
  if (zones.size() > kMostRated) zones.resize(kMostRated);
  for (auto zone = zones.begin(); zone != zones.end(); ++zone)
    if (std::any_of(zones.begin(), zone,
                    [&](const Zone& z) { return Difference(z, *zone) < problem.eqtol; }))
      zone->quality = 0;
  std::erase_if(zones, [](const Zone& z) { return z.quality < 1; });
  listing.Put<"('0zones selected for further refinement')">();
  List(zones, listing);
}

std::vector<Zone> RatedZones(const std::vector<LineCombination>& combinations,
                             const ItoProblem& problem, Listing& listing, EngineRun& run) {
  std::vector<Zone> zones = TrialZones(combinations, problem, listing);
  Listing* test = TestOutput(problem.cards, StageEvalu8, listing);
  for (Zone& zone : zones) {
    run.stopped = run.stopped || (run.report && !run.report("ITO: zones"));
    if (run.stopped) break;
    if (!(zone.quality > 1.0f)) Evalu8(zone, problem, test);
  }
  return zones;
}

// The lines of a good zone that leaves at most one of the lines to any other that combinations were
// made of: without others no zone across it is found.
std::optional<LineSet> DominantZone(const std::vector<Zone>& zones, const ItoProblem& problem,
                                    Listing& listing) {
  Listing* test = TestOutput(problem.cards, StageZones, listing);
  const auto most = static_cast<std::size_t>(problem.cards.nz1 + 2);
  const auto base = std::min(static_cast<std::size_t>(problem.cards.nq2), problem.lines.size());
  for (std::size_t i = 0; i < std::min(zones.size(), most); ++i) {
    Zone zone = zones[i];
    const LineSet lines = Evalu8(zone, problem, test);
    std::size_t indexed = 0;
    for (std::size_t line = 0; line < base; ++line) indexed += lines[line];
    if (zone.quality > 0 && indexed + 1 >= base) return lines;
  }
  return std::nullopt;
}

// The first lines with the first of those that the zone leaves: zones across it, which share a row
// with it, are what is missing.
std::vector<LineCombination> CombinationsAcross(const LineSet& indexed, const ItoProblem& problem) {
  std::vector<LineCombination> combinations;
  const auto size = static_cast<int>(problem.lines.size());
  for (int i = 0; i < std::min(problem.cards.nq1, size); ++i)
    for (int j = 0, others = 0; j < size && others < problem.cards.nq2; ++j) {
      if (indexed[static_cast<std::size_t>(j)]) continue;
      ++others;
      combinations.push_back({problem.lines[static_cast<std::size_t>(i)].q,
                              problem.lines[static_cast<std::size_t>(j)].q});
    }
  return combinations;
}

}  // namespace

std::vector<Zone> FindZones(const ItoProblem& problem, Listing& listing, EngineRun& run) {
  std::vector<Zone> zones = RatedZones(problem.combinations, problem, listing, run);
  if (run.stopped) return {};
  Select(zones, problem, listing);
  const std::optional<LineSet> dominant = DominantZone(zones, problem, listing);
  if (!dominant) return zones;
  listing
      .Put<"('0',60('*')/' * zone-finding is restarted with other lines.',t61,'*'/' ',60('*'))">();
  const std::vector<Zone> others =
      RatedZones(CombinationsAcross(*dominant, problem), problem, listing, run);
  if (run.stopped) return {};
  zones.insert(zones.end(), others.begin(), others.end());
  Select(zones, problem, listing);
  return zones;
}
