#include <array>
#include <filesystem>
#include <span>
#include <tuple>

#include "plot/onepeak.h"
#include "shell/shell.h"
#include "workspace/menuids.h"

namespace {

// The plot on the page, which is 180 by 254: its axes meet at the lower right.
constexpr float kRightEdge = 166.32f, kFloor = 16.617f, kWidth = 134.64f, kHeight = 235.405f;
constexpr float kLeftEdge = kRightEdge - kWidth, kFormEdge = kLeftEdge - 30;
constexpr float kLower = kFloor + 0.269f * kHeight, kUpper = kFloor + 0.56f * kHeight,
                kTop = kFloor + kHeight, kStrip = kFormEdge + 20;

class Report : public PatternPlot {
 protected:
  static ViewComplaint Draw() {
    ws.viewmode = 2;
    ws.printflag = 1;
    OpenPaper();
    const ViewComplaint complaint = LayView();
    DrawView();
    return complaint;
  }
  // Closed boxes and lines of the frame, with double pens.
  static std::vector<DrawRect> Frame() {
    std::vector<DrawRect> frame;
    const DisplayList& list = PaperList();
    for (const Stroke& s : list.strokes) {
      if (s.pen.width != 2) continue;
      const DrawPoint a = list.points[s.first], b = list.points[s.first + (s.count == 5 ? 2 : 1)];
      frame.push_back(
          {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)});
    }
    return frame;
  }
  static Path LongestStroke() {
    const auto strokes = Strokes(PaperList());
    return *std::ranges::max_element(strokes, {}, &Path::size);
  }
};

struct Entry {
  const char* text;
  float from;    // of its box, share of the height
  float across;  // base line, from the edge of the form
};

void ExpectEntries(std::span<const Entry> entries) {
  const auto texts = ReadTexts(PaperList(), 2.2f, 90, 20);
  EXPECT_EQ(texts.size(), entries.size());
  for (const Entry& entry : entries) {
    const auto text = std::ranges::find(texts, entry.text, &ReadText::text);
    ASSERT_NE(text, texts.end()) << entry.text;
    EXPECT_NEAR(text->begin.x, kFormEdge + entry.across, 0.02f) << entry.text;
    EXPECT_NEAR(text->begin.y, kFloor + entry.from * kHeight + 2.2f, 0.02f) << entry.text;
  }
}

// A zoom, a d axis and a logarithm are nothing to it.
TEST_F(Report, ShowsTheWholePatternInTwoThetaAndCounts) {
  ws.xaxismode = AxisD;
  ws.yaxismode = 2;
  RedrawView(1);
  ws.viewxmin = 2;
  ws.viewxmax = 3;
  RedrawView(0);
  ASSERT_TRUE(Draw().empty());
  ExpectInside(PaperList(), 180, 254);

  const Path curve = LongestStroke();
  ASSERT_EQ(curve.size(), 401u);
  for (int i = 1; i <= 401; ++i) {
    const float tth = 20 + kStep * static_cast<float>(i - 1);
    EXPECT_NEAR(curve[i - 1].y, kFloor + kHeight * (tth - 20) / 40, 0.02f);
    EXPECT_NEAR(curve[i - 1].x, kRightEdge - kWidth * (Counts(tth) - 100) / 900, 0.02f);
  }
  const DrawRect kFrame[] = {{kLeftEdge, kFloor, kRightEdge, kTop},
                             {kFormEdge, kFloor, kLeftEdge, kTop},
                             {kStrip, kFloor, kStrip, kTop},
                             {kFormEdge, kLower, kStrip, kLower},
                             {kFormEdge, kUpper, kLeftEdge, kUpper}};
  const auto frame = Frame();
  ASSERT_EQ(frame.size(), std::size(kFrame));
  for (std::size_t i = 0; i < frame.size(); ++i)
    for (const auto side : {&DrawRect::x1, &DrawRect::y1, &DrawRect::x2, &DrawRect::y2})
      EXPECT_NEAR(frame[i].*side, kFrame[i].*side, 0.02f) << i;

  // Labels stand outside, in the middle of their axes: degrees to the right, counts below.
  const auto label = [](const char* text, float angle) {
    Draw();
    for (const ReadText& t : ReadTexts(PaperList(), 2.6f, angle))
      if (t.text == text) return DrawPoint{(t.begin.x + t.end.x) / 2, (t.begin.y + t.end.y) / 2};
    return DrawPoint{};
  };
  const DrawPoint degrees = label("40", 90), counts = label("500", -180);
  EXPECT_GT(degrees.x, kRightEdge);
  EXPECT_NEAR(degrees.y, kFloor + kHeight / 2, 0.1f);
  EXPECT_NEAR(counts.x, kRightEdge - kWidth * 400 / 900, 0.1f);
  EXPECT_LT(counts.y, kFloor);
  EXPECT_GT(counts.y, 0);
}

// More than 8 degrees end at whole ones, fewer at tenths.
TEST_F(Report, RoundsTheRange) {
  for (const auto& [first, n, lo, hi] :
       {std::array{10.35f, 86.0f, 10.0f, 19.0f}, {1.23f, 76.0f, 1.2f, 8.8f}}) {
    FillSlot(SlotInput, static_cast<int>(n), Counts, first);
    ASSERT_TRUE(Draw().empty());
    const float last = first + kStep * (n - 1);
    EXPECT_NEAR(LongestStroke().front().y, kFloor + kHeight * (first - lo) / (hi - lo), 0.02f);
    EXPECT_NEAR(LongestStroke().back().y, kFloor + kHeight * (last - lo) / (hi - lo), 0.02f);
  }
}

TEST_F(Report, FillsInTheForm) {
  ws.infodepartment = "Crystallography";
  ws.infocompany = "University";
  ws.infoaddress =
      "12 Lange Stra\xc3\x9f"
      "e";
  ws.instrument = "G670";
  ws.wavelen(1) = 0.7093f;
  ws.gdfhead(8) = "      330";
  ws.sampleid = "Silicon $100@";
  ws.scandate = "2026-03-01";
  ws.patternpath = "/data/silicon.xy";
  Entry entries[] = {{"Crystallography", 0, 5.5f},
                     {"University", 0, 11},
                     {"12 Lange Stra\xc3\x9f"
                      "e",
                      0, 16.5f},
                     {"Diffractometer:  G670", 0.269f, 5.5f},
                     {"Wavelength(s) (A):    0.70930", 0.269f, 11},
                     {"Exposure time:     5 min 30 s", 0.269f, 16.5f},
                     {"Sample:    Silicon $100@", 0.56f, 5.5f},
                     {"Collected: 2026-03-01", 0.56f, 11},
                     {"File:      /data/silicon.xy", 0.56f, 16.5f},
                     {"Remarks:", 0, 26.6f},
                     {"Date:                Name:", 0.56f, 26.6f}};
  Draw();
  ExpectEntries(entries);
  ws.infoline = "rolled";
  ws.scanwave = {{1.54056f, 1.54433f, 0.5f}};
  ws.gdfhead(8).clear();
  entries[4].text = "Wavelength(s) (A):    1.54056/1.54433";
  entries[5].text = "Exposure time:";
  entries[8].text = "Remarks:   rolled";
  entries[9].text = "File: /data/silicon.xy";
  Draw();
  ExpectEntries(entries);
}

// Whether all letters of the form lie in one of its boxes.
void ExpectLettersInBoxes() {
  const DrawRect kBoxes[] = {{kFormEdge, kFloor, kStrip, kLower},
                             {kFormEdge, kLower, kStrip, kUpper},
                             {kFormEdge, kUpper, kStrip, kTop},
                             {kStrip, kFloor, kLeftEdge, kUpper},
                             {kStrip, kUpper, kLeftEdge, kTop}};
  const DisplayList& list = PaperList();
  int letters = 0;
  for (const Stroke& s : list.strokes) {
    const std::span points(list.points.begin() + s.first, s.count);
    if (s.pen.width != 1 || points[0].x > kLeftEdge || points[0].y < kFloor) continue;
    ++letters;
    EXPECT_TRUE(std::ranges::any_of(kBoxes,
                                    [&](const DrawRect& box) {
                                      return std::ranges::all_of(points, [&](DrawPoint p) {
                                        return p.x > box.x1 && p.x < box.x2 && p.y > box.y1 &&
                                               p.y < box.y2;
                                      });
                                    }))
        << points[0].x << " " << points[0].y;
  }
  EXPECT_GT(letters, 200);
}

// What is too long is cut, a path at its front, or written smaller: nothing leaves its box.
TEST_F(Report, LongTextsStayInTheirBoxes) {
  const std::string text = std::string(60, 'x') + std::string(100, 'y');
  const std::string end = "/25\xc2\xb0/silicon.xy";  // 15 letters
  for (std::string* field : {&ws.infodepartment, &ws.infocompany, &ws.infoaddress, &ws.instrument,
                             &ws.sampleid, &ws.scandate, &ws.patternpath})
    *field = text;
  ws.patternpath += end;
  const std::string cut(48, 'x');
  const auto expect = [](float height, const std::string& line) {
    const auto lines = Lines(ReadTexts(PaperList(), height, 90, 20));
    EXPECT_EQ(std::ranges::count(lines, line), 1) << line;
  };
  const auto draw = [] {
    Draw();
    ExpectLettersInBoxes();
    OpenPaper();  // reading takes what is drawn away
    DrawView();
  };
  draw();
  expect(2.2f, "File:      ..." + std::string(30, 'y') + end);
  ws.infoline = text;
  draw();
  expect(2.2f, "Remarks:   " + cut);
  draw();
  expect(2.2f, "Sample:    " + cut);
  draw();
  expect(2.2f, "Collected: " + cut);
  // 79 letters, in a strip with room for 78
  draw();
  expect(2.2f * (0.56f * kHeight - 4.4f) / ((79 * 0.75f - 0.25f) * 2.2f),
         "File: ..." + std::string(55, 'y') + end);
}

// ---- The command ----

class PrintReport : public Report {
 protected:
  void SetUp() override {
    PatternPlot::SetUp();
    ws.patternpath = dir.file("silicon.xy");
    ws.patternstem = "silicon";
    SetMenuLoaded(1);
    RedrawView(1);
  }
  void Print() { RunMenu(MenuPrintReport, "file " + pdf); }

  const TempDir dir;
  const std::string pdf = dir.file("report.pdf");
};

// A zoom in d means nothing in two-theta; the marks of the menu stay.
TEST_F(PrintReport, LeavesThePatternInTwoTheta) {
  RunMenu(MenuAxisD);
  RunMenu(MenuAxisLog);
  Print();
  EXPECT_GT(ReadFile(pdf).size(), 4000u);
  EXPECT_EQ((std::array{ws.viewmode, ws.xaxismode, ws.yaxismode, ws.xaxismark, ws.yaxismark}),
            (std::array{1, 1, 1, 2, 2}));
  EXPECT_EQ((std::array{ws.viewxmin, ws.viewxmax, ws.viewymax, ws.plotwidth}),
            (std::array{20.0f, 60.0f, 1000.0f, 850.0f}));
  EXPECT_EQ(ws.printflag, 0);
  ws.viewmode = 3;
  ws.viewxmin = 25;
  ws.viewxmax = 32;
  Print();
  EXPECT_EQ(ws.viewmode, 1);
  EXPECT_EQ(ws.viewxmin, 25);
  RunMenu(MenuAxisQ);
  RunMenu(40097);
  const PatternData before = ws;
  RunMenu(MenuPrintReport, "file");
  EXPECT_TRUE(before == static_cast<const PatternData&>(ws));
  EXPECT_EQ(ws.xaxismode, AxisQ);
}

// Without a range there is no page. The flag of print stays, and the screen is one all the same.
TEST_F(PrintReport, WithoutARangeTheScreenStaysAsItIs) {
  for (const auto& [points, tth, box] :
       {std::tuple{1, 20.0f, "nstep = 0g"}, {3, 0.0f, "amin=amaxg"}}) {
    PatternPlot::SetUp();
    SetMenuLoaded(1);
    RedrawView(1);
    const auto screen = ScreenList().points;
    ws.npts(SlotInput) = points;
    for (int i = 1; i <= 3; ++i) ws.xval(AxisTth, SlotInput, i) = tth;
    Events();
    Print();
    EXPECT_EQ(Events().back(), std::string("box\tError\t") + box);
    EXPECT_FALSE(std::filesystem::exists(pdf));
    EXPECT_EQ(ws.printflag, 1);
    EXPECT_EQ(ws.viewmode, 1);
    FillSlot(SlotInput, 401, Counts);
    DrawView();
    EXPECT_EQ(ScreenList().points, screen);
    RedrawView(1);
    EXPECT_EQ(ScreenList().points, screen);
    RunMenu(MenuPrintGraphics, "file " + pdf);
    EXPECT_EQ(ws.printflag, 0);
    std::filesystem::remove(pdf);
  }
}

}  // namespace
