#include <map>

#include "plot/drawing.h"

namespace {

constexpr float kHeight = 100;

struct Box {
  float left = 1e9f, right = -1e9f, bottom = 1e9f, top = -1e9f;
  explicit Box(const std::vector<Path>& strokes) {
    for (const Path& path : strokes)
      for (const DrawPoint& p : path) {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        bottom = std::min(bottom, p.y);
        top = std::max(top, p.y);
      }
  }
  float Width() const { return right - left; }
  float Height() const { return top - bottom; }
};

std::vector<Path> Drawn(std::string_view text, float angle = 0, int anchor = 1) {
  IGrAreaClear();
  PlotInit();
  DrawText(500, 500, text, kHeight, angle, anchor);
  return Strokes();
}

class Alphabet : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    OpenWindow(800, 800);
  }
};

// Each character has a shape of its own inside its place, and Greek letters differ from Latin ones
// wherever they do in print.
TEST_F(Alphabet, ShapesAreDistinctAndInTheirPlace) {
  std::map<std::vector<std::pair<float, float>>, std::string> seen;
  const auto look = [&](const std::string& text, bool alone) {
    std::vector<std::pair<float, float>> points;
    const auto strokes = Drawn(text);
    for (const Path& path : strokes)
      for (const DrawPoint& p : path) points.emplace_back(p.x, p.y);
    ASSERT_FALSE(points.empty()) << text;
    const Box box(strokes);
    EXPECT_TRUE(box.left >= 490 && box.right <= 562) << text;
    EXPECT_TRUE(box.bottom >= 468 && box.top <= 610) << text;
    const bool fresh = seen.emplace(points, text).second;
    EXPECT_TRUE(fresh || !alone) << text << " looks like " << seen[points];
  };
  for (int code = 33; code <= 126; ++code)
    if (code != '$' && code != '|') look(std::string(1, static_cast<char>(code)), true);
  for (char c : std::string("abcdefghiklmnpqrstuvwxyzDFGLPQSUWXY"))
    look(std::string("|") + c, true);
  for (char c : std::string("ABCEHIKMNOTZo")) look(std::string("|") + c, false);
  EXPECT_TRUE(Drawn(" ").empty());
  for (const char* text : {"|j", "\x7f", "\xe9"}) EXPECT_EQ(Drawn(text), Drawn("_")) << text;
  for (char c = '0'; c <= '9'; ++c) EXPECT_NEAR(Box(Drawn(std::string(1, c))).Height(), 100, 1);
}

TEST_F(Alphabet, AnchorsPlaceTheWholeText) {
  // "HHH" is 3 * 0.75 - 0.25 = 2 heights wide, and 100 high.
  const struct {
    float left, base;
  } kAnchors[] = {{0, 0},       {-100, 0}, {-200, 0}, {-200, -50}, {-200, -100},
                  {-100, -100}, {0, -100}, {0, -50},  {-100, -50}};
  const Box h(Drawn("H"));
  for (int anchor = 1; anchor <= 9; ++anchor) {
    const Box box(Drawn("HHH", 0, anchor));
    EXPECT_NEAR(box.left - h.left, kAnchors[anchor - 1].left, 0.1f) << anchor;
    EXPECT_NEAR(box.bottom - 500, kAnchors[anchor - 1].base, 0.1f) << anchor;
  }
  for (int other : {0, 10}) EXPECT_EQ(Drawn("HHH", 0, other), Drawn("HHH", 0, 1));
}

TEST_F(Alphabet, ScriptsAndBytesBeyondAscii) {
  const auto h = Box(Drawn("H"));
  const auto above = Drawn("\x9cH\x9c"), below = Drawn("$H$");
  EXPECT_NEAR(Box(above).Height(), 80, 0.1f);
  EXPECT_NEAR(Box(above).bottom, 500 + 60, 0.1f);
  EXPECT_LT(Box(below).bottom, 500);
  EXPECT_NEAR(Box(Drawn("$H$H")).right, h.right + 0.8f * 75, 0.1f);
  EXPECT_FALSE(Drawn("|").empty());  // nothing follows the mark: it stands for itself
  // One place for each character; the second byte of the last one is that of the superscript mark.
  EXPECT_EQ(Drawn("n\xc3\xa4 \xc5\x9cH"), Drawn("n_ _H"));
  EXPECT_FLOAT_EQ(TextWidth("2|q\x9c-1\x9c@", 10), (5 * 0.75f - 0.25f) * 10);
}

TEST_F(Alphabet, LettersAndMarkersKeepTheirShapeInEveryWindow) {
  const auto h = Box(Drawn("H"));
  const float shape = h.Width() / h.Height();
  for (const auto& [width, height] : {std::pair{1800, 600}, {500, 1500}}) {
    OpenWindow(width, height);
    const float px = static_cast<float>(width), py = static_cast<float>(height);
    const Box level(Drawn("H")), upright(Drawn("H", 90));
    EXPECT_NEAR(level.Width() * px / (level.Height() * py), shape, 0.01f);
    EXPECT_NEAR(upright.Height() * py / (upright.Width() * px), shape, 0.01f);
    IGrAreaClear();
    Marker(3, 500, 500, 40);
    const Box circle(Strokes());
    EXPECT_NEAR(circle.Width() * px, circle.Height() * py, 0.01f * circle.Width() * px);
    EXPECT_NEAR(circle.Width() * px, 2 * 40 / 1.772453f * std::min(px, py), 1);
  }
}

TEST_F(Alphabet, KeptCoordinates) {
  IGrAreaClear();
  PlotInit();
  MoveOrigin(100, 200);
  PenUp(10, 20);
  PenDown(KeepPosition, 70);
  PenDown(60, KeepPosition);
  EXPECT_EQ(Strokes(), (std::vector<Path>{{{110, 220}, {110, 270}, {160, 270}}}));
  float x, y;
  PenPosition(x, y);
  EXPECT_EQ((DrawPoint{x, y}), (DrawPoint{60, 70}));
}

}  // namespace
