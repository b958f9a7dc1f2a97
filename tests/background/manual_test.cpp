// Background points set by hand: the dialog beside the plot, and the curve through the points.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "background/background.h"
#include "background/curves.h"
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
  // Through 0, 100, 0 at equal distances: 100 (1.5 t - 0.5 t^3), mirrored and with a straight end.
  const auto spline = [](float x) {
    const float t = std::min(x - 20, 40 - x) / 10;
    return 100 * (1.5f * t - 0.5f * t * t * t);
  };
  const auto steps = [](float x) { return x < 30 ? x - 20 : 10.0f; };
  const struct {
    const char* name;
    int mode, used;
    Points points;
    std::function<float(float)> curve;
  } cases[] = {
      {"two points", 2, 1, {{38, 190}, {22, 110}}, line},
      {"unknown kind", 7, 1, {{38, 190}, {30, 150}, {22, 110}}, line},
      {"three for a polynomial", 3, 1, {{20, 0}, {30, 10}, {35, 10}}, steps},
      {"four for a polynomial", 3, 3, {{21, 105}, {39, 195}, {25, 125}, {30, 150}}, line},
      {"spline", 2, 2, {{40, 0}, {20, 0}, {30, 100}}, spline},
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

class ManualDialog : public testing::Test {
 protected:
  // A pattern from 10 to 60 degrees up to 1000 counts, and the dialog on it.
  std::vector<std::string> Run(const std::string& actions) {
    std::string pattern;
    for (int i = 0; i <= 500; ++i)
      pattern += std::to_string(10 + 0.1 * i) + " " + std::to_string(i == 250 ? 1000 : 1) + "\n";
    WriteFile(dir_.file("p.xy"), pattern);
    const ReplayRun run = RunReplay("open p.xy\nmenu 40088\n" + actions, dir_.path());
    EXPECT_EQ(run.status, 0) << (run.lines.empty() ? "" : run.lines.back());
    std::vector<std::string> values;
    for (const std::string& line : run.lines)
      if (line.starts_with("value\t")) values.push_back(line.substr(6));
    return values;
  }
  TempDir dir_;
};

TEST_F(ManualDialog, SetsRemovesAndFits) {
  const std::string three = "mouse left 20 300\nmouse left 40 500\nmouse left 30 800\n";
  const std::vector<std::string> values =
      Run(three +
          "mouse left 5 100\nmouse left 30 1500\n"      // outside the view
          "mouse right 30.4 800\nmouse right 33 804\n"  // too far off
          "get nmanualbg\nmouse right 30.1 802\nget nmanualbg\npress Fit\n"
          "get nmanualbg\nget plotmask\nget yval(2,501)\n"
          "menu 40088\n" +
          three +
          "press OK\nget nmanualbg\n"
          "menu 40088\nmouse left 45 300\npress Cancel\nget nmanualbg\n");
  ASSERT_EQ(values.size(), 7u);
  EXPECT_EQ(values[0], "nmanualbg\t3");
  EXPECT_EQ(values[1], "nmanualbg\t2");
  EXPECT_EQ(values[2], "nmanualbg\t0");
  EXPECT_EQ(values[3], "plotmask\t3");
  EXPECT_NEAR(std::stof(values[4].substr(values[4].find('\t'))), 700, 0.5);  // (20,300), (40,500)
  EXPECT_EQ(values[5], "nmanualbg\t3");
  EXPECT_EQ(values[6], "nmanualbg\t0");
}

TEST_F(ManualDialog, ListEndsAtAHundred) {
  std::string clicks;
  for (int i = 0; i < 103; ++i) clicks += "mouse left " + std::to_string(12 + 0.3 * i) + " 500\n";
  const auto values = Run(clicks + "get nmanualbg\nget manualbg(1,100)\npress OK\n");
  ASSERT_EQ(values.size(), 2u);
  EXPECT_EQ(values[0], "nmanualbg\t100");
  EXPECT_NEAR(std::stof(values[1].substr(values[1].find('\t'))), 12 + 0.3 * 99, 0.01);
}

// Closing the window with the dialog open drops the points and reaches the main loop.
TEST(ManualDialogInProcess, ClosedWithTheWindow) {
  FreshWorkspace();
  PutCurve(SlotInput, 20, 0.5f, std::vector<float>(50, 400.0f));
  PutPoints({{30, 5}, {40, 6}});
  PostMessage({.type = MessageMenu, .value1 = 40078});
  PostMessage({.type = MessageClose, .window = RootWindow});
  ManualBackgroundDialog();
  EXPECT_EQ(ws.nmanualbg, 0);
  Message message;
  EXPECT_EQ(WMessage(message), MessageClose);
}

}  // namespace
