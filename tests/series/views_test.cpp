// The views of a series as a reader sees them: what stands where, and which file a click means.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "plot/dataposition.h"
#include "plot/drawing.h"
#include "plot/freezoom.h"
#include "plot/guestview.h"
#include "plot/navigation.h"
#include "plot/zoomhistory.h"
#include "series/picture.h"
#include "shell/shell.h"
#include "support/support.h"
#include "workspace/menuids.h"

namespace {

constexpr float kNothing = NAN;

// `rows` patterns from 10 to 50 degrees in steps of 0.1, with 100 counts and a peak of 10000 that
// moves by a degree over the series; every fifth file cannot be read.
std::shared_ptr<SeriesMap> Map(int rows) {
  auto map = std::make_shared<SeriesMap>();
  map->total = static_cast<std::size_t>(rows);
  for (int i = 0; i <= 400; ++i) map->tth.push_back(10 + 0.1F * static_cast<float>(i));
  for (int row = 1; row <= rows; ++row) {
    map->files.push_back(row);
    const float middle = 30 + static_cast<float>(row) / static_cast<float>(rows);
    for (const float tth : map->tth) {
      const float counts = std::abs(tth - middle) < 0.051F ? 10000.0F : 100.0F;
      map->counts.push_back(row % 5 == 0 ? kNothing : counts);
    }
  }
  return map;
}

class SeriesViews : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    OpenWindow(1000, 1000);
    ws.viewmode = GuestViewMode;
  }
  void TearDown() override { ShowSeries({}); }

  void Show() {
    ShowSeries(picture_);
    RedrawView(1);
  }
  // The level that the map shows at a place in data units.
  static int LevelAt(float x, float y) {
    const Raster& raster = ScreenList().rasters.front();
    const auto [ux, uy] = PlotPosition(x, y);
    const float across = (ux - raster.place.x1) / (raster.place.x2 - raster.place.x1),
                up = (uy - raster.place.y1) / (raster.place.y2 - raster.place.y1);
    const auto column = static_cast<int>(across * static_cast<float>(raster.cells->columns)),
               row = static_cast<int>(up * static_cast<float>(raster.cells->rows));
    return raster.cells->levels[static_cast<std::size_t>(row * raster.cells->columns + column)];
  }
  static int FileAt(float x, float y) {
    const auto [ux, uy] = PlotPosition(x, y);
    return SeriesRowAt(ux, uy);
  }
  SeriesPicture picture_{.title = "heating", .map = Map(20)};
};

TEST_F(SeriesViews, MapShowsCountsWhereTheyAre) {
  Show();
  EXPECT_EQ(LevelAt(30.35F, 6), 1);
  EXPECT_EQ(LevelAt(30.3F, 6), 255);
  EXPECT_EQ(LevelAt(30.8F, 16), 255);
  EXPECT_EQ(LevelAt(30.3F, 16), 1);
  EXPECT_EQ(LevelAt(30.3F, 5), 0) << "a file that could not be read";
  EXPECT_EQ(FileAt(20, 6.4F), 6);
  EXPECT_EQ(FileAt(20, 6.6F), 7);
  EXPECT_EQ(SeriesRowAt(5, 500), 0) << "beside the frame";
  EXPECT_FLOAT_EQ(ws.viewymin, 0.5F);
  EXPECT_FLOAT_EQ(ws.viewymax, 20.5F);
  EXPECT_TRUE(std::ranges::count(Lines(ReadTexts(ScreenList(), 15)), "heating")) << "the title";
}

// The bar names the counts of its ends, the map and the bar are within the window.
TEST_F(SeriesViews, MapHasABarWithItsNumbers) {
  picture_.scale = CountScale::Logarithm;
  Show();
  ExpectInside(ScreenList(), 1000, 1000);
  ASSERT_EQ(ScreenList().rasters.size(), 2u);
  const Raster bar = ScreenList().rasters[1];
  EXPECT_GT(bar.place.x1, ScreenList().rasters[0].window.x2);
  EXPECT_EQ(bar.cells->levels.front(), 1);
  EXPECT_EQ(bar.cells->levels.back(), 255);
  const auto labels = ReadTexts(ScreenList(), 15, 90);
  const auto beside = [&](const std::string& text) {
    return std::ranges::any_of(labels, [&](const ReadText& label) {
      return label.text == text && label.begin.x > bar.place.x2;
    });
  };
  EXPECT_TRUE(beside("3") && beside("4")) << "logarithms from 2 to 4";
}

// On the d axis low angles stand on the right. d of 30.3 degrees is 2.947.
TEST_F(SeriesViews, MapFollowsTheAxis) {
  Show();
  ws.xaxismode = AxisD;
  RedrawView(1);
  const float d = ws.axiswave / 2 / std::sin(30.3F / 2 / RadToDeg);
  EXPECT_NEAR(d, 2.947F, 0.001F);
  EXPECT_EQ(LevelAt(d, 6), 255);
  EXPECT_EQ(LevelAt(d + 0.05F, 6), 1);
  EXPECT_EQ(LevelAt(d - 0.05F, 6), 1);
  EXPECT_NEAR(ws.viewxmax, ShownX(10), 0.02F);
}

// Up to 100 degrees in steps of 10, a gap, then down again: rows stand at their values.
TEST_F(SeriesViews, MapStandsAlongAColumn) {
  picture_.map = Map(13);
  picture_.along = {"T", {300, 310, 320, 330, 340, 350, 360, 370, 380, 390, 600, 385, NAN}};
  Show();
  EXPECT_EQ(FileAt(20, 301), 1);
  EXPECT_EQ(FileAt(20, 338), 5);
  EXPECT_EQ(FileAt(20, 384), 12);
  EXPECT_EQ(FileAt(20, 500), 0) << "in the gap";
  EXPECT_EQ(FileAt(20, 597), 11);
  EXPECT_EQ(LevelAt(30 + 11 / 13.0F, 599), 255);
  EXPECT_NEAR(ws.viewymin, 295, 3);
  EXPECT_NEAR(ws.viewymax, 605, 3);
}

// Wheel, band, keys and back, as in the pattern plot; other axes begin with all of it.
TEST_F(SeriesViews, ZoomsAsThePatternDoes) {
  Show();
  NoteZoom();
  ZoomX({30, 10}, 5);
  EXPECT_NEAR(ws.viewxmax - ws.viewxmin, 40.1F * std::pow(0.8F, 5), 0.01F);
  RefreshView();
  NoteZoom();
  const float left = ws.viewxmin;
  OnKey({.type = MessageKey, .value1 = KeyRight});
  EXPECT_NEAR(ws.viewxmin, left + 40.1F * std::pow(0.8F, 5), 0.01F);
  OnKey({.type = MessageKey, .value1 = KeyDown, .modifiers = ModifierShift});
  EXPECT_NEAR(ws.viewymax - ws.viewymin, 20 * 0.64F, 0.01F);
  ZoomBack();
  ZoomBack();
  EXPECT_FLOAT_EQ(ws.viewxmin, left);
  // In a corner only what is there, and never less than a few cells.
  ZoomX({10, 10}, 100);
  EXPECT_NEAR(ws.viewxmax - ws.viewxmin, 1, 0.01F);
  Navigate({.type = MessageKey, .value1 = KeyHome});
  EXPECT_NEAR(ws.viewxmax - ws.viewxmin, 40.1F, 0.01F);
}

// The limits of the pattern and of the map are each their own.
TEST_F(SeriesViews, LimitsStayWithTheirView) {
  TempDir work;
  std::string xy;
  for (int i = 0; i <= 400; ++i)
    xy += std::to_string(10 + 0.1 * i) + " " + std::to_string(i) + "\n";
  WriteFile(work.file("a.xy"), xy);
  OpenFile(work.file("a.xy"));
  ASSERT_EQ(ws.viewmode, 1);
  ZoomX({20, 100}, 3);
  RefreshView();
  const ZoomView pattern = ViewNow();
  ws.viewmode = GuestViewMode;
  ShowSeries(picture_);
  RefreshView();
  EXPECT_FLOAT_EQ(ws.viewymax, 20.5F);
  ZoomY({20, 10}, 2);
  RefreshView();
  const ZoomView map = ViewNow();
  ws.viewmode = 1;
  RefreshView();
  EXPECT_TRUE(SamePicture(ViewNow(), pattern));
  ws.viewmode = GuestViewMode;
  RefreshView();
  EXPECT_TRUE(SamePicture(ViewNow(), map));
}

TEST_F(SeriesViews, WaterfallThinsItsCurves) {
  picture_.kind = SeriesKind::Waterfall;
  picture_.map = Map(1000);
  Show();
  auto curves = Strokes(ScreenList(), colours::kBlack);
  std::erase_if(curves, [](const Path& path) { return path.size() < 300; });
  EXPECT_GT(curves.size(), 50u);
  EXPECT_LE(curves.size(), 100u);
  const auto texts = Lines(ReadTexts(ScreenList(), 15, 0, 2));
  EXPECT_EQ(texts.back(), "one curve in 10");
  EXPECT_EQ(FileAt(20, 128), 131) << "the nearest of those that are drawn";
}

TEST_F(SeriesViews, WaterfallCurvesStandOnTheirFiles) {
  picture_.kind = SeriesKind::Waterfall;
  Show();
  auto curves = Curves(colours::kBlack);
  std::erase_if(curves, [](const Path& path) { return path.size() < 300; });
  ASSERT_EQ(curves.size(), 16u);
  EXPECT_NEAR(curves[1].front().y, 2, 0.01F);
  const DrawPoint top = *std::ranges::max_element(curves[1], {}, &DrawPoint::y);
  EXPECT_NEAR(top.y, 2 + 0.25F * (ws.viewymax - ws.viewymin), 0.01F);
  EXPECT_NEAR(top.x, 30.1F, 0.01F);
  EXPECT_EQ(FileAt(15, 2.1F), 2);
  EXPECT_EQ(FileAt(30.1F, top.y), 2);
  EXPECT_EQ(FileAt(15, 23), 0);
}

// Circles are drawn with 37 points, so that the lines are what has fewer.
TEST_F(SeriesViews, ColumnLeavesGapsAndShowsErrors) {
  picture_ = {.kind = SeriesKind::Column,
              .title = "cell",
              .along = {"T", {10, 20, 30, 40, 50, 60}},
              .column = {"a", {4, 4.1, NAN, 4.3, 4.5, 4.6}, {0.01, 0.02, 0.01, NAN, 0, 0.01}},
              .second = {"truth", {4, 4, 4, 4, 4, 4}}};
  Show();
  const auto blue = Curves(RgbColour(0, 84, 148));
  const auto with = [&](std::size_t points) {
    std::vector<Path> found;
    for (const Path& path : blue)
      if (path.size() == points) found.push_back(path);
    return found;
  };
  EXPECT_EQ(with(37).size(), 6u) << "five values, and one beside the name";
  ASSERT_FALSE(with(3).empty());
  EXPECT_NEAR(with(3)[0][2].x, 60, 0.01F) << "from 40 to 60";
  const auto bar = std::ranges::find_if(blue, [](const Path& p) {
    return p.size() == 2 && std::abs(p[0].x - 20) < 0.01F && std::abs(p[1].x - 20) < 0.01F;
  });
  ASSERT_NE(bar, blue.end());
  EXPECT_NEAR((*bar)[0].y, 4.08F, 1e-4F);
  EXPECT_NEAR((*bar)[1].y, 4.12F, 1e-4F);
  EXPECT_EQ(FileAt(50, 4.5F), 5);
  EXPECT_EQ(FileAt(30, 4), 3) << "of the second column";
  EXPECT_EQ(FileAt(30, 4.4F), 0);
  EXPECT_EQ(Lines(ReadTexts(ScreenList(), 18, 90)).back(), "a");
}

// Nothing to be seen is an empty page, and zooms are asked for in vain.
TEST_F(SeriesViews, NothingIsNoView) {
  for (const SeriesKind kind : {SeriesKind::Map, SeriesKind::Waterfall, SeriesKind::Column}) {
    picture_ = {.kind = kind, .column = {"a", {NAN, NAN}}};
    Show();
    EXPECT_TRUE(ScreenList().strokes.empty());
    ZoomX({1, 1}, 3);
    OnKey({.type = MessageKey, .value1 = KeyLeft});
    OnMouse({.type = MessageWheel, .value1 = 120, .x = 500, .y = 500});
    EXPECT_EQ(SeriesRowAt(500, 500), 0);
  }
}

}  // namespace
