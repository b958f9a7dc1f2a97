#include <algorithm>
#include <array>

#include "plot/drawing.h"

namespace {

class AnalysisPlots : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    ws.viewmode = 3;
    ws.analysiskind = 1;
  }
  template <class Width>
  static void SetPeaks(int n, Width width) {
    ws.npeaks = n;
    for (int j = 1; j <= n; ++j) {
      const float tth = 15 + 120 * static_cast<float>(j) / static_cast<float>(n);
      ws.peaks(ptth, j) = tth;
      ws.peaks(pfwhm, j) = width(tth);
    }
  }
  // Numbers of the parameter line.
  static std::vector<float> Parameters() {
    std::vector<float> numbers;
    for (const ReadText& t : ReadTexts(ScreenList(), 18, 0, 8)) {
      std::string text = t.text;
      if (text.find('=') == text.npos) continue;
      std::replace(text.begin(), text.end(), '=', ' ');
      for (std::size_t at = 0; (at = text.find_first_of("-.0123456789", at)) != text.npos;) {
        const std::size_t end = text.find_first_not_of("-.0123456789", at);
        numbers.push_back(std::stof(text.substr(at, end - at)));
        at = end == text.npos ? end : end + 1;
      }
    }
    return numbers;
  }
  // Squares of the size of a marker.
  static std::vector<Path> Markers(int colour) {
    auto strokes = Strokes(ScreenList(), colour);
    std::erase_if(strokes, [](const Path& p) {
      return p.size() != 5 || p[0] != p[4] || std::abs(p[2].y - p[0].y - 10.05f) > 0.01f;
    });
    return strokes;
  }
};

TEST_F(AnalysisPlots, CagliotiModelComesBack) {
  const std::array model{0.02f, -0.01f, 0.012f};  // u, v, w
  SetPeaks(40, [&](float tth) {
    const float t = std::tan(tth / 2 / RadToDeg);
    return std::sqrt(model[0] * t * t + model[1] * t + model[2]);
  });
  RedrawView(0);
  // The curve runs through the markers.
  Path curve;
  for (const Path& path : Strokes(ScreenList(), colours::kBlack))
    if (path.size() == 200) curve = path;
  for (const Path& marker : Markers(colours::kBlack)) {
    const float x = (marker[0].x + marker[2].x) / 2, y = (marker[0].y + marker[2].y) / 2;
    EXPECT_TRUE(std::any_of(curve.begin(), curve.end(), [=](DrawPoint p) {
      return std::abs(p.x - x) < 2.5f && std::abs(p.y - y) < 7;
    })) << x;
  }
  const auto found = Parameters();
  ASSERT_EQ(found.size(), 3u);
  for (int i : {0, 1, 2}) EXPECT_NEAR(found[i], model[i], 1e-4f);
}

TEST_F(AnalysisPlots, WilliamsonHallLineComesBack) {
  const float strain = 0.002f, size = 500;
  ws.viewmode = 4;
  ws.analysiskind = 2;
  SetPeaks(20, [=](float tth) {
    const float theta = tth / 2 / RadToDeg;
    const float net = (ws.wavelen(1) / size + strain * 4 * std::sin(theta)) / std::cos(theta);
    return std::hypot(net * RadToDeg, ws.spminhw);
  });
  RedrawView(0);
  const auto found = Parameters();
  ASSERT_EQ(found.size(), 2u);
  EXPECT_NEAR(found[0], size, 1.0f);
  EXPECT_NEAR(found[1], strain, 2e-5f);
}

TEST_F(AnalysisPlots, RightAndLeftPointsWhereTheyExist) {
  SetPeaks(4, [](float) { return 0.1f; });
  ws.peaks(pfwhmr, 1) = 0.12f;
  ws.peaks(pfwhmr, 2) = 0.3f;  // above twice the average: no left value
  RedrawView(0);
  EXPECT_EQ(Markers(colours::kBlack).size(), 4u);
  EXPECT_EQ(Markers(colours::kRed).size(), 2u);
  EXPECT_EQ(Markers(colours::kGreen).size(), 3u);
}

TEST_F(AnalysisPlots, TooFewPeaks) {
  for (ws.viewmode = 3; ws.viewmode <= 4; ++ws.viewmode) {
    ws.npeaks = 1;
    Events();
    RedrawView(0);
    EXPECT_EQ(Events(), std::vector<std::string>{"box\tWarning\tToo few points to plot"});
  }
}

// From two peaks to a full list, with hostile widths, in windows of several shapes: nothing leaves
// the window, and what is written stays inside the frame or clear of it.
TEST_F(AnalysisPlots, StayInTheWindow) {
  for (const auto& [width, height] : {std::pair{640, 480}, {1536, 864}, {600, 1200}})
    for (int n : {2, 3, 20, MaxPeaks})
      for (int view : {3, 4})
        for (int kind : {1, 2}) {
          SCOPED_TRACE(testing::Message() << n << " peaks, view " << view << " " << kind);
          SetPeaks(n, [](float tth) { return 0.05f + tth * 0.001f; });
          ws.peaks(pfwhm, n) = NAN;
          ws.peaks(pfwhm, 1) = 1e-3f;  // below the instrument's: a very large size
          ws.viewmode = view;
          ws.analysiskind = kind;
          OpenWindow(width, height);
          RedrawView(0);
          ExpectInside(ScreenList(), 1000, 1000);
          for (const ReadText& t : ReadTexts(ScreenList(), 18, 0, 8)) {
            if (t.begin.y < 100) continue;  // the label of the axis
            EXPECT_GT(t.begin.x, 100);
            EXPECT_LT(t.end.x, 950);
          }
        }
}

}  // namespace
