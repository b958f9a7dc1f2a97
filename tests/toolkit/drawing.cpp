// The display list and the files made from it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>  // also for jpeglib.h
#include <cstdlib>

#include <jpeglib.h>

#include "support/support.h"
#include "toolkit/common.h"  // for PaperList
#include "toolkit/displaylist.h"
#include "toolkit/replay/image.h"
#include "toolkit/toolkit.h"
#include "toolkit/vectorpath.h"

namespace {

// A list of 100 by 200 units on a target of 400 by 800 points: two points a unit, and 100 points to
// the left of the area and below it.
DisplayList Page() {
  DisplayList list;
  list.area = {0.25f, 0.125f, 0.75f, 0.625f};
  list.units = {0, 0, 100, 200};
  return list;
}

void AddStroke(DisplayList& list, const Pen& pen, std::initializer_list<DrawPoint> points) {
  list.strokes.push_back({pen, list.points.size(), points.size()});
  list.points.insert(list.points.end(), points);
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t n = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
  return n;
}

bool Contains(const std::string& text, const std::string& part) { return Count(text, part) > 0; }

class Drawing : public testing::Test {
 protected:
  void SetUp() override { FreshWorkspace(); }
  TempDir work_;
};

TEST_F(Drawing, StrokesGoOnWhilePenAndPlaceDo) {
  IGrMoveTo(1, 1);
  IGrMoveTo(10, 20);  // moves leave nothing behind
  IGrLineTo(30, 40);
  IGrMoveTo(30, 40);
  IGrLineTo(50, 60);
  IGrColourN(0xff00ff);
  IGrLineTo(70, 80);
  IGrMoveTo(5, 5);
  IGrLineTo(NAN, 1);
  IGrLineTo(6, 6);
  const DisplayList& list = ScreenList();
  ASSERT_EQ(list.strokes.size(), 3u);
  EXPECT_EQ(list.strokes[0].count, 3u);
  EXPECT_EQ(list.strokes[1].pen.colour, 0xff00ffu);
  EXPECT_EQ(list.points[list.strokes[1].first], (DrawPoint{50, 60}));
  EXPECT_EQ(list.points.back(), (DrawPoint{6, 6}));
  EXPECT_EQ(list.points.size(), 7u);
}

TEST_F(Drawing, WaitsUntilSomebodyLooks) {
  static int times;
  times = 0;
  const auto draw = [] {
    ++times;
    IGrMoveTo(10, 20);
    IGrLineTo(30, 40);
  };
  IGrMoveTo(1, 1);
  IGrLineTo(2, 2);
  IGrShow(draw);
  EXPECT_EQ(times, 0);
  for (int look = 1; look <= 2; ++look) {
    EXPECT_EQ(ScreenList().points, (std::vector<DrawPoint>{{10, 20}, {30, 40}}));
    EXPECT_EQ(times, 1);
  }
  IGrShow(draw);
  IGrAreaClear();
  EXPECT_TRUE(ScreenList().points.empty());
  EXPECT_EQ(times, 1);
  // On paper at once, behind what waits for the screen.
  IGrShow(draw);
  IGrInit("H");
  EXPECT_EQ(times, 2);
  EXPECT_TRUE(PaperList().points.empty());
  IGrShow(draw);
  EXPECT_EQ(PaperList().strokes.size(), 1u);
  IGrInit("H");
  EXPECT_TRUE(PaperList().strokes.empty());  // another page
  IGrInit("");
  EXPECT_EQ(ScreenList().strokes.size(), 1u);
}

// Paper is fed sideways, so that 270 degrees put it upright; each 90 less turn it further.
TEST_F(Drawing, UnitsTurnInQuarters) {
  const struct {
    const char* mode;
    int degrees;
    DrawPoint place;  // of (20, 50) from the corner of 100 by 200 units
    float glyph;      // width of a letter that is as high as one unit of y
  } cases[] = {{"", 0, {20, 50}, 4.32f / 15.36f},    {"", 90, {75, 40}, 7.68f / 8.64f},
               {"", 180, {80, 150}, 4.32f / 15.36f}, {"", -90, {25, 160}, 7.68f / 8.64f},
               {"H", 270, {20, 50}, 1.27f / 1.8f},   {"H", 0, {75, 40}, 0.9f / 2.54f}};
  for (const auto& c : cases) {
    IGrInit(c.mode);
    IGrArea(0.25f, 0.5f, 0.75f, 1);
    IGrUnits(-10, 30, 90, 230);
    IGrUnitsRotate(c.degrees);
    EXPECT_FLOAT_EQ(WInfoGrReal(GraphicsGlyphX), c.glyph) << c.degrees;
    EXPECT_FLOAT_EQ(WInfoGrReal(GraphicsGlyphY), 1) << c.degrees;
    IGrAreaClear();
    IGrMoveTo(10, 80);
    IGrLineTo(10, 80);
    const DisplayList& list = *c.mode ? PaperList() : ScreenList();
    EXPECT_EQ(list.points[0], (DrawPoint{c.place.x - 10, c.place.y + 30})) << c.degrees;
  }
  IGrInit("");
  IGrArea(0, 0, 1, 1);
  EXPECT_EQ(std::pair(WInfoScreen(1), WInfoScreen(2)), std::pair(1920, 1080));
}

TEST_F(Drawing, EpsIsTightAndPlain) {
  DisplayList list = Page();
  AddStroke(list, {.linetype = 3, .width = 4, .colour = 0xff00ff}, {{10, 20}, {90, 150.25f}});
  list.texts.push_back({50, 100, 10, 0, 0, 0, "Fe(2) \xc3\xa4 \xe2\x82\xac\n"});
  list.texts.push_back({50, 100, 10, 90, 1, 0, "Fe"});
  const std::string path = work_.file("a.eps");
  ASSERT_TRUE(WriteEps(list, path, "Fe(2)\\ \xc3\xb6\n%%EOF", 400, 800));
  const std::string eps = ReadFile(path);
  // From (120, 140) to (280, 400.5), widened by half of a pen of 4 times 0.5 points.
  EXPECT_TRUE(Contains(eps,
                       "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 119 139 281 402\n"
                       "%%HiResBoundingBox: 119 139 281 401.5\n"));
  EXPECT_TRUE(Contains(eps, "%%Title: (Fe\\0502\\051\\134 \\303\\266\\012%%EOF)\n"));
  EXPECT_TRUE(Contains(eps, "1 0 1 RG\n2 w\n[9 4 ] 0 d\n120 140 m\n280 400.5 l\nS\n"));
  // Around (200, 300) ten letters of 0.55 of 20 points, those of Latin-1 and "?" for others; two
  // end there.
  EXPECT_TRUE(Contains(eps, "20 Tf 1 0 0 1 145 300 Tm (Fe\\(2\\) \xe4 ?\?) Tj ET\n")) << eps;
  EXPECT_TRUE(Contains(eps, "20 Tf 0 1 -1 0 200 278 Tm (Fe) Tj ET\n")) << eps;
  EXPECT_EQ(Count(eps, "\n%%EOF\n"), 1u);
  // The same from above.
  const std::string svg = SvgText(list, "", 400, 800);
  EXPECT_TRUE(Contains(svg, "viewBox=\"119 398.5 162 262.5\""));
  EXPECT_TRUE(Contains(svg, "width=\"2\" stroke-dasharray=\"9 4 \" d=\"M120 660 L280 399.5 \""));
  EXPECT_TRUE(Contains(svg, "size=\"20\" transform=\"translate(200 500 ) rotate(-90)\">Fe<"));
  // Texts alone: those letters downward, and 0.8 of their height around.
  list.strokes.clear();
  list.texts.erase(list.texts.begin());
  const PageBox up = CoveredBox(list, PageMap(list, 400, 800), 400, 800),
                down = CoveredBox(list, PageMap(list, 400, 800, false), 400, 800);
  EXPECT_NEAR(up.x1 * 1000 + up.x2, 184216, 0.01);
  EXPECT_NEAR(up.y1 * 1000 + up.y2, 262316, 0.01);
  EXPECT_NEAR(down.y1 * 1000 + down.y2, 484538, 0.01);
}

// Bytes that are no UTF-8, as in the names of old files, stand for the letters of Latin-1.
TEST_F(Drawing, SvgTextsAreUtf8) {
  const std::string path = work_.file("a.svg");
  ASSERT_TRUE(WriteSvg(Page(), path,
                       "\xc3\xa4 \xe0\xb8\x81 \xf0\x9d\x9b\xbc <&>\n\xb5 \xed\xa0\x80 \xe2\x88",
                       400, 800));
  EXPECT_TRUE(Contains(ReadFile(path),
                       ">\xc3\xa4 \xe0\xb8\x81 \xf0\x9d\x9b\xbc &lt;&amp;>\xc2\xb5 "
                       "\xc3\xad\xc2\xa0\xc2\x80 \xc3\xa2\xc2\x88<"))
      << ReadFile(path);
}

TEST_F(Drawing, LongStrokesKeepEveryPointInShortPieces) {
  constexpr int n = 20000;
  IGrUnits(0, 0, n, n);
  IGrMoveTo(0, 0);
  for (int i = 1; i < n; ++i) IGrLineTo(static_cast<float>(i), static_cast<float>(i % 7));
  ASSERT_EQ(ScreenList().strokes.size(), 1u);
  for (const char* name : {"a.eps", "a.pdf", "a.svg"}) {
    const std::string path = work_.file(name);
    const bool pdf = path.ends_with("pdf");
    ASSERT_TRUE(pdf ? WritePdf(ScreenList(), path, "", 500, 500, 595, 842) : IGrSaveImage(path));
    const std::string text = ReadFile(path);
    if (path.ends_with("svg")) {
      const std::size_t begin = text.find(" d=\"M"), end = text.find("\"/>", begin);
      EXPECT_EQ(Count(text.substr(begin, end - begin), " "), 2u * n + 1);
      continue;
    }
    EXPECT_EQ(Count(text, " l\n"), n - 1u) << name;
    EXPECT_EQ(Count(text, " m\n"), 21u) << name;  // of 999 lines
  }
}

TEST_F(Drawing, PdfTableOfPlacesIsRight) {
  DisplayList list = Page();
  AddStroke(list, {}, {{0, 0}, {100, 200}});
  const std::string path = work_.file("a.pdf");
  ASSERT_TRUE(WritePdf(list, path, "\xc3\xa9\xf0\x90\x80\x80", 400, 800, 300, 500));
  const std::string pdf = ReadFile(path);
  EXPECT_TRUE(Contains(pdf, "\n0.625 0 0 0.625 25 0 cm\n"));  // in the middle of the page
  EXPECT_TRUE(Contains(pdf, "<FEFF00E9D800DC00>"));
  const std::size_t table = std::atoi(pdf.c_str() + pdf.rfind("startxref\n") + 10);
  ASSERT_EQ(pdf.substr(table, 4), "xref");
  const int objects = std::atoi(pdf.c_str() + table + 7);
  for (int i = 1; i < objects; ++i) {
    const std::size_t entry = pdf.find('\n', table + 5) + 1 + 20 * i;
    const std::string start = std::to_string(i) + " 0 obj\n";
    EXPECT_EQ(pdf.substr(std::atoi(pdf.c_str() + entry), start.size()), start);
  }
}

// A bitmap of 1536 by 864 pixels: header of 54 bytes, rows from below, blue first.
TEST_F(Drawing, PicturesShowTheStrokes) {
  IGrColourN(0x0000ff);  // red
  IGrLineWidth(3);
  IGrMoveTo(0, 500);
  IGrLineTo(1000, 500);
  IGrMoveTo(0, 0);
  IGrLineTo(500, 1000);
  ASSERT_TRUE(IGrSaveImage(work_.file("a.bmp")));
  const std::string bmp = ReadFile(work_.file("a.bmp"));
  ASSERT_EQ(bmp.size(), 54u + 1536 * 3 * 864);
  EXPECT_TRUE(bmp.starts_with(std::string("BM\x36\xc0\x3c\0\0\0\0\0\x36\0\0\0\x28", 15)));
  EXPECT_TRUE(replay::BmpFile({1, 2, {1, 2, 3, 4, 5, 6}})
                  .ends_with(std::string("\6\5\4\0\3\2\1\0", 8)));  // rows of whole words
  const auto pixel = [&](int x, int y) { return bmp.substr(54 + (y * 1536 + x) * 3, 3); };
  for (int x : {0, 768, 1535}) {
    EXPECT_EQ(pixel(x, 432), std::string("\0\0\xff", 3));
    EXPECT_EQ(pixel(x, 431), std::string("\0\0\xff", 3));
    EXPECT_EQ(pixel(x, 435), "\xff\xff\xff");
  }
  for (int x : {80, 240, 640, 720}) {  // 9 to 8
    EXPECT_EQ(pixel(x, x * 9 / 8), std::string("\0\0\xff", 3)) << x;
    EXPECT_EQ(pixel(x, x * 9 / 8 + 5) + pixel(x + 5, x * 9 / 8), std::string(6, '\xff')) << x;
  }
  Events();
  EXPECT_FALSE(IGrSaveImage("/nowhere/a%s.bmp"));
  EXPECT_FALSE(IGrSaveImage(work_.file("a.gif")));
  EXPECT_EQ(Events(), (std::vector<std::string>{
                          "box\tError\tCannot write /nowhere/a%s.bmp: No such file or directory",
                          "box\tError\tCannot write " + work_.file("a.gif")}));
}

// Nine pixels and a gap of four, along a side of 200 to the bend and behind it.
TEST_F(Drawing, DashesGoOnAroundBends) {
  DisplayList list;
  list.units = {0, 0, 200, 200};
  AddStroke(list, {.linetype = 3}, {{20, 180}, {140, 20}, {190, 20}});
  const replay::Image image = replay::Rasterise(list, 200, 200);
  for (int s = 0; s < 250; ++s) {
    const int x = s < 200 ? 20 + s * 6 / 10 : s - 60, y = s < 200 ? 20 + s * 8 / 10 : 180;
    const int red = image.rgb[(y * 200 + x) * 3], along = s % 13;
    if (along == 11) {
      EXPECT_EQ(red, 255) << s;
    } else if (along > 1 && along < 8) {
      EXPECT_LT(red, 200) << s;
    }
  }
}

// Stored blocks of at most 65535 bytes, between a head of two bytes and the sums of zlib.
TEST_F(Drawing, PngHoldsTheRowsAsTheyAre) {
  replay::Image image{200, 150, std::vector<std::uint8_t>(200 * 150 * 3)};
  for (std::size_t i = 0; i < image.rgb.size(); ++i) image.rgb[i] = i * i % 251;
  const std::string png = replay::PngFile(image);
  EXPECT_TRUE(
      png.starts_with(std::string("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\0\xc8\0\0\0\x96"
                                  "\x08\x02\0\0\0",
                                  29)));
  // The last chunk is the same in every file.
  EXPECT_TRUE(png.ends_with(std::string("\0\0\0\0IEND\xae\x42\x60\x82", 12)));
  ASSERT_EQ(png.substr(37, 4), "IDAT");
  // 150 rows of 601 bytes in blocks of 65535 and 24615, each behind its size and what that lacks.
  EXPECT_EQ(png.substr(43, 5), std::string("\0\xff\xff\0\0", 5));
  EXPECT_EQ(png.substr(65583, 5), "\1\x27\x60\xd8\x9f");
  std::size_t at = 65588 + 24615;
  const std::string rows = png.substr(48, 65535) + png.substr(65588, 24615);
  ASSERT_EQ(rows.size(), 150u * 601);
  std::uint64_t a = 1, b = rows.size();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const unsigned char byte = rows[i];
    a += byte;
    b += byte * (rows.size() - i);
    if (i % 601 == 0)
      EXPECT_EQ(byte, 0);
    else
      ASSERT_EQ(byte, image.rgb[i / 601 * 600 + i % 601 - 1]) << i;
  }
  for (const std::uint64_t sum : {b % 65521, a % 65521})
    for (int shift : {8, 0}) EXPECT_EQ(png[at++], static_cast<char>(sum >> shift));
  EXPECT_EQ(png.substr(33, 4), std::string("\0\1\x60\x36", 4));  // the rows, and 16 around them
}

// The picture in the bytes of a .jpg file. A faulty one ends the test program.
replay::Image DecodedJpeg(const std::string& bytes) {
  jpeg_decompress_struct state;
  jpeg_error_mgr errors;
  state.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&state);
  jpeg_mem_src(&state, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  jpeg_read_header(&state, TRUE);
  EXPECT_EQ(state.density_unit * 1000 + state.X_density, 1096);  // 96 pixels an inch
  jpeg_start_decompress(&state);
  const int width = state.output_width, height = state.output_height;
  replay::Image image{width, height, std::vector<std::uint8_t>(std::size_t(width) * height * 3)};
  while (state.output_scanline < state.output_height) {
    JSAMPROW row = &image.rgb[std::size_t(state.output_scanline) * width * 3];
    jpeg_read_scanlines(&state, &row, 1);
  }
  jpeg_finish_decompress(&state);
  jpeg_destroy_decompress(&state);
  return image;
}

// Thin lines of strong colours in all directions are the hardest for the format.
TEST_F(Drawing, JpegKeepsThinLinesAndTheirColours) {
  for (int i = 0; i < 40; ++i) {
    IGrColourN((std::array{0xff0000, 0x00ff00, 0x0000ff, 0xff00ff, 0})[i % 5]);
    IGrLineWidth(1);
    IGrMoveTo(25.0f * i, 0);
    IGrLineTo(1000 - 25.0f * i, 1000);
    IGrMoveTo(0, 500 + 3.0f * i);
    IGrLineTo(1000, 500 + 3.0f * i);
  }
  ASSERT_TRUE(IGrSaveImage(work_.file("a.JPG")));
  const replay::Image wanted = replay::Rasterise(ScreenList(), 1536, 864);
  const replay::Image got = DecodedJpeg(ReadFile(work_.file("a.JPG")));
  ASSERT_EQ(std::pair(got.width, got.height), std::pair(1536, 864));
  int furthest = 0;
  for (std::size_t i = 0; i < got.rgb.size(); ++i)
    furthest = std::max(furthest, std::abs(got.rgb[i] - wanted.rgb[i]));
  EXPECT_LT(furthest, 80);
  EXPECT_EQ(replay::JpegFile({70000, 1, std::vector<std::uint8_t>(210000)}), "");  // too wide
}

TEST_F(Drawing, HardcopiesThatFailSayWhere) {
  const auto print = [](int driver) {
    IGrInit("H");
    IGrHardcopySelect(1, driver);
    WHardcopyOptions(3, "job.eps");
    if (WInfoDialog(4) == 1) IGrHardcopy("job");
    IGrHardcopy("S");
    IGrInit("");
    return Events().back();
  };
  Answer("file /nowhere/a.eps\nfile /nowhere/a.pdf\nfile\nfile " + work_.file("a"));
  EXPECT_EQ(print(DriverEps), "box\tError\tCannot write /nowhere/a.eps: No such file or directory");
  EXPECT_EQ(print(DriverPrinter),
            "box\tError\tCannot print job: /nowhere/a.pdf: No such file or directory");
  EXPECT_EQ(print(DriverEps), "select\tSave EPS file\tEPS file|*.eps|\tjob.eps");
  EXPECT_EQ(WInfoDialog(4), 2);
  print(DriverPrinter);
  // A page of 180 by 254 mm in the middle of 210 by 297.
  const std::string pdf = ReadFile(work_.file("a.pdf"));
  EXPECT_TRUE(Contains(pdf, "/MediaBox [0 0 595.276 841.89 ]") &&
              Contains(pdf, "\n1 0 0 1 42.52 60.945 cm\n"));
  // The window's 1536 by 864.
  IGrAreaClear();
  EXPECT_TRUE(IGrSaveImage(work_.file("a.svg")));
  EXPECT_TRUE(Contains(ReadFile(work_.file("a.svg")), "width=\"720pt\" height=\"405pt\""));
}

}  // namespace
