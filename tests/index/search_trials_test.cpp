// What the searches are made of: index sets, the counter of lines against a plain count, the list
// of candidates, and the limits of a trial.
#include <gtest/gtest.h>

#include <set>

#include "index/simulate.h"
#include "index/treor/candidates.h"
#include "index/treor/cofactors.h"
#include "index/treor/generators.h"
#include "index/treor/hits.h"
#include "index/treor/oblique.h"
#include "index/treor/trials.h"

namespace {

std::string Words(const std::vector<Hkl>& sets) {
  std::string words;
  for (const auto& [h, k, l] : sets) words += WriteRecord<"(3i2,',')">(h, k, l);
  return words;
}

TEST(TreorIndexSets, ComeInTheirOrder) {
  EXPECT_EQ(Words(IndexSets({2, 1, 1, 2}, HSign::Positive)),
            " 1 0 0, 2 0 0, 0 1 0, 1 1 0, 0 0 1, 1 0 1, 0 1 1,");
  EXPECT_EQ(Words(IndexSets({1, 1, 1, 3}, HSign::Both)),
            " 1 0 0, 0 1 0, 1 1 0, 0 0 1, 1 0 1,-1 0 1, 0 1 1, 1 1 1,-1 1 1,");
  EXPECT_EQ(Words(OrderedSets({2, 2, 2, 3}, Equivalent::All)),
            " 1 0 0, 2 0 0, 1 1 0, 2 1 0, 1 1 1,");
  EXPECT_EQ(Words(OrderedSets({1, 1, 1, 2}, Equivalent::FirstTwo)), " 1 0 0, 1 1 0, 0 0 1, 1 0 1,");
  EXPECT_TRUE(IndexSets({2, 2, 2, 0}, HSign::Both).empty());
}

// The count as it is defined, over far more indices than are needed.
int PlainCount(const TreorSearch& search, const Constants& constants, int lines) {
  const auto& [a, b, c, d, e, f] = constants;
  std::set<int> marked;
  for (int h = -14; h <= 14; ++h)
    for (int k = -14; k <= 14; ++k)
      for (int l = 0; l <= 14; ++l) {
        const int code = LineCode(a) * h * h + LineCode(b) * k * k + LineCode(c) * l * l +
                         LineCode(d) * h * l + LineCode(e) * h * k + LineCode(f) * k * l;
        const bool any = h != 0 || k != 0 || l != 0;
        const int tolerance = code < search.limits.ssqtl ? search.limits.d1 : search.limits.d2;
        for (int i = 1; i <= lines; ++i)
          if (any && std::abs(search.Line(i).code - code) <= tolerance) marked.insert(i);
      }
  return static_cast<int>(marked.size());
}

TEST(TreorHits, AreThoseOfAPlainCount) {
  std::mt19937 generator(3);
  const auto between = [&](double low, double high) {
    return std::uniform_real_distribution(low, high)(generator);
  };
  for (const auto& [system, axes] : kCells) {
    int most = 0, givenup = 0;
    for (int trial = 0; trial < 60; ++trial) {
      DataSet data;
      data.search.options.use = 19;
      data.search.options.iq = 8;
      data.search.limits.d1 = 20, data.search.limits.d2 = 40, data.search.limits.ssqtl = 5000;
      for (int i = 0; i < 22; ++i)
        data.search.lines.push_back({0, static_cast<int>(between(500, 11000)), ""});
      std::ranges::sort(data.search.lines, {}, &TreorLine::code);
      Cell cell = axes;
      const double larger = between(1, 2.4);
      for (int k = 0; k < 3; ++k) cell[k] *= larger;
      const Constants constants = ConstantsOf(cell);
      int expected = PlainCount(data.search, constants, 19);
      // Of the first 2 x 19/3 + 3 lines a triclinic cell has to index all but 19 - 8.
      const bool few = 15 - PlainCount(data.search, constants, 15) > 11;
      if (system == CrystalSystem::Triclinic && few) expected = 0, ++givenup;
      EXPECT_EQ(HitCounter(data.search).Count(system, constants), expected);
      most = std::max(most, expected);
    }
    EXPECT_GE(most, 6) << "a test of something";
    EXPECT_TRUE(system != CrystalSystem::Triclinic || givenup > 0);
  }
}

TEST(TreorHits, NoneOfWhatIsNoCell) {
  DataSet data;
  data.search.options.use = 2;
  data.search.limits.d1 = data.search.limits.d2 = 20;
  HitCounter none(data.search);
  EXPECT_EQ(none.Count(CrystalSystem::Cubic, {0.01f, 0.01f, 0.01f}), 0) << "without lines";
  data.search.lines = {{0.01f, 1000, ""}, {0.02f, 2000, ""}};
  HitCounter counter(data.search);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (const auto& [first, s] :  // the first system that has such constants
       {std::pair(CrystalSystem::Orthorhombic, Constants{0, 0.01f, 0.01f}),
        {CrystalSystem::Orthorhombic, {1e-7f, 1e-7f, 1e-7f}},
        {CrystalSystem::Monoclinic, {0.01f, 0.01f, 0.01f, 0.03f}},
        {CrystalSystem::Triclinic, {0.01f, 0.01f, 0.01f, 0, 0.02f, 0}},
        {CrystalSystem::Triclinic, {nan, nan, nan, nan, nan, nan}},
        {CrystalSystem::Triclinic, {1e30f, 1e30f, 1e30f, 1e30f}}})
    for (const auto system :
         {CrystalSystem::Orthorhombic, CrystalSystem::Monoclinic, CrystalSystem::Triclinic})
      if (system >= first) {
        EXPECT_EQ(counter.Count(system, s), 0);
      }
  EXPECT_EQ(counter.Count(CrystalSystem::Cubic, {0.01f, 0.01f, 0.01f}), 2);
  data.search.limits.d2 = std::numeric_limits<int>::max();
  EXPECT_EQ(HitCounter(data.search).Count(CrystalSystem::Cubic, {0.02f, 0.02f, 0.02f}), 2);
}

TEST(TreorZone, LeavesOutItsFirstLines) {
  DataSet data;
  data.search.options.use = 6;
  data.search.options.d1 = 0.0002f;
  // a, c, a + c + d, none, 4 a, none.
  for (const float s : {0.01f, 0.02f, 0.0351f, 0.0355f, 0.0401f, 0.052f, 0.055f})
    data.search.lines.push_back(LineAt(s));
  const TreorZone zone{0.01f, 0.02f, 0.005f};
  EXPECT_EQ(LineOutside(zone, 1, data.search), 4);
  EXPECT_EQ(LineOutside(zone, 5, data.search), 6);
  EXPECT_EQ(LineOutside(zone, 7, data.search), 0) << "the test lines end before";
}

std::vector<int> Counts(const std::vector<TreorCandidate>& candidates) {
  std::vector<int> counts;
  for (const TreorCandidate& c : candidates) counts.push_back(c.count);
  return counts;
}

TEST(TreorCandidates, TheBestFiveStay) {
  const auto cell = [](float a, int count) {
    return TreorCandidate{CrystalSystem::Orthorhombic, {0.01f, a, 0.02f}, a, 0, count};
  };
  std::vector<TreorCandidate> list;
  for (int count : {16, 18, 17, 16, 19}) StoreCandidate(list, cell(0.001f * count + 0.03f, count));
  EXPECT_EQ(Counts(list), (std::vector{19, 18, 17, 16}));
  EXPECT_FLOAT_EQ(list[0].constants.a, 0.049f) << "axes by falling constants";
  StoreCandidate(list, cell(0.07f, 16));
  EXPECT_EQ(list[3].product, 0.07f) << "smaller cells come first";
  EXPECT_FALSE(StoreCandidate(list, cell(0.04f, 15)));
  EXPECT_EQ(Counts(list), (std::vector{19, 18, 17, 16, 16})) << "no sixth";
  StoreCandidate(list, cell(0.08f, 18));
  EXPECT_EQ(Counts(list), (std::vector{19, 18, 18, 17, 16}));
  EXPECT_EQ(list[1].product, 0.08f);
}

struct OneCell : testing::Test {
  void Prepare(const TrueCell& cell, float volume) {
    data.search.options.use = data.search.options.iq = -1;  // as many as there are
    data.search.options.vol = volume;
    data.search.options.mono = 135;
    data.search.all = TreorLinesAt(Pattern(cell.cell, 25, 0));
    PrepareLines(data.search);
    SetLimits(data.search);
  }
  DataSet data;
};

// Volumes by the direct cell; the limit of hexagonal cells is narrower by the root of 4/3.
TEST_F(OneCell, IsACandidateWithinItsLimits) {
  for (const auto& [system, cell] : kCells) {
    const double volume = VolumeOf(cell) * (system == CrystalSystem::Hexagonal ? 1.1547 : 1);
    for (const double allowed : {0.99, 1.01}) {
      Prepare({system, cell}, static_cast<float>(allowed * volume));
      data.search.options.list = 1;
      data.search.options.iq = data.search.options.use;  // no more than there are
      Trials trials(data.search, Stage::Cubic, system);
      EXPECT_EQ(trials.Test(ConstantsOf(cell)), allowed < 1 ? 0 : data.search.options.use);
    }
  }
  EXPECT_NE(data.Text().find("\n   19  0.027921  0.024423  0.013189  0.006146  0.012711  0.004872"),
            std::string::npos)
      << "listed";
}

// The longest edge is 6.83 angstrom, whichever it is.
TEST_F(OneCell, IsAllowedUpToItsLongestEdge) {
  Cell turned = kCells[5].cell;
  for (int turn = 0; turn < 3; ++turn) {
    std::rotate(turned.begin(), turned.begin() + 1, turned.begin() + 3);
    std::rotate(turned.begin() + 3, turned.begin() + 4, turned.end());
    for (const float cem : {6.82f, 6.84f}) {
      data.search.options.cem = cem;
      SetLimits(data.search);
      EXPECT_EQ(AllowsTriclinic(ConstantsOf(turned), data.search), cem > 6.83f) << turn;
    }
  }
}

TEST_F(OneCell, IsACandidateOnlyInAWindowOfTheDensity) {
  Prepare(kCells[3], 200);
  const Constants s = ConstantsOf(kCells[3].cell);
  const float product = s.a * s.b * s.c;
  using Windows = std::vector<std::array<float, 2>>;
  for (const auto& [windows, count] :
       {std::pair{Windows{{0, product * 0.9f}, {product * 1.1f, 1}}, 0},
        std::pair{Windows{{0, product * 0.5f}, {product * 0.9f, product * 1.1f}}, 19}}) {
    data.search.limits.density = windows;
    EXPECT_EQ(Trials(data.search, Stage::Orthorhombic, CrystalSystem::Orthorhombic).Test(s), count);
  }
}

// After 25 cells the limit is the mean of the old one and of the volumes found.
TEST_F(OneCell, MovesTheVolumeLimit) {
  const float volume = 5.43f * 4.83f * 8.14f * std::sin(107.58f * static_cast<float>(kDegree));
  const auto limit = [&](Stage stage, bool stepped, int cells) {
    Prepare(kCells[4], 1000);
    data.search.options.stepped = stepped;
    Trials trials(data.search, stage, CrystalSystem::Monoclinic);
    for (int n = 0; n < cells; ++n) trials.Test(ConstantsOf(kCells[4].cell));
    return trials.Limits().stagevol;
  };
  EXPECT_EQ(limit(Stage::Monoclinic, true, 24), 1000);
  EXPECT_NEAR(limit(Stage::Monoclinic, true, 49), (1000 + volume) / 2, 0.1);
  EXPECT_NEAR(limit(Stage::TriclinicZone, true, 50), (1000 + 3 * volume) / 4, 0.1);
  EXPECT_EQ(limit(Stage::TriclinicZone, false, 50), 1000);
  EXPECT_NEAR(limit(Stage::Triclinic, false, 25), (1000 + volume) / 2, 0.1);
  EXPECT_EQ(limit(Stage::Orthorhombic, true, 50), 1000);
  const std::string text = data.Text();
  EXPECT_LT(text.find(" NEW MONOCLINIC VOLUME LIMIT=   602. A**3"), text.find("NEW TRICLINIC"));
  EXPECT_EQ(Count(text, "NEW TRICLINIC VOLUME LIMIT=   602."), 2);
}

}  // namespace
