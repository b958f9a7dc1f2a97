// The nine readers on small files: contents, odd lines, messages, limits, hostile input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "patternfiles/samples.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

class Readers : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    ws.stem20 = "stem";
    Events();
  }
  std::string Make(const std::string& text) {
    const std::string path = dir_.file("pattern");
    WriteFile(path, text);
    return path;
  }
  int Read(const std::string& extension, int slot, const std::string& text) {
    return ReadAs(extension, slot, Make(text));
  }
  TempDir dir_;
};

std::vector<float> Counts(int slot) {
  const auto row = ws.yval.row(slot);
  return {row.begin(), row.begin() + ws.npts(slot)};
}

std::string Repeat(int n, const std::string& text) {
  std::string all;
  for (int i = 0; i < n; ++i) all += text;
  return all;
}

// Everything a load sets, for every way in which lines may end.
TEST_F(Readers, EveryFormatWithEveryLineEnd) {
  for (const FormatSample& sample : FormatSamples()) {
    const std::string whole = sample.text(), open = whole.substr(0, whole.size() - 1);
    for (const std::string& text :
         {whole, Replaced(whole, "\n", "\r\n"), open, open + "\r", "\xEF\xBB\xBF" + whole})
      for (int slot : {SlotInput, SlotScratch}) {
        SCOPED_TRACE(sample.extension + (": " + text));
        SetUp();
        ws.yval(SlotNet, 1) = ws.yval(MaxSlots, 9) = 42;
        ws.scandate = ws.instrument = ws.sampleid = "";
        ASSERT_EQ(Read(sample.extension, slot, text), 1);
        EXPECT_TRUE(Events().empty());
        EXPECT_EQ(Counts(slot), sample.counts);
        for (int i = 1; i <= ws.npts(slot); ++i)
          EXPECT_NEAR(ws.xval(AxisTth, slot, i), sample.x1 + 0.02 * (i - 1), 2e-6);
        const std::string format = sample.extension;
        if (slot != SlotInput) {
          // Nothing of the current pattern changes, but for the date and what udf states.
          EXPECT_EQ(ws.yval(SlotNet, 1), 42);
          EXPECT_EQ(ws.npts(SlotNet), 0);
          EXPECT_EQ(ws.wavelen(2), 1.54433f);
          EXPECT_EQ(ws.instrument, format == "udf" ? "STADI" : "");
          EXPECT_TRUE(format != "udf" || ws.gdfhead(8) == sample.exposure) << ws.gdfhead(8);
          EXPECT_EQ(ws.scandate, format == "udf" || format == "uxd" ? sample.scandate : "");
          continue;
        }
        EXPECT_EQ(Counts(SlotNet), sample.counts);
        EXPECT_EQ(ws.yval(MaxSlots, 9), format == "xy" || format == "chi" ? 0 : 42);
        for (int k = 1; k <= 3; ++k) EXPECT_EQ(ws.scanwave(k), sample.wave[k - 1]) << k;
        EXPECT_EQ(ws.wavelen(1), sample.wave[0]);
        EXPECT_EQ(ws.scandate, sample.scandate);
        EXPECT_EQ(ws.sampleid, sample.sampleid);
        EXPECT_EQ(ws.instrument, sample.instrument);
        EXPECT_EQ(ws.gdfhead(8), sample.exposure);
      }
  }
}

TEST_F(Readers, OddLines) {
  const std::string txt = "[Data]\n\n", uxd = "_2THETACOUNTS\n", udf = "RawScan\n";
  const std::string gdf = Repeat(16, "1\n"), cif = "  _pd_meas_intensity_total\n\n";
  const std::string tag = "<intensities>", wide(300, ' ');
  const struct {
    const char* extension;
    std::string text;
    std::vector<float> counts;
  } cases[] = {
      {"xy", "GRID\n1 5\n", {0, 5}},                 // words pass as a point
      {"xy", "1 5\n \n2 6\n", {5}},                  // an empty line ends
      {"xy", "1 5\n2e 6\n3 7\n", {5}},               // and so does a stray e
      {"xy", "1,5 200\n", {5}},                      // a decimal comma parts
      {"xy", "1 5\n2 1e300\n3 6\n", {5}},            // a number out of range ends
      {"xy", std::string("1\0 5\n", 5), {5}},        // NUL bytes are blanks
      {"xy", "1" + wide + "7\n2 5\n", {0, 5}},       // columns past 256 are lost
      {"txt", txt + "5, 12\n6, 13.5\n7, 1", {12}},   // a fraction ends
      {"uxd", uxd + "5" + wide + "3\n6 4", {0, 4}},  // columns past 40 are lost
      // A line of fewer values cuts all that follow, more than once too.
      {"udf", udf + "1,2,3,/\n4,5,6,7,8\n", {1, 2, 3, 0, 0, 0, 0, 0, 4, 5, 6}},
      {"udf", udf + "1,2,/\n3,x\n4,5", {1, 2, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 4}},
      {"udf", udf + "1,2,9e99,4\n5,6,7\n", {1, 2, 0, 0, 0, 0, 0, 0, 5, 6}},
      {"dat", "1,1\n1,2,x\n3,4,5\n", {1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 3, 4}},
      {"dat", "1,1\n1,2\n3\n", {1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 3}},  // blank fields are 0
      {"gdf", gdf + "5\n6.5\n7\n", {5}},                            // a fraction ends
      {"gdf", gdf + "123456789\n", {12345678}},                     // nine digits are cut
      {"cif", cif + "5\n6(2)\n7\n", {5}},                           // a bracket ends
      {"xrdml", tag + "5 6 7</intensities>", {0, 6, 7}},            // one digit first is lost
      {"xrdml", tag + "15 6  7</intensities>", {15, 6, 0, 7}},      // two blanks make a 0
      {"xrdml", tag + "00000000000000000015345 7<", {15, 345, 7}},  // so do 20 digits
      {"xrdml", tag + "15 ab 7 nan</intensities>", {15, 0, 7}},     // no number, no count
      {"xrdml", tag + "10 20 30\n" + tag + "11 21\n", {11, 21}},    // a later line wins
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Read(c.extension, 5, c.text), 1);
    EXPECT_EQ(Counts(5), c.counts);
  }
}

TEST_F(Readers, HeaderValues) {
  const struct {
    const char* extension;
    std::string text;
    float lastx;
  } cases[] = {
      {"xrdml", "<startPosition>7</>\n<endPosition>9</>\n<intensities>15 16", 9},
      {"xrdml", "<positions axis=\"Omega\">\n<startPosition>7</>\n<intensities>15 16", 0},
      {"dat", "5,3e38\n1,2,3\n", 5},  // the grid leaves the range of numbers
      {"dat", "5.0,-0.5\n1,2,3\n", 4},
      {"dat", "100.0000,0.5000,101.0000\n1,2,3\n", 101},  // a start that fills its field
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Read(c.extension, 1, c.text), 1);
    EXPECT_EQ(ws.xval(AxisTth, 1, ws.npts(1)), c.lastx) << c.text;
  }
  // One point has no step.
  EXPECT_EQ(Read("xrdml", 1, "<startPosition>7</>\n<endPosition>9</>\n<intensities>15"), 1);
  EXPECT_TRUE(std::isnan(ws.xval(AxisTth, 1, 1)));
  EXPECT_EQ(ReadAs("gdf", 1, QUILLAGRAM_SOURCE "/tests/patternfiles/samples/small.gdf"), 1);
  EXPECT_EQ(ws.gdfhead(10), "1.00<");
  ws.headerskip = 2;
  EXPECT_EQ(Read("dat", 1, "a\nb\n5,1\n       9\n"), 1);
  EXPECT_EQ(Read("xy", 1, "a\nb\n5 9\n"), 1);
  EXPECT_EQ(Counts(1), std::vector<float>{9});
}

TEST_F(Readers, PointLimits) {
  for (const LongPattern& pattern : LongPatterns())
    for (int slot : {1, 9}) {
      SCOPED_TRACE(pattern.extension);
      EXPECT_EQ(Read(pattern.extension, slot, pattern.text()), 1);
      EXPECT_EQ(ws.npts(slot), pattern.limit);
    }
  EXPECT_EQ(Read("xy", 1, LongPatterns()[0].text(19998)), 1);
  EXPECT_EQ(ws.npts(1), 19998);
}

TEST_F(Readers, Messages) {
  const std::string gdf = Repeat(16, "1\n");
  const auto gdfline = [](int n) {
    return Repeat(n - 1, "1\n") + "word\n" + Repeat(16 - n, "1\n");
  };
  const struct {
    const char* extension;
    std::string text;
    const char *caption, *message, *reason;
  } cases[] = {
      {"xy", "1 0\n2 0\n", "File error", "Nothing read from xy file", "no counts in it"},
      {"chi", "1\n2\n3\n", "File error", "Error reading chi file", "ends with line 3"},
      {"txt", "Date=1\n", "Error", "Error reading txt-file", "no line [Data] in it"},
      {"txt", "[Data]", "Error", "Error reading txt-file", "ends with line 1"},
      {"txt", "[Data]\n\nx", "Error", "Nothing read from txt-file1", "no points in it"},
      {"txt", "[Data]\n\n1, -1\n", "Error", "Nothing read from txt-file2", "no counts in it"},
      {"uxd", "1 2\n", "File Error", "Error reading uxd file", "no line _2THETACOUNTS in it"},
      {"uxd", "_2THETACOUNTS\n1 -1\n", "File Error", "Nothing read from uxd file",
       "no counts in it"},
      {"udf", " RawScan\n", "File Error", "Error reading udf file", "no line RawScan in it"},
      {"udf", "RawScan\n/\n", "File Error", "Nothing read from udf file", "no points in it"},
      {"gdf", "1\n", "Error", "Error reading gdf-file", "ends with line 1"},
      {"gdf", gdfline(3), "File Read Error", "word", "line 3 is no number"},
      {"gdf", gdfline(11), "Error", "Error reading gdf file2", "line 11 is no number"},
      {"gdf", gdfline(13), "Error", "Error reading gdf file4", "line 13 is no number"},
      {"gdf", gdf, "Error", "Nothing read from gdf file1", "no points in it"},
      {"gdf", gdf + "0\n", "Error", "Nothing read from gdf file2", "no counts in it"},
      {"dat", "", "File Error", "Error reading dat file", "is empty"},
      {"dat", "word\n", "File Error", "Error reading dat file", "line 1 is no number"},
      {"dat", "1 1\n", "File Error", "Nothing read from dat file", "no points in it"},
      {"cif", "_pd_meas_intensity_total\n", "File Error", "Error reading cif1",
       "no line   _pd_meas_intensity_total in it"},
      {"cif", "  _pd_meas_intensity_total\n", "File Error", "Error reading cif2",
       "ends with line 1"},
      {"cif", "  _pd_meas_intensity_total\n1\n_x\n", "File Error", "Nothing read from cif",
       "no points in it"},
      {"xrdml", "<counts>1 2 3</counts>", "File Error", "Nothing read from xrdml file",
       "no points in it"},
  };
  const auto box = [&](const std::string& what, const std::string& path, const char* reason) {
    return std::vector<std::string>{"box\t" + what + "\\n" + path + ": " + reason};
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Read(c.extension, 1, c.text), 0) << c.message;
    EXPECT_EQ(Events(),
              box(std::string(c.caption) + "\t" + c.message, dir_.file("pattern"), c.reason));
  }
  for (const FormatSample& sample : FormatSamples()) {  // a directory is no file
    const std::string format = sample.extension;
    const bool plain = format == "txt" || format == "gdf";
    const std::string what = (plain ? "Error\tError opening " : "File error\tError opening ") +
                             format +
                             (plain             ? "-file"
                              : format == "cif" ? ""
                                                : " file");
    for (const auto& [path, reason] : {std::pair(dir_.path(), "is a directory"),
                                       {dir_.file("none"), "No such file or directory"}}) {
      EXPECT_EQ(ReadAs(format, 1, path), 0);
      EXPECT_EQ(Events(), box(what, path, reason));
    }
  }
  ws.headerskip = 3;
  for (const char* format : {"xy", "dat"}) {
    EXPECT_EQ(Read(format, 1, "1 2\n"), 0);
    EXPECT_EQ(Events(), box(std::string("File error\tError reading ") + format + " file",
                            dir_.file("pattern"), "ends with line 1"));
  }
}

// Files that were meant for nobody: every reader on each, into the slots at the ends of the store.
TEST_F(Readers, HostileFiles) {
  const auto finite = [](float v) { return std::isfinite(v); };
  const auto inrange = [](float v) { return !std::isinf(v); };
  std::string noise;
  for (unsigned i = 0, state = 1; i < 100000; ++i)
    noise += static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
  const std::string bodies[] = {noise,
                                std::string(5000, '\0'),
                                std::string(200000, '9'),
                                Repeat(3000, "nan inf\n"),
                                Repeat(3000, "1e38,1e38,1e38,1e38,1e38,1e38,1e38,1e38\n"),
                                Repeat(3000, "1,1e300,-1e39\n")};
  for (const FormatSample& target : FormatSamples()) {
    const std::string whole = target.text();
    const std::string half = whole.substr(0, whole.size() / 2);
    for (const std::string& head : {std::string(), half, whole, Replaced(whole, "0", "e99")})
      for (const std::string& body : bodies)
        for (int slot : {1, 9}) {
          Read(target.extension, slot, head + body);
          ASSERT_TRUE(ws.npts(slot) >= 0 && ws.npts(slot) <= MaxPoints) << target.extension;
          ASSERT_TRUE(std::ranges::all_of(ws.xval.cells, inrange)) << target.extension;
          ASSERT_TRUE(std::ranges::all_of(ws.yval.cells, finite)) << target.extension;
        }
  }
}

}  // namespace
