// Patterns of many files on one grid, and their counts as levels.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "series/levels.h"
#include "series/seriesmap.h"
#include "support/support.h"

namespace {

const auto kGoOn = [](float) { return true; };

class SeriesFiles : public testing::Test {
 protected:
  // Counts 1000 * number + two-theta from `from` in steps of `step`.
  std::string Pattern(int number, double from, double step, int points) {
    std::string text;
    for (int i = 0; i < points; ++i) {
      const double tth = from + step * i;
      text += std::to_string(tth) + " " + std::to_string(1000 * number + tth) + "\n";
    }
    const std::string path = work_.file(std::to_string(number) + ".xy");
    WriteFile(path, text);
    return path;
  }
  TempDir work_;
};

TEST_F(SeriesFiles, StandOnTheGridOfTheFirstOne) {
  WriteFile(work_.file("bad.xy"), "no pattern\n");
  const std::vector<std::string> files{work_.file("bad.xy"), Pattern(2, 10, 0.5, 61),
                                       Pattern(3, 10, 0.5, 61), work_.file("missing.xy"),
                                       Pattern(5, 12.25, 0.3, 50)};
  const auto map = ReadSeriesMap(files, kGoOn);
  ASSERT_TRUE(map);
  ASSERT_EQ(map->Columns(), 61u);
  ASSERT_EQ(map->Rows(), 5u);
  EXPECT_FLOAT_EQ(map->tth[60], 40);
  EXPECT_FLOAT_EQ(map->Row(2)[10], 3015);
  for (const std::size_t unread : {0, 3})
    for (const float counts : map->Row(unread)) ASSERT_TRUE(std::isnan(counts));
  // From 12.25 to 26.95: in between a straight line meets the counts, beyond there are none.
  EXPECT_TRUE(std::isnan(map->Row(4)[4]));
  EXPECT_NEAR(map->Row(4)[5], 5012.5F, 0.01F);
  EXPECT_NEAR(map->Row(4)[33], 5026.5F, 0.01F);
  EXPECT_TRUE(std::isnan(map->Row(4)[34]));
  EXPECT_EQ(map->note, "2 files could not be read");

  EXPECT_FALSE(ReadSeriesMap(files, [](float) { return false; }));
  EXPECT_TRUE(ReadSeriesMap(std::vector<std::string>{work_.file("bad.xy")}, kGoOn)->tth.empty());
  EXPECT_TRUE(ReadSeriesMap({}, kGoOn)->tth.empty());
}

// 9001 points are joined by three, 4500 names of one file are thinned to 4000 of them.
TEST_F(SeriesFiles, TooManyAreReduced) {
  const std::string wide = Pattern(1, 0.01, 0.01, 9001), small = Pattern(2, 10, 1, 3);
  const auto columns = ReadSeriesMap(std::vector<std::string>{wide}, kGoOn);
  ASSERT_EQ(columns->Columns(), 3001u);
  EXPECT_NEAR(columns->tth[1], 0.05F, 1e-6F);
  EXPECT_NEAR(columns->Row(0)[1], 1000.06F, 1e-3F);
  EXPECT_EQ(columns->note, "highest of each 3 points");
  const auto rows = ReadSeriesMap(std::vector<std::string>(4500, small), kGoOn);
  ASSERT_EQ(rows->Rows(), 4000u);
  EXPECT_EQ(rows->files.front(), 1);
  EXPECT_EQ(rows->files.back(), 4499);
  EXPECT_EQ(rows->files[2000], 2251);
  EXPECT_EQ(rows->note, "4000 of 4500 files, evenly chosen");
}

// By the formula, but for counts within a rounding error of a level's end.
TEST(Levels, AreThoseOfTheScale) {
  std::mt19937 random(4);
  const Range ranges[] = {{0, 10000}, {1, 1e7F}, {99990, 100010}, {-500, 3000}, {1e-3F, 1}};
  for (const CountScale scale : {CountScale::Linear, CountScale::SquareRoot, CountScale::Logarithm})
    for (const Range& range : ranges) {
      if (scale == CountScale::Logarithm && range.lo <= 0) continue;
      const LevelTable table(scale, range);
      std::uniform_real_distribution<float> place(-0.1F, 1.1F);
      for (int i = 0; i < 2000; ++i) {
        const float counts = range.lo + (range.hi - range.lo) * std::pow(place(random), 3.0F);
        const double share = ScaledCounts(scale, range, counts);
        const double level = 1 + 254 * std::clamp(share, 0.0, 1.0);
        ASSERT_NEAR(table.Of(counts), level, 0.51) << counts << " " << range.lo;
      }
      EXPECT_EQ(table.Of(range.lo), 1);
      EXPECT_EQ(table.Of(range.hi), 255);
      EXPECT_EQ(table.Of(INFINITY), 255);
      EXPECT_EQ(table.Of(-INFINITY), 1);
      EXPECT_EQ(table.Of(NAN), 0);
    }
}

// On grey paper, and for eyes that lack one kind of cones, a higher level is always lighter.
TEST(Levels, ColoursRiseInLightness) {
  const auto lightness = [](std::uint32_t colour) {
    const auto linear = [&](int shift) { return std::pow((colour >> shift & 255) / 255.0, 2.2); };
    return 0.2126 * linear(0) + 0.7152 * linear(8) + 0.0722 * linear(16);
  };
  double last = 0;
  for (int level = 1; level < 256; level += 6) {
    const double now = lightness(MapColours()[static_cast<std::size_t>(level)]);
    EXPECT_GT(now, last) << level;
    last = now;
  }
  EXPECT_EQ(MapColours()[1], 0x540144u);
  EXPECT_EQ(MapColours()[255], 0x25e7fdu);
}

}  // namespace
