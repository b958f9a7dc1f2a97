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
    for (const ReadText& t : ReadTexts(ScreenList(), 18, 0, 8))
      for (std::size_t at = 0; (at = t.text.find('=', at)) != t.text.npos;)
        numbers.push_back(std::stof(t.text.substr(++at)));
    return numbers;
  }
  static bool HasFrame() {
    const auto strokes = Strokes(ScreenList(), colours::kBlack);
    return std::ranges::any_of(strokes, [](const Path& p) {
      return p.size() == 5 && p[0] == p[4] && p[2].x - p[0].x == 850 && p[2].y - p[0].y == 850;
    });
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

// The squared FWHM is u, v, w in falling powers of tan(theta), the shape g1, g2, g3 in rising ones
// of two-theta.
TEST_F(AnalysisPlots, ModelsComeBack) {
  for (const auto& [kind, model] :
       {std::pair{1, std::array{0.02f, -0.01f, 0.012f}}, {2, std::array{0.9f, -0.011f, 5e-5f}}}) {
    SCOPED_TRACE(kind);
    ws.analysiskind = kind;
    SetPeaks(40, [&](float tth) {
      const float t = std::tan(tth / 2 / RadToDeg);
      return std::sqrt(model[0] * t * t + model[1] * t + model[2]);
    });
    for (int j = 1; j <= 40; ++j)
      ws.peaks(pshape, j) =
          model[0] + (model[1] + model[2] * ws.peaks(ptth, j)) * ws.peaks(ptth, j);
    RedrawView(0);
    // The curve runs through the markers.
    const auto strokes = Strokes(ScreenList(), colours::kBlack);
    const Path curve = *std::ranges::find(strokes, 200u, &Path::size);
    for (const Path& marker : Markers(colours::kBlack)) {
      const float x = (marker[0].x + marker[2].x) / 2, y = (marker[0].y + marker[2].y) / 2;
      EXPECT_TRUE(std::any_of(curve.begin(), curve.end(), [=](DrawPoint p) {
        return std::abs(p.x - x) < 2.5f && std::abs(p.y - y) < 10;
      })) << x;
    }
    const auto found = Parameters();
    ASSERT_EQ(found.size(), 3u);
    for (int i : {0, 1, 2}) EXPECT_NEAR(found[i], model[i], 1e-4f);
  }
}

TEST_F(AnalysisPlots, WilliamsonHallLineComesBack) {
  const float strain = 0.002f, size = 500;
  ws.viewmode = 4;
  ws.analysiskind = 2;
  ws.spu = 0.02f, ws.spv = -0.01f, ws.spw = 0.012f;
  for (ws.spmode = 1; ws.spmode <= 2; ++ws.spmode) {
    SetPeaks(20, [=](float tth) {
      const float theta = tth / 2 / RadToDeg, t = std::tan(theta);
      const float net = (ws.wavelen(1) / size + strain * 4 * std::sin(theta)) / std::cos(theta);
      const float curve = std::sqrt(0.02f * t * t - 0.01f * t + 0.012f);
      return std::hypot(net * RadToDeg, ws.spmode == 1 ? ws.spminhw : curve);
    });
    RedrawView(0);
    const auto found = Parameters();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_NEAR(found[0], size, 1.0f);
    EXPECT_NEAR(found[1], strain, 2e-5f);
  }
}

// Right values where there are any, left ones where they are positive, as far below the average as
// the right ones are above it.
TEST_F(AnalysisPlots, RightAndLeftPointsWhereTheyExist) {
  for (const auto& [kind, average, right] :
       {std::array<int, 3>{1, pfwhm, pfwhmr}, {2, pshape, pshaper}}) {
    SCOPED_TRACE(kind);
    SetUp();
    ws.analysiskind = kind;
    SetPeaks(MaxPeaks, [](float) { return 0.1f; });
    for (int j = 1; j <= MaxPeaks; ++j) {
      ws.peaks(average, j) = 0.125f;
      ws.peaks(right, j) = 0.15f;
    }
    ws.peaks(right, 1) = 0;
    ws.peaks(right, 2) = 0.25f;  // twice the average: no left value
    RedrawView(0);
    const auto averages = Markers(colours::kBlack), rights = Markers(colours::kRed),
               lefts = Markers(colours::kGreen);
    ASSERT_EQ(averages.size(), 200u);
    ASSERT_EQ(rights.size(), 199u);
    ASSERT_EQ(lefts.size(), 199u);
    const float above = rights[10][0].y - averages[11][0].y;
    EXPECT_GT(above, 50);
    EXPECT_NEAR(averages[11][0].y - lefts[10][0].y, above, 0.1f);
    EXPECT_NEAR(rights[0][0].y - averages[1][0].y, 5 * above, 0.1f);
    EXPECT_NEAR(lefts[0][0].y - averages[0][0].y, 5 * above, 0.1f);  // as if the right one were 0
    // The last one lies at 135 on an axis from 10 to 140.
    const float place = (averages[199][0].x + averages[199][2].x) / 2;
    EXPECT_NEAR(place, 100 + 850 * 125.0f / 130, 0.01f);
    EXPECT_EQ(rights[198][0].x, averages[199][0].x);
    EXPECT_EQ(lefts[198][0].x, averages[199][0].x);
  }
}

// As soon as two rows have been fitted, those that never were are left out.
TEST_F(AnalysisPlots, LeaveOutWhatWasNeverFitted) {
  const auto notes = [] {
    std::vector<std::string> found;
    for (const ReadText& t : ReadTexts(ScreenList(), 15, 0, 1))
      if (t.text.find("left out") != t.text.npos) found.push_back(t.text);
    return found;
  };
  SetPeaks(6, [](float tth) { return 0.2f + tth * 0.001f; });
  for (int j = 1; j <= 6; ++j) ws.peaks(pfwhmr, j) = 0.15f;
  for (const auto& [origin, shown, note] : {std::tuple{PeakSearched, 6u, ""},
                                            {PeakFitted, 2u, "4 rows never fitted are left out"},
                                            {PeakLoaded, 3u, "3 rows never fitted are left out"}}) {
    ws.peakorigin(3) = PeakFitted;
    ws.peakorigin(5) = origin;
    if (origin == PeakLoaded) ws.peakorigin(6) = PeakFitted;
    for (const auto& [view, kind] : {std::pair{3, 1}, {3, 2}, {4, 1}, {4, 2}}) {
      SCOPED_TRACE(testing::Message() << origin << ", view " << view << " " << kind);
      ws.viewmode = view;
      ws.analysiskind = kind;
      RedrawView(0);
      EXPECT_EQ(Markers(colours::kBlack).size(), shown);
      EXPECT_EQ(Markers(colours::kRed).size(), view == 3 && kind == 1 ? shown : 0u);
      EXPECT_EQ(notes(), *note ? std::vector<std::string>{note} : std::vector<std::string>{});
    }
  }
  ws.peaks(pfwhmr, 5) = 0;  // loaded from the list of a search
  RedrawView(0);
  EXPECT_EQ(Markers(colours::kBlack).size(), 2u);
  ws.npeaks = 4;
  ws.peakorigin(2) = ws.peakorigin(4) = PeakFitted;
  RedrawView(0);
  EXPECT_EQ(notes(), std::vector<std::string>{"1 row never fitted is left out"});
}

// No peak and one peak are told of; two or three are drawn, without the numbers of a model that
// they leave open. Nothing leaves the window, hostile widths included.
TEST_F(AnalysisPlots, FromOnePeakToAFullList) {
  OpenWindow(800, 600);
  for (const auto& [view, kind, terms] : {std::array{3, 1, 3}, {3, 2, 3}, {4, 1, 999}, {4, 2, 2}})
    for (int n : {0, 1, 2, 3, 4, MaxPeaks}) {
      SCOPED_TRACE(testing::Message() << n << " peaks, view " << view << " " << kind);
      ws.viewmode = view;
      ws.analysiskind = kind;
      SetPeaks(n, [](float tth) { return 0.2f + tth * 0.001f; });
      RedrawView(0);
      if (n < 2) {  // frame, axes and title without the curve
        EXPECT_EQ(Events(), std::vector<std::string>{"box\tWarning\tToo few points to plot"});
        EXPECT_EQ(DrawView().text, "Too few points to plot");
        EXPECT_TRUE(Events().empty());
        EXPECT_TRUE(Markers(colours::kBlack).empty());
        EXPECT_TRUE(HasFrame());
        EXPECT_FALSE(ReadTexts(ScreenList(), 15).empty());
        continue;
      }
      EXPECT_EQ(Markers(colours::kBlack).size(), static_cast<std::size_t>(n));
      EXPECT_EQ(Parameters().size(), static_cast<std::size_t>(n > terms ? terms : 0));
      ws.peaks(pfwhm, n) = NAN;
      ws.peaks(pfwhm, 1) = 1e-3f;  // below the instrument's: a very large size
      RedrawView(0);
      ExpectInside(ScreenList(), 1000, 1000);
    }
}

}  // namespace
