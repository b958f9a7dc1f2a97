// Lattices of ITO: combination of zones, third cross constant, standard form, refinement.
#include <gtest/gtest.h>

#include "index/ito/latticefit.h"
#include "index/ito/latticestage.h"
#include "index/simulate.h"

namespace {

const Lattice kOrthogonal{.a = 83, .b = 117, .c = 151};
const Lattice kTriclinic{.a = 83, .b = 117, .c = 151, .d = 21, .e = 33, .f = 44};
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

TEST(ItoLattices, ZonesMeetInTheLengthThatTheyShare) {
  // The lengths of a zone are a, b, a + b + f, a + b - f.
  const Zone first{.a = 100, .b = 137, .f = 31};
  const float lengths[] = {100, 137, 268, 206};
  for (const float length : lengths) {
    const float shared = length + 0.8f;
    for (const Zone& second : {Zone{shared, 411, 17},
                               {411, shared, 17},
                               {57, shared - 57 - 17, 17},
                               {57, shared - 57 + 17, 17}}) {
      const auto found = CombineZones(first, second, false);
      ASSERT_EQ(found.size(), 1u) << length;
      const Lattice& x = found[0];
      EXPECT_NEAR(x.a, length + 0.4, 1e-3);
      EXPECT_EQ(x.d, 0);
      const auto lines = [](const Zone& z) { return Values({z.a, z.b, 0, 0, 0, z.f}, 3, 0, 0.3); };
      EXPECT_TRUE(Indexes({.a = length, .b = x.b, .f = x.f}, lines(first), 0.01, 9, 0));
      EXPECT_TRUE(Indexes({.a = shared, .b = x.c, .f = x.e}, lines(second), 0.01, 9, 0));
    }
  }
  EXPECT_TRUE(CombineZones(first, {.a = 411, .b = 533, .f = 17}, false).empty());
  EXPECT_EQ(CombineZones(first, first, true).size(), 4u);
  EXPECT_EQ(CombineZones({.a = 100, .b = 100}, {.a = 100, .b = 100}, true).size(), 5u);
}

// The standard form: axes by their length, the same lattice, and the same whatever the axes were.
TEST(ItoLattices, TheStandardFormIsTheSameLattice) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> edge(80, 200), cross(5, 60);
  ItoProblem problem = ProblemAt({85}, 1);
  problem.eqtol = 1e-3f;  // no net is rhombic by chance
  for (int n = 0; n < 200; ++n) {
    Form given{edge(random), edge(random), edge(random), cross(random), cross(random)};
    given[5] = cross(random) * (n % 2 ? -1 : 1);
    Lattice x = LatticeOf(OtherAxes(given, random)), twin = LatticeOf(given);
    ASSERT_TRUE(Norm3(x, problem, nullptr) && Norm3(twin, problem, nullptr)) << n;
    EXPECT_TRUE(x.a <= x.b && x.b <= x.c) << n;
    EXPECT_TRUE(Indexes(x, Values(given, 2, 2, 0.3), 0.1)) << n;
    EXPECT_NEAR(Determinant(given) / Determinant(FormOf(x)), 1, 1e-3) << n;
    EXPECT_NEAR(std::abs(x.a - twin.a) + std::abs(x.b - twin.b) + std::abs(x.c - twin.c), 0, 0.03);
  }
  problem.eqtol = 0.5f;
  const Form p{31, 47, 71};
  // Of the points that each centering leaves: three that make all of them.
  const Axes bases[] = {{{{1, 0, 0}, {0, 1, 1}, {0, -1, 1}}},
                        {{{0, 1, 0}, {1, 0, 1}, {-1, 0, 1}}},
                        {{{0, 0, 1}, {1, 1, 0}, {-1, 1, 0}}},
                        {{{0, 1, 1}, {1, 0, 1}, {1, 1, 0}}},
                        {{{-1, 1, 1}, {1, -1, 1}, {1, 1, -1}}}};
  for (int n = 0; n < 100; ++n) {
    Lattice x = LatticeOf(OtherAxes(Rebased(p, bases[n % 5]), random));
    ASSERT_TRUE(Norm3(x, problem, nullptr)) << n;
    EXPECT_LT(Difference(x, LatticeOf(p)), 0.15) << n;
  }
}

TEST(ItoLattices, EqualIsWhatDiffersByTheTolerance) {
  const ItoProblem problem = ProblemAt({85}, 1);
  for (const float more : {0.0f, 0.01f})
    for (Lattice x : {Lattice{100, 150, 200, 0.5f + more},
                      {100, 150, 100.5f + more, 0, 30},
                      {100, 150, 207, 0, 100.5f + more},
                      {207, 150, 100, 0, 100.5f + more}}) {
      EXPECT_TRUE(Norm3(x, problem, nullptr));
      EXPECT_EQ(x.d == 0 && x.e == 0 && x.f == 0, more == 0) << x.a << ' ' << x.b << ' ' << x.c;
    }
}

TEST(ItoLattices, WhatIsNoLatticeIsDiscarded) {
  ItoProblem problem = ProblemAt({85}, 1);
  problem.abclimit = 20;
  for (Lattice x : {Lattice{100, 100, 100, -190, 190, 190},
                    {100, 100, 100, 250},
                    {100, 19, 100},
                    {19, 100, 100},
                    {100, 100, 19},
                    {kNan, 100, 100},
                    {100, 100, 100, kNan}}) {
    EXPECT_FALSE(Norm3(x, problem, nullptr));
    EXPECT_EQ(x.a, 0);
  }
  Lattice least{100, 150, 20};
  EXPECT_TRUE(Norm3(least, problem, nullptr));
  EXPECT_EQ(FormOf(least), (Form{20, 100, 150}));
}

// One of all indices that have the same q by the symmetry of the constants.
bool IsFirstOfMates(const Hkl& r, const Lattice& x) {
  for (int signs = 0; signs < 8; ++signs) {
    const int sh = signs & 1 ? -1 : 1, sk = signs & 2 ? -1 : 1, sl = signs & 4 ? -1 : 1;
    if ((x.f != 0 && sh != sk) || (x.e != 0 && sl != sh) || (x.d != 0 && sk != sl)) continue;
    if (std::array{sh * r.h, sk * r.k, sl * r.l} > std::array{r.h, r.k, r.l}) return false;
  }
  return true;
}

// A cycle with windows of `width`, in double precision.
void ExpectCycle(const Lattice& start, const ItoProblem& problem, double width, FitLines which) {
  const std::size_t nlines = which == FitLines::All ? problem.lines.size() : 20;
  Lattice x = start;
  const LatticeFit fit = Refpar(x, problem, 1, which, nullptr);
  const Form before = FormOf(start), after = FormOf(x);
  std::vector<std::size_t> refined;
  for (std::size_t i = 0; i < 6; ++i)
    if (before[i] != 0) refined.push_back(i);
  const auto row = [&](const Hkl& r) {
    const int products[] = {r.h * r.h, r.k * r.k, r.l * r.l, r.k * r.l, r.l * r.h, r.h * r.k};
    std::vector<double> values;
    for (const std::size_t i : refined) values.push_back(products[i]);
    return values;
  };
  std::vector<Hkl> calculated;
  for (int h = -9; h <= 9; ++h)
    for (int k = -9; k <= 9; ++k)
      for (int l = -9; l <= 9; ++l)
        if (const double q = At(FormOf(start), h, k, l);
            q > 1 && q < problem.lines[nlines - 1].high + 1)
          if (IsFirstOfMates({h, k, l}, start) &&
              TypeAllows(static_cast<int>(start.type), {h, k, l}))
            calculated.push_back({h, k, l});
  const auto q = [&](const Hkl& r) { return At(before, r.h, r.k, r.l); };

  LeastSquares squares(refined.size());
  double misses = 0, sum = 0, weights = 0;
  int lines = 0;
  std::size_t last = 0;
  for (std::size_t i = 0; i < nlines; ++i) {
    const auto miss = [&](const Hkl& r) { return problem.lines[i].q - q(r); };
    auto near = calculated;
    std::erase_if(near, [&](const Hkl& r) { return std::abs(miss(r)) > width; });
    const bool counts = lines < 20;
    if (counts) last = i;
    if (near.empty()) continue;
    double total = 0, nearest = 9;
    for (const Hkl& r : near) {
      total += std::exp(-miss(r) * miss(r));
      nearest = std::min(nearest, std::abs(miss(r)));
    }
    if (counts) misses += nearest, ++lines;
    for (const Hkl& r : near) {
      const double weight = std::exp(-miss(r) * miss(r)) / total;
      squares.Add(row(r), miss(r), weight);
      sum += weight * miss(r) * miss(r);
      weights += weight;
    }
  }
  const auto ncalc = std::ranges::count_if(
      calculated, [&](const Hkl& r) { return q(r) < problem.lines[19].high; });
  EXPECT_EQ(fit.ncalc, ncalc);
  EXPECT_EQ(x.lines, lines);
  EXPECT_EQ(x.type, start.type);
  EXPECT_NEAR(x.merit / (problem.lines[last].q * lines / (misses * 2 * ncalc)), 1, 1e-3);
  squares.Solve();
  Form expected = before, esd{};
  for (std::size_t j = 0; j < refined.size(); ++j) {
    expected[refined[j]] += squares.Shift(j);
    esd[refined[j]] = std::sqrt(sum / (weights - refined.size()) * squares.InverseDiagonal(j));
  }
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_NEAR(after[i], expected[i], 2e-3);
    EXPECT_NEAR(fit.esd[i], esd[i], 1e-3 * esd[i]);
  }
}

TEST(ItoLattices, ACycleIsWeightedLeastSquares) {
  std::mt19937 random(13);
  std::uniform_real_distribution<double> noise(-0.4, 0.4);
  for (const auto& [d, e, f] : {std::tuple(0.0f, 0.0f, 0.0f),
                                {0.0f, 33.0f, 0.0f},
                                {44.0f, 0.0f, 0.0f},
                                {0.0f, 0.0f, -29.0f},
                                {0.0f, 33.0f, 44.0f},
                                {21.0f, 33.0f, 44.0f}})
    for (const int type : {TypeP, TypeC}) {
      Lattice x{83, 117, 151, d, e, f};
      auto q = LinesOf(x, [&](const Hkl& r) { return TypeAllows(type, r); });
      for (double& each : q) each += noise(random);
      q[7] += 3.9;  // indexed by none, or by another
      x.a += 0.3f, x.b -= 0.2f, x.c += 0.1f;
      x.lines = 1, x.type = static_cast<float>(type);
      for (const FitLines which : {FitLines::First20, FitLines::All})
        ExpectCycle(x, ProblemAt(q, 2), 2, which);
    }
}

TEST(ItoLattices, TheTypeFollowsTheAbsences) {
  for (const Lattice& truth : {Lattice{31, 47, 71}, Lattice{31, 47, 71, 0, 12}})
    for (int type = TypeA; type <= TypeP; ++type) {
      Lattice x = truth;
      const auto allowed = LinesOf(x, [&](const Hkl& r) { return TypeAllows(type, r); });
      const LatticeFit fit = Refpar(x, ProblemAt(allowed, 0.05), 3, FitLines::First20, nullptr);
      EXPECT_EQ(x.type, type);
      for (const Calculated& c : fit.calculated) EXPECT_TRUE(TypeAllows(type, c.hkl));
    }
  const std::pair<Hkl, std::string> rows[] = {
      {{1, 0, 0}, "ap"},   {{0, 1, 0}, "bp"},  {{0, 0, 1}, "cp"},     {{0, 1, 1}, "aip"},
      {{1, 0, -1}, "bip"}, {{1, 1, 0}, "cip"}, {{1, -1, 1}, "abcfp"}, {{2, 0, -4}, "abcifp"}};
  for (const auto& [hkl, types] : rows)
    for (int type = TypeA; type <= TypeP; ++type)
      EXPECT_EQ(TypeAllows(type, hkl), types.find(kTypeLetters[type - 1]) != std::string::npos);
}

TEST(ItoLattices, LinesThatDoNotFixTheConstantsLeaveThem) {
  const Lattice given{100, 2000, 3000};
  Lattice x = given;
  auto problem = ProblemAt(std::vector(20, 100.5), 1);
  const LatticeFit fit = Refpar(x, problem, 1, FitLines::First20, nullptr);
  EXPECT_TRUE(fit.singular);
  // All are indexed with one calculated line.
  for (std::size_t i = 0; i < 20; ++i) EXPECT_EQ(fit.candidates.at(i).at(0).used, i > 0);
  EXPECT_EQ(FormOf(x), FormOf(given));
  problem.trials = {given};
  const std::string text = ListingOf([&](Listing& listing) {
    EngineRun run;
    LatticeStage(problem, {}, listing, run);
  });
  EXPECT_NE(text.find("matrix is singular"), std::string::npos);
}

struct Accepted {
  std::vector<Lattice> lattices;
  std::string listing;
};
Accepted RunStage(const ItoProblem& problem, const std::vector<Zone>& zones = {}) {
  Accepted stage;
  EngineRun run;
  stage.listing = ListingOf(
      [&](Listing& listing) { stage.lattices = LatticeStage(problem, zones, listing, run); });
  return stage;
}

TEST(ItoLattices, TheListingTellsWhatBecomesOfEach) {
  ItoProblem problem = ProblemAt(LinesOf(kTriclinic), 0.2);
  EXPECT_EQ(Count(RunStage(problem).listing, "no lattices have been found"), 1);
  Lattice start = kTriclinic;
  start.a += 0.1f;
  problem.trials = {start, {150, 217, 333}, {100, 100, 100, -190, 190, 190}};
  Accepted stage = RunStage(problem);
  ASSERT_EQ(stage.lattices.size(), 1u);
  EXPECT_LT(Difference(stage.lattices[0], kTriclinic), 0.1);
  for (const char* text : {"lattice accepted.", "not enough lines indexed", "discarded by norm3"})
    EXPECT_EQ(Count(stage.listing, text), 1) << text;
  problem.cards.prntmr = stage.lattices[0].merit * 2;
  stage = RunStage(problem);
  EXPECT_EQ(Count(stage.listing, "figure of merit is too low."), 1);
  EXPECT_EQ(Count(stage.listing, "not one acceptable lattice has been found for this"), 1);
  problem.cards.prntmr = 4;
  problem.cards.prntln = 20;  // to be exceeded
  EXPECT_EQ(Count(RunStage(problem).listing, "not enough lines indexed"), 2);
}

TEST(ItoLattices, ZonesMakeTheLatticeAndItsTwinsAreTold) {
  const Lattice& x = kTriclinic;
  const Zone first{.a = x.a, .b = x.b, .f = x.f}, second{.a = x.a, .b = x.c, .f = x.e};
  ItoProblem problem = ProblemAt(LinesOf(x), 0.2);
  // Each with itself and with the others, by the digits of both zones; one makes too few lattices,
  // and then two are taken.
  for (const int zones : {3, 1}) {
    problem.cards.nz1 = problem.cards.nz2 = zones;
    const auto [accepted, listing] = RunStage(problem, {first, second, first});
    const int third = zones == 3;
    for (const auto& [pedigree, count] : {std::pair("    11\n", 4),
                                          {"    12\n", 1},
                                          {"    22\n", 4},
                                          {"    13\n", third},
                                          {"    23\n", third},
                                          {"    33\n", 4 * third}})
      EXPECT_EQ(Count(listing, pedigree), count) << pedigree;
    EXPECT_EQ(Count(listing, "230. is the same as lattice  120."), third);
    ASSERT_EQ(accepted.size(), 1u);
    EXPECT_LT(Difference(accepted[0], x), 0.1);
    EXPECT_EQ(accepted[0].pedigree, 120);
  }
}

}  // namespace
