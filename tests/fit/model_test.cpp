// The stages in front of a whole-pattern refinement, on cases that can be reckoned by hand.
#include <gtest/gtest.h>

#include <limits>

#include "background/background.h"
#include "fit/simulate.h"

namespace {

using namespace simulate;

// 501 points of 100 counts from 10 to 60 degrees, no rows.
FitData Flat() {
  FitData data;
  for (int i = 0; i <= 500; ++i) data.x.push_back(10 + 0.1f * static_cast<float>(i));
  data.y.assign(501, 100);
  data.background = data.net = data.calculated = std::vector<float>(501);
  data.fit.fitmin2th = 10, data.fit.fitmax2th = 60;
  return data;
}

struct FitStages : testing::Test {
  void PutRows(const std::vector<float>& positions) {
    data.npeaks = static_cast<int>(positions.size());
    for (int j = 1; j <= data.npeaks; ++j) data.peaks(ptth, j) = positions[j - 1];
  }
  std::pair<int, int> Reached(int entry, int point) {
    return {(*data.ptrefl)(entry, point), (*data.ptrefl)(entry + 1, point)};
  }
  FitData data = Flat();
  FitParameters& fit = data.fit;
  FitModel model = data.Model();
};

using Reach = std::pair<int, int>;

// The row behind one that is deleted is not looked at: 0.8, 20.3 and 171 stay.
TEST_F(FitStages, PrepareTheRowsOfIndividualPositions) {
  PutRows({0.5f, 0.8f, 30, 20, 20.2f, 20.3f, 50, 60, 175, 171, 40});
  for (int j = 1; j <= data.npeaks; ++j) data.peaks(pint, j) = static_cast<float>(100 + j);
  data.peaks(pint, 3) = 0.99f;
  fit.fitposmode = 1;
  fit.fitmin2th = 0, fit.fitmax2th = 180;
  EXPECT_TRUE(PreparePeaks(model));
  ASSERT_EQ(data.npeaks, 7);
  const float rows[][2] = {{0.8f, 102}, {20, 104}, {20.3f, 106}, {40, 111},
                           {50, 107},   {60, 108}, {171, 110}};
  for (int j = 1; j <= 7; ++j) {
    EXPECT_EQ(data.peaks(ptth, j), rows[j - 1][0]);
    EXPECT_EQ(data.peaks(pint, j), rows[j - 1][1]);
    EXPECT_EQ(data.peaks(phkl, j), 4020100);
  }
  fit.fitmin2th = 20.1f, fit.fitmax2th = 55;
  EXPECT_TRUE(PreparePeaks(model));
  EXPECT_EQ(data.npeaks, 3);
  EXPECT_EQ(data.peaks(ptth, 3), 50);
  PutRows({30, 0.2f});
  EXPECT_FALSE(PreparePeaks(model));
}

// At 90 degrees tan(theta) is 1. The widths of 0.2 and, for a square below 0, 0.02 make a mean of
// 0.11, and at two of them a reach of 0.22.
TEST_F(FitStages, AssignWidthsShapesAndReach) {
  for (float& x : data.x) x += 60;
  fit.fwhmleft = {{0.01f, 0.02f, 0.01f}}, fit.fwhmright = {{0.01f, -0.03f, 0.01f}};
  fit.shapeleft = {{0.1f, 0.002f, 0.0001f}}, fit.shaperight = {{0.5f, 0, 0}};
  fit.nfwhmpeak = 2;
  fit.minfwhmsep = 0.5f;
  fit.tthzero = 0.33f;
  PutRows({90, 90.1f, 90.4f});
  AssignProfiles(model);
  EXPECT_NEAR(data.peaks(pfwhm, 1), 0.11, 1e-6);
  EXPECT_NEAR(data.peaks(pfwhm, 3), (0.1 + 0.1 * std::tan(45.2 * kDegree) + 0.02) / 2, 1e-6);
  EXPECT_NEAR(data.peaks(pfwhmr, 1), 0.2, 1e-6);
  EXPECT_NEAR(data.peaks(pshape, 1), (1.09 + 0.5) / 2, 1e-6);
  EXPECT_NEAR(data.peaks(pshaper, 1), 1.09, 1e-6);
  // Point 195 + k lies at 89.73 + k / 10.
  const Reach near[] = {{0, 0}, {1, 1}, {1, 2}, {1, 2}, {1, 2}, {2, 3}, {3, 3}};
  const Reach nearest[] = {{0, 0}, {0, 0}, {0, 0}, {1, 1}, {2, 2}, {0, 0}, {0, 0}};
  for (int k = 0; k < 7; ++k) {
    EXPECT_EQ(Reached(1, 195 + k), near[k]) << k;
    EXPECT_EQ(Reached(3, 195 + k), nearest[k]) << k;
  }
}

TEST_F(FitStages, PolynomialBackgroundInTheRange) {
  fit.bgorder = 4;
  fit.bgcoef = {{50, -20, 7, 3, 1000}};
  fit.fitmin2th = 20.05f, fit.fitmax2th = 40.05f;
  fit.tthzero = 1;
  AssignBackground(model, 0);
  for (int i = 0; i <= 500; ++i) {
    const double x = data.x[i] + 1, z = -1 + (x - 20.05) / 10;
    const bool inside = i >= 91 && i <= 290;
    const double sum = 50 - 20 * z + 7 * (2 * z * z - 1) + 3 * (4 * z * z * z - 3 * z);
    EXPECT_NEAR(data.background[i], inside ? sum : 0, 2e-4) << i;
    EXPECT_NEAR(data.net[i], inside ? 100 - sum : 0, 2e-4) << i;
  }
}

// The points without a reflection keep one percent of their counts; none has a net value below 1
// where the estimate is above the pattern.
TEST_F(FitStages, EstimatedBackgroundIsScaledToFreePoints) {
  fit.bgorder = 0;
  for (int i = 0; i <= 500; ++i) data.y[i] = static_cast<float>(1000 + i + i * 37 % 100);
  for (int i = 200; i < 220; ++i) data.y[i] = 5000, (*data.ptrefl)(1, i + 1) = 1;
  std::vector<float> estimate = data.y;
  BackgroundEnvelope(estimate, 201, 3);
  double counts = 0, sum = 0;
  for (int i = 0; i <= 500; ++i)
    if (i < 200 || i >= 220) counts += data.y[i], sum += estimate[i];
  AssignBackground(model, 3);
  int above = 0;
  for (int i = 0; i <= 500; ++i) {
    const double scaled = 0.99 * counts / sum * estimate[i];
    if (scaled >= data.y[i]) {
      ++above;
      EXPECT_EQ(data.background[i], data.y[i]);
      EXPECT_EQ(data.net[i], 1);
    } else {
      EXPECT_NEAR(data.background[i], scaled, 0.01);
      EXPECT_EQ(data.net[i], data.y[i] - data.background[i]);
    }
  }
  EXPECT_GT(above, 50);
  EXPECT_LT(above, 450);
}

// The net height is the number of the point, and a row of width 0.8 takes it over, divided by the
// rows at its point. Rows beyond the pattern look at its ends.
TEST_F(FitStages, IntensitiesFromTheNetHeightAtTheRow) {
  fit.tthzero = 0.2f;
  for (int i = 0; i <= 500; ++i) data.net[i] = static_cast<float>(i + 1);
  data.net[26] = 0.5f, data.net[60] = -50;
  PutRows({5, 10.7f, 12.2f, 12.3f, 12.8f, 16.2f, 90});
  for (int j = 1; j <= 7; ++j) data.peaks(pfwhm, j) = 0.8f;
  for (int i : {20, 21, 22}) (*data.ptrefl)(3, i) = 3, (*data.ptrefl)(4, i) = 4;
  const auto expect = [&](const std::vector<float>& areas) {
    for (int j = 1; j <= 7; ++j) EXPECT_FLOAT_EQ(data.peaks(pint, j), areas[j - 1]) << j;
  };
  AssignIntensities(model);
  expect({1, 6, 10.5f, 11, 1, -50, 501});
  ReassignIntensities(model);  // those behind a row that overlaps, from the point in front
  expect({1, 6, 10.5f, 10.5f, 26, -50, 501});
}

TEST_F(FitStages, CalculatedPattern) {
  fit.fwhmleft = {{0, 0, 0.09f}}, fit.fwhmright = {{0, 0, 0.04f}};
  fit.shapeleft = {{0.3f, 0, 0}}, fit.shaperight = {{0.8f, 0, 0}};
  fit.fitmin2th = 20, fit.fitmax2th = 50;
  fit.tthzero = 0.05f;
  model.scanwave = {{static_cast<float>(Lambda1), static_cast<float>(Lambda2), 0.5f}};
  PutRows({25, 30, 31});
  AssignProfiles(model);
  data.peaks(pint, 1) = 1000, data.peaks(pfwhmr, 1) = 0;  // no width, no peak
  const Peak peaks[] = {{30, 50, 0.3, 0.3, 0.2, 0.8}, {31, 80, 0.3, 0.3, 0.2, 0.8}};
  for (int j = 0; j < 2; ++j) data.peaks(pint, j + 2) = static_cast<float>(peaks[j].area);
  std::ranges::fill(data.calculated, 7.0f);
  for (int i = 0; i <= 500; ++i) data.background[i] = static_cast<float>(i);
  CalculatePattern(model);
  for (int i = 0; i <= 500; ++i) {
    const double x = data.x[i] + 0.05;
    double y = x > 50.1 ? 7 : 0;  // what was there, from the second point beyond the range
    for (const Peak& p : peaks)
      if (std::abs(x - p.position) < 6 * 0.25)
        y += Split(p, x - p.position) + 0.5 * Split(p, x - Alpha2Position(p.position));
    EXPECT_NEAR(data.calculated[i], y + i, 5e-3) << x;  // of up to 300
  }
}

// Flags of both sides come before the ties, and rows 2 to 4 overlap.
TEST_F(FitStages, NumbersAndNamesOfTheParameters) {
  fit.bgorder = 2;
  fit.bgcoef.fill(5);
  fit.tthzerorefine = 1;
  fit.fwhmrefine = {{1, 0, 0, 0, 0, 1}}, fit.fwhmtie = {{0, 1, 0}};
  fit.shaperefine = {{0, 1, 0, 0, 0, 0}}, fit.shapetie = {{1, 0, 0}};
  fit.laueclass = 12;
  fit.cell = {{5, 5, 7, 80, 80, 80}};
  fit.cellrefine = {{1, 1, 1, 1, 1, 1}};
  fit.fwhmleft = fit.fwhmright = {{0, 0, 1}};
  PutRows({20, 30, 30.05f, 30.08f, 40});
  for (int j = 1; j <= 5; ++j) data.peaks(phkl, j) = static_cast<float>(PackHkl({j - 1, -1, 0}));
  AssignProfiles(model);
  ParameterNumbers p = AssignParameters(model);
  EXPECT_EQ(p.npar, 13);
  EXPECT_EQ(p.bgparam.cells, (std::array<int, 15>{1, 2}));
  EXPECT_EQ(p.zeroparam, 3);
  EXPECT_EQ(p.profparam.cells,
            (std::array<int, 18>{4, 6, 0, 0, 6, 5, 8, 7, 0, 8, 0, 0, 9, 9, 10, 0, 0, 0}));
  EXPECT_EQ(p.intparam.cells, (std::array<int, MaxPeaks>{11, 12, 12, 12, 13}));
  EXPECT_EQ(fit.bgcoef(2) + fit.bgcoef(3), 5);
  EXPECT_EQ(fit.cell, (Table<float, 6>{{5, 5, 7, 90, 90, 90}}));
  const char* const names[] = {
      "background 1", "background 2", "zero", "left U", "right W",          "V",
      "left g2",      "g1",           "a",    "c",      "intensity 0 -1 0", "intensity 1 -1 0"};
  const std::vector<RefinedValue> values = RefinedValues(model, p);
  for (int k = 1; k <= 12; ++k) EXPECT_EQ(ParameterName(values, model, k), names[k - 1]);

  fit.fitposmode = 1;
  data.peaks(phkl, 1) = static_cast<float>(PackHkl({}));
  p = AssignParameters(model);
  EXPECT_EQ(p.zeroparam + p.profparam(CellNumbers), 0);
  EXPECT_EQ(p.posparam.cells, (std::array<int, MaxPeaks>{8, 9, 10, 11, 12}));
  EXPECT_EQ(p.intparam(5), 15);
  EXPECT_EQ(ParameterName(RefinedValues(model, p), model, 8), "position at 20.000");
  data.npeaks = 200;
  EXPECT_GT(AssignParameters(model).npar, MaxFitParameters);
}

// Fewer points than anything needs, and rows where no line can be.
TEST_F(FitStages, OddPatternsLeaveNothingUndefined) {
  for (int points : {0, 1, 2, 3}) {
    for (std::vector<float>* list :
         {&data.x, &data.y, &data.background, &data.net, &data.calculated})
      list->resize(points);
    FitModel small = data.Model();
    fit.bgorder = points == 3 ? 99 : 0;
    fit.bgcoef.fill(1);
    fit.fwhmleft = fit.fwhmright = {{0, 0, 1}};
    PutRows({9.9f, 10.05f, 179.99f, std::numeric_limits<float>::quiet_NaN()});
    small.scanwave = {{1.5f, 1.6f, 0.5f}};
    data.npeaks = points == 2 ? 3 : 4;
    AssignProfiles(small);
    AssignBackground(small, 5);
    AssignIntensities(small);
    ReassignIntensities(small);
    CalculatePattern(small);
    AssignParameters(small);
    for (int j = 1; points > 0 && j <= 3; ++j) EXPECT_TRUE(std::isfinite(data.peaks(pint, j)));
    for (float y : data.calculated) EXPECT_TRUE(points != 2 || std::isfinite(y));
  }
}

}  // namespace
