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

std::vector<Path> DrawnName(std::string_view name, float height = kHeight) {
  IGrAreaClear();
  PlotInit();
  DrawName(500, 500, name, height, 0, 1);
  return Strokes();
}

// A character of Latin-1 in UTF-8.
std::string Encoded(int code) {
  if (code < 0x80) return {static_cast<char>(code)};
  return {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
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
  const auto look = [&](const std::string& text, bool alone, bool name = false) {
    std::vector<std::pair<float, float>> points;
    const auto strokes = name ? DrawnName(text) : Drawn(text);
    for (const Path& path : strokes)
      for (const DrawPoint& p : path) points.emplace_back(p.x, p.y);
    ASSERT_FALSE(points.empty()) << text;
    const Box box(strokes);
    EXPECT_TRUE(box.left >= 490 && box.right <= 562) << text;
    EXPECT_TRUE(box.bottom >= 468 && box.top <= (name ? 631 : 610)) << text;
    const bool fresh = seen.emplace(points, text).second;
    EXPECT_EQ(fresh, alone) << text << " looks like " << seen[points];
  };
  for (int code = 33; code <= 126; ++code) look(Encoded(code), true, true);
  for (int code = 0xA1; code <= 0xFF; ++code) look(Encoded(code), code != 0xAD, true);  // a hyphen
  for (char c : std::string("abcdefghiklnpqrstuvwxyzDFGLPQSUWXY")) look(std::string("|") + c, true);
  for (char c : std::string("ABCEHIKMNOTZom")) look(std::string("|") + c, false);
  EXPECT_TRUE(Drawn(" ").empty());
  for (const char* text : {"|j", "\x7f", "\xc2\x85", "\xe2\x82\xac"})
    EXPECT_EQ(Drawn(text), Drawn("_")) << text;
  for (char c = '0'; c <= '9'; ++c) EXPECT_NEAR(Box(Drawn(std::string(1, c))).Height(), 100, 1);
}

// An accented letter is the plain one and something above or below it.
TEST_F(Alphabet, AccentsKeepClearOfTheirLetters) {
  for (const std::string row : {"A\xc0\xc3\xc4\xc5", "E\xc9", "I\xce", "N\xd1", "Y\xdd",
                                "a\xe1\xe2", "e\xeb", "n\xf1", "u\xfc", "y\xff", "C\xc7", "c\xe7"})
    for (const unsigned char c : row.substr(1)) {
      const auto letter = DrawnName(row.substr(0, 1), 50), both = DrawnName(Encoded(c), 50);
      ASSERT_GT(both.size(), letter.size()) << row[0];
      EXPECT_TRUE(std::equal(letter.begin(), letter.end(), both.begin())) << row[0];
      const Box box(letter), accent({both.begin() + letter.size(), both.end()});
      EXPECT_TRUE(accent.top <= 500 ||
                  (accent.bottom > box.top + 1.5f && accent.bottom < box.top + 10))
          << row[0];
      EXPECT_NEAR((accent.left + accent.right) / 2, (box.left + box.right) / 2, 3) << row[0];
    }
}

TEST_F(Alphabet, NamesAreDrawnAsTheyAre) {
  const Box name(DrawnName("a$b|c@d\xc3\xbc")), bar(DrawnName("|"));
  EXPECT_NEAR(name.top, bar.top, 0.1f);  // no script, and the marks themselves are seen
  EXPECT_NEAR(name.bottom, bar.bottom, 0.1f);
  EXPECT_NEAR(name.right, Box(DrawnName("\xc3\xbc")).right + 7 * 75, 0.1f);
  EXPECT_FLOAT_EQ(NameWidth("a$b|c@d\xc3\xbc", 10), (8 * 0.75f - 0.25f) * 10);
  EXPECT_NE(DrawnName("a\x9cH"), Drawn("a\x9cH"));
  EXPECT_EQ(DrawnName("\xe9"), DrawnName("\xc3\xa9"));  // a byte of Latin-1
}

TEST_F(Alphabet, TurnedTextsAreTheLevelOnesTurned) {
  for (const float angle : {90.0f, -270.0f, 30.0f, 180.0f})
    for (int anchor = 1; anchor <= 9; ++anchor) {
      SCOPED_TRACE(testing::Message() << angle << " degrees, anchor " << anchor);
      const auto level = Drawn("L$g$", 0, anchor), turned = Drawn("L$g$", angle, anchor);
      const float c = std::cos(angle / RadToDeg), s = std::sin(angle / RadToDeg);
      ASSERT_EQ(turned.size(), level.size());
      for (std::size_t k = 0; k < level.size(); ++k)
        for (std::size_t i = 0; i < level[k].size(); ++i) {
          const float x = level[k][i].x - 500, y = level[k][i].y - 500;
          ASSERT_NEAR(turned[k][i].x, 500 + x * c - y * s, 0.01f);
          ASSERT_NEAR(turned[k][i].y, 500 + x * s + y * c, 0.01f);
        }
    }
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
  EXPECT_EQ(Drawn("n\xe2\x82\xac \xc5\x9cH"), Drawn("n_ _H"));
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

TEST_F(Alphabet, MarkersHaveTheirShapes) {
  const struct {
    std::size_t strokes, points;
    float width, height;
  } kMarkers[] = {{1, 5, 60, 60},         {1, 4, 69.28f, 60},     {1, 37, 67.70f, 67.70f},
                  {1, 7, 67.70f, 58.63f}, {1, 5, 84.85f, 84.85f}, {2, 4, 60, 60},
                  {2, 4, 60, 60},         {1, 2, 60, 0},          {1, 2, 0, 60}};
  for (int kind = 1; kind <= 9; ++kind) {
    SCOPED_TRACE(kind);
    IGrAreaClear();
    Marker(kind, 500, 500, 60);
    const auto& expected = kMarkers[kind - 1];
    EXPECT_EQ(Strokes().size(), expected.strokes);
    EXPECT_EQ(ScreenList().points.size(), expected.points);
    EXPECT_NEAR(Box(Strokes()).Width(), expected.width, 0.01f);
    EXPECT_NEAR(Box(Strokes()).Height(), expected.height, 0.01f);
  }
}

}  // namespace
