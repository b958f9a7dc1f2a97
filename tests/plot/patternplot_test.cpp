#include <algorithm>

#include "plot/drawing.h"
#include "workspace/menuids.h"

namespace {

// 401 points from 20 to 60 degrees: a floor of 100 counts and a peak of 1000 at 28.44 degrees.
constexpr float kPeak = 28.44f, kStep = 0.1f;
float Counts(float tth) { return 100 + 900 * std::exp(-(tth - kPeak) * (tth - kPeak) / 2); }

class PatternPlot : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    LoadPattern(401, 20, kStep, Counts);
    ws.stem20 = "silicon";
  }
  // As the mouse leaves a rubber band.
  static void Band(float x1, float x2, float y1, float y2) {
    ws.bandx1 = ws.plotxmin = x1;
    ws.bandx2 = ws.plotxmax = x2;
    ws.bandy1 = y1;
    ws.bandy2 = y2;
    RedrawView(0);
  }
  static void ExpectInWindow() {
    for (const DrawPoint& p : ScreenList().points)
      ASSERT_TRUE(p.x >= 0 && p.x <= 1000 && p.y >= 0 && p.y <= 1000) << p.x << " " << p.y;
  }
};

TEST_F(PatternPlot, EveryPointStandsAtItsPlaceAndTheRangesAreWrittenBack) {
  RedrawView(1);
  EXPECT_FLOAT_EQ(ws.viewxmin, 20);
  EXPECT_FLOAT_EQ(ws.viewxmax, 60);
  EXPECT_FLOAT_EQ(ws.viewymin, 100);
  EXPECT_FLOAT_EQ(ws.viewymax, 1000);
  EXPECT_FLOAT_EQ(ws.plotxmin, 20);
  EXPECT_FLOAT_EQ(ws.plotxmax, 60);
  EXPECT_FLOAT_EQ(ws.xperunit, 40.0f / 850);
  EXPECT_FLOAT_EQ(ws.yperunit, 900.0f / 850);
  const Path curve = Curve(colours::kBlack);
  ASSERT_EQ(curve.size(), 401u);
  for (int i = 1; i <= 401; ++i) {
    EXPECT_NEAR(curve[i - 1].x, ws.xval(AxisTth, SlotInput, i), 1e-3f);
    EXPECT_NEAR(curve[i - 1].y, ws.yval(SlotInput, i), 0.05f);
  }
  const auto title = ReadTexts(ScreenList(), 1.4f * 15);
  ASSERT_EQ(Lines(title), std::vector<std::string>{"silicon"});
  EXPECT_NEAR(title[0].end.x, 940, 0.1f);
  EXPECT_NEAR(title[0].begin.y + 1.4f * 15, 930, 0.1f);
  EXPECT_EQ(Lines(ReadTexts(ScreenList(), 1.2f * 15, -270)), std::vector<std::string>{"Counts"});

  RedrawView(0);  // what was written back is what is drawn again
  EXPECT_EQ(Curve(colours::kBlack).size(), 401u);
  ExpectInWindow();
}

TEST_F(PatternPlot, LogarithmWithZeroCountsAtZero) {
  ws.yaxismode = 2;
  ws.yval(SlotInput, 10) = 0;
  ws.yval(SlotInput, 11) = -5;
  RedrawView(1);
  const Path curve = Curve(colours::kBlack);
  ASSERT_EQ(curve.size(), 401u);
  for (int i : {10, 11}) EXPECT_NEAR(curve[i - 1].y, 0, 1e-3f);
  EXPECT_NEAR(curve[400].y, 2, 1e-3f);
  EXPECT_FLOAT_EQ(ws.viewymin, 0);
  EXPECT_FLOAT_EQ(ws.viewymax, 3);
}

TEST_F(PatternPlot, DAndQAxes) {
  const auto d = [](float tth) { return 1.54056f / 2 / std::sin(tth / 2 / RadToDeg); };
  ws.xaxismode = AxisD;
  RedrawView(1);
  EXPECT_LE(ws.viewxmin, d(60));
  EXPECT_GE(ws.viewxmax, d(20));
  Path curve = Curve(colours::kBlack);
  ASSERT_EQ(curve.size(), 401u);
  EXPECT_NEAR(curve.front().x, d(20), 1e-3f);
  EXPECT_NEAR(curve.back().x, d(60), 1e-3f);
  ws.xaxismode = AxisQ;
  RedrawView(1);
  curve = Curve(colours::kBlack);
  ASSERT_EQ(curve.size(), 401u);
  EXPECT_NEAR(curve.front().x, 6.283185f / d(20), 1e-3f);
}

TEST_F(PatternPlot, BandZoomsOnlyWhenLargeEnough) {
  const struct {
    float x1, x2, y1, y2;
    bool zoom;
  } kBands[] = {
      {25, 32, 150, 700, true},
      {25, 25.9f, 150, 700, false},  // ten steps are one degree
      {25, 32, 150, 154, false},
      {25, 29, 150, 156, true},
  };
  for (const auto& b : kBands) {
    RedrawView(1);
    Band(b.x1, b.x2, b.y1, b.y2);
    const Path curve = Curve(colours::kBlack);
    if (!b.zoom) {
      EXPECT_EQ(curve.size(), 401u) << b.x2;
      EXPECT_FLOAT_EQ(ws.viewxmax, 60);
      EXPECT_FLOAT_EQ(ws.plotxmax, 60);
      continue;
    }
    EXPECT_NEAR(curve.front().x, b.x1, kStep) << b.x2;
    EXPECT_NEAR(curve.back().x, b.x2, kStep) << b.x2;
    EXPECT_FLOAT_EQ(ws.viewxmin, 25);
    EXPECT_FLOAT_EQ(ws.viewxmax, std::ceil(b.x2));
    for (const DrawPoint& p : curve) EXPECT_TRUE(p.y > b.y1 - 0.1f && p.y < b.y2 + 0.1f);
    EXPECT_FLOAT_EQ(ws.plotxmax, b.x2);  // the exact band clips the other curves
  }
}

TEST_F(PatternPlot, OtherCurvesAreClippedToTheBand) {
  ws.plotmask = PlotInput | PlotBackground | PlotRefined | PlotPeaks;
  for (int i = 1; i <= 401; ++i) {
    ws.yval(SlotBackground, i) = 300;
    ws.yval(SlotRefined, i) = ws.yval(SlotInput, i) + 1;
  }
  ws.npeaks = 3;
  for (const auto& [j, tth] : {std::pair{1, 22.0f}, {2, kPeak}, {3, 50.0f}})
    ws.peaks(ptth, j) = tth;
  RedrawView(1);
  Band(25.03f, 32.05f, 150, 700);
  for (int colour : {colours::kGreen, colours::kOrange}) {
    const Path curve = Curve(colour);
    ASSERT_EQ(curve.size(), 70u);  // 25.1 to 32.0
    EXPECT_NEAR(curve.front().x, 25.1f, 1e-3f);
    EXPECT_NEAR(curve.back().x, 32.0f, 1e-3f);
  }
  for (const DrawPoint& p : Curve(colours::kGreen)) EXPECT_NEAR(p.y, 300, 0.1f);
  EXPECT_EQ(Curves(colours::kMagenta).size(), 1u);
  ExpectInWindow();
}

TEST_F(PatternPlot, PeakTickRunsFromTheStripToTheCurve) {
  ws.plotmask = PlotInput | PlotPeaks;
  ws.npeaks = 2;
  ws.peaks(ptth, 1) = 0;  // no position: not drawn
  ws.peaks(ptth, 2) = kPeak;
  RedrawView(1);
  const auto ticks = Curves(colours::kMagenta);
  ASSERT_EQ(ticks.size(), 1u);
  ASSERT_EQ(ticks[0].size(), 2u);
  EXPECT_NEAR(ticks[0][0].x, kPeak, 1e-3f);
  EXPECT_NEAR(ticks[0][1].x, kPeak, 1e-3f);
  EXPECT_NEAR(ticks[0][0].y, ws.viewymin - 20 * ws.yperunit, 0.5f);
  EXPECT_NEAR(ticks[0][1].y, Counts(28.4f), 0.5f);  // the nearest point
}

TEST_F(PatternPlot, PrimaryCurveAndLongBackground) {
  ws.npts(SlotBackground) = 500;
  for (int i = 1; i <= 500; ++i) {
    ws.xval(AxisTth, SlotBackground, i) = 20 + kStep * static_cast<float>(i - 1);
    ws.yval(SlotBackground, i) = 200 + static_cast<float>(i);
  }
  ws.plotmask = PlotBackground;  // the primary curve too, black under green
  RedrawView(1);
  EXPECT_EQ(Curve(colours::kBlack).size(), 500u);
  EXPECT_EQ(Curve(colours::kGreen).size(), 401u);
  ws.npts(SlotBackground) = 401;

  const struct {
    int mask;
    float first;
  } kPrimary[] = {{PlotInput | PlotNet, 1},
                  {PlotRefined | PlotNet, 4},
                  {PlotNet, 3},
                  {PlotNet | PlotBackground, 3},
                  {PlotPeaks, 1}};
  for (int slot : {1, 3, 4}) ws.yval(slot, 1) = static_cast<float>(slot);
  for (const auto& p : kPrimary) {
    ws.plotmask = p.mask;
    RedrawView(1);
    EXPECT_NEAR(Curve(colours::kBlack)[0].y, p.first, 0.1f) << p.mask;
  }
}

TEST_F(PatternPlot, OverlaysAreDisplacedAndWidenTheRange) {
  ws.noverlay = 2;
  ws.displacex = 0.5f;
  ws.displacey = 700;
  for (int k = 1; k <= 2; ++k) {
    const int slot = SlotOverlay + k - 1;
    ws.npts(slot) = 100;
    ws.wavelen(slot) = CuKalpha1;
    ws.overlayname(k) = "/data/overlay" + std::to_string(k) + ".v2.xy";
    for (int i = 1; i <= 100; ++i) {
      ws.xval(AxisTth, slot, i) = 30 + 0.1f * static_cast<float>(i);
      ws.yval(slot, i) = 40;
    }
  }
  RedrawView(1);
  EXPECT_FLOAT_EQ(ws.viewymax, 1500);  // 40 + 2 * 700 rounded outward
  for (const auto& [colour, k] : {std::pair{colours::kOrange, 1.0f}, {colours::kMagenta, 2.0f}}) {
    const Path curve = Curve(colour);
    ASSERT_EQ(curve.size(), 100u);
    EXPECT_NEAR(curve[0].x, 30.1f + 0.5f * k, 1e-3f);
    EXPECT_NEAR(curve[0].y, 40 + 700 * k, 0.1f);
  }
  for (const ReadText& t : ReadTexts(ScreenList(), 1.2f * 15))
    for (int k : {1, 2})
      if (t.text == "overlay" + std::to_string(k)) {
        EXPECT_NEAR(t.end.x, 940, 0.1f);
        EXPECT_NEAR(t.begin.y + 18, 950 - 20 - 30 * k, 0.1f);
        ws.overlayname(k).clear();
      }
  EXPECT_EQ(ws.overlayname(1) + ws.overlayname(2), "");  // both were found
  ws.fitshown = 1;                                       // the refined curve takes their place
  RedrawView(1);
  EXPECT_TRUE(Strokes(ScreenList(), colours::kMagenta).empty());
  EXPECT_FALSE(Strokes(ScreenList(), colours::kOrange).empty());
}

TEST_F(PatternPlot, DifferenceHangsFromTheFloor) {
  ws.plotmask = PlotInput | PlotRefined | PlotResidual;
  for (int i = 1; i <= 401; ++i) ws.yval(SlotRefined, i) = ws.yval(SlotInput, i) - 30;
  RedrawView(1);
  const Path curve = Curve(colours::kBrown);
  ASSERT_EQ(curve.size(), 401u);
  EXPECT_NEAR(curve[84].y, ws.viewymin + 30, 0.5f);
  ws.yaxismode = 2;
  RedrawView(1);
  EXPECT_TRUE(Curve(colours::kBrown).empty());
}

TEST_F(PatternPlot, ManualPointsAndGrid) {
  ws.nmanualbg = 2;
  ws.manualbg(1, 1) = 30;
  ws.manualbg(2, 1) = 500;
  ws.manualbg(1, 2) = 70;  // outside
  ws.xgrid = ws.ygrid = 1;
  RedrawView(1);
  EXPECT_EQ(Curves(colours::kOrange).size(), 2u);  // one plus sign
  EXPECT_NEAR(Curves(colours::kOrange)[0][0].y, 500, 0.1f);
  const auto lines = Curves(colours::kGrid);
  EXPECT_EQ(lines.size(), 41u + 91u);  // every degree, every 10 counts
  EXPECT_NEAR(lines[1][0].x, 21, 1e-3f);
}

TEST_F(PatternPlot, WhatCannotBeDrawnIsToldOnce) {
  const auto complains = [](const std::string& text) {
    ws.plotmask = 63;
    ws.npeaks = ws.nmanualbg = 1;
    ws.xgrid = ws.ygrid = 1;
    Events();
    RedrawView(1);
    EXPECT_EQ(Events(), std::vector<std::string>{"box\tError\t" + text});
    EXPECT_EQ(ws.plotmask, 0);
    RedrawView(0);
    EXPECT_TRUE(Events().empty());
  };
  for (int n : {0, 1}) {
    for (int slot = 1; slot <= 4; ++slot) ws.npts(slot) = n;
    complains("nstep = 0");
  }
  LoadPattern(50, 0, 0, Counts);  // every point at 0
  for (int axis : {AxisTth, AxisD, AxisQ}) {
    ws.xaxismode = axis;
    complains("amin = amax");
  }
  ws.xaxismode = AxisTth;
  LoadPattern(401, 20, kStep, [](float) { return 0.0f; });  // flat patterns are drawn
  RedrawView(1);
  EXPECT_EQ(Curve(colours::kBlack).size(), 401u);
  ws.yval(SlotInput, 7) = NAN;
  ws.yval(SlotInput, 8) = 1e30f;
  RedrawView(1);
  EXPECT_TRUE(Events().empty());
}

TEST_F(PatternPlot, SwitchesShowInTheMenu) {
  ws.plotmask = PlotInput | PlotNet | PlotPeaks;
  RedrawView(1);
  const std::pair<int, int> kItems[] = {{MenuPlotInput, 1},    {MenuPlotBackground, 0},
                                        {MenuPlotRefined, 0},  {MenuPlotNet, 1},
                                        {MenuPlotResidual, 0}, {MenuPlotPeaks, 1}};
  for (const auto& [id, checked] : kItems) EXPECT_EQ(WMenuGetState(id, MenuChecked), checked) << id;
}

TEST_F(PatternPlot, HeaderBlockOnPaper) {
  const struct {
    const char *field, *shown;
  } kExposures[] = {{"45", "45 s"},   {"        60", "1 min"}, {"330", "5 min 30 s"},
                    {"3600", "1 h"},  {"7500", "2 h 5 min"},   {"0", "0"},
                    {"two days", "0"}};
  ws.infodepartment = "Crystallography";
  ws.sampleid = "Silicon";
  ws.patternpath = "/data/silicon.xy";
  ws.profrvalue = 0.04567f;
  ws.crystallinity = 45.25f;
  ws.cryststart = 10;
  ws.crystend = 90;
  for (const auto& e : kExposures) {
    ws.gdfhead(8) = e.field;
    ws.printflag = 1;
    OpenPaper();
    RedrawView(1);
    for (const DrawPoint& p : PaperList().points)
      ASSERT_TRUE(p.x >= 0 && p.x <= 180 && p.y >= 0 && p.y <= 254) << p.x << " " << p.y;
    auto lines = Lines(ReadTexts(PaperList(), 15 * PaperScale, 0, 24));
    lines.erase(lines.begin(), std::find(lines.begin(), lines.end(),
                                         "Quillagram" + std::string(14, ' ') + "Crystallography"));
    EXPECT_EQ(lines, (std::vector<std::string>{
                         "Quillagram              Crystallography",
                         "Sample:                  Silicon",
                         "Exposure time:           " + std::string(e.shown),
                         "Profile R-value:          0.04567",
                         "Pattern file:            /data/silicon.xy",
                         "Crystallinity:            45.25 ( 10.00- 90.00)",
                     }));
    ws.epsflag = 1;
    RedrawView(1);
    EXPECT_EQ(Lines(ReadTexts(PaperList(), 15 * PaperScale, 0, 24)).back(), "60");
    ws.printflag = ws.epsflag = 0;
  }
}

}  // namespace
