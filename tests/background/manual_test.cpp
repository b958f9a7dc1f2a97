// Background points set by hand: the dialog beside the plot, and the curve through the points.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "background/background.h"
#include "background/curves.h"
#include "plot/plot.h"
#include "support/support.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

using Points = std::vector<std::pair<float, float>>;

void PutPoints(const Points& points) {
  ws.nmanualbg = 0;
  for (const auto& [x, y] : points) {
    ws.manualbg(1, ++ws.nmanualbg) = x;
    ws.manualbg(2, ws.nmanualbg) = y;
  }
}

TEST(ManualFit, DrawsTheCurveThatThePointsAllow) {
  const auto line = [](float x) { return 5 * x; };
  const auto parabola = [](float x) { return 100 + 0.5f * (x - 30) * (x - 30); };
  const auto steps = [](float x) { return x < 30 ? x - 20 : 10.0f; };
  const struct {
    const char* name;
    int mode, used;
    Points points;
    std::function<float(float)> curve;
  } cases[] = {
      {"unknown kind", 7, 1, {{38, 190}, {30, 150}, {22, 110}}, line},
      {"three for a polynomial", 3, 1, {{20, 0}, {30, 10}, {35, 10}}, steps},
      {"four for a polynomial", 3, 3, {{21, 105}, {39, 195}, {25, 125}, {30, 150}}, line},
      {"merged spline", 2, 2, {{20, 100}, {20.05f, 900}, {40, 200}, {40.08f, -900}}, line},
      {"six", 3, 3, {{20, 150}, {24, 118}, {28, 102}, {32, 102}, {36, 118}, {40, 150}}, parabola},
  };
  for (const auto& c : cases) {
    FreshWorkspace();
    PutCurve(SlotInput, 20, 0.1f, std::vector<float>(201, 400.0f));
    ws.manualbgmode = c.mode;
    PutPoints(c.points);
    FitManualBackground();
    EXPECT_EQ(ws.manualbgmode, c.used) << c.name;
    for (int i = 1; i <= 201; ++i)
      ASSERT_NEAR(ws.yval(2, i), c.curve(ws.xval(1, 1, i)), 0.05f) << c.name << ", point " << i;
    EXPECT_EQ(ws.npts(2), 201);
    EXPECT_EQ(ws.plotmask, 3);
    EXPECT_EQ(ws.nmanualbg, 0);
    const std::vector<std::string> events = Events();
    EXPECT_EQ(events.size(), c.used == 3 ? 7u : 0u)
        << c.name;  // a line for each cycle and one more
  }
}

// From one value to the next the line moves on by one segment only, even where it should by more.
TEST(ManualFit, LinearLagsBehindOnSparseValues) {
  FreshWorkspace();
  PutCurve(SlotInput, 10, 10, {1, 1, 1});
  ws.manualbgmode = 1;
  PutPoints({{11, 0}, {12, 0}, {13, 100}, {14, 100}});
  FitManualBackground();
  EXPECT_FLOAT_EQ(ws.yval(2, 1), 0);
  EXPECT_FLOAT_EQ(ws.yval(2, 2), 800);
  EXPECT_FLOAT_EQ(ws.yval(2, 3), 100);
}

TEST(ManualFit, WithoutASegmentNothingHappens) {
  for (const Points& points : {Points{}, Points{{30, 5}}, Points{{30, 5}, {30.05f, 9}, {30, 5}}})
    for (int n : {0, 1, 50}) {
      FreshWorkspace();
      PutCurve(SlotInput, 20, 0.5f, std::vector<float>(n, 400.0f));
      PutCurve(SlotBackground, 20, 0.5f, std::vector<float>(50, 33.0f));
      PutPoints(points);
      FitManualBackground();
      EXPECT_EQ(ws.yval(2, 7), 33);
      EXPECT_EQ(ws.plotmask, 0);
      EXPECT_EQ(ws.nmanualbg, static_cast<int>(points.size()));
    }
}

TEST(ManualDialog, ListEndsAtAHundred) {
  FreshWorkspace();
  PutCurve(SlotInput, 10, 0.1f, std::vector<float>(501, 1000.0f));
  ws.yval(SlotInput, 1) = 0;
  ws.viewmode = ws.plotmask = 1;
  RedrawView(1);
  std::string clicks;
  for (int i = 0; i < 103; ++i) clicks += "mouse left " + std::to_string(12 + 0.3 * i) + " 500\n";
  Answer(clicks + "press OK\n");
  ManualBackgroundDialog();
  EXPECT_EQ(ws.nmanualbg, 100);
  EXPECT_NEAR(ws.manualbg(1, 100), 12 + 0.3 * 99, 0.01);
}

}  // namespace
