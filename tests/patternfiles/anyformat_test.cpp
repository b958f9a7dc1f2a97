// Any format: what the import makes of a file against the reader of its extension, the choice of
// scans, and the same road for overlays, backgrounds and scripts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "patternfiles/patternfiles.h"
#include "shell/shell.h"
#include "support/support.h"
#include "workspace/menuids.h"
#include "workspace/slots.h"

namespace {

using Row = std::vector<float>;

Row Positions(int slot) { return {TthOf(slot).begin(), TthOf(slot).end()}; }
Row Counts(int slot) { return {IntensityOf(slot).begin(), IntensityOf(slot).end()}; }

class AnyFormat : public testing::Test {
 protected:
  void SetUp() override { FreshWorkspace(); }
  std::string Make(const std::string& name, const std::string& text) {
    const std::string path = dir_.file(name);
    WriteFile(path, text);
    return path;
  }
  // As a file that is dropped on the window, with what answers the dialogs.
  void Open(const std::string& path, const std::string& answers = "") {
    Answer(answers);
    OpenFile(path);
  }
  TempDir dir_;
};

constexpr const char* kTwoScans =
    "_SAMPLE='Two'\n_WL1=1.7889\n_DRIVE=COUPLED\n_STEPSIZE=0.5\n_START=20\n_COUNTS\n 100 110\n "
    "120\n"
    "_DRIVE=COUPLED\n_STEPSIZE=0.5\n_START=20\n_COUNTS\n 200 210\n 220\n";

TEST_F(AnyFormat, ByWhatTheFileHoldsWhateverItsName) {
  Open(Make("Meßwerte 1.asc", "Winkel;Zaehlrate\r\n10,00;5\r\n10,02;7\r\n10,04;6\r\n"));
  EXPECT_EQ(Positions(SlotInput), (Row{10, 10.02f, 10.04f}));
  EXPECT_EQ(Counts(SlotInput), (Row{5, 7, 6}));
  EXPECT_EQ(ws.patternstem, "Meßwerte 1");
  EXPECT_EQ(ws.sampleid, "Meßwerte 1");
  EXPECT_EQ(ws.statedwave, 0);
  // The reader of the extension drops the zeros at the end, and takes words for a point.
  Open(Make("a.xy", "two theta\n10 5\n10.5 7\n11 0\n11.5 0\n"));
  EXPECT_EQ(Positions(SlotInput), (Row{10, 10.5f, 11, 11.5f}));
  EXPECT_EQ(ws.scanwave(2), CuKalpha2);
  Events();
  Open(Make("a.doc", "Dear colleague,\nthere are no numbers here.\n"));
  const auto events = Events();
  ASSERT_FALSE(events.empty());
  EXPECT_TRUE(
      events[0].starts_with("box\tError\tUnrecognized file type\\n" + dir_.file("a.doc") + ": "))
      << events[0];
  EXPECT_EQ(ws.patternstem, "a");  // and the pattern is still that of before
  EXPECT_EQ(Counts(SlotInput), (Row{5, 7, 0, 0}));
}

TEST_F(AnyFormat, WhereBothFindTheSamePointsTheStrictReaderStands) {
  // The 32-bit grid of the reader is not that of the nearest numbers.
  const std::string path = Make("a.cif",
                                "data_x\n_pd_meas_2theta_range_min      5.1\n"
                                "_pd_meas_2theta_range_inc      0.023\nloop_\n  "
                                "_pd_meas_intensity_total\n\n 1\n 2\n 3\n 4\n");
  OpenPattern(path, 5);
  const Row strict = Positions(SlotInput);
  OpenPattern(path);
  EXPECT_EQ(Positions(SlotInput), strict);
  EXPECT_EQ(Counts(SlotInput), (Row{1, 2, 3, 4}));
}

TEST_F(AnyFormat, EsdsOfTheFileAreToldAsLongAsThePointsAreItsOwn) {
  Open(Make("a.xye", "10 100 11\n10.5 144 14\n11 169 13\n"));
  EXPECT_EQ(Row(StatedEsds().begin(), StatedEsds().end()), (Row{11, 14, 13}));
  // The strict reader of xy leaves the third column; the file has stated it all the same.
  Open(Make("a.xy", "10 100 11\n10.5 144 15\n11 169 13\n"));
  EXPECT_EQ(Row(StatedEsds().begin(), StatedEsds().end()), (Row{11, 15, 13}));
  ws.yval(SlotInput, 2) += 1;
  EXPECT_TRUE(StatedEsds().empty());
  Open(Make("b.xy", "10 100\n10.5 144\n11 169\n"));
  EXPECT_TRUE(StatedEsds().empty());
}

TEST_F(AnyFormat, ScansAreChosenFromAList) {
  const std::string path = Make("two.uxd", kTwoScans);
  Open(path, "set Scans 2,1\npress OK\n");
  EXPECT_EQ(Counts(SlotInput), (Row{200, 210, 220}));
  EXPECT_FLOAT_EQ(ws.scanwave(1), 1.7889f);
  ASSERT_EQ(ws.noverlay, 1);
  EXPECT_EQ(Counts(SlotOverlay), (Row{100, 110, 120}));
  EXPECT_EQ(ws.overlayname(1), dir_.file("two #1.uxd"));
  Open(path, "set Scans 1-2\nset \"Their sum\" on\npress OK\n");
  EXPECT_EQ(Counts(SlotInput), (Row{300, 320, 340}));
  RunMenu(MenuOverlayAny, "file \"" + path + "\"\nset Scans 1,2\npress OK\n");
  ASSERT_EQ(ws.noverlay, 2);
  EXPECT_EQ(Counts(SlotOverlay + 1), (Row{200, 210, 220}));
  RunMenu(MenuBackgroundAny, "file \"" + path + "\"\nset Scans 2\npress OK\n");
  EXPECT_EQ(Counts(SlotBackground), (Row{200, 210, 220}));
  Events();
  Open(path, "set Scans 1-3\npress OK\n");
  EXPECT_EQ(Events().back().substr(0, 10), "box\tError\t");
  Open(path, "press Cancel\n");
  EXPECT_EQ(Counts(SlotInput), (Row{300, 320, 340}));
}

// By whichever reader, even if other points stand in it by the time that they are read.
TEST_F(AnyFormat, AFileIsWhatItWasWhenItWasAskedAbout) {
  const struct {
    const char *name, *asked, *later, *answers;
    Row counts;
  } cases[] = {
      {"a.xy",
       "10 5000\n10.5 7000\n11 6000\n",
       "10 5001\n10.5 7001\n11 6001\n",
       "",
       {5000, 7000, 6000}},
      {"two.uxd", kTwoScans, "1 2\n3 4\n", "set Scans 2\npress OK\n", {200, 210, 220}},
  };
  for (const auto& c : cases) {
    const std::string path = Make(c.name, c.asked);
    ScanChoice choice;
    Answer(c.answers);
    ASSERT_EQ(AskScans(path, choice), Outcome::Done);
    Make(c.name, c.later);
    EXPECT_EQ(OpenPattern(path, FileTypeAny, choice), Outcome::Done);
    EXPECT_EQ(Counts(SlotInput), c.counts) << c.name;
    OpenPattern(path, FileTypeAny);
    EXPECT_NE(Counts(SlotInput), c.counts) << c.name;
  }
}

TEST_F(AnyFormat, OfPositionsInDTheWavelengthIsAskedFor) {
  Open(Make("d.csv", "d-spacing,intensity\n2.0,10\n1.9,12\n1.8,11\n"),
       "set Wavelength 1.0\npress OK\n");
  ASSERT_EQ(ws.npts(SlotInput), 3);
  EXPECT_NEAR(ws.xval(AxisTth, SlotInput, 1), 2 * std::asin(1 / 4.0) * 180 / M_PI, 1e-4);
  EXPECT_EQ(Counts(SlotInput), (Row{10, 12, 11}));
  EXPECT_EQ(ws.axiswave, 1);
}

TEST_F(AnyFormat, TooManyPointsAreMergedAndTold) {
  std::string text = "x y\n";
  for (int i = 0; i < 40001; ++i)
    text += std::to_string(10 + i * 0.001) + " " + std::to_string(i % 7) + "\n";
  Open(Make("fine.dat", text));
  EXPECT_EQ(ws.npts(SlotInput), 13333);
  EXPECT_EQ(ws.importnote, "40001 points merged by 3, counts added");
  const auto events = Events();
  EXPECT_NE(std::ranges::find(events, "status\t3\t" + ws.importnote), events.end());
}

TEST_F(AnyFormat, ServesOverlaysBackgroundsAndScripts) {
  const std::string path = Make("a.asc", "angle counts\n10 100\n10.5 144\n11 169\n");
  Open(path);
  RunMenu(MenuOverlayAny, "file \"" + path + "\"");
  EXPECT_EQ(Counts(SlotOverlay), (Row{100, 144, 169}));
  RunMenu(MenuBackgroundAny, "file \"" + path + "\"");
  EXPECT_EQ(Counts(SlotBackground), (Row{100, 144, 169}));
  Make("in.mlt", "a.asc\n");
  Make("out.mlt", "b.xy\n");
  ws.scriptpath = Make("s.scp", "in.mlt\nout.mlt\nINFM    6\nUTFM    2\n");
  RunMenu(40136, "file \"" + ws.scriptpath + "\"");
  EXPECT_TRUE(ReadFile(dir_.file("b.xy")).find("10.5000") != std::string::npos);
}

// Files of real instruments and journals, where they are at hand.
TEST_F(AnyFormat, RealFiles) {
  const std::string directory = std::string(QUILLAGRAM_SOURCE) + "/../shared/data/patterns/";
  std::ifstream manifest(directory + "MANIFEST.csv");
  if (!manifest) GTEST_SKIP() << "no files of real instruments here";
  // Two that are no patterns: the axis that moves is another one.
  const std::string others = "xrdml/polefig_30_scans.xrdml uxd/rates_16_ranges.uxd";
  std::string line;
  std::getline(manifest, line);  // headings
  int read = 0;
  while (std::getline(manifest, line)) {
    std::vector<std::string> cell;
    std::istringstream cells(line);
    for (std::string text; std::getline(cells, text, ',');) cell.push_back(text);
    SCOPED_TRACE(cell[0]);
    const std::string path = directory + cell[0];
    // A file that is not the one described says nothing about the reader.
    std::error_code missing;
    if (std::filesystem::file_size(path, missing) != std::stoull(cell[2])) continue;
    const bool refused = others.find(cell[0]) != others.npos;
    EXPECT_EQ(OpenPattern(path), refused ? Outcome::Failed : Outcome::Done);
    if (refused) continue;
    ++read;
    const int n = ws.npts(SlotInput);
    ASSERT_EQ(n, std::stoi(cell[4]));
    EXPECT_NEAR(FirstTth(SlotInput), std::stof(cell[6]), 1e-4);
    EXPECT_NEAR(LastTth(SlotInput), std::stof(cell[7]), 1e-3);
    EXPECT_FLOAT_EQ(std::ranges::max(IntensityOf(SlotInput)), std::stof(cell[11]));
    std::istringstream first(cell[9]);
    for (int i = 1; i <= std::min(n, 3); ++i) {
      float counts = 0;
      first >> counts;
      EXPECT_FLOAT_EQ(ws.yval(SlotInput, i), counts);
    }
  }
  EXPECT_GT(read, 40);  // some may be missing, but not most
}

}  // namespace
