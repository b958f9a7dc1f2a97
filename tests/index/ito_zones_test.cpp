// Zones of ITO: normal form, fit, rating and search.
#include <gtest/gtest.h>

#include "index/ito/zonelist.h"
#include "index/simulate.h"

namespace {

Form FormOf(const Zone& z) { return {z.a, z.b, 0, 0, 0, z.f}; }

// All lines of a zone up to a q.
std::vector<double> LinesUpTo(const Zone& z, double qmax) {
  auto q = Values(FormOf(z), 9, 0, 0.3);
  std::erase_if(q, [&](double each) { return each > qmax; });
  return q;
}

void ExpectZone(const Zone& found, const Zone& expected, double tolerance) {
  EXPECT_NEAR(found.a, expected.a, tolerance);
  EXPECT_NEAR(found.b, expected.b, tolerance);
  EXPECT_NEAR(found.f, expected.f, tolerance);
}

// Other axes of the same net.
Zone Disguised(Zone z, std::mt19937& random) {
  for (int step = 0; step < 4; ++step) {
    const float b = z.a + z.b + z.f, f = z.f + 2 * z.a;
    z.b = b, z.f = f;
    if (random() % 2) std::swap(z.a, z.b);
  }
  return z;
}

TEST(ItoZones, ANetHasOneNormalForm) {
  std::mt19937 random(3);
  std::uniform_real_distribution<float> part(0.05f, 0.95f), edge(50, 200);
  const ItoProblem problem = ProblemAt({100}, 1);
  for (int n = 0; n < 200; ++n) {
    Zone net{.a = edge(random)};
    net.b = net.a * (1 + 3 * part(random));
    net.f = n % 4 ? net.a * part(random) : 0;
    const auto& [a, b, f, quality, number, centred] = net;
    std::vector<Zone> given{net};
    // Of a rectangle also the rhombic nets that it centres.
    if (f == 0)
      given.insert(given.end(),
                   {{a + b, a + b, 2 * (b - a)}, {a + b, 4 * b, 4 * b}, {4 * a, a + b, 4 * a}});
    for (const Zone& each : given) {
      Zone zone = Disguised(each, random);
      ASSERT_TRUE(NormalForm(zone, problem, nullptr));
      ExpectZone(zone, net, 0.1);
    }
  }
}

TEST(ItoZones, ToleranceAndLimitOfTheNormalForm) {
  ItoProblem problem = ProblemAt({100}, 1);
  Zone nearly{.a = 100, .b = 150, .f = 0.4f};
  EXPECT_TRUE(NormalForm(nearly, problem, nullptr));
  ExpectZone(nearly, {.a = 100, .b = 150}, 0);
  problem.abclimit = 20;
  const float nan = std::nanf("");
  for (Zone zone :
       {Zone{.a = 19, .b = 150}, Zone{.a = 150, .b = 19}, Zone{.a = 79, .b = 150, .f = 79},
        Zone{.a = nan, .b = 150}, Zone{.a = 100, .b = nan}})
    EXPECT_FALSE(NormalForm(zone, problem, nullptr));
  Zone least{.a = 20, .b = 150, .f = 7};
  EXPECT_TRUE(NormalForm(least, problem, nullptr));
}

TEST(ItoZones, FitIsOneStepOfLeastSquares) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> noise(-0.3, 0.3);
  constexpr double width = 1.5;
  for (const float f : {40.0f, 0.0f}) {
    auto q = LinesUpTo({.a = 100, .b = 152, .f = f}, 1700);
    for (double& each : q) each += noise(random);
    q.erase(q.begin() + 3);  // one that is not seen
    q.insert(q.begin() + 5, q[5] - 1.2);
    const ItoProblem problem = ProblemAt(q, width);
    const double qmax = 1500;
    const Zone start{.a = 100.2f, .b = 151.9f, .f = f > 0 ? 40.1f : 0.05f};
    const Zone used{.a = start.a, .b = start.b, .f = f > 0 ? start.f : 0};
    Zone zone = start;
    ZoneHits hits = ZoneFit(zone, problem, static_cast<float>(qmax), nullptr);

    LeastSquares squares(f > 0 ? 3 : 2);
    LineSet lines;
    for (int h = -8; h <= 8; ++h)
      for (int k = 0; k <= 8; ++k) {
        const double each = At(FormOf(used), h, k, 0);
        const bool own = (k > 0 || h > 0) && (f > 0 || h >= 0);
        if (!own || each > qmax || h * h * used.a > qmax || k * k * used.b > qmax) {
          EXPECT_EQ(hits.table(h, k), 0) << h << ' ' << k;
          continue;
        }
        const double chance = 0.02 * static_cast<int>(0.99 + each / problem.binwidth);
        const auto at =
            std::ranges::find_if(q, [&](double line) { return std::abs(line - each) <= width; });
        EXPECT_NEAR(hits.table(h, k), at == q.end() ? -chance : chance, 1e-6) << h << ' ' << k;
        if (at == q.end()) continue;
        lines.set(static_cast<std::size_t>(at - q.begin()));
        squares.Add({1.0 * h * h, 1.0 * k * k, 1.0 * h * k}, *at - each);
      }
    squares.Solve();
    EXPECT_EQ(hits.lines, lines);
    EXPECT_GT(std::abs(squares.Shift(0)), 0.01);
    EXPECT_NEAR(zone.a - used.a, squares.Shift(0), 1e-4);
    EXPECT_NEAR(zone.b - used.b, squares.Shift(1), 1e-4);
    EXPECT_NEAR(zone.f - used.f, f > 0 ? squares.Shift(2) : 0, 1e-4);
  }
}

TEST(ItoZones, AFitThatLinesDoNotFixLeavesTheZone) {
  const ItoProblem problem = ProblemAt({100.5, 402}, 3);  // orders of one row
  for (const float f : {30.0f, 0.0f}) {
    Zone zone{.a = 100, .b = 157, .f = f};
    const std::string text =
        ListingOf([&](Listing& listing) { ZoneFit(zone, problem, 405, &listing); });
    EXPECT_NE(text.find("not refined"), std::string::npos);
    ExpectZone(zone, {.a = 100, .b = 157, .f = f}, 0);
  }
}

TEST(ItoZones, EvaluationTakesTheNetOfTheLines) {
  for (const float f : {37.0f, 0.0f}) {
    const Zone net{.a = 100, .b = 143, .f = f};
    const auto& [a, b, cross, quality, number, centred] = net;
    const auto q = LinesUpTo(net, 1200);
    const Zone given[] = {net,
                          {.a = 4 * a, .b = b, .f = 2 * f},
                          {.a = a, .b = 4 * b, .f = 2 * f},
                          {.a = 4 * a, .b = 4 * b, .f = 4 * f},
                          {.a = a + b - f, .b = a + b + f, .f = 2 * (b - a)}};
    for (Zone zone : given) {
      zone.a += 0.1f;
      ItoProblem problem = ProblemAt(q, 0.8);
      for (float& chance : problem.probability) chance *= 2;
      const LineSet lines = Evalu8(zone, problem, nullptr);
      ExpectZone(zone, net, 0.05);
      EXPECT_GT(zone.quality, 1e4f);
      EXPECT_EQ(lines.count(), q.size());
    }
  }
  Zone tiny{.a = 3, .b = 100};
  EXPECT_TRUE(Evalu8(tiny, ProblemAt({100, 200}, 1), nullptr).none());
  EXPECT_EQ(tiny.quality, 0);
}

std::vector<Zone> ZonesOf(const ItoProblem& problem, std::string& listing) {
  std::vector<Zone> zones;
  ItoRun run;
  listing = ListingOf([&](Listing& to) { zones = FindZones(problem, to, run); });
  return zones;
}

TEST(ItoZones, TheStoreIsLimitedAndTheZonesGivenByHandStand) {
  ItoProblem problem =
      ReadOne(kParameters + "\n\n" + LineCards(LinesOf(Lattice{83, 117, 151}))).problem;
  for (const std::size_t n : {200u, 203u}) {
    problem.combinations.assign(n, {.q1 = 83, .q2 = 117, .cross = 0.08f, .quality = 7});
    std::string text;
    const std::vector<Zone> zones = ZonesOf(problem, text);
    EXPECT_EQ(Count(text, "search for zones terminated - storage for"), n > 200);
    ASSERT_EQ(zones.size(), 1u);
    ExpectZone(zones[0], {.a = 83, .b = 117}, 0);
    EXPECT_EQ(zones[0].quality, 7);
  }
}

}  // namespace
