// The writers: what comes back through the readers, the grid that is saved, messages.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "patternfiles/samples.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

class Writers : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    Events();
  }
  // n points on a line from 10 degrees.
  void Pattern(int n, float first, float slope, int slot = SlotInput, float step = 0.02f) {
    ws.npts(slot) = n;
    for (int i = 1; i <= n; ++i) {
      ws.xval(AxisTth, slot, i) = 10 + step * (i - 1);
      ws.yval(slot, i) = first + slope * (i - 1);
    }
  }
  void Limits(float start, float stop, float step) {
    ws.savestart = start;
    ws.savestop = stop;
    ws.savestep = step;
  }
  std::vector<std::string> Lines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
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
  for (const auto& c : cases)
    for (int slot : {SlotInput, SlotBackground, SlotRefined}) {
      SCOPED_TRACE(c.extension);
      SetUp();
      Pattern(23, 100.3f, 7.3f, slot);
      Limits(9, 11, 0.02f);
      if (slot == SlotInput) Limits(10, ws.xval(AxisTth, slot, 23), 0.02f);
      const std::string path = dir_.file(std::string("out.") + c.extension);
      if (std::string(c.extension) == "dat" || std::string(c.extension) == "gdf")
        ws.savestart = 10;  // the grid that these formats state
      ASSERT_EQ(c.write(path, slot), 1);
      ASSERT_EQ(ReadAs(c.extension, SlotScratch, path), 1);
      ASSERT_EQ(ws.npts(SlotScratch), c.points);
      for (int i = 1; i <= c.points; ++i) {
        EXPECT_NEAR(ws.xval(AxisTth, SlotScratch, i), ws.xval(AxisTth, slot, i), 1e-5);
        EXPECT_NEAR(ws.yval(SlotScratch, i), ws.yval(slot, i + c.shift), c.rounding + 1e-4);
      }
    }
}

// The text of every format for three points, two of them within the limits.
TEST_F(Writers, FilesToTheLetter) {
  const auto padded = [](std::string text) { return text.append(256 - text.size(), ' '); };
  Pattern(3, 99.5f, 10);
  ws.yval(SlotRefined, 2) = 7;
  ws.yval(SlotBackground, 2) = -1.5f;
  Limits(10.01f, 10.05f, 0.02f);
  const std::string path = dir_.file("out file.x");
  ASSERT_EQ(WriteXy(path, 1), 1);
  EXPECT_EQ(Lines(path), (std::vector<std::string>{" 10.0200       110", " 10.0400       120"}));

  ws.gdfhead(4) = "sample";
  ASSERT_EQ(WriteGdf(path, 1), 1);
  auto lines = Lines(path);
  ASSERT_EQ(lines.size(), 18u);
  for (const auto& [number, text] :
       {std::pair(1, ""), {4, "sample"}, {11, "10.010"}, {12, "10.050"}, {13, ".020"}, {16, ""}})
    EXPECT_EQ(lines[number - 1], padded(text)) << number;
  EXPECT_EQ(lines[16], "110");
  EXPECT_EQ(lines[17], "120");

  ASSERT_EQ(WriteCif(path, 1), 1);
  const std::vector<std::string> cif = {"# Powder CIF created by KESTREL",
                                        "data-" + path,
                                        "_diffrn_radiation_wavelength    1.54056",
                                        "# Scan information data",
                                        "_pd_meas_2theta_range_min   10.00000",
                                        "_pd_meas_2theta_range_max   10.02000",
                                        "_pd_meas_2theta_range_inc     .02000",
                                        "# 2-Theta scan data",
                                        "loop_",
                                        "  _pd_meas_intensity_total",
                                        "      109.50000",
                                        "      119.50000",
                                        "_pd_meas_2theta_range_inc          2",
                                        "#--eof--eof--eof--eof--eof--eof--#"};
  lines = Lines(path);
  ASSERT_EQ(lines.size(), cif.size());
  for (std::size_t i = 0; i < cif.size(); ++i) EXPECT_EQ(lines[i], padded(cif[i]));

  Pattern(21, 1, 1);
  Limits(10, 10.4f, 0.02f);
  ASSERT_EQ(WriteDat(path, 1), 1);
  lines = Lines(path);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], "10.0000,0.0200,10.4000");
  EXPECT_EQ(lines[2],
            "     11.     12.     13.     14.     15.     16.     17.     18.     19.     20.");

  ws.savecontent = 4;
  ws.saveformat = 5;
  ws.patternstem = "stem";
  Limits(10.01f, 10.03f, 0);
  Answer("file \"" + path + "\"");
  SavePattern();
  EXPECT_EQ(Lines(path), (std::vector<std::string>{"  10.020        2        7       -2"}));
  EXPECT_EQ(Events(), (std::vector<std::string>{"select\tSave pattern file\t|*.tab|\tstem.tab"}));
}

struct Saved {
  std::vector<float> x, y;
};

Saved SavedBy(Writer write, const std::string& path) {
  Saved saved;
  EXPECT_EQ(write(path, 1), 1);
  if (write == WriteXy) {
    std::ifstream in(path);
    for (float x, y; in >> x >> y;) saved.x.push_back(x), saved.y.push_back(y);
  }
  return saved;
}

TEST_F(Writers, GridOnTheStepAskedFor) {
  const std::string path = dir_.file("out.xy");
  // Twice the step: 11 bins of two of 23 points, the last point dropped.
  Pattern(23, 100, 10, 1, 0.0625f);
  Limits(10, 12, 0.125f);
  Saved s = SavedBy(WriteXy, path);
  ASSERT_EQ(s.y.size(), 11u);
  for (int b = 0; b < 11; ++b) {
    EXPECT_NEAR(s.x[b], 10.03125 + 0.125 * b, 1e-4);
    EXPECT_EQ(s.y[b], 105 + 20 * b);
  }
  // Two and a half times: bins of three, then a spline, which keeps a line; nine steps of 1.375
  // / 9.
  Pattern(23, 1000, 1000, 1, 0.0625f);
  Limits(10, 11.375f, 0.15625f);
  s = SavedBy(WriteXy, path);
  ASSERT_EQ(s.y.size(), 10u);
  EXPECT_NEAR(ws.savestep, 1.375 / 9, 1e-6);
  for (int j = 0; j < 10; ++j) {
    EXPECT_NEAR(s.x[j], 10 + 1.375 / 9 * j, 1e-4);
    EXPECT_NEAR(s.y[j], 1000 + 16000 * (1.375 / 9 * j), 1);
  }
  // A step below the data's is ignored; no points give an empty file.
  Limits(10, 12, 0.03f);
  EXPECT_EQ(SavedBy(WriteXy, path).y.size(), 23u);
  EXPECT_EQ(ws.savestep, 0.03f);
  Limits(20, 30, 0.15625f);
  EXPECT_EQ(SavedBy(WriteXy, path).y.size(), 0u);
  // More points than a file may have: the step grows to fit.
  Limits(10, 4010, 0.15625f);
  SavedBy(WriteXy, path);
  EXPECT_EQ(Lines(path).size(), 19995u);
  EXPECT_NEAR(ws.savestep, 4000.0 / 19994, 1e-6);
  // The cif writer takes the remainder against half a bin's width: with bins of four points
  // and 4.25 steps asked for, 1.25 steps are left of 1.5, so that it re-grids where the others do
  // not.
  for (const auto& [write, step] :
       {std::pair<Writer, float>(WriteXy, 4.25f * 0.0625f), {WriteCif, 1.375f / 5}}) {
    Limits(10, 11.375f, 4.25f * 0.0625f);
    SavedBy(write, path);
    EXPECT_NEAR(ws.savestep, step, 1e-6);
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

TEST_F(Writers, Messages) {
  const char* const formats[] = {"gdf", "xy", "dat", "cif"};
  const char* const own[] = {"gdf", "xy", "std", "cif"};
  Pattern(23, 100, 10);
  // A file on a disk that is full, under a name with the format's extension.
  const auto FullDisk = [&] {
    const std::string name =
        dir_.file("full." + std::string(ws.savecontent == 4 ? "tab" : formats[ws.saveformat - 1]));
    std::filesystem::create_symlink("/dev/full", name);
    return name;
  };
  const auto save = [&](const std::string& path) {
    Answer("file " + path);
    SavePattern();
    auto events = Events();
    events.erase(events.begin());  // the selector
    return events;
  };
  for (int format = 1; format <= 4; ++format) {
    ws.saveformat = format;
    Limits(10, 11, 0.02f);
    const std::string second =
        std::string("box\tError\tError writing ") + formats[format - 1] + " file";
    EXPECT_EQ(save(dir_.path() + "/none/out"),
              (std::vector<std::string>{
                  std::string("box\tError\tError opening ") + own[format - 1] + " file", second}));
    const auto full = save(FullDisk());  // found at the close at the latest
    ASSERT_EQ(full.size(), 2u);
    EXPECT_TRUE(full[0].starts_with(std::string("box\tError\tError writing ") + own[format - 1]));
    EXPECT_EQ(full[1], second);
    EXPECT_TRUE(save("").empty());
  }
  ws.savecontent = 4;
  ws.saveformat = 5;
  EXPECT_EQ(save(dir_.path() + "/none/out"),
            std::vector<std::string>{"box\tFile error\tError opening *.tab file"});
  EXPECT_EQ(save(FullDisk()),
            std::vector<std::string>{"box\tFile Error\tError writing *.tab file"});
}

}  // namespace
