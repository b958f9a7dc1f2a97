#include <array>
#include <memory>

#include "plot/onepeak.h"

namespace {

using namespace colours;

TEST_F(PatternPlot, EveryPointStandsAtItsPlaceAndTheRangesAreWrittenBack) {
  for (int fullrange : {1, 0}) {  // what was written back is what is drawn again
    RedrawView(fullrange);
    const std::array found{ws.viewxmin, ws.viewxmax, ws.viewymin, ws.viewymax,
                           ws.plotxmin, ws.plotxmax, ws.xperunit, ws.yperunit};
    EXPECT_EQ(found,
              (std::array{20.0f, 60.0f, 100.0f, 1000.0f, 20.0f, 60.0f, 40.0f / 850, 900.0f / 850}));
    const Path curve = Curve(kBlack);
    ASSERT_EQ(curve.size(), 401u);
    for (int i = 1; i <= 401; ++i) {
      EXPECT_NEAR(curve[i - 1].x, ws.xval(AxisTth, SlotInput, i), 1e-3f);
      EXPECT_NEAR(curve[i - 1].y, ws.yval(SlotInput, i), 0.05f);
    }
    ExpectInside(ScreenList(), 1000, 1000);
  }
  const auto title = ReadTexts(ScreenList(), 1.4f * 15);
  ASSERT_EQ(Lines(title), std::vector<std::string>{"silicon"});
  EXPECT_NEAR(title[0].end.x, 940, 0.1f);
  EXPECT_NEAR(title[0].begin.y + 1.4f * 15, 930, 0.1f);
}

// A state of the Workspace, and the curve of a colour that it must show.
struct View {
  const char* name;
  std::function<void()> set;
  int colour;
  std::size_t points;  // 0: no curve of this colour
  DrawPoint first{}, last{};
};

TEST_F(PatternPlot, CurvesInEveryView) {
  const auto with = [](int mask, int slot, float y, int n = 401) {
    return [=] {
      FillSlot(slot, n, [=](float) { return y; });
      ws.plotmask = mask;
      ws.noverlay = std::max(0, slot - SlotOverlay + 1);
      ws.displacex = 0.5f;
      ws.displacey = 700;
      RedrawView(1);
    };
  };
  const auto fit = [] {
    ws.fitshown = 1;
    FillSlot(
        SlotRefined, 341, [](float tth) { return Counts(tth) + 30; }, 26);
    ws.plotmask = PlotInput | PlotResidual;
    RedrawView(1);
  };
  const auto axes = [](int x, int y, float first) {
    return [=] {
      ws.xaxismode = x;
      ws.yaxismode = y;
      ws.yval(SlotInput, 1) = first;
      RedrawView(1);
    };
  };
  const auto band = [](float x1, float x2, float y1, float y2) {
    return [=] {
      ws.plotmask = PlotInput;
      Band(x1, x2, y1, y2);
    };
  };
  const View kViews[] = {
      {"log, zero counts", axes(AxisTth, 2, 0), kBlack, 401, {20, 0}, {60, 2}},
      {"d", axes(AxisD, 1, 100), kBlack, 401, {D(20), 100}, {D(60), 100}},
      {"Q", axes(AxisQ, 1, 100), kBlack, 401, {Q(20), 100}, {Q(60), 100}},
      {"band", band(25.03f, 32.05f, 50, 1100), kBlack, 70, {25.1f, 103.4f}, {32, 101.6f}},
      {"band of ten steps", band(25, 25.9f, 150, 700), kBlack, 401, {20, 100}, {60, 100}},
      {"band of 4 counts", band(25, 32, 150, 154), kBlack, 401, {20, 100}, {60, 100}},
      {"background", with(3, SlotBackground, 300), kGreen, 401, {20, 300}, {60, 300}},
      {"long background", with(3, SlotBackground, 300, 500), kGreen, 401, {20, 300}, {60, 300}},
      {"background alone", with(2, SlotBackground, 300), kBlack, 401, {20, 300}, {60, 300}},
      {"background again", with(2, SlotBackground, 300), kGreen, 401, {20, 300}, {60, 300}},
      {"net", with(10, SlotNet, 40), kBlack, 401, {20, 40}, {60, 40}},
      {"net behind (C)", with(12, SlotRefined, 90), kBlack, 401, {20, 90}, {60, 90}},
      {"refined", with(5, SlotRefined, 130), kOrange, 401, {20, 130}, {60, 130}},
      {"difference", with(21, SlotRefined, 170), kBrown, 401, {20, 30}, {60, 30}},
      {"difference without (C)", with(17, SlotRefined, 170), kBrown, 0},
      {"difference, log", [=] { ws.yaxismode = 2, with(21, SlotRefined, 170)(); }, kBrown, 0},
      {"difference of a fit from 26 degrees", fit, kBrown, 341, {26, 70}, {60, 70}},
      {"overlay 1", with(1, 5, 40, 100), kOrange, 100, {20.5f, 740}, {30.4f, 740}},
      {"overlay 2", with(1, 6, 40, 100), kMagenta, 100, {21, 1440}, {30.9f, 1440}},
      {"overlay cut at the end", with(1, 5, 40), kOrange, 396, {20.5f, 740}, {60, 740}},
      {"overlay under a fit", [=] { ws.fitshown = 1, with(1, 6, 40)(); }, kMagenta, 0},
  };
  for (const View& view : kViews) {
    SCOPED_TRACE(view.name);
    SetUp();
    view.set();
    const Path curve = Curve(view.colour);
    ASSERT_EQ(curve.size(), view.points);
    ExpectInside(ScreenList(), 1000, 1000);
    if (curve.empty()) continue;
    for (const auto& [found, expected] :
         {std::pair{curve.front(), view.first}, {curve.back(), view.last}}) {
      EXPECT_NEAR(found.x, expected.x, 2e-3f);
      EXPECT_NEAR(found.y, expected.y, 0.2f);
    }
  }
}

TEST_F(PatternPlot, BandClipsOtherCurvesAndTicks) {
  FillSlot(SlotRefined, 401, [](float) { return 300.0f; });
  ws.plotmask = PlotInput | PlotRefined | PlotPeaks;
  ws.npeaks = 4;
  for (const auto& [j, tth] : {std::pair{1, 0.0f}, {2, 22.0f}, {3, kPeak}, {4, 50.0f}})
    ws.peaks(ptth, j) = tth;
  Band(25.03f, 32.05f, 150, 1000);
  const Path refined = Curve(kOrange);
  ASSERT_EQ(refined.size(), 70u);  // 25.1 to 32.0
  EXPECT_NEAR(refined.front().x, 25.1f, 1e-3f);
  // The one peak in the band: its tick runs from the strip below the plot to the nearest point.
  const auto ticks = Curves(kMagenta);
  ASSERT_EQ(ticks.size(), 1u);
  ASSERT_EQ(ticks[0].size(), 2u);
  for (const DrawPoint& end : ticks[0]) EXPECT_NEAR(end.x, kPeak, 1e-3f);
  EXPECT_NEAR(ticks[0][0].y, ws.viewymin - 20 * ws.yperunit, 0.5f);
  EXPECT_NEAR(ticks[0][1].y, Counts(28.4f), 0.5f);
  // The one chosen in the table is drawn over, thick; a tool of the screen that is not printed.
  ws.peakchosen = 3;
  RedrawView(0);
  EXPECT_EQ(Curves(kBlue), ticks);
  const auto& strokes = ScreenList().strokes;
  const auto blue = std::ranges::find(strokes, static_cast<unsigned>(kBlue),
                                      [](const Stroke& s) { return s.pen.colour; });
  ASSERT_NE(blue, strokes.end());
  EXPECT_EQ(blue->pen.width, 3);
  ws.printflag = 1;
  OpenPaper();
  DrawView();
  ws.printflag = 0;
  EXPECT_TRUE(Strokes(PaperList(), kBlue).empty());
}

TEST_F(PatternPlot, ManualPointsGridAndOverlayName) {
  ws.nmanualbg = 2;
  ws.manualbg(1, 1) = 30;
  ws.manualbg(2, 1) = 500;
  ws.manualbg(1, 2) = 70;  // outside
  ws.xgrid = ws.ygrid = 1;
  RedrawView(1);
  EXPECT_EQ(Curves(kOrange).size(), 2u);  // one plus sign
  EXPECT_NEAR(Curves(kOrange)[0][0].y, 500, 0.1f);
  const auto grid = Curves(kGrid);
  ASSERT_EQ(grid.size(), 41u + 91u);  // every degree, every 10 counts
  for (std::size_t i = 0; i < grid.size(); ++i) {
    const bool upright = i < 41;
    const auto k = static_cast<float>(upright ? i : i - 41);
    EXPECT_NEAR(grid[i][0].x, upright ? 20 + k : 20, 1e-3f);
    EXPECT_NEAR(grid[i][1].x, upright ? 20 + k : 60, 1e-3f);
    EXPECT_NEAR(grid[i][0].y, upright ? 100 : 100 + 10 * k, 0.05f);
    EXPECT_NEAR(grid[i][1].y, upright ? 1000 : 100 + 10 * k, 0.05f);
  }
  ws.noverlay = 1;
  // 20 letters of the stem are drawn
  ws.overlayname(1) = "/data/25\xc2\xb0-$-of-twenty-fo\xc3\xbcr.v2.xy";
  RedrawView(1);
  const auto names = ReadTexts(ScreenList(), 1.2f * 15);
  const auto name = std::ranges::find(names, "25\xc2\xb0-$-of-twenty-fo\xc3\xbcr", &ReadText::text);
  ASSERT_NE(name, names.end());
  EXPECT_NEAR(name->end.x, 940, 0.1f);
  EXPECT_NEAR(name->begin.y + 18, 950 - 20 - 30, 0.1f);
}

// The legend names each curve in its colour, and goes out of the pattern's way.
TEST_F(PatternPlot, LegendNamesTheCurvesBesideThePeak) {
  ws.noverlay = 2;
  ws.overlayname(1) = "/data/first.xy";
  ws.overlayname(2) = "/data/second.xy";
  const auto names = [](float peak, int fitshown) {
    FillSlot(SlotInput, 401,
             [=](float tth) { return std::abs(tth - peak) < 0.5f ? 999.0f : 9.0f; });
    FillSlot(SlotBackground, 401, [](float) { return 50.0f; });
    FillSlot(SlotRefined, 401, [](float) { return 60.0f; });
    ws.plotmask = PlotInput | PlotBackground | (fitshown ? 0 : PlotRefined) | PlotResidual;
    ws.fitshown = fitshown;
    RedrawView(1);
    auto texts = ReadTexts(ScreenList(), 1.2f * 15, 0, 1);
    std::erase_if(texts, [](const ReadText& text) { return text.text.size() < 2; });  // of labels
    return texts;
  };
  const auto right = names(30, 0);
  EXPECT_EQ(Lines(right), (std::vector<std::string>{"first", "second", "Background",
                                                    "Refined pattern", "Difference (A-C)"}));
  for (const ReadText& name : right) EXPECT_NEAR(name.end.x, 940, 0.1f);
  const auto left = names(55, 1);
  EXPECT_EQ(Lines(left),
            (std::vector<std::string>{"Background", "Fitted pattern", "Difference (A-C)"}));
  for (const ReadText& name : left)  // behind three letters of room, in a window of 16 to 9
    EXPECT_NEAR(name.begin.x, 100 + 10 + 3 * 18 * 9 / 16.0f, 0.1f);
  ws.legend = 0;
  EXPECT_TRUE(names(55, 0).empty());
}

// The highest peak may be an overlay's, or be cut off at the top of a zoomed frame.
TEST_F(PatternPlot, LegendLeavesTheHighestPeakFree) {
  ws.noverlay = 1;
  ws.overlayname(1) = "/data/overlay.xy";
  const auto place = [](std::initializer_list<float> peaks, float highest, float floor = 9) {
    FillSlot(SlotInput, 401, [](float) { return 9.0f; });
    FillSlot(SlotOverlay, 401, [&](float tth) {
      if (std::abs(tth - highest) < 0.5f) return 1000.0f;
      return std::ranges::any_of(peaks, [=](float at) { return std::abs(tth - at) < 0.5f; })
                 ? 950.0f
                 : floor;
    });
    ws.plotmask = PlotInput;
    RedrawView(1);
    const auto legend = [] {
      const auto texts = ReadTexts(ScreenList(), 1.2f * 15, 0, 1);
      const auto name = std::ranges::find(texts, "overlay", &ReadText::text);
      return name == texts.end() ? Range{0, 0} : Range{name->begin.x, name->end.x};
    };
    const Range whole = legend();
    Band(20, 60, 0, 500);
    EXPECT_EQ(legend(), whole);
    return whole;
  };
  const auto at = [](float tth) { return 100 + 850 * (tth - 20) / 40; };
  EXPECT_NEAR(place({}, 30).hi, 940, 0.1f);
  EXPECT_LT(place({}, 58).hi, at(30));
  const Range between = place({22, 26, 52}, 58);
  EXPECT_TRUE(between.lo > at(26) && between.hi < at(52));
  EXPECT_TRUE(place({22, 26, 30, 34, 38, 42, 46, 50, 54}, 58).hi < at(57)) << "over lower ones";
  // A plateau is as high everywhere.
  EXPECT_EQ(place({}, 0, 1000).hi, 0);
}

// Letters of axes are 15 units high, but never lower than 9 pixels, and stay within the window;
// where the labels need all room there is no title.
TEST_F(PatternPlot, LettersOfSmallWindowsCanBeRead) {
  for (const auto& [width, height, units] : {std::array{1200.0f, 900.0f, 15.0f},
                                             {640, 480, 9 / 0.48f},
                                             {500, 400, 9 / 0.4f},
                                             {420, 300, 9 / 0.3f},
                                             {240, 160, 9 / 0.16f}}) {
    OpenWindow(static_cast<int>(width), static_cast<int>(height));
    for (ws.viewmode = 1; ws.viewmode <= 4; ws.viewmode += 2) {
      ws.npeaks = 5;
      for (int j = 1; j <= 5; ++j) {
        ws.peaks(ptth, j) = 20.0f * static_cast<float>(j);
        ws.peaks(pfwhm, j) = 0.1f + 0.01f * static_cast<float>(j);
      }
      ws.analysiskind = 1;
      RedrawView(1);
      ExpectInside(ScreenList(), 1000, 1000);
      EXPECT_GE(ReadTexts(ScreenList(), units).size(), 6u) << width << " " << ws.viewmode;
    }
  }
}

TEST_F(PatternPlot, WhatCannotBeDrawnIsToldOnce) {
  const auto complains = [](const std::string& text) {
    ws.plotmask = 63;
    ws.npeaks = ws.nmanualbg = ws.xgrid = ws.ygrid = 1;
    const ViewComplaint complaint = LayView();
    EXPECT_EQ(complaint.caption + complaint.text, "Error" + text);
    EXPECT_TRUE(Events().empty());
    ws.plotmask = 63;
    RedrawView(1);
    EXPECT_EQ(ws.plotmask, 0);
    RedrawView(0);
    EXPECT_EQ(Events(), std::vector<std::string>{"box\tError\t" + text});
    EXPECT_TRUE(ScreenList().points.empty());
  };
  for (int n : {0, 1}) {
    for (int slot = 1; slot <= 4; ++slot) ws.npts(slot) = n;
    complains("nstep = 0");
  }
  FillSlot(SlotInput, 50, Counts, 0, 0);  // every point at 0
  for (ws.xaxismode = AxisTth; ws.xaxismode <= AxisQ; ++ws.xaxismode) complains("amin = amax");
  ws.xaxismode = AxisTth;
  ws.plotmask = PlotInput;
  FillSlot(SlotInput, 401, [](float) { return 0.0f; });  // flat patterns are drawn
  RedrawView(1);
  EXPECT_EQ(Curve(kBlack).size(), 401u);
  ws.yval(SlotInput, 7) = NAN;
  ws.yval(SlotInput, 8) = 1e30f;
  RedrawView(1);
  EXPECT_TRUE(Events().empty());
}

// Lines end where they cross the frame; what lies outside is not drawn along its edge.
TEST_F(PatternPlot, CurvesAreClippedToTheFrame) {
  ws.legend = 0;
  FillSlot(SlotInput, 401, [](float tth) { return 25 * (tth - 20.02f); });
  const auto refined = [](const std::function<float(float)>& counts) {
    FillSlot(SlotRefined, 401, counts);
    ws.plotmask = PlotInput | PlotRefined;
    Band(25.03f, 55.05f, 210, 690);
    return Curves(kOrange);
  };
  EXPECT_TRUE(refined([](float) { return 205.0f; }).empty());
  EXPECT_TRUE(refined([](float) { return 695.0f; }).empty());
  const Path ramp = Curve(kBlack);
  ASSERT_EQ(ramp.size(), 192u + 2);  // 28.5 to 47.6, and both crossings
  EXPECT_NEAR(ramp.front().x, 28.42f, 2e-3f);
  EXPECT_NEAR(ramp.front().y, 210, 0.01f);
  EXPECT_NEAR(ramp.back().x, 47.62f, 2e-3f);
  EXPECT_NEAR(ramp.back().y, 690, 0.01f);

  bool up = false;
  const auto zigzag = refined([&](float) { return (up = !up) ? 1e30f : -1e30f; });
  ASSERT_EQ(zigzag.size(), 299u);
  for (const Path& line : zigzag) {
    ASSERT_EQ(line.size(), 2u);
    EXPECT_NEAR(std::abs(line[1].y - line[0].y), 690 - 210, 0.01f);
  }
  const auto step = refined([](float tth) { return tth < 40.05f ? 700.0f : 300.0f; });
  ASSERT_EQ(step.size(), 1u);
  EXPECT_NEAR(step[0][0].x, 40.0025f, 2e-3f);
  EXPECT_NEAR(step[0][0].y, 690, 0.01f);
  EXPECT_NEAR(step[0][1].x, 40.1f, 2e-3f);
  const auto cliff = refined([](float tth) { return tth < 40.05f ? -INFINITY : 300.0f; });
  ASSERT_EQ(cliff.size(), 1u);
  EXPECT_NEAR(cliff[0][0].y, 210, 0.01f);
  EXPECT_NEAR(cliff[0][0].x, 40.05f, 0.06f);

  SetUp();  // from 100 to 1000 counts
  ws.legend = 0;
  ws.yaxismode = 2;
  ws.plotmask = PlotInput | PlotBackground;
  FillSlot(SlotBackground, 401, [](float tth) { return tth < 30 ? 0.0f : 50.0f; });
  RedrawView(1);
  EXPECT_TRUE(Curves(kGreen).empty());
  EXPECT_EQ(Curve(kBlack).size(), 401u);
}

}  // namespace
