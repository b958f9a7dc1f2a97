// The writers: what comes back through the readers, the grid that is saved, messages.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "patternfiles/samples.h"
#include "support/smallfiles.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

class Writers : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    Events();
  }
  // n points on a line.
  void Pattern(int n, float first, float slope, int slot = SlotInput, float step = 0.02f,
               float from = 10) {
    ws.npts(slot) = n;
    for (int i = 1; i <= n; ++i) {
      ws.xval(AxisTth, slot, i) = from + step * (i - 1);
      ws.yval(slot, i) = first + slope * (i - 1);
    }
  }
  void Limits(float start, float stop, float step) {
    ws.savestart = start;
    ws.savestop = stop;
    ws.savestep = step;
  }
  // The file's text; of padded lines each must be of full length and comes without its blanks.
  std::string Text(const std::string& path, int padded = 0) {
    std::string text;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line); text += line + "\n") {
      if (--padded < 0) continue;
      EXPECT_EQ(line.size(), 256u);
      line.resize(line.find_last_not_of(' ') + 1);
    }
    return text;
  }
  TempDir dir_;
};

using Writer = int (*)(const std::string&, int);

// 23 points written and read: how many come back, how far shifted, and how precise.
TEST_F(Writers, ReadersAgreeAsStated) {
  const struct {
    const char* extension;
    Writer write;
    int points, shift;
    float rounding;
  } cases[] = {{"xy", WriteXy, 23, 0, 0.5f},
               {"gdf", WriteGdf, 23, 0, 0.5f},
               {"dat", WriteDat, 20, 0, 0.5f},    // the last, partial line is not written
               {"cif", WriteCif, 22, 1, 1e-4f}};  // the first value is taken for a heading
  const std::string path = dir_.file("out");
  for (const auto& c : cases)
    for (const auto& [slot, from] :
         {std::pair(SlotInput, 10.0f), {SlotBackground, 10.0f}, {SlotRefined, 100.0f}}) {
      SCOPED_TRACE(c.extension);
      Pattern(23, 100.3f, 7.3f, slot, 0.02f, from);
      Limits(from, from + 1, 0.02f);
      ASSERT_EQ(c.write(path, slot), 1);
      ASSERT_EQ(ReadAs(c.extension, SlotScratch, path), 1);
      ASSERT_EQ(ws.npts(SlotScratch), c.points);
      for (int i = 1; i <= c.points; ++i) {
        EXPECT_NEAR(ws.xval(AxisTth, SlotScratch, i), ws.xval(AxisTth, slot, i), 2e-5);
        EXPECT_NEAR(ws.yval(SlotScratch, i), ws.yval(slot, i + c.shift), c.rounding + 1e-4);
      }
    }
  // A pattern without a date comes back without one.
  Limits(10, 11, 0.02f);
  ASSERT_EQ(WriteGdf(path, SlotInput), 1);
  ASSERT_EQ(ReadAs("gdf", SlotInput, path), 1);
  EXPECT_EQ(ws.scandate, "");
}

// The text of every format for three points, two of them within the limits.
TEST_F(Writers, FilesToTheLetter) {
  Pattern(3, 99.5f, 10);
  ws.yval(SlotRefined, 2) = 7;
  ws.yval(SlotBackground, 2) = -1.5f;
  Limits(10.01f, 10.05f, 0.02f);
  const std::string path = dir_.file("out file.tab");
  ASSERT_EQ(WriteXy(path, 1), 1);
  EXPECT_EQ(Text(path), " 10.0200       110\n 10.0400       120\n");

  ws.gdfhead(4) = "sample";
  ASSERT_EQ(WriteGdf(path, 1), 1);
  EXPECT_EQ(Text(path, 16), "\n\n\nsample\n\n\n\n\n\n\n10.010\n10.050\n.020\n\n\n\n110\n120\n");

  ASSERT_EQ(WriteCif(path, 1), 1);
  EXPECT_EQ(Text(path, 14),
            "# Powder CIF created by KESTREL\n"
            "data-" +
                path +
                "\n"
                "_diffrn_radiation_wavelength    1.54056\n"
                "# Scan information data\n"
                "_pd_meas_2theta_range_min   10.00000\n"
                "_pd_meas_2theta_range_max   10.02000\n"
                "_pd_meas_2theta_range_inc     .02000\n"
                "# 2-Theta scan data\n"
                "loop_\n"
                "  _pd_meas_intensity_total\n"
                "      109.50000\n"
                "      119.50000\n"
                "_pd_meas_2theta_range_inc          2\n"
                "#--eof--eof--eof--eof--eof--eof--#\n");

  ws.savecontent = 4;
  ws.saveformat = 5;
  ws.patternstem = "stem";
  Limits(10.01f, 10.05f, 0);
  Answer("file \"" + path + "\"");
  SavePattern(AskSaveName());
  EXPECT_EQ(Text(path),
            "  10.020      110        7       -2\n  10.040      120        0        0\n");
  EXPECT_EQ(Events(), (std::vector<std::string>{"select\tSave pattern file\t|*.tab|\tstem.tab"}));

  Pattern(13, 0.5f, 1);
  Limits(10, 10.24f, 0.02f);
  ASSERT_EQ(WriteDat(path, 1), 1);
  EXPECT_EQ(Text(path),
            "10.0000,0.0200,10.2400\n      1.      2.      3.      4.      5."
            "      6.      7.      8.      9.     10.\n");
}

TEST_F(Writers, GridOnTheStepAskedFor) {
  constexpr float dx = 1.0f / 64;
  const struct {
    const char* extension;
    float range, step;        // asked for, from 10
    int n;                    // points of the file
    double x1, dx, savestep;  // of the file, and as the Workspace keeps it
  } cases[] = {
      // Twice the step: 11 bins of two of 23 points, the last point dropped.
      {"xy", 32 * dx, 2 * dx, 11, 0.5 * dx, 2 * dx, 2 * dx},
      // Two and a half times: bins of three, then a spline, which keeps a line, in nine steps.
      {"xy", 22 * dx, 2.5f * dx, 10, 0, 22 * dx / 9.0, 22 * dx / 9.0},
      {"xy", 22 * dx, 0.5f * dx, 23, 0, dx, 0.5 * dx},                 // below the step: ignored
      {"xy", -1, 2.5f * dx, 0, 0, 0, 2.5 * dx},                        // no points: an empty file
      {"xy", 900, 2.5f * dx, 19995, 0, 900 / 19994.0, 900 / 19994.0},  // the step grows to fit
      // The cif writer takes the remainder against half a bin's width: of 4.25 steps asked for 1.25
      // are left of 1.5, so that it re-grids where the others do not.
      {"xy", 22 * dx, 4.25f * dx, 5, 1.5 * dx, 4 * dx, 4.25 * dx},
      {"cif", 22 * dx, 4.25f * dx, 5, 0, dx, 22 * dx / 5.0},
  };
  const std::string path = dir_.file("out");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.step / dx);
    Pattern(23, 1000, 1000, 1, dx);
    Limits(10, 10 + c.range, c.step);
    const bool cif = c.extension == std::string("cif");
    ASSERT_EQ((cif ? WriteCif : WriteXy)(path, 1), 1);
    EXPECT_NEAR(ws.savestep, c.savestep, 1e-6);
    EXPECT_EQ(ReadAs(c.extension, SlotScratch, path), c.n > 0);
    EXPECT_EQ(ws.npts(SlotScratch), c.n);
    for (int i = 1; i <= std::min(c.n, 23) && !cif; ++i) {
      const double x = c.x1 + c.dx * (i - 1);
      EXPECT_NEAR(ws.xval(AxisTth, SlotScratch, i), 10 + x, 1e-4);
      EXPECT_NEAR(ws.yval(SlotScratch, i), 1000 + 1000 / dx * x, 2);
    }
  }
}

// Nothing of this makes sense; it must end, and quietly.
TEST_F(Writers, GridsOfNoUse) {
  const float odd[] = {0, -0.05f, 0.05f, 1e30f, -1e30f, NAN, INFINITY};
  for (int n : {0, 1, 2, 23})
    for (float dx : {0.0f, 0.02f, -0.02f})
      for (float start : odd)
        for (float stop : odd)
          for (float step : odd)
            for (Writer write : {WriteXy, WriteGdf, WriteDat, WriteCif}) {
              Pattern(n, 100, 10);
              for (int i = 1; i <= 23; ++i) ws.xval(AxisTth, 1, i) = dx * i;
              Limits(start, stop, step);
              ASSERT_EQ(write("/dev/null", 1), 1);
            }
}

// Places where nothing can be written, and a disk that is full at once or in the middle.
TEST_F(Writers, Messages) {
  const struct {
    const char *extension, *opening, *writing, *middle;
  } cases[] = {
      {"gdf", "Error\tError opening gdf file", "Error\tError writing gdf file1",
       "Error\tError writing gdf file2"},
      {"xy", "Error\tError opening xy file", "Error\tError writing xy file",
       "Error\tError writing xy file"},
      {"dat", "Error\tError opening std file", "Error\tError writing std file2",
       "Error\tError writing std file2"},
      {"cif", "Error\tError opening cif file", "Error\tError writing cif11",
       "Error\tError writing cif11"},
      {"tab", "File error\tError opening *.tab file", "File Error\tError writing *.tab file",
       "File Error\tError writing *.tab file"},
  };
  const SmallFiles small(6000);
  WriteFile(dir_.file("plain"), "");
  for (int n : {23, 2000}) {
    ws.saveformat = 0;
    ws.savecontent = 1;
    for (const auto& c : cases) {
      const std::string format = c.extension;
      if (++ws.saveformat == 5) ws.savecontent = 4;
      const std::string full = dir_.file("full." + format);
      if (n == 23) std::filesystem::create_symlink("/dev/full", full);
      const struct {
        std::string path;
        const char *message, *reason;
      } places[] = {{dir_.file("none/out." + format), c.opening, "No such file or directory"},
                    {dir_.file("plain/out." + format), c.opening, "Not a directory"},
                    {n == 23 ? full : dir_.file("out." + format), n == 23 ? c.writing : c.middle,
                     n == 23 ? "No space left on device" : "File too large"}};
      for (const auto& place : places) {
        Pattern(n, 100, 10);
        Limits(10, 60, 0.02f);
        Answer("file " + place.path);
        EXPECT_EQ(SavePattern(AskSaveName()), Outcome::Failed);
        const auto events = Events();
        ASSERT_GE(events.size(), 2u) << place.message;
        const std::string box = std::string("box\t") + place.message;
        EXPECT_TRUE(events[1].starts_with(box)) << events[1];
        if (format == "tab") continue;
        EXPECT_EQ(events[1], box + "\\n" + place.path + ": " + place.reason);
        ASSERT_EQ(events.size(), 3u);  // a second box names the format
        EXPECT_TRUE(events[2].starts_with("box\tError\tError writing " + format + " file"));
      }
    }
  }
  EXPECT_EQ(std::filesystem::file_size(dir_.file("out.xy")), 6000u);  // what was written stays
  // A file that was there is lost only to a whole one: through a link, and with nothing beside it.
  const std::string kept = dir_.file("kept.xy"), link = dir_.file("link.xy");
  WriteFile(kept, "10 100\n");
  std::filesystem::permissions(kept, std::filesystem::perms(0640));
  std::filesystem::create_symlink("kept.xy", link);
  const auto files = [&] {
    return std::distance(std::filesystem::directory_iterator(dir_.path()), {});
  };
  const auto before = files();
  ws.savecontent = 1;
  ws.saveformat = 2;
  for (int n : {2000, 20}) {
    Pattern(n, 100, 10);
    Limits(10, 60, 0.02f);
    EXPECT_EQ(SavePattern(link), n == 20 ? Outcome::Done : Outcome::Failed);
    EXPECT_EQ(ReadFile(kept) == "10 100\n", n == 2000);
    EXPECT_EQ(files(), before);
  }
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(std::filesystem::status(kept).permissions(), std::filesystem::perms(0640));
}

}  // namespace
