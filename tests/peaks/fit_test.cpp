// The fit of a single peak.
#include <gtest/gtest.h>

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

struct SinglePeak : testing::Test {
  SinglePeak() { Start(); }
  void Start() {
    FreshWorkspace();
    Load(OnePeak());
  }
  std::vector<std::string> Fit(const char* button) {
    ws.viewxmin = ws.plotxmin;
    ws.viewxmax = ws.plotxmax;
    Answer(std::string("press ") + button);
    SinglePeakFit(AcceptPeakFit);
    return Events();
  }
};

// Seed 0 is free of noise, and must give the truth itself.
TEST_F(SinglePeak, RecoversAllParametersWithinTheirErrors) {
  for (double alpha2 : {0.0, 0.5})
    for (const auto& [right, shape] : {std::pair{0.13, 0.3}, std::pair{0.09, 0.7}})
      for (int seed = 0; seed <= 50; ++seed) {
        Load(OnePeak(right, shape, alpha2), seed);
        Fit("OK");
        const double truth[] = {30.5, 1000, 0.13, 0.3, right, shape};
        const double deviation[] = {0.004, 15, 0.01, 0.1, 0.01, 0.12};
        const float got[] = {ws.spposition,  ws.sparea,      ws.spfwhmleft,
                             ws.spshapeleft, ws.spfwhmright, ws.spshaperight};
        for (int k = 0; k < 6; ++k)
          EXPECT_NEAR(got[k], truth[k], deviation[k] * (seed ? 3 : 0.03)) << k << " " << seed;
      }
}

TEST_F(SinglePeak, LooksAtTheViewAlone) {
  Pattern two = OnePeak();
  two.points = 800;
  two.peaks.push_back({34, 9000, 0.13, 0.3, 0.13, 0.3});
  Load(two);
  ws.plotxmax = 32.5f;
  Fit("OK");
  EXPECT_NEAR(ws.spposition, 30.5, 1e-3);
}

TEST_F(SinglePeak, OkKeepsAndCancelTakesOut) {
  const auto fill = [] {
    ws.npeaks = 3;
    for (int field = 1; field <= 8; ++field)
      for (int j = 1; j <= 3; ++j) ws.peaks(field, j) = static_cast<float>(10 * j + field);
    ws.peaks(ptth, 2) = 30.3f, ws.peaks(ptth, 3) = 30.49f;  // both in reach, the third nearer
  };
  fill();
  const auto cycles = [](const std::string& event) {
    return event.starts_with("status\t3\tCycle  ");
  };
  EXPECT_EQ(std::ranges::count_if(Fit("OK"), cycles), 2);  // passes
  EXPECT_EQ(ws.npeaks, 3);
  EXPECT_EQ(ws.plotmask, 53);
  const float row[] = {30.5f, 1000, 0.11f, 0.5f, 0.09f, 0.7f, 27, 28};
  for (int field = 1; field <= 8; ++field)
    EXPECT_NEAR(ws.peaks(field, 2), row[field - 1], row[field - 1] * 2e-3) << field;
  for (int i : {201, 201 - 66, 201 + 66})  // six widths on both sides
    EXPECT_NEAR(ws.yval(SlotRefined, i), ws.yval(SlotInput, i), 1) << i;
  EXPECT_EQ(ws.yval(SlotRefined, 201 - 67) + ws.yval(SlotRefined, 201 + 67), 0);
  fill();
  Fit("Cancel");  // the row that was there before is lost
  EXPECT_EQ(ws.npeaks, 2);
  EXPECT_EQ(ws.plotmask, 1);
  EXPECT_EQ(ws.peaks(pmult, 2), 38);
  fill();
  ws.sphwtol = 0.01f;  // nothing in reach: a new row
  Fit("Cancel");
  EXPECT_EQ(ws.npeaks, 3);
  Fit("OK");
  EXPECT_NEAR(ws.peaks(ptth, 4), 30.5, 1e-3);
  ws.peaks.fill(0);
  ws.npeaks = 200;  // full
  EXPECT_EQ(std::ranges::count(Fit("Cancel"), "status\t3\tPeak list is full: 200 peaks"), 1);
  EXPECT_EQ(ws.npeaks, 200);
}

// Wavelength, 180 / pi and geometric factor over the cosine of theta and what the width of 0.11
// exceeds the instrument's by.
TEST_F(SinglePeak, TellsTheSizeOfParticles) {
  const std::pair<std::tuple<int, float, float, float, float>, double> table[] = {
      {{1, 0.08f, 0, 0, 1}, 0.03},
      {{1, 0.2f, 0, 0, 1}, -0.09},
      {{1, 0.11f, 0, 0, 1}, INFINITY},  // no size
      {{2, 0.2f, -0.02f, 0.01f, 0.004f}, 0.11 - std::sqrt(0.0052398)},
      {{2, 0.2f, 0, 0, -1}, 0.109},  // not below 0.001
  };
  ws.spgeom = 0.8f;
  for (const auto& [options, net] : table) {
    std::tie(ws.spmode, ws.spminhw, ws.spu, ws.spv, ws.spw) = options;
    Fit("OK");
    const double size = ws.wavelen(1) * 180 / M_PI * 0.8 / std::cos(15.25 * M_PI / 180) / net;
    EXPECT_NEAR(ws.spsize, size, std::fabs(size) * 0.01);
  }
}

TEST_F(SinglePeak, WhatCannotBeFittedChangesNothing) {
  const std::pair<const char*, std::function<void()>> table[] = {
      {"top at the first point", [] { ws.plotxmin = 30.5f; }},
      {"nothing in view", [] { ws.plotxmin = 60, ws.plotxmax = 50; }},
      {"all at one place", [] { std::ranges::fill(ws.xval.row(AxisTth, SlotInput), 30.0f); }},
      {"beyond all numbers", [] { ws.yval(SlotInput, 201) = std::numeric_limits<float>::max(); }},
      {"no range left", [] { ws.spfinalhw = 0; }},
  };
  for (const auto& [name, spoil] : table) {
    Start();
    ws.npeaks = 1;
    ws.peaks(ptth, 1) = 30.5f;
    ws.plotmask = 33;
    spoil();
    SinglePeakFit();  // no dialog: there is no answer to one
    const std::vector<std::string> events = Events();
    EXPECT_EQ(events.back(), "box\tError\tPeak fit error") << name;
    EXPECT_EQ(std::ranges::count(events, "box\tError\tMatrix inversion error"),
              name == std::string("all at one place"))
        << name;
    EXPECT_EQ(ws.npeaks, 1) << name;
    EXPECT_EQ(ws.peaks(pint, 1) + ws.yval(SlotRefined, 201), 0) << name;
    EXPECT_EQ(ws.plotmask, 33) << name;
  }
}

}  // namespace
