// The sum of patterns, on counts worked out by hand.
#include <gtest/gtest.h>

#include "multi/multi.h"
#include "multi/putoverlay.h"
#include "shell/shell.h"
#include "workspace/menuids.h"
#include "workspace/snapshot.h"

namespace {

double Own(double x) { return x; }
double One(double) { return 1; }

// Other starts and other ends: the range is that from 22 to 29 degrees, where every pattern has the
// counts of its own angle.
TEST(AddPatterns, OnTheCommonRange) {
  PutPattern(20, 0.25f, 41, [](double x) { return 10 * x; });
  ComputeXAxes();
  SetMenuLoaded(1);
  PutOverlay(1, "a", 22, 0.25f, 33, Own);
  PutOverlay(2, "b", 21, 0.25f, 33, [](double x) { return 100 * x; });
  const Snapshot before = TakeSnapshot();
  RunMenu(MenuAddPatterns);
  EXPECT_EQ(Boxes(), Lines{});
  ASSERT_EQ(ws.npts(1), 29);
  for (int i = 1; i <= 29; ++i) {
    const double x = 22 + 0.25 * (i - 1);
    ASSERT_EQ(ws.xval(AxisTth, 1, i), x);
    ASSERT_FLOAT_EQ(ws.yval(1, i), 111 * x);
    ASSERT_NEAR(ws.xval(AxisD, 1, i), CuKalpha1 / 2 / std::sin(Degrees(x) / 2), 1e-5);
  }
  EXPECT_EQ(ws.noverlay, 0);
  EXPECT_EQ(ws.overlayitems, 1);
  RunMenu(MenuAddPatterns);  // nothing more to add
  EXPECT_EQ(ws.npts(1), 29);
  RunMenu(MenuUndo);
  EXPECT_TRUE(TakeSnapshot(&before) == before);
}

// From other starts the same angles differ in their last digits: they are added all the same.
TEST(AddPatterns, AnglesMayDifferInTheirLastDigits) {
  int differ = 0;
  for (int skipped = 1; skipped <= 40; ++skipped) {
    PutPattern(10, 0.02f, 4000, Own);
    const float first = 10 + 0.02f * static_cast<float>(skipped);
    PutOverlay(1, "a", first, 0.02f, 3900, Own);
    differ += ws.xval(AxisTth, 1, skipped + 3900) != ws.xval(AxisTth, 5, 3900);
    ASSERT_EQ(AddPatterns(), Outcome::Done);
    ASSERT_EQ(ws.npts(1), 3900) << skipped;
    ASSERT_NEAR(ws.yval(1, 1), 2 * first, 1e-4) << skipped;
    ASSERT_NEAR(ws.yval(1, 3900), 2 * ws.xval(AxisTth, 1, 3900), 1e-4) << skipped;
  }
  EXPECT_GT(differ, 0);
}

// Points between those of the pattern: each goes to the next one, and what is left over is cut.
TEST(AddPatterns, PointsBetweenPoints) {
  PutPattern(10, 0.5f, 21, Own);             // to 20
  PutOverlay(1, "a", 12.2f, 0.5f, 16, One);  // to 19.7
  ASSERT_EQ(AddPatterns(), Outcome::Done);
  ASSERT_EQ(ws.npts(1), 15);
  EXPECT_EQ(ws.xval(AxisTth, 1, 1), 12.5f);
  EXPECT_EQ(ws.yval(1, 1), 13.5f);
  EXPECT_EQ(ws.yval(1, 15), 20.5f);
}

TEST(AddPatterns, TellsWhatDoesNotGoTogether) {
  const std::string step = "Unequal step sizes 2\\nb.xy: it has ",
                    own = ", the pattern a step of .25000 degrees";
  const struct {
    float first, step;
    int points;
    std::string told;
  } rows[] = {
      {20, 0.2501f, 41, step + "a step of .25010 degrees" + own},
      {22, 0.25f, 1, step + "one point" + own},
      {22, 0.25f, 0, step + "no points in the range of the pattern" + own},
      {25, 0.25f, 21,
       "Incompatible pattern intervals\\nb begins at 25.000 degrees, a ends at 25.000 degrees"},
  };
  for (const auto& row : rows) {
    PutPattern(20, 0.25f, 41, Own);
    SetMenuLoaded(1);
    PutOverlay(1, "a", 20, 0.25f, 21, One);
    PutOverlay(2, "b", row.first, row.step, row.points, One);
    RunMenu(MenuAddPatterns);
    EXPECT_EQ(Boxes(), Lines{"box\tPattern Error\t" + row.told});
    EXPECT_EQ(ws.noverlay, 2);
  }
  // Steps of 0, steps down, and steps that grow behind the first, whose points would go with
  // others.
  for (float by : {0.0f, -0.25f, 0.25f}) {
    PutPattern(20, by, 41, Own);
    PutOverlay(1, "a", 20, by, 41, One);
    for (int i = 3; i <= 41; ++i) ws.xval(AxisTth, 5, i) += 0.05f * static_cast<float>(i);
    EXPECT_EQ(AddPatterns(), Outcome::Failed);
  }
  EXPECT_EQ(Boxes().back(),
            "box\tPattern Error\tUnequal step sizes 1\\na.xy: it has 34 points between 20.000 "
            "degrees and 30.000 degrees, the pattern 41");
}

TEST(AddPatterns, FullSlots) {
  PutPattern(20, 0.005f, MaxPoints, One);
  for (int k = 1; k <= MaxOverlays; ++k) PutOverlay(k, "a", 20, 0.005f, MaxPoints, One);
  ws.debugmode = 1;
  EXPECT_EQ(AddPatterns(), Outcome::Done);
  EXPECT_EQ(Events(),
            (Lines{"box\tProgress\tmstep truncated20000", "box\tProgress\tmstep end20000"}));
  EXPECT_EQ(ws.yval(1, MaxPoints), 5);
}

}  // namespace
