// The fit of a single peak.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>

#include "peaks/peaks.h"
#include "peaks/simulate.h"
#include "support/support.h"

using simulate::Load;
using simulate::Pattern;

namespace {

// 400 points around a peak with sides of its own; the top is point 201.
Pattern OnePeak(double right = 0.09, double rightshape = 0.7, double alpha2 = 0) {
  return {.start = 28.5,
          .step = 0.01,
          .points = 400,
          .background = 100,
          .slope = 5,
          .alpha2 = alpha2,
          .peaks = {{30.5, 1000, 0.13, 0.3, right, rightshape}}};
}

class SinglePeak : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    Load(OnePeak());
  }
  std::vector<std::string> Fit(const char* button) {
    ws.viewxmin = ws.plotxmin;
    ws.viewxmax = ws.plotxmax;
    Answer(std::string("press ") + button);
    SinglePeakFit();
    return Events();
  }
};

// The mean of many fits lies within its error of the truth, and single fits do not stray.
TEST_F(SinglePeak, RecoversAllParametersWithinTheirErrors) {
  constexpr int fits = 100;
  for (double alpha2 : {0.0, 0.5})
    for (const auto& [right, rightshape] : {std::pair{0.13, 0.3}, std::pair{0.09, 0.7}}) {
      std::array<double, 6> sum{}, squares{};
      const double truth[] = {30.5, 1000, 0.13, 0.3, right, rightshape};
      const double largest[] = {0.004, 15, 0.01, 0.1, 0.01, 0.12};  // deviation of a fit
      for (int seed = 1; seed <= fits; ++seed) {
        Load(OnePeak(right, rightshape, alpha2), seed);
        Fit("OK");
        const float got[] = {ws.spposition,  ws.sparea,      ws.spfwhmleft,
                             ws.spshapeleft, ws.spfwhmright, ws.spshaperight};
        for (int k = 0; k < 6; ++k) {
          sum[k] += got[k] - truth[k];
          squares[k] += (got[k] - truth[k]) * (got[k] - truth[k]);
        }
      }
      for (int k = 0; k < 6; ++k) {
        const double deviation = std::sqrt(squares[k] / fits);
        EXPECT_LT(std::fabs(sum[k] / fits), 4 * deviation / std::sqrt(fits)) << k << " " << alpha2;
        EXPECT_LT(deviation, largest[k]) << k << " " << alpha2;
      }
    }
}

// Scherrer: K lambda / (cos theta (B - b)) with the widths in radians and their plain difference.
TEST_F(SinglePeak, SizesByScherrer) {
  const double rad = std::numbers::pi / 180, theta = 15.25 * rad, t = std::tan(theta);
  const struct {
    int mode;
    float minimum, w;
    double instrument;
  } table[] = {{1, 0.08f, 0, 0.08},
               {1, 0.15f, 0, 0.15},  // wider than the peak: a negative size
               {2, 0, 0.008f, std::sqrt(0.02 * t * t - 0.01 * t + 0.008)},
               {2, 0, -1, 0.001}};  // the square of the width is 1e-6 at least
  ws.spu = 0.02f, ws.spv = -0.01f;
  for (const auto& row : table) {
    ws.spmode = row.mode, ws.spminhw = row.minimum, ws.spw = row.w;
    Fit("OK");
    const double size = 0.9 * simulate::Lambda1 / (std::cos(theta) * (0.11 - row.instrument) * rad);
    EXPECT_NEAR(ws.spsize / size, 1, 0.005) << row.instrument;
  }
  ws.spmode = 1, ws.spminhw = 0.1105f;  // as wide as the peak
  Fit("OK");
  EXPECT_EQ(ws.spsize, 0);
}

TEST_F(SinglePeak, OkKeepsAndCancelTakesOut) {
  const auto fill = [] {
    ws.npeaks = 3;
    const float places[] = {28.6f, 30.3f, 30.49f};  // the second is in reach, the third nearer
    for (int j = 1; j <= 3; ++j)
      for (int field = 1; field <= 8; ++field)
        ws.peaks(field, j) = field == ptth ? places[j - 1] : static_cast<float>(10 * j + field);
  };
  fill();
  const std::vector<std::string> events = Fit("OK");
  EXPECT_EQ(ws.npeaks, 3);
  EXPECT_EQ(ws.plotmask, 53);
  const float row[] = {30.5f, 1000, 0.11f, 0.5f, 0.09f, 0.7f, 27, 28};
  for (int field = 1; field <= 8; ++field)
    EXPECT_NEAR(ws.peaks(field, 2), row[field - 1], row[field - 1] * 2e-3) << field;
  EXPECT_EQ(ws.peaks(ptth, 3), 30.49f);
  for (int i : {201, 201 - 66, 201 + 66})  // six widths on both sides
    EXPECT_NEAR(ws.yval(SlotRefined, i), ws.yval(SlotInput, i), 1) << i;
  EXPECT_EQ(ws.yval(SlotRefined, 201 - 67) + ws.yval(SlotRefined, 201 + 67), 0);
  const std::string shown = "field\t1152\tFWHM\t 0.130             0.110                 0.090\t1";
  EXPECT_EQ(std::ranges::count(events, shown), 1);

  fill();
  Fit("Cancel");  // the row that was there before is lost
  EXPECT_EQ(ws.npeaks, 2);
  EXPECT_EQ(ws.plotmask, 1);
  EXPECT_EQ(ws.peaks(ptth, 2), 30.49f);
  EXPECT_EQ(ws.peaks(pmult, 2), 38);

  fill();
  ws.sphwtol = 0.01f;  // nothing in reach: a new row
  Fit("Cancel");
  EXPECT_EQ(ws.npeaks, 3);
  Fit("OK");
  EXPECT_EQ(ws.npeaks, 4);
  EXPECT_NEAR(ws.peaks(ptth, 4), 30.5, 1e-3);
  ws.peaks.fill(0);
  ws.npeaks = 200;  // full
  EXPECT_EQ(std::ranges::count(Fit("Cancel"), "status\t3\tPeak list is full: 200 peaks"), 1);
  EXPECT_EQ(ws.npeaks, 200);
  EXPECT_EQ(ws.peaks(ptth, 200) + ws.peaks(ptth, 201), 0);
}

TEST_F(SinglePeak, WhatCannotBeFittedChangesNothing) {
  const struct {
    const char* name;
    std::function<void()> spoil;
  } table[] = {
      {"top at the first point", [] { ws.plotxmin = 30.5f; }},
      {"top at the last point", [] { ws.plotxmax = 30.5f; }},
      {"nothing in view", [] { ws.plotxmin = 60, ws.plotxmax = 50; }},
      {"nothing above zero",
       [] {
         for (float& y : ws.yval.row(SlotInput)) y = -5;
       }},
      {"no points", [] { ws.npts(SlotInput) = 0; }},
      {"all at one place",
       [] {
         for (float& x : ws.xval.row(AxisTth, SlotInput)) x = 30;
       }},
      {"beyond all numbers", [] { ws.yval(SlotInput, 201) = std::numeric_limits<float>::max(); }},
      {"no range left", [] { ws.spfinalhw = 0; }},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.name);
    SetUp();
    ws.npeaks = 1;
    ws.peaks(ptth, 1) = 30.5f;
    ws.plotmask = 33;
    row.spoil();
    SinglePeakFit();  // no dialog: there is no answer to one
    EXPECT_EQ(Events().back(), "box\tError\tPeak fit error");
    EXPECT_EQ(ws.npeaks, 1);
    EXPECT_EQ(ws.peaks(pint, 1), 0);
    EXPECT_EQ(ws.plotmask, 33);
    EXPECT_EQ(ws.yval(SlotRefined, 201), 0);
  }
}

}  // namespace
