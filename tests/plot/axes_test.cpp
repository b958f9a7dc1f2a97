#include "plot/drawing.h"

namespace {

TEST(NiceRange, RoundsOutwardToTwoDigitsOfTheFarEnd) {
  const struct {
    float a, b, low, high;
  } kCases[] = {{123, 987, 120, 990},
                {0, 0, 0, 0},
                {0, 250, 0, 250},
                {5, 5, 4.9f, 5.1f},
                {-5, -5, -5.1f, -4.9f},
                {-40, 25, -40, 25},
                {-3, 250.5f, -10, 260},
                {0.0024f, 0.0345f, 0.002f, 0.035f},
                {-0.5f, -0.11f, -0.5f, -0.11f}};
  for (const auto& c : kCases) {
    float list[5] = {c.b, c.a};
    NiceRange(list, 2, 850);
    EXPECT_NEAR(list[2], c.low, 1e-5f * std::abs(c.low)) << c.a << " " << c.b;
    EXPECT_NEAR(list[4], c.high, 1e-5f * std::abs(c.high)) << c.a << " " << c.b;
    EXPECT_FALSE(list[2] == 0 && std::signbit(list[2])) << c.b;
    const float factor = c.a == 0 && c.b == 0 ? 0 : 850 / (c.high - c.low);
    EXPECT_NEAR(list[3], factor, 1e-3f * factor);
  }
}

TEST(NiceRange, StaysFinite) {
  constexpr float kInf = INFINITY;
  constexpr float kPairs[][2] = {{1e30f, -1e-30f}, {3e38f, -3e38f}, {1e-42f, 1e-44f},
                                 {NAN, NAN},       {NAN, 7},        {kInf, 2}};
  for (const auto& [a, b] : kPairs) {
    float list[5] = {a, b};
    NiceRange(list, 2, 850);
    for (float v : {list[2], list[3], list[4]}) EXPECT_TRUE(std::isfinite(v)) << a << " " << b;
    const float slack = 1e-5f * list[4];
    for (float v : {a, b})
      EXPECT_TRUE(!std::isfinite(v) || (v >= list[2] - slack && v <= list[4] + slack)) << v;
  }
}

// A hundred steps of a unit or less; where none is a multiple of it, the first one moves.
TEST(GridSteps, TicksByHand) {
  const struct {
    float lo, hi;
    int count;
    float start, step;
  } kCases[] = {{20, 80, 60, 0, 1},      {20.25f, 80.25f, 59, 0.75f, 1}, {0, 150, 15, 0, 10},
                {0, 0.5f, 50, 0, 0.01f}, {-0.2f, 0.8f, 10, 0, 0.1f},     {7, 7, 0, 0, 0},
                {1e30f, 1e30f, 0, 0, 0}};
  for (const auto& c : kCases) {
    int count;
    float start, step;
    GridSteps(850, c.lo, c.hi, count, start, step);
    EXPECT_EQ(count, c.count) << c.lo;
    EXPECT_NEAR(start, c.start, 1e-4f) << c.lo;
    EXPECT_FLOAT_EQ(step, c.step) << c.lo;
  }
}

TEST(NearestIndex, RisingAndFalling) {
  const float rising[] = {1, 2, 4, 8, 16}, falling[] = {16, 8, 4, 2, 1};
  for (float value = 0.1f; value < 20; value += 0.17f) {
    const auto distance = [=](float v) { return std::abs(v - value); };
    const auto nearest = std::ranges::min_element(rising, {}, distance);
    EXPECT_EQ(NearestIndex(value, rising, 5), nearest - rising + 1) << value;
    EXPECT_EQ(NearestIndex(value, falling, 5), rising + 5 - nearest) << value;
  }
  for (int n : {0, 1}) EXPECT_EQ(NearestIndex(3, rising, n), 1);
}

constexpr float kHeight = 15;

TEST(AxisTwoTheta, LabelsAsTheRangeAsks) {
  const struct {
    float lo, hi;
    std::vector<std::string> labels;
  } kCases[] = {{28, 31, {"28", "29", "30", "31"}},
                {10, 17, {"10", "12", "14", "16"}},
                {10, 27, {"10", "15", "20", "25"}},
                {20, 50, {"20", "30", "40", "50"}},
                {10, 65, {"10", "20", "30", "40", "50", "60"}},
                {10, 90, {"20", "40", "60", "80"}},
                {5, 150, {"20", "40", "60", "80", "100", "120", "140"}},
                {21.4f, 24.2f, {"22", "23", "24"}},
                {0, 5000, {"0", "2000", "4000"}},
                {40, 40, {}},
                {50, 10, {}}};
  FreshWorkspace();
  for (const auto& c : kCases) {
    OpenWindow(1536, 864);
    PlotInit();
    MoveOrigin(100, 100);
    AxisTwoTheta(850, c.lo, c.hi, 850 / (c.hi - c.lo), 10, kHeight, "");
    const auto labels = ReadTexts(ScreenList(), kHeight);
    EXPECT_EQ(Lines(labels), c.labels) << c.lo << " to " << c.hi;
    if (labels.empty() || c.lo != std::stof(labels[0].text)) continue;
    EXPECT_NEAR(labels[0].begin.x, 100 - 0.25f * kHeight * 864 / 1536, 0.05f) << c.lo;
  }
  for (const float hi : {1e4f, 1e9f, 1e30f, INFINITY, NAN}) {
    IGrAreaClear();
    AxisTwoTheta(850, -hi / 3, hi, 850 / (hi * 4 / 3), 10, kHeight, "2|q");
    EXPECT_LT(ScreenList().points.size(), 5000u) << hi;
  }
}

// Many ranges in windows of many shapes, along both directions: labels keep clear of each other,
// stay in the window, and say the value of the place where they stand.
TEST(AxisLinear, LabelsKeepClearAndTellTheTruth) {
  const std::pair<float, float> kRanges[] = {
      {0, 7400},      {0, 9999999},   {0, 1.3e6f},      {0, 1e30f},        {-500, 3e7f},
      {1.53f, 1.55f}, {0.9f, 9},      {0, 0.02f},       {-1e-5f, 3e-5f},   {1e-9f, 5e-8f},
      {-120, -80},    {-0.3f, 2.4f},  {1.9f, 3.9f},     {999900, 1000000}, {0, 100},
      {4.12f, 4.13f}, {-3e6f, -1e6f}, {120000, 120900}, {2.7f, 5.1f}};
  const std::pair<int, int> kWindows[] = {
      {640, 480}, {1536, 864}, {3840, 2160}, {600, 1200}, {2000, 500}};
  FreshWorkspace();
  for (const auto& [width, height] : kWindows)
    for (const auto& [lo, hi] : kRanges)
      for (const float angle : {0.0f, -270.0f}) {
        SCOPED_TRACE(testing::Message()
                     << lo << " to " << hi << " at " << angle << " in " << width << "x" << height);
        OpenWindow(width, height);
        PlotInit();
        MoveOrigin(100, 100);
        AxisLinear(850, lo, hi, 850 / (hi - lo), 10, kHeight, angle, "");
        ExpectInside(ScreenList(), 1000, 1000);
        const auto texts = ReadTexts(ScreenList(), kHeight, angle);
        ASSERT_GE(texts.size(), 2u);
        const auto place = [&](DrawPoint p) { return (angle == 0 ? p.x : p.y) - 100; };
        float last = -1000;
        for (std::size_t i = 0; i < texts.size(); ++i) {
          const float begin = place(texts[i].begin), end = place(texts[i].end);
          EXPECT_GT(begin, last) << texts[i].text;
          EXPECT_LT(angle == 0 ? texts[i].begin.y : texts[i].begin.x, 90);  // beyond the ticks
          last = end;
          if (i == 0 || end > 850) continue;  // those are moved along
          const float value = lo + (begin + end) / 2 / 850 * (hi - lo);
          EXPECT_NEAR(std::stof(texts[i].text), value, (hi - lo) * 2e-3f) << texts[i].text;
        }
      }
}

}  // namespace
