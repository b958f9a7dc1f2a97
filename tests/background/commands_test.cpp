// The commands on the background curve, on numbers worked out by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "background/background.h"
#include "background/curves.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

using Lines = std::vector<std::string>;

// No point counts: neither of an interval beside the pattern, nor of an estimate below 0.
TEST(Autosubtract, ScalesByOneWhereNothingCounts) {
  for (float counts : {100.0f, -0x1p40f})
    for (int scaling : {1, 2, 3}) {
      FreshWorkspace();
      PutCurve(SlotInput, 10, 0.02f, std::vector<float>(31, counts));
      ws.autosubwindow = 3;
      ws.autosubcycles = 0;
      ws.batchmode = 1;
      ws.autosubscale = scaling;
      ws.fullstart = ws.fullstop = 90;
      Autosubtract();
      EXPECT_EQ(Events(), Lines{});
      EXPECT_EQ(ws.npts(4), 0);
      const float net = counts == 100 || scaling > 1 ? 0 : std::numeric_limits<float>::max();
      EXPECT_EQ(ws.yval(3, 5), net);
    }
}

TEST(SubtractBackground, PointByPoint) {
  FreshWorkspace();
  PutCurve(SlotInput, 20, 0.1f, std::vector<float>(40, 0.0f));
  PutCurve(SlotBackground, 20.05f, 0.1f, std::vector<float>(39, 30.0f));
  RunMenu(40074, "press OK");
  EXPECT_EQ(Events(), Lines{"query\tBackground Subtraction\tBackground =100.00%. Subtract?"});
  EXPECT_EQ(ws.yval(3, 39), -30);
  EXPECT_EQ(ws.xval(1, 4, 1), ws.xval(1, 2, 1));
  EXPECT_EQ(ws.npts(4), 39);
}

TEST(ScaleBackground, ToInterval) {
  FreshWorkspace();
  PutCurve(SlotInput, 20, 1, {9, 10, 20, 30, 9});
  PutCurve(SlotBackground, 21, 1, {7, 2, 4, 6, 7});  // matched by number, a degree apart
  ws.bgintstart = 22;
  ws.bgintend = 24;
  ScaleToInterval();
  EXPECT_FLOAT_EQ(ws.yval(2, 1), 35);  // 60 / 12 on all points
  EXPECT_FLOAT_EQ(ws.yval(2, 3), 20);

  for (const auto& [from, to] : {std::pair{24.0f, 22.0f}, {80.0f, 90.0f}, {-9.0f, 90.0f}}) {
    ws.bgintstart = from;
    ws.bgintend = to;
    if (from < 0) ClearBackground();
    ScaleToInterval();
    EXPECT_FLOAT_EQ(ws.yval(2, 1), from < 0 ? 0 : 35);
  }
  EXPECT_EQ(ws.bgintstart, 21);  // drawn in to the background's ends
  EXPECT_EQ(ws.bgintend, 25);
}

TEST(RefinedBackground, IsThePolynomialWithinItsRange) {
  FreshWorkspace();
  PutCurve(SlotInput, 20, 5, std::vector<float>(7, 500.0f));
  ws.chebyxmin = 25;
  ws.chebyxmax = 45;
  ws.chebyused = 3;
  for (int k : {1, 2, 3, 4}) ws.chebycoef(k) = k == 4 ? 99.0f : 12.0f / static_cast<float>(k);
  RefinedBackground();
  const float expected[] = {0, 10, 7, 8, 13, 22, 0};  // 12 + 6 u + 4 (2 u u - 1), u = -1 to 1
  for (int i = 1; i <= 7; ++i) EXPECT_FLOAT_EQ(ws.yval(2, i), expected[i - 1]) << i;
  EXPECT_EQ(ws.npts(2), 7);
}

std::string XyFile(float first, float step, int n) {
  std::string text;
  for (int i = 0; i < n; ++i)
    text += std::to_string(first + step * i) + " " + std::to_string(100 + i) + "\n";
  return text;
}

TEST(BackgroundFile, MustCoverThePatternOnItsStep) {
  const TempDir dir;
  const std::string file = "\\n" + dir.file("back ground.xy") + ": ";
  const struct {
    std::string content;
    Lines events;
  } cases[] = {
      {XyFile(20.1f, 0.1f, 60),
       {"box\tPattern Error\tIncompatible background range" + file +
        "it has 20.100 to 26.000 degrees, the pattern 20.000 to 24.000 degrees"}},
      {XyFile(19, 0.1f, 50),
       {"box\tPattern Error\tIncompatible background range" + file +
        "it has 19.000 to 23.900 degrees, the pattern 20.000 to 24.000 degrees"}},
      {XyFile(19, 0.1001f, 70),
       {"box\tPattern Error\tIncompatible background step size" + file +
        "it has .10010 degrees, the pattern .10000 degrees"}},
      {"",
       {"box\tFile error\tNothing read from xy file" + file + "no points in it",
        "box\tError\tError handling xy-file"}},
      {XyFile(19, 0.100005f, 70), {}},
  };
  for (const auto& c : cases) {
    FreshWorkspace();
    PutCurve(SlotInput, 20, 0.1f, std::vector<float>(41, 50.0f));
    ws.plotmask = 1;
    WriteFile(dir.file("back ground.xy"), c.content);
    RunMenu(40082, "file \"" + dir.file("back ground.xy") + "\"");
    Lines events = Events();
    events.erase(events.begin());  // the selector
    EXPECT_EQ(events, c.events);
    EXPECT_EQ(ws.plotmask, c.events.empty() ? 3 : 1);
    EXPECT_EQ(ws.npts(2), c.events.empty() ? 40 : 0);  // a failure leaves it as it was
  }
  EXPECT_EQ(ws.npts(2), 40);  // cut to points 11 to 50 of the last file, 20.00005 to 23.90025
  EXPECT_EQ(ws.yval(2, 1), 110);
  EXPECT_FLOAT_EQ(ws.bgintstart, 20.00005f);
  EXPECT_FLOAT_EQ(ws.bgintend, 23.900245f);
}

TEST(BackgroundFile, IsSavedInFixedColumns) {
  const TempDir dir;
  FreshWorkspace();
  ws.patternstem = "sample";
  PutCurve(SlotBackground, 9.5f, 100.25f, {12.34f, 1234567.0f});
  for (const std::string& path : {dir.file("b.xy"), dir.file("none/b.xy")})
    RunMenu(40076, "file \"" + path + "\"");
  RunMenu(40076, "file");
  EXPECT_EQ(ReadFile(dir.file("b.xy")), "   9.500        12.3\n 109.750   1234567.0\n");
  const std::string select = "select\tSave background file\tBackground file|*.xy|\tsample_bkg.xy";
  EXPECT_EQ(Events(), (Lines{select, select,
                             "box\tFile Error\tFile open error\\n" + dir.file("none/b.xy") +
                                 ": No such file or directory",
                             select}));
}

}  // namespace
