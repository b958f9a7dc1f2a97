// One pattern fitted to another: against least squares in double precision, and zeros that are
// known.
#include <gtest/gtest.h>

#include <cmath>

#include "multi/multi.h"
#include "multi/overlayfit.h"
#include "multi/putoverlay.h"
#include "shell/shell.h"
#include "support/leastsquares.h"
#include "support/smallfiles.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/snapshot.h"

namespace {

constexpr float kStep = 0.03125f;
constexpr int kPoints = 1281;  // from 20 to 60 degrees

double Peaks(double x) {
  return 900 * Gaussian(x, 28, 0.5) + 400 * Gaussian(x, 41, 0.6) + 700 * Gaussian(x, 53, 0.7);
}

void PutBoth(const Curve& pattern, const Curve& overlay) {
  PutPattern(20, kStep, kPoints, pattern);
  SetMenuLoaded(1);
  PutOverlay(1, "a", 20, kStep, kPoints, overlay);
}

// The terms of the background and the scale that fit slot 1 best.
LeastSquares BestFit(int terms) {
  LeastSquares best(terms + 1);
  for (int i = 1; i <= kPoints; ++i) {
    const double y = ws.yval(1, i);
    std::vector<double> row(terms + 1, ws.yval(5, i));
    for (int k = 0; k < terms; ++k) row[k] = std::cos(k * std::acos((i - 641) / 640.0));
    best.Add(row, y, y > 0.01 ? 1 / y : 1);
  }
  best.Solve();
  return best;
}

// With a grain that no fit takes out; without a background it takes counts below 0.
TEST(FitPatterns, IsTheLeastSquaresFit) {
  for (int terms : {0, 1, 3, 14}) {
    const auto background = [=](double x) {
      return terms > 0 ? 300 - 3 * x + 0.04 * (x - 35) * (x - 35) : 0;
    };
    PutBoth([=](double x) { return 2.5 * Peaks(x) + background(x) + 12 * std::sin(7919 * x); },
            Peaks);
    RunMenu(MenuFitPatterns, "set \"" + std::to_string(terms) +
                                 "\" on\nset \"Scale factor\" 0.3\nset 1217 on\npress OK");
    EXPECT_EQ(Boxes(), Lines{});
    const LeastSquares best = BestFit(terms);
    EXPECT_NEAR(ws.fitscale, best.Shift(terms), 2e-4) << terms;
    for (int k = 1; k <= terms; ++k) EXPECT_NEAR(ws.bgcoef(k), best.Shift(k - 1), 0.05) << k;
    double middle = best.Shift(terms) * ws.yval(5, 641), residual = 0, total = 0;
    for (int k = 0; k < terms; k += 2) middle += best.Shift(k) * (k % 4 == 0 ? 1 : -1);
    EXPECT_NEAR(ws.yval(4, 641), middle, 0.05);
    for (int i = 1; i <= kPoints; ++i) {
      residual += std::fabs(ws.yval(1, i) - ws.yval(4, i));
      total += std::fabs(ws.yval(1, i));
    }
    EXPECT_NEAR(ws.profrvalue, residual / total, 1e-5);
    EXPECT_EQ(ws.diagdamp, 1);
    EXPECT_EQ(ws.ncycles, 20);
    EXPECT_EQ(ws.fitmin2th, 20);
    EXPECT_EQ(ws.fitmax2th, 60);
  }
}

// Nothing refined: the scale is taken as it is, and R told. The pattern begins later and ends later
// than the overlay.
TEST(FitPatterns, OnlyCalculatesOnTheCommonRange) {
  PutPattern(22, 0.5f, 17, [](double x) { return 10 * x; });     // to 30
  PutOverlay(1, "a", 20, 0.5f, 19, [](double x) { return x; });  // to 29
  ComputeXAxes();
  ws.fitscale = 9;
  EXPECT_EQ(FitPatterns(), Outcome::Done);
  for (int slot : {4, 6, 9}) ASSERT_EQ(ws.npts(slot), 15);
  for (int i = 1; i <= 15; ++i) {
    ASSERT_FLOAT_EQ(ws.yval(4, i), 9 * ws.xval(AxisTth, 1, i));
    ASSERT_EQ(ws.yval(6, i), ws.yval(1, i));
    ASSERT_EQ(ws.xval(AxisD, 4, i), ws.xval(AxisD, 1, i));
  }
  EXPECT_EQ(WStatusText(3), "Cycle   1  R= 0.1000");
  EXPECT_EQ(ws.npts(1), 17);
}

// Whole steps move points, and those that enter have the value of the end; the rest is a spline.
TEST(FitPatterns, TheOverlayIsShifted) {
  for (const auto& [steps, whole] : {std::pair{0.9995f, 1}, {-2.9995f, -3}, {1.9f, 1}})
    EXPECT_EQ(WholeSteps(steps * kStep, kStep), whole);
  for (float steps : {0.0f, 3.0f, -2.0f, 1.4f, -2.6f, 0.9995f, 1e6f, -1e30f}) {
    PutBoth(Peaks, Peaks);
    ws.yval(5, 1) = 77;
    ws.yval(5, kPoints) = 88;
    ws.fitzero = steps * kStep;
    ASSERT_EQ(FitPatterns(), Outcome::Done) << steps;
    const bool whole = std::trunc(steps) == steps;
    for (int i = 1; i <= kPoints; ++i) {
      const double at = ws.xval(AxisTth, 4, i) - ws.fitzero;
      const bool nearend = !whole && std::min(at - 20, 60 - at) < 12 * kStep;
      const double expected = at <= 20 ? 77 : at >= 60 ? 88 : Peaks(at);
      if (!nearend) {
        ASSERT_NEAR(ws.yval(9, i), expected, 0.05) << steps << " " << at;
      }
    }
  }
}

// From three tries the parabola finds a zero of whole steps at once and halves what lacks to others
// with every run, so that a few runs come to a hundredth of a step.
TEST(FitPatterns, RecoversTheZero) {
  const struct {
    float start;
    double truth;  // both in steps
    int runs;
  } rows[] = {{0, 0, 1}, {0, 1, 1}, {5, 4, 1}, {1, 1, 1}, {0, 0.37, 7}, {-2, -2.6, 9}};
  for (const auto& row : rows) {
    const double zero = row.truth * kStep;
    PutBoth([=](double x) { return 200 + 1.5 * Peaks(x - zero); }, Peaks);
    ws.fitzero = row.start * kStep;
    ws.fitzerorefine = ws.fitscalerefine = 1;
    ws.fitbgorder = 2;
    for (int k = 0; k < row.runs; ++k) ASSERT_EQ(FitPatterns(), Outcome::Done) << row.truth;
    EXPECT_NEAR(ws.fitzero, zero, 0.01 * kStep) << row.start << " " << row.truth;
    EXPECT_NEAR(ws.fitscale, 1.5, 0.005) << row.truth;
    EXPECT_NEAR(ws.bgcoef(1), 200, 0.5) << row.truth;
  }
}

TEST(FitPatterns, Parabolas) {
  const auto lowest = ParabolaMinimum({-1, 0.5f, 2}, {6.125f, 3.125f, 9.125f});  // 3 + 2 (z-1/4)^2
  ASSERT_TRUE(lowest);
  EXPECT_NEAR(*lowest, 0.25, 1e-6);
  EXPECT_FALSE(ParabolaMinimum({-1, 0.5f, 2}, {-6, -3, -9}));  // has a top
  EXPECT_FALSE(ParabolaMinimum({-1, 0.5f, 2}, {1, 1, 1}));     // is a line
  EXPECT_FALSE(ParabolaMinimum({-1, 1, 3}, {1, 2, 9}));        // squares that are alike
  EXPECT_FALSE(ParabolaMinimum({0, 1, 1}, {1, 2, 2}));         // only two points
}

// What cannot be fitted is told and leaves all as it was.
TEST(FitPatterns, TellsWhatFails) {
  const struct {
    double pattern, overlay;  // counts
    float overlaystep;
    const char *answers, *told;
  } rows[] = {
      {100, 0, kStep, "set \"1\" on\nset 1217 on\n", "Error\tZero derivatives    1"},
      {100, 100, kStep, "set 1219 on\n",
       "Zero Shift Error\tProblems optimizing zero shift\\nR is .0000 at .4375, .0000 at "
       ".5000 and .0000 at .5625 degrees: no minimum lies there, try another two-theta zero"},
      {1e38, 100, kStep, "set \"3\" on\n", "Error\tThe fit has gone beyond all numbers"},
      {100, 100, 0.04f, "",
       "Pattern Error\tUnequal step sizes\\na.xy: it has a step of .04000 degrees, the pattern a "
       "step of .03125 degrees"},
  };
  for (const auto& row : rows) {
    PutBoth([&](double) { return row.pattern; }, [](double) { return 1; });
    PutOverlay(1, "a", 20, row.overlaystep, 900, [&](double) { return row.overlay; });
    ws.fitzero = 0.5f;
    RunMenu(MenuFitPatterns, std::string(row.answers) + "press OK");
    EXPECT_EQ(Boxes(), Lines{std::string("box\t") + row.told});
    EXPECT_EQ(ws.fitzero, 0.5f);
    EXPECT_EQ(ws.npts(9), 0);
  }
  PutPattern(20, 0.5f, 41, [](double) { return 100; });
  EXPECT_EQ(FitPatterns(), Outcome::Failed);
  EXPECT_EQ(Boxes(), Lines{"box\tPattern Error\tThere is no pattern to fit: open one first"});
}

TEST(FitPatterns, ClearedAndUndone) {
  PutBoth([](double x) { return 40 + Peaks(x); }, Peaks);
  RunMenu(MenuFitPatterns, "set \"3\" on\nset 1217 on\nset 1219 on\npress OK");
  EXPECT_EQ(ws.fitshown, 1);
  const Snapshot fitted = TakeSnapshot();
  for (const bool menu : {true, false}) {
    RunMenu(menu ? MenuClearFit : MenuFitPatterns, menu ? "" : "press Clear");
    EXPECT_EQ(ws.fitshown + ws.fitscalerefine + ws.fitzerorefine, 0);
    EXPECT_EQ(ws.fitscale, 1);
    EXPECT_EQ(ws.fitzero, 0);
    EXPECT_EQ(ws.fitbgorder, 1);
    EXPECT_EQ(ws.bgcoef(1), 0);
    EXPECT_EQ(WStatusText(3), "");
    RunMenu(MenuUndo);
    EXPECT_TRUE(TakeSnapshot(&fitted) == fitted);
  }
  ws.plotmask = PlotInput;
  RunMenu(MenuDisplacePatterns, "set \"Intensity\" 5\npress OK");  // the overlays of another look
  EXPECT_EQ(ws.fitshown, 1);
}

// A fit does not outlive its curves: slot 4 goes over to its next owner empty, and on the points of
// slot 1.
TEST(FitPatterns, EndsWithItsCurves) {
  const TempDir dir;
  WriteFile(dir.file("b.xy"), "22 3\n22.5 4\n");
  const struct {
    int item;
    std::string answers;
    bool emptied = true;    // slot 4
  } rows[] = {{40048, ""},  // close
              {40040, "file " + dir.file("b.xy")},
              {MenuAddPatterns, ""},
              {40060, "set \"Scale factor\" 2\npress OK"},
              {40057, "set \"New start\" 30\npress OK"},  // truncate
              {40074, "press OK", false},                 // subtract background
              {40095, ""},                                // clear peaks
              {40020, "press OK", false},                 // fit single peak
              {40107, "press Calculate", false},
              {40109, "file " + dir.file("a.fit"), false},  // load peak fit
              {40113, ""}};                                 // clear peak fit
  for (const auto& row : rows) {
    SCOPED_TRACE(row.item);
    PutBoth([](double x) { return 40 + Peaks(x); }, Peaks);
    PutOverlay(1, "a", 25, kStep, 200, Peaks);
    ws.scanwave(1) = CuKalpha1;
    ws.npts(SlotBackground) = kPoints;
    ws.npeaks = 1;
    ws.peaks(ptth, 1) = 28;
    RunMenu(40108, "file " + dir.file("a.fit"));
    RunMenu(MenuFitPatterns, "press OK");
    ASSERT_EQ(ws.fitshown, 1);
    ws.npts(SlotRefined) = 200;
    ComputeXAxes();  // for other wavelengths
    EXPECT_EQ(ws.xval(AxisTth, SlotRefined, 1), 25);
    ws.plotxmin = 27;
    ws.plotxmax = 29;
    Events();
    RunMenu(row.item, row.answers);
    EXPECT_EQ(Boxes(), Lines{});
    EXPECT_EQ(ws.fitshown, 0);
    EXPECT_EQ(ws.npts(SlotRefined), ws.npts(SlotInput));
    for (int i = 1; i <= ws.npts(SlotInput); ++i) {
      ASSERT_EQ(ws.xval(AxisTth, SlotRefined, i), ws.xval(AxisTth, SlotInput, i));
      if (row.emptied) {
        ASSERT_EQ(ws.yval(SlotRefined, i), 0);
      }
    }
    EXPECT_EQ(ws.profrvalue, 0);
  }
}

// The overlay begins later than the pattern and ends before it; another one stays behind the fit.
TEST(FitPatterns, SavesItsPoints) {
  const TempDir dir;
  PutPattern(9.5f, 0.5f, 4, [](double x) { return 100 * x; });
  SetMenuLoaded(1);
  PutOverlay(1, "a", 10, 0.5f, 2, [](double x) { return 30 * x; });
  PutOverlay(2, "b", 10, 0.5f, 2, [](double) { return 7; });
  ws.patternstem = "p";
  RunMenu(MenuSaveFitted);
  EXPECT_EQ(Events(), Lines{"box\tError\tThere is no fit to save: run \"Fit patterns\" first"});
  // Two terms go through two points: what lacks is 400 and 420 counts.
  RunMenu(MenuFitPatterns, "set \"2\" on\nset \"Scale factor\" 2\npress OK");
  Events();
  RunMenu(MenuSaveFitted, "file " + dir.file("p_fit.xy"));
  EXPECT_EQ(Events(), Lines{"select\tSave pattern file\t|*.xy|\tp_fit.xy"});
  EXPECT_EQ(ReadFile(dir.file("p_fit.xy")),
            "   10.0000      1000      1000      -400\n"
            "   10.5000      1050      1050      -420\n");
  EXPECT_EQ(ws.yval(SlotOverlay + 1, 1), 7);
  RunMenu(MenuSavePattern, "set \"All (*.tab)\" on\npress OK\nfile " + dir.file("a.tab"));
  EXPECT_EQ(ReadFile(dir.file("a.tab")),
            "   9.500      950        0        0\n"
            "  10.000     1000     1000        0\n"
            "  10.500     1050     1050        0\n"
            "  11.000     1100        0        0\n");
  // What is entered for a fit that is stopped changes nothing of this one.
  const std::string saved = ReadFile(dir.file("p_fit.xy"));
  RunMenu(MenuFitPatterns, "set \"0\" on\nset 1217 on\nstop 1\npress OK");
  RunMenu(MenuSaveFitted, "file " + dir.file("p_fit.xy"));
  EXPECT_EQ(ReadFile(dir.file("p_fit.xy")), saved);
  RunMenu(MenuSaveFitted, "file " + dir.file("none/p.xy"));
  EXPECT_TRUE(
      Events().back().starts_with("box\tFile error\tError opening fit file\\n" + dir.path()));
  const SmallFiles full(50);
  RunMenu(MenuSaveFitted, "file " + dir.file("q.xy"));
  EXPECT_TRUE(
      Events().back().starts_with("box\tFile Error\tError writing fit file\\n" + dir.path()));
}

}  // namespace
