// Zoom and pan with limits that are not rounded, and the way back through the views.
#include "plot/freezoom.h"
#include "plot/navigation.h"
#include "plot/onepeak.h"
#include "plot/zoomhistory.h"

namespace {

using namespace colours;

Message Wheel(float x, float y, float notches, int modifiers = 0) {
  return {.type = MessageWheel,
          .value1 = static_cast<int>(notches * WheelNotch),
          .x = x,
          .y = y,
          .modifiers = modifiers};
}

std::vector<float> Limits() { return {ws.viewxmin, ws.viewxmax, ws.viewymin, ws.viewymax}; }

TEST(Shifted, KeepsTheWidthWithinTheEnds) {
  const struct {
    Range range;
    float by;
    Range shifted;
  } cases[] = {
      {{20, 30}, 5, {25, 35}},  {{20, 30}, -15, {10, 20}},
      {{20, 30}, 50, {50, 60}}, {{0, 70}, 5, {0, 70}},   // it has no room to move
      {{0, 20}, 5, {5, 25}},    {{0, 20}, -5, {0, 20}},  // it only comes back
  };
  for (const auto& c : cases) EXPECT_EQ(Shifted(c.range, c.by, {10, 60}), c.shifted) << c.by;
}

class Zoom : public PatternPlot {
 protected:
  void SetUp() override {
    PatternPlot::SetUp();
    RedrawView(1);
    ForgetZooms();
  }
  template <class Body>
  static void ForAllAxes(Body body) {
    for (const int xaxis : {AxisTth, AxisD, AxisQ})
      for (const int yaxis : {1, 2}) {
        ws.xaxismode = xaxis;
        ws.yaxismode = yaxis;
        RedrawView(1);
        body(xaxis, yaxis);
      }
  }
};

// Whatever the axes, what is under the mouse stays there, also in the drawing; all else moves by
// the same factor.
TEST_F(Zoom, WhatIsUnderTheMouseStays) {
  ForAllAxes([](int xaxis, int yaxis) {
    for (const int held : {0, static_cast<int>(ModifierControl)}) {
      const auto before = Limits();
      const DataPoint at = ToData(420, 380);
      ASSERT_TRUE(Navigate(Wheel(420, 380, 1, held)));
      const DataPoint now = ToData(420, 380);
      EXPECT_NEAR(now.x, at.x, 1e-5f * std::abs(at.x)) << xaxis << yaxis;
      EXPECT_NEAR(now.y, at.y, 1e-5f * std::abs(before[3])) << xaxis << yaxis;
      const auto share = [&](int low) {
        return (Limits()[low + 1] - Limits()[low]) / (before[low + 1] - before[low]);
      };
      EXPECT_NEAR(share(0), held ? 1 : 0.8f, 1e-4f) << xaxis << yaxis;
      EXPECT_NEAR(share(2), held ? 0.8f : 1, 1e-4f) << xaxis << yaxis;
      if (held) continue;
      // The curve goes from side to side.
      const Path curve = Curve(kBlack);
      EXPECT_NEAR(std::min(curve.front().x, curve.back().x), ws.viewxmin, 1e-4f);
      EXPECT_NEAR(std::max(curve.front().x, curve.back().x), ws.viewxmax, 1e-4f);
    }
    // The way out ends at the full frame.
    Navigate(Wheel(420, 380, -50));
    const Range zoomedout{ws.viewxmin, ws.viewxmax};
    RedrawView(1);
    EXPECT_EQ(zoomedout, (Range{ws.viewxmin, ws.viewxmax})) << xaxis << yaxis;
  });
}

// Ten steps as they are on the axis there, and five counts; labels tell even those apart.
TEST_F(Zoom, EndsAtStepsAndCounts) {
  ForAllAxes([](int xaxis, int yaxis) {
    const float place = ShownX(50), steps = std::abs(ShownX(50.5f) - ShownX(49.5f));
    const float x = 100 + (place - ws.viewxmin) / ws.xperunit;
    for (int k = 0; k < 40; ++k) {
      Navigate(Wheel(x, 400, 1.5f));
      Navigate(Wheel(50, 400, 1.5f));
    }
    EXPECT_NEAR(ws.viewxmax - ws.viewxmin, steps, 0.02f * steps);
    const auto counts = [](float y) { return ws.yaxismode == 2 ? std::pow(10.0f, y) : y; };
    const float height = counts(ws.viewymax) - counts(ws.viewymin);
    EXPECT_TRUE(height > 4.99f && height < (yaxis == 1 ? 5.01f : 8)) << height;

    ExpectInside(ScreenList(), 1000, 1000);
    int below = 0;
    for (const ReadText& label : ReadTexts(ScreenList(), 15)) {
      if (label.begin.y < 90 && label.text.find('.') != std::string::npos) ++below;
      EXPECT_TRUE(label.begin.x > 0 && label.end.x < 1000) << label.text;
    }
    EXPECT_GE(below, 2) << xaxis << yaxis;
  });
}

// A gap in the pattern can be looked at, and nothing else breaks.
TEST_F(Zoom, AViewWithoutPointsIsAnEmptyFrame) {
  for (int i = 201; i <= 401; ++i) ws.xval(AxisTth, SlotInput, i) += 20;
  RedrawView(1);
  for (int k = 0; k < 8; ++k) Navigate(Wheel(100 + 850 * 30 / 60.0f, 500, 2));
  EXPECT_EQ(ws.plotmask, PlotInput);
  EXPECT_TRUE(Curve(kBlack).empty() || ws.viewxmax - ws.viewxmin < 2);
  for (const float notches : {1e9f, -1e9f})
    for (const float place : {-1e30f, 500.0f, 1e30f}) {
      Message wheel = Wheel(place, place, 0);
      wheel.value1 =
          notches > 0 ? std::numeric_limits<int>::max() : std::numeric_limits<int>::min();
      Navigate(wheel);
      EXPECT_TRUE(ws.viewxmin < ws.viewxmax && ws.viewymin < ws.viewymax);
      EXPECT_TRUE(ws.viewxmin >= 20 && ws.viewxmax <= 80);
    }
}

// What the mouse has got hold of goes where it goes.
TEST_F(Zoom, APanTakesThePlaceAlong) {
  for (const int held : {0, static_cast<int>(ModifierControl)}) Navigate(Wheel(500, 500, 5, held));
  const DataPoint from = ToData(500, 500);
  Answer("pan 500 500 440 530");
  Message press;
  while (WMessage(press) != MessagePan) {
  }
  EXPECT_TRUE(Navigate(press));
  EXPECT_NEAR(ToData(440, 530).x, from.x, 1e-4f);
  EXPECT_NEAR(ToData(440, 530).y, from.y, 1e-2f);
}

TEST_F(Zoom, BackAndForward) {
  const auto zoom = [](float x1, float x2) {
    Band(x1, x2, 0, 1000);
    NoteZoom();
  };
  const float start = ws.viewxmin;
  zoom(24, 50);
  zoom(26, 40);
  NoteZoom();  // nothing has changed
  zoom(28, 36);
  EXPECT_TRUE(ZoomBack() && ws.viewxmin == 26 && ZoomBack() && ws.viewxmin == 24);
  EXPECT_TRUE(ZoomForward());
  EXPECT_EQ(ws.viewxmin, 26);
  EXPECT_EQ(ws.plotxmax, 40);
  zoom(30, 34);
  EXPECT_FALSE(ZoomForward());
  EXPECT_TRUE(ZoomBack() && ws.viewxmin == 26 && ZoomBack() && ws.viewxmin == 24);
  EXPECT_TRUE(ZoomBack());
  EXPECT_EQ(ws.viewxmin, start);
  EXPECT_FALSE(ZoomBack());

  // What the pattern has left is passed over.
  zoom(50, 58);
  zoom(24, 50);
  FillSlot(SlotInput, 201, Counts);
  EXPECT_TRUE(ZoomBack());
  EXPECT_EQ(ws.plotmask, PlotInput);
  EXPECT_EQ(ws.viewxmin, start);

  ForgetZooms();
  for (int k = 0; k < 150; ++k) zoom(21 + 0.1f * static_cast<float>(k % 2 ? k : 1), 38);
  int steps = 0;
  while (ZoomBack()) ++steps;
  EXPECT_LE(steps, 100);
  EXPECT_EQ(Zooms().forward.size(), static_cast<std::size_t>(steps));
}

// Two-theta, d and Q for any axis, and whose the wavelength is.
TEST_F(Zoom, ReadOutsOfAllAxes) {
  ws.axiswave = CuKalpha1;
  const std::string place = "2\u03b8 30.00\u00b0  d 2.9761 \u00c5  Q 2.1112 \u00c5\u207b\u00b9  ",
                    wave = "\u03bb 1.54056 \u00c5";
  for (const int xaxis : {AxisTth, AxisD, AxisQ}) {
    ws.xaxismode = xaxis;
    RedrawView(1);
    for (const bool stated : {false, true}) {
      ws.statedwave = stated ? ws.axiswave : 0;
      ShowReadOuts({ShownX(30), 500});
      EXPECT_EQ(WStatusText(5), place + wave + (stated ? "" : " (assumed)"));
    }
  }
  ws.axiswave = 1.78901f;  // of no file
  RefreshWavelength();
  EXPECT_EQ(WStatusText(5), "\u03bb 1.78901 \u00c5 (assumed)");
  ws.axiswave = 0;
  RefreshWavelength();
  EXPECT_EQ(WStatusText(5), "\u03bb unknown");
}

}  // namespace
