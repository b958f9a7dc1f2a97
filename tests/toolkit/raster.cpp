// Rasters of the display list: which cells a pixel shows, and what each medium makes of them.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/support.h"
#include "toolkit/common.h"  // for PaperList
#include "toolkit/raster.h"
#include "toolkit/replay/image.h"
#include "toolkit/toolkit.h"

namespace {

std::shared_ptr<const RasterCells> Cells(int columns, int rows, const std::string& levels) {
  return std::make_shared<RasterCells>(RasterCells{columns, rows, {levels.begin(), levels.end()}});
}

// Red is the level, green its complement.
LevelColours Colours() {
  LevelColours colours;
  for (std::uint32_t level = 0; level < colours.size(); ++level)
    colours[level] = level | (255 - level) << 8;
  return colours;
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string Levels(const LevelPicture& picture) {
  return {picture.levels.begin(), picture.levels.end()};
}

TEST(Raster, EveryHighCellIsSeenAndLargeCellsKeepTheirSize) {
  const int columns = 997, rows = 613;
  RasterCells cells{columns, rows, std::vector<std::uint8_t>(std::size_t(columns) * rows, 1)};
  for (const auto& [column, row] : {std::pair{0, 0}, {996, 612}, {500, 300}, {333, 17}}) {
    RasterCells one = cells;
    one.levels[std::size_t(row) * columns + column] = 9;
    for (const auto& [width, height] : {std::pair{100, 70}, {997, 613}, {640, 1}, {1, 1}}) {
      const auto shown = HighestLevels(one, {0, 0, 997, 613}, width, height);
      ASSERT_EQ(std::ranges::count(shown.levels, 9), 1) << width << " " << column;
      const auto at = std::ranges::find(shown.levels, 9) - shown.levels.begin();
      EXPECT_NEAR(at % width, column * width / columns, 1);
      EXPECT_NEAR(height - 1 - at / width, row * height / rows, 1);
    }
  }
  // From one and a half cells on, two pixels a cell; the top row first.
  const RasterCells few{4, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
  EXPECT_EQ(Levels(HighestLevels(few, {1.5, 0, 3.5, 2}, 4, 2)), "\6\7\7\10\2\3\3\4");
}

class RasterMedia : public testing::Test {
 protected:
  void SetUp() override { FreshWorkspace(); }
  TempDir work_;
};

// Below what is drawn afterwards, over what was there, and nothing where the level is 0.
TEST_F(RasterMedia, LiesInItsOrderAndWithinItsWindow) {
  IGrLineWidth(40);
  IGrMoveTo(100, 250);
  IGrLineTo(900, 250);
  IGrRaster(Cells(2, 2, {'\1', '\2', '\3', '\0'}), Colours(), {200, 200, 800, 800},
            {300, 0, 700, 1000});
  IGrLineTo(900, 700);  // goes on with the pen, but over the cells
  IGrMoveTo(300, 650);
  IGrLineTo(900, 650);
  ASSERT_EQ(ScreenList().strokes.size(), 3u);
  const replay::Image image = replay::Rasterise(ScreenList(), 1000, 1000);
  const auto red = [&](int x, int y) { return image.rgb[((999 - y) * 1000 + x) * 3]; };
  EXPECT_EQ(red(150, 250), 0) << "the stroke beside the cells";
  EXPECT_EQ(red(250, 400), 255) << "outside the window";
  EXPECT_EQ(red(400, 250), 1) << "over the first stroke";
  EXPECT_EQ(red(299, 400), 255);
  EXPECT_EQ(red(300, 400), 1);
  EXPECT_EQ(red(499, 499), 1);
  EXPECT_EQ(red(500, 499), 2);
  EXPECT_EQ(red(699, 400), 2);
  EXPECT_EQ(red(700, 400), 255) << "outside the window, too";
  EXPECT_EQ(red(499, 550), 3);
  EXPECT_EQ(red(650, 550), 255) << "level 0";
  EXPECT_EQ(red(400, 650), 0) << "under the last stroke";
  IGrAreaClear();
  EXPECT_TRUE(ScreenList().rasters.empty());
}

// "Man " is 9jqo^ in base 85. Two points a unit, and the window cuts the first and the last cell.
TEST_F(RasterMedia, VectorFilesHoldTheCells) {
  DisplayList list;
  list.units = {0, 0, 100, 200};
  list.rasters.push_back({Cells(4, 1, "Man "), Colours(), {10, 20, 90, 120}, {20, 20, 80, 120}, 0});
  list.strokes.push_back({{}, 0, 2});
  list.points = {{0, 0}, {100, 200}};
  const auto written = [&](auto write, const char* name) {
    EXPECT_TRUE(write(work_.file(name)));
    return ReadFile(work_.file(name));
  };
  const std::string frame = "q 40 40 120 200 re W n 160 0 0 200 20 40 cm\n";
  const std::string eps =
      written([&](const std::string& path) { return WriteEps(list, path, "", 200, 400); }, "a.eps");
  EXPECT_TRUE(Contains(eps, frame + "[/Indexed /DeviceRGB 255 <FFFFFF01FE00")) << eps;
  EXPECT_TRUE(Contains(eps, "/Width 4 /Height 1 "));
  EXPECT_TRUE(Contains(eps, " image\n 9jqo^~>\nQ\n"));
  EXPECT_LT(eps.find("9jqo^"), eps.find("\n200 400 l"));
  // Zeros are short, lines not long, and no title is too long for its line.
  DisplayList large;
  const DrawRect all{0, 0, 9, 9};
  const std::string levels = std::string(40, '\0') + std::string(200, 'M');
  large.rasters.push_back({Cells(4, 60, levels), Colours(), all, all, 0});
  ASSERT_TRUE(WriteEps(large, work_.file("b.eps"), std::string(300, '('), 200, 400));
  const std::string text = ReadFile(work_.file("b.eps"));
  EXPECT_TRUE(Contains(text, "zzzzzzzzzz~>\n"));
  for (const std::string& line : LinesOf(text))
    EXPECT_LE(line.size(), line[0] == ' ' ? 81u : line[0] == '[' ? 1600u : 255u) << line;

  const std::string pdf =
      written([&](const std::string& path) { return WritePdf(list, path, "", 200, 400, 200, 400); },
              "a.pdf");
  EXPECT_TRUE(Contains(pdf, frame + "/Im1 Do\nQ\n"));
  EXPECT_TRUE(Contains(pdf, "/XObject << /Im1 7 0 R >>"));
  EXPECT_TRUE(Contains(pdf, "/Length 4 >>\nstream\nMan \nendstream"));
  EXPECT_TRUE(Contains(pdf, "7 0 obj\n<< /Type /XObject /Subtype /Image /Width 4 /Height 1 "));

  const std::string svg =
      written([&](const std::string& path) { return WriteSvg(list, path, "", 200, 400); }, "a.svg");
  EXPECT_TRUE(Contains(svg, "<rect x=\"40\" y=\"160\" width=\"120\" height=\"200\"/></clipPath>"));
  EXPECT_TRUE(Contains(svg, " x=\"20\" y=\"160\" width=\"160\" height=\"200\" xlink:href=\"data:"));
  // A head of 8 bytes, and of the first chunk: length, name, 4 by 1 pixels of 8 bits with a table.
  EXPECT_TRUE(Contains(svg, "image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAQAAAABCAMA"));
}

// What lies outside of the window is not written, nor more cells than anybody can use.
TEST_F(RasterMedia, VectorFilesAreNoLargerThanUseful) {
  RasterCells cells{4000, 3000, std::vector<std::uint8_t>(12000000)};
  cells.levels[3999] = 200;
  const auto shared = std::make_shared<const RasterCells>(std::move(cells));
  const Raster part{shared, {}, {0, 0, 400, 300}, {100, 50, 110.05f, 60}, 0};
  const KeptCells few = CellsInWindow(part);
  EXPECT_EQ(few.picture.width, 101);
  EXPECT_EQ(few.picture.height, 100);
  EXPECT_NEAR(few.place.x1, 100, 1e-4);
  EXPECT_NEAR(few.place.x2, 110.1f, 1e-4);
  const KeptCells all = CellsInWindow({shared, {}, {0, 0, 400, 300}, {0, 0, 400, 300}, 0});
  EXPECT_LE(all.picture.levels.size(), 4000000u);
  EXPECT_GE(all.picture.levels.size(), 2000000u);
  EXPECT_EQ(std::ranges::count(all.picture.levels, 200), 1);
  EXPECT_EQ(all.place, (DrawRect{0, 0, 400, 300}));
}

}  // namespace
