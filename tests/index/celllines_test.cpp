// Lines of a chosen cell: well-known patterns, all indices in double precision, what is left out,
// and cells that are none.
#include "index/celllines.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/lattices.h"

namespace {

constexpr float kCu = 1.5406f;
constexpr int kTriclinic = 1, kCubic = 16, kTrigonal = 8;

CellLines Asked(const UnitCell& cell, int lattice, int laueclass, TthRange range = {10, 90}) {
  return {.cell = cell,
          .wavelength = kCu,
          .lattice = lattice,
          .offset = 0,
          .laueclass = laueclass,
          .range = range,
          .step = 0.02f,
          .zeroshift = 0};
}

double TthOfD(double d) { return 2 * std::asin(kCu / 2 / d) / kDegree; }

// Halite, 5.6402 angstrom, and corundum on hexagonal axes. The family whose indices sort last, by l
// in front of k and h, counts one more.
TEST(CellLines, OfWellKnownCrystals) {
  const Reflection halite[] = {
      {27.37f, {1, 1, 1}, 8},  {31.70f, {0, 0, 2}, 6},  {45.45f, {0, 2, 2}, 12},
      {53.87f, {1, 1, 3}, 24}, {56.47f, {2, 2, 2}, 8},  {66.23f, {0, 0, 4}, 6},
      {73.07f, {1, 3, 3}, 24}, {75.29f, {0, 2, 4}, 24}, {83.99f, {2, 2, 4}, 25}};
  auto lines = ReflectionsFromCell(Asked({{5.6402f, 5.6402f, 5.6402f, 90, 90, 90}}, 6, kCubic));
  ASSERT_EQ(lines.size(), std::size(halite));
  for (std::size_t j = 0; j < lines.size(); ++j) {
    EXPECT_NEAR(lines[j].tth, halite[j].tth, 0.015);
    EXPECT_EQ(lines[j].multiplicity, halite[j].multiplicity) << j;
    EXPECT_EQ(PackHkl(lines[j].hkl), PackHkl(halite[j].hkl)) << j;
  }
  const Hkl corundum[] = {{0, 0, 3}, {1, 0, 1}, {0, 1, 2}, {1, 0, 4}, {1, 1, 0},
                          {0, 1, 5}, {0, 0, 6}, {1, 1, 3}, {0, 2, 1}, {2, 0, 2},
                          {0, 2, 4}, {1, 0, 7}, {2, 0, 5}, {1, 1, 6}};
  lines = ReflectionsFromCell(
      Asked({{4.7587f, 4.7587f, 12.9929f, 90, 90, 120}}, 7, kTrigonal, {20, 58}));
  ASSERT_EQ(lines.size(), std::size(corundum));
  for (std::size_t j = 0; j < lines.size(); ++j) {
    const auto [h, k, l] = corundum[j];
    const double square =
        4 * (h * h + h * k + k * k) / (3 * 4.7587 * 4.7587) + l * l / (12.9929 * 12.9929);
    EXPECT_NEAR(lines[j].tth, TthOfD(1 / std::sqrt(square)), 0.001) << j;
  }
}

TEST(CellLines, StandApartAndFollowWhatIsAsked) {
  // 001 and 100 of this cell lie 0.1 degrees apart.
  CellLines asked = Asked({{4.0f, 4.0f, 4.0185f, 90, 90, 90}}, 1, 12, {20, 25});
  const auto both = ReflectionsFromCell(asked);
  ASSERT_EQ(both.size(), 2u);
  EXPECT_EQ(both[0].hkl.l, 1);
  asked.step = 0.2f;
  asked.zeroshift = 0.25f;
  asked.offset = 1;
  const auto one = ReflectionsFromCell(asked);
  ASSERT_EQ(one.size(), 1u);
  EXPECT_EQ(one[0].hkl.l, 1);
  EXPECT_NEAR(one[0].tth, both[0].tth + 1.25, 1e-4);
  // On rhombohedral axes R leaves out nothing.
  const UnitCell rhombohedral{{5, 5, 5, 55, 55, 55}};
  EXPECT_EQ(ReflectionsFromCell(Asked(rhombohedral, 7, 10)).size(),
            ReflectionsFromCell(Asked(rhombohedral, 1, 10)).size());
  // A wavelength that is not given is that of copper.
  asked = Asked({{4, 4, 4, 90, 90, 90}}, 1, kCubic, {20, 25});
  asked.wavelength = 0;
  EXPECT_NEAR(ReflectionsFromCell(asked).at(0).tth, 2 * std::asin(1.540598 / 8) / kDegree, 1e-4);
}

TEST(CellLines, StopAtTheirLimits) {
  EXPECT_EQ(ReflectionsFromCell(Asked({{20, 21, 22, 85, 95, 100}}, 1, kTriclinic)).size(), 200u);
  // 300 angstrom: the line 40 of the long edge is the last, at 11.79 degrees.
  const auto lines = ReflectionsFromCell(Asked({{300, 0.5f, 0.5f, 90, 90, 90}}, 1, 5, {10, 40}));
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back().hkl.h, 40);
  EXPECT_NEAR(lines.back().tth, TthOfD(300.0 / 40), 0.001);
}

TEST(CellLines, OfNoCellAreNone) {
  constexpr float nan = std::numeric_limits<float>::quiet_NaN(), huge = 3e38f;
  for (const UnitCell& cell : {
           UnitCell{{5, 5, 5, 60, 60, 130}},
           UnitCell{{5, 5, 5, 90, 90, 180}},
           UnitCell{{0, 0, 0, 0, 0, 0}},
           UnitCell{{-5, 5, 5, 90, 90, 90}},
           UnitCell{{nan, 5, 5, 90, 90, 90}},
           UnitCell{{5, 5, 5, nan, 90, 90}},
           UnitCell{{huge, huge, huge, 90, 90, 90}},
           UnitCell{{1e-30f, 5, 5, 90, 90, 90}},
       })
    EXPECT_TRUE(ReflectionsFromCell(Asked(cell, 1, kTriclinic)).empty())
        << cell(1) << ' ' << cell(6);
  const UnitCell good{{5, 5, 5, 90, 90, 90}};
  for (const TthRange& range : {TthRange{0, 0}, TthRange{nan, nan}, TthRange{60, 20}})
    EXPECT_TRUE(ReflectionsFromCell(Asked(good, 1, kCubic, range)).empty());
  // More than there is room for while searching, in no time.
  EXPECT_LE(
      ReflectionsFromCell(Asked({{900, 900, 900, 90, 90, 90}}, 1, kTriclinic, {0, 170})).size(),
      200u);
}

}  // namespace
