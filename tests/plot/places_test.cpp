#include "plot/onepeak.h"

namespace {

using namespace colours;

// Picked places are kept as two-theta and counts, and drawn where they lie on the axes on show.
TEST_F(PatternPlot, PlacesOnTheAxesOnShow) {
  ws.npeaks = ws.nmanualbg = 1;
  ws.peaks(ptth, 1) = kPeak;
  ws.manualbg(1, 1) = 40;
  ws.manualbg(2, 1) = 250;
  ws.wavelen(1) = 0.7093f;  // of no account: the axes stand for another one
  const auto near = [](float value, float expected) {
    EXPECT_NEAR(value, expected, 1e-3f * std::abs(expected) + 1e-3f);
  };
  const auto expectplaces = [&](float (*shown)(float), float (*showny)(float)) {
    ws.plotmask = PlotInput | PlotPeaks;
    RedrawView(1);
    const auto ticks = Curves(kMagenta), cross = Curves(kOrange);
    ASSERT_EQ(ticks.size(), 1u);
    near(ticks[0][1].x, shown(kPeak));
    near(ticks[0][1].y, showny(Counts(28.4f)));
    ASSERT_EQ(cross.size(), 2u);
    near(cross[1][0].x, shown(40));
    near(cross[0][0].y, showny(250));
    for (int i = 1; i <= 401; i += 20) {
      const float tth = ws.xval(AxisTth, SlotInput, i), counts = ws.yval(SlotInput, i);
      EXPECT_EQ(ShownX(tth), ws.xval(ws.xaxismode, SlotInput, i));
      near(TwoThetaOf(shown(tth)), tth);
      const DataPoint there = ShownPosition({tth, counts}), back = StoredPosition(there);
      near(there.x, shown(tth));
      near(there.y, showny(counts));
      near(back.x, tth);
      near(back.y, counts);
    }
  };
  const auto same = [](float value) { return value; };
  for (ws.yaxismode = 1; ws.yaxismode <= 2; ++ws.yaxismode) {
    float (*const y)(float) = ws.yaxismode == 1 ? +same : static_cast<float (*)(float)>(std::log10);
    ws.xaxismode = AxisTth;
    expectplaces(same, y);
    ws.xaxismode = AxisD;
    expectplaces(D, y);
    EXPECT_EQ(std::pair(ws.viewxmin, ws.viewxmax), std::pair(1.5f, 4.5f));
    for (float none : {0.0f, -1.0f, 0.77f}) EXPECT_EQ(TwoThetaOf(none), 0) << none;
    ws.xaxismode = AxisQ;
    expectplaces(Q, y);
    EXPECT_EQ(std::pair(ws.viewxmin, ws.viewxmax), std::pair(1.4f, 4.1f));
    for (float none : {0.0f, -1.0f, 8.16f}) EXPECT_EQ(TwoThetaOf(none), 0) << none;
    for (float none : {0.0f, -20.0f}) EXPECT_EQ(ShownX(none), 0) << none;
  }
  EXPECT_EQ(ShownPosition({20, 0}).y, 0);  // on the logarithmic axis
}

TEST_F(PatternPlot, HeaderBlockOnPaper) {
  FillSlot(SlotBackground, 401, Counts);
  ws.plotmask = PlotInput | PlotBackground;
  const struct {
    const char *field, *shown;
  } kExposures[] = {{"45", "45 s"}, {"        60", "1 min"}, {"330", "5 min 30 s"}, {"3600", "1 h"},
                    {"0", "0"},     {"7500", "2 h 5 min"},   {"two days", "0"}};
  ws.infodepartment = "Crystallography";
  ws.infoaddress = "12 Long Street";
  ws.sampleid = "Silicon $100@";
  ws.gdfhead(5) = "A. M\xc3\xbcller";
  ws.scandate = "2026-03-01";
  ws.patternpath =
      "/home/somebody/measurements/of/the/year/2026/in/folders/with/long/names/below/the/"
      "others/25\xc2\xb0/silicon.xy";
  ws.profrvalue = 0.04567f;
  ws.crystallinity = 45.25f;
  ws.cryststart = 10;
  ws.crystend = 90;
  for (const auto& e : kExposures) {
    ws.gdfhead(8) = e.field;
    ws.printflag = 1;
    OpenPaper();
    RedrawView(1);
    ExpectInside(PaperList(), 180, 254);
    EXPECT_EQ(Strokes(PaperList(), kGreen)[0].size(), 401u);
    for (const Stroke& stroke : PaperList().strokes) EXPECT_EQ(stroke.pen.linetype, 0);  // solid
    const auto texts = ReadTexts(PaperList(), 15 * PaperScale, 0, 24);
    const std::pair<std::string, float> kBlock[] = {
        {"Quillagram              Crystallography", 0},
        {"12 Long Street", 12},
        {"Sample:                  Silicon $100@", 22},
        {"Operator:                 A. M\xc3\xbcller", 28},
        {"Exposure time:           " + std::string(e.shown), 34},
        {"Profile R-value:          0.04567", 40},
        {"Pattern file:            "
         "...folders/with/long/names/below/the/others/25\xc2\xb0/silicon.xy",
         46},
        {"Data collection date:    2026-03-01", 52},
        {"Crystallinity:            45.25 ( 10.00- 90.00)", 58}};
    auto text = std::ranges::find(texts, kBlock[0].first, &ReadText::text);
    for (const auto& [line, fall] : kBlock) {
      ASSERT_NE(text, texts.end()) << line;
      EXPECT_EQ(text->text, line);
      const float top = 125 - (4 * 1.584f + 2) * 2.6f;
      EXPECT_NEAR(text->begin.y, top - 15 * PaperScale - fall, 0.02f) << line;
      ++text;
    }
    EXPECT_EQ(text, texts.end());
  }
}

}  // namespace
