// From a measured scan to a pattern: axes, order, too many points, sums, choices.
#include "patternfiles/import/prepared.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace {

using Numbers = std::vector<std::size_t>;

MeasuredScan Scan(const std::vector<double>& x, const std::vector<double>& counts) {
  MeasuredScan scan;
  scan.x = x;
  scan.counts = counts;
  return scan;
}

// The 111 line of silicon stands at the same place on all axes.
TEST(Prepared, AxesOfDAndQBecomeTwoTheta) {
  constexpr double kD = 3.1356, kWave = 1.5406;
  const double tth = 2 * std::asin(kWave / (2 * kD)) * 180 / std::numbers::pi;  // 28.44
  MeasuredScan d = Scan({kD, 2 * kD, 0.5}, {30, 20, 10}),
               q = Scan({2 * std::numbers::pi / kD, 99}, {30, 1});
  d.axis = ScanAxis::D;
  q.axis = ScanAxis::Q;
  EXPECT_TRUE(NeedsWavelength(d));
  const PreparedPattern byd = Prepared(d, kWave, 100), byq = Prepared(q, kWave, 100);
  ASSERT_EQ(byd.tth.size(), 2u);  // a d of 0.5 is out of reach
  EXPECT_NEAR(byd.tth[1], tth, 1e-4);
  EXPECT_EQ(byd.counts, (std::vector<float>{20, 30}));  // rising
  EXPECT_EQ(byd.note, "1 point left out, at no two-theta of their own");
  ASSERT_EQ(byq.tth.size(), 1u);
  EXPECT_NEAR(byq.tth[0], tth, 1e-4);
  d.wavelengths[0] = kWave / 2;  // what the file states comes first
  EXPECT_FALSE(NeedsWavelength(d));
  EXPECT_NEAR(Prepared(d, kWave, 100).tth[1],
              2 * std::asin(kWave / (4 * kD)) * 180 / std::numbers::pi, 1e-4);
}

TEST(Prepared, TooManyPointsAreMergedWithTheirCountsAdded) {
  std::vector<double> x, y;
  for (int i = 0; i < 25; ++i) {
    x.push_back(10 + 0.01 * i);
    y.push_back(i);
  }
  MeasuredScan scan = Scan(x, y);
  scan.esd.assign(x.size(), 2);
  const PreparedPattern pattern = Prepared(scan, 1.54, 10);
  ASSERT_EQ(pattern.tth.size(), 8u);  // 25 by 3, one point over
  EXPECT_FLOAT_EQ(pattern.tth[0], 10.01f);
  EXPECT_FLOAT_EQ(pattern.tth[7], 10.22f);
  EXPECT_EQ(pattern.counts[0], 0 + 1 + 2);
  EXPECT_EQ(pattern.counts[7], 21 + 22 + 23);
  EXPECT_FLOAT_EQ(pattern.esd[7], std::sqrt(12.0f));
  EXPECT_EQ(pattern.note, "25 points merged by 3, counts added");
  EXPECT_EQ(Prepared(Scan(x, y), 1.54, 25).tth.size(), 25u);
}

TEST(Prepared, UnevenStepsAndEqualPositionsAreTold) {
  EXPECT_EQ(Prepared(Scan({1, 2, 3.5, 4}, {1, 1, 1, 1}), 1.54, 9).note, "uneven steps");
  // Steps of .0125, rounded in the file.
  EXPECT_EQ(Prepared(Scan({1, 1.013, 1.025, 1.038, 1.05}, {1, 1, 1, 1, 1}), 1.54, 9).note, "");
  const PreparedPattern twice = Prepared(Scan({2, 1, 2}, {20, 10, 30}), 1.54, 9);
  EXPECT_EQ(twice.counts, (std::vector<float>{10, 20}));
  EXPECT_TRUE(Prepared(Scan({}, {}), 1.54, 9).tth.empty());
  const PreparedPattern huge = Prepared(Scan({1, 2, 1e9, 3}, {5, 1e39, 6, 7}), 1.54, 9);
  EXPECT_EQ(huge.counts, (std::vector<float>{5, 7}));
}

TEST(SumOf, AddsScansOfOneGridAndRefusesOthers) {
  MeasuredScan a = Scan({1, 2, 3}, {1, 2, 3}), b = Scan({1, 2, 3.05}, {10, 20, 30});
  a.seconds = b.seconds = 2;
  a.esd = {3, 3, 3};
  b.esd = {4, 4, 4};
  const MeasuredScan sum = SumOf(std::vector{a, b, a});
  EXPECT_EQ(sum.counts, (std::vector<double>{12, 24, 36}));
  EXPECT_EQ(sum.seconds, 6);
  EXPECT_NEAR(sum.esd[0], std::sqrt(9 + 16 + 9), 1e-12);
  EXPECT_THROW(SumOf(std::vector{a, Scan({1, 2, 3.2}, {1, 1, 1})}), NotReadable);
  EXPECT_THROW(SumOf(std::vector{a, Scan({1, 2}, {1, 1})}), NotReadable);
}

TEST(ScanNumbers, OfTextsAsPeopleWriteThem) {
  EXPECT_EQ(ScanNumbers("1", 3), (Numbers{1}));
  EXPECT_EQ(ScanNumbers(" 3 , 1-2,2", 3), (Numbers{3, 1, 2}));
  for (const char* wrong :
       {"", "0", "4", "1-4", "2-1", "1,", ",1", "1x", "x", "-1", "1--2", "99999999999999999999"})
    EXPECT_TRUE(ScanNumbers(wrong, 3).empty()) << wrong;
}

}  // namespace
