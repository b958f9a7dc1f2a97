// Runs of scripts.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "scripts.h"
#include "support/smallfiles.h"

namespace {

using Boxes = Lines;
using std::filesystem::exists;

const std::string kDone = "Script\tScript done\\nFiles read: ";

// The counts of an xy file, as text.
std::vector<int> CountsOf(const std::string& xy) {
  std::vector<int> counts;
  for (std::size_t at = 0; at < xy.size(); at = xy.find('\n', at) + 1)
    counts.push_back(std::stoi(xy.substr(at + 8, 10)));
  return counts;
}

int HeightOf(const std::string& xy) {
  const std::vector<int> counts = CountsOf(xy);
  return counts.empty() ? 0 : *std::ranges::max_element(counts);
}

// ---- What each command does ----

struct MenuCase {
  const char* commands;
  int menu;
  const char* answers;
};

class OneFile : public testing::TestWithParam<MenuCase> {};

TEST_P(OneFile, AsTheMenuDoes) {
  const ScriptTest test;
  test.Pattern("a.xy", 1000);
  EXPECT_EQ(test.Run("a.xy\n", "o.xy\n", "INFM    2\n" + std::string(GetParam().commands)),
            Boxes{kDone + "1, written: 0, skipped: 0"});
  EXPECT_FALSE(PointsAreKept());
  const auto x = AnglesNow(), y = CountsNow(), background = CountsNow(SlotBackground),
             net = CountsNow(SlotNet);
  const float wavelength = ws.wavelen(1);
  EXPECT_EQ(ws.plotmask, PlotInput);
  OpenFile(test.file("a.xy"));
  const auto unchanged = CountsNow();
  RunMenu(GetParam().menu, GetParam().answers);
  EXPECT_EQ(x, AnglesNow());
  EXPECT_EQ(y, CountsNow());
  EXPECT_EQ(background, CountsNow(SlotBackground));
  EXPECT_EQ(net, CountsNow(SlotNet));
  EXPECT_EQ(wavelength, ws.wavelen(1));
  EXPECT_TRUE(y != unchanged || net != unchanged || x.front() != 10) << "nothing was done";
}

INSTANTIATE_TEST_SUITE_P(
    Commands, OneFile,
    testing::Values(MenuCase{"ZERO     .1250\n", 40056, "set 1020 0.125\npress OK\n"},
                    MenuCase{"SCAL    2.5000    1    0    0\n", 40060, "set 1032 2.5\npress OK\n"},
                    MenuCase{"SMOO    6\n", 40061, "set 1033 6\npress OK\n"},
                    MenuCase{"sago    4\n", 40062, "set 1049 4\npress OK\n"},
                    MenuCase{
                        "CONV   1.54056   1.78900  12.00000  18.00000    .07000\n", 40058,
                        "set 1039 1.789\nset 1040 12\nset 1041 18\nset 1042 0.07\npress OK\n"}));

// The menu goes on to show the difference alone, which a run does not.
TEST(RunScript, BackgroundAndDifferenceGoToTheirSlots) {
  const ScriptTest test;
  test.Pattern("a.xy", 1000);
  const Boxes boxes = test.Run("a.xy\n", "o.xy\n", "INFM    2\nBKGR   31\nUTFM    2\n");
  EXPECT_EQ(boxes, Boxes{kDone + "1, written: 1, skipped: 0\\nBKGR takes nothing off what is "
                                 "written"});
  const auto background = CountsNow(SlotBackground), net = CountsNow(SlotNet);
  EXPECT_EQ(HeightOf(test.Read("o.xy")), 1100);
  EXPECT_TRUE(PointsAreKept());
  EXPECT_NEAR(net[80], 1000, 30);
  OpenFile(test.file("a.xy"));
  RunMenu(40079, "set 1081 31\npress OK\n");
  RunMenu(40078, "press OK\n");
  EXPECT_EQ(background, CountsNow(SlotBackground));
  EXPECT_EQ(net, CountsNow(SlotNet));
}

TEST(RunScript, SkippedLinesAreThoseInFrontOfEveryFile) {
  const ScriptTest test;
  for (const char* name : {"a.dat", "b.dat"})
    test.Write(name, "title 1\ntitle 2\n  10.000    .050\n     100     200     300\n");
  EXPECT_EQ(test.Run("a.dat\nb.dat\n", "c.xy\nd.xy\n", "SKIP    2\nINFM    3\nUTFM    2\n"),
            Boxes{kDone + "2, written: 2, skipped: 0"});
  for (const char* name : {"c.xy", "d.xy"})
    EXPECT_EQ(CountsOf(test.Read(name)), (std::vector<int>{100, 200, 300}));
}

TEST(RunScript, AFormatThatIsNoneIsGdf) {
  const ScriptTest test;
  test.Pattern("a.xy", 1000);
  test.Run("a.xy\n", "1.gdf\n", "INFM    2\nUTFM    0\n");
  test.Run("1.gdf\n", "2.gdf\n", "INFM    9\nUTFM   -1\n");
  EXPECT_EQ(CountsNow()[80], 1100);
  for (const char* name : {"1.gdf", "2.gdf"})
    EXPECT_EQ(test.Read(name).substr(10 * 257, 7), "10.000 ") << "behind ten lines of its heading";
}

// ---- What goes from file to file ----

TEST(RunScript, OnlyTheFirstFileIsShiftedAndNoneIsCut) {
  const ScriptTest test;
  test.Pattern("a.xy", 1000);
  test.Pattern("b.xy", 2000);
  const Boxes boxes =
      test.Run("a.xy\nb.xy\n", "c.xy\nd.xy\n",
               "INFM    2\nTRUN   12.0000   18.0000\nZERO     .0625\nSCAL    2.0000\nUTFM    2\n");
  EXPECT_EQ(boxes, Boxes{kDone + "2, written: 2, skipped: 0\\nZERO shifts only the first file of a "
                                 "list\\nTRUN behind INFM cuts nothing: every file brings limits "
                                 "of its own"});
  // What has been shifted beyond the last two-theta is not written.
  EXPECT_EQ(test.Read("c.xy").substr(0, 19), " 10.0625       200\n");
  EXPECT_EQ(CountsOf(test.Read("c.xy")).size(), 199u);
  EXPECT_EQ(test.Read("d.xy").substr(0, 19), " 10.0000       200\n");
  EXPECT_EQ(CountsOf(test.Read("d.xy")).size(), 200u);
}

// The lines are worked off in their order.
TEST(RunScript, AnOutputInFrontOfTheInputIsThatOfTheFileBefore) {
  const ScriptTest test;
  test.Pattern("a.xy", 1000);
  test.Pattern("b.xy", 2000);
  test.Pattern("c.xy", 3000);
  OpenFile(test.file("c.xy"));
  test.Run("a.xy\nb.xy\n", "1.xy\n2.xy\n", "TRUN   14.0000   16.0000\nUTFM    2\nINFM    2\n");
  EXPECT_EQ(HeightOf(test.Read("1.xy")), 3100);
  EXPECT_EQ(CountsOf(test.Read("1.xy")).size(), 33u) << "its own limits, up to the first input";
  EXPECT_EQ(HeightOf(test.Read("2.xy")), 1100);
  EXPECT_EQ(CountsNow().size(), 200u);
  EXPECT_EQ(CountsNow()[80], 2100);
  // Nothing at all is there.
  FreshWorkspace();
  for (const char* format : {"1", "2", "3", "4"})
    EXPECT_EQ(test.Run("a.xy\n", "1.xy\n", "UTFM    " + std::string(format) + "\n"),
              Boxes{kDone + "0, written: 1, skipped: 0"});
}

// ---- Lists and files ----

TEST(RunScript, NamesInListsAreTakenFromTheFolderOfTheList) {
  const ScriptTest test;
  std::filesystem::create_directories(test.file("lists/\u00e4 \"b\""));
  test.Pattern("lists/\u00e4 \"b\"/\u00fc 1.xy", 1000);
  test.Pattern("b.xy", 2000);
  test.Write("lists/in.mlt",
             "\xEF\xBB\xBF\r\n\u00e4 \"b\"/\u00fc 1.xy  \r\n\r\n" + test.file("b.xy"));
  test.Write("lists/out.mlt", "../1.gdf\r\n2.dat");
  test.Write("a.scp", "lists/in.mlt\r\nlists/out.mlt\r\nInfm    2\r\nutfm    4\r\n");
  EXPECT_EQ(test.RunFile("a.scp"), Boxes{kDone + "2, written: 2, skipped: 0"});
  EXPECT_EQ(test.Read("1.gdf").substr(0, 23), "10.0000,0.0625,22.4375\n");
  EXPECT_TRUE(exists(test.file("lists/2.dat")));
  EXPECT_EQ(ws.patternpath, test.file("b.xy"));
}

// Input and output go in pairs, whatever happens to the others.
TEST(RunScript, FilesThatFailArePassedOverAndTold) {
  const ScriptTest test;
  for (const char* name : {"a.xy", "b.xy", "c.xy", "d.xy"}) test.Pattern(name, 10 * name[0]);
  const std::string longname(257, 'x'), gone = ": No such file or directory";
  const std::string list = "a.xy\nnone.xy\nb.xy\n" + longname + "\nc.xy\nd.xy\n";
  Boxes boxes = test.Run(list, "1.xy\n2.xy\nno/3.xy\n4.xy\n\n6.xy\n", "INFM    2\nUTFM    2\n");
  ASSERT_EQ(boxes.size(), 5u);
  EXPECT_EQ(boxes[1], "Error\tError opening xy file\\n" + test.file("no/3.xy") + gone);
  EXPECT_EQ(boxes.back(),
            kDone + "4, written: 2, skipped: 2\\nnone.xy: Error opening xy file" + gone +
                "\\n3.xy: Error opening xy file" + gone + "\\n" + longname +
                ": is longer than 256 characters\\nc.xy: Error opening output file: has an empty "
                "line in the output file list");
  EXPECT_EQ(HeightOf(test.Read("1.xy")), 100 + 10 * 'a');
  EXPECT_EQ(HeightOf(test.Read("6.xy")), 100 + 10 * 'd');
  EXPECT_FALSE(exists(test.file("2.xy")) || exists(test.file("4.xy")));
}

TEST(RunScript, AShortOutputListEndsTheRun) {
  const ScriptTest test;
  for (const char* name : {"a.xy", "b.xy", "c.xy"}) test.Pattern(name, 10 * name[0]);
  EXPECT_EQ(test.Run("a.xy\nb.xy\n\nc.xy\n", "1.xy\n", "INFM    2\nUTFM    2\n"),
            Boxes{kDone + "2, written: 1, skipped: 0\\nthe output list ended after 1 line: 2 files "
                          "were not done"});
  EXPECT_EQ(ws.batchmode, 0);
  EXPECT_EQ(ws.patternstem, "b");
}

TEST(RunScript, MoreThanTenFailuresGoToALog) {
  const ScriptTest test;
  std::string inputs;
  for (int i = 10; i < 22; ++i) inputs += std::to_string(i) + ".xy\n";
  const std::string reason = ": Error opening xy file: No such file or directory";
  const std::string box = test.Run(inputs, "", "INFM    2\nTRUN\n").back();
  EXPECT_EQ(box.find("TRUN"), std::string::npos) << "nothing was to be cut";
  EXPECT_TRUE(box.ends_with("19.xy" + reason + "\\nand 2 more: all in " + test.file("a.log")))
      << box;
  std::string log;
  for (int i = 10; i < 22; ++i) log += test.file(std::to_string(i) + ".xy") + reason + "\n";
  EXPECT_EQ(test.Read("a.log"), log);
  // A script of that name is no log.
  std::filesystem::rename(test.file("a.scp"), test.file("b.log"));
  EXPECT_TRUE(test.RunFile("b.log").back().ends_with(test.file("b.log.log")));
  std::filesystem::remove(test.file("b.log.log"));
  std::filesystem::create_directory(test.file("b.log.log"));
  EXPECT_TRUE(
      test.RunFile("b.log").back().ends_with("and 2 more; the list of all could not be "
                                             "written to " +
                                             test.file("b.log.log") + ": Is a directory"));
}

// ---- The pattern on show ----

TEST(RunScript, TheLastFileIsOnShowAndUndoBringsBackWhatWas) {
  const ScriptTest test;
  test.Pattern("a.xy", 1000);
  test.Pattern("b.xy", 2000, 100, 12);
  test.Run("a.xy\n", "", "INFM    2\n");  // where there was none
  EXPECT_EQ(ws.patternloaded, 1);
  EXPECT_EQ(ws.viewmode, 1);
  EXPECT_GT(ws.xperunit, 0) << "it has been drawn";
  OpenFile(test.file("a.xy"));
  ws.xaxismode = AxisD;
  ws.viewxmin = 4.5f;
  test.Run("b.xy\n", "o.xy\n",
           "INFM    2\nCONV   1.00000   1.10000  12.00000  16.00000    .05000\n");
  EXPECT_EQ(ws.patternpath, test.file("b.xy"));
  EXPECT_EQ(ws.stem20, "b");
  EXPECT_LT(ws.viewxmin, 3.95f) << "from the first to the last d";
  EXPECT_EQ(ws.axiswave, 1.1f);
  // Bragg's law for the new wavelength.
  EXPECT_NEAR(ws.xval(AxisD, 1, 50), 0.55 / std::sin(ws.xval(AxisTth, 1, 50) / 2 * 0.0174532925),
              1e-4);
  int quit = 0;
  OnMenu(40203, quit);  // Undo
  EXPECT_EQ(ws.patternpath, test.file("a.xy"));
  EXPECT_EQ(CountsNow().size(), 200u);
  EXPECT_EQ(ws.viewxmin, 4.5f);
}

TEST(RunScript, WithoutAPatternOfItsOwnTheOneOfBeforeStays) {
  const ScriptTest test;
  test.Pattern("a.xy", 1000);
  test.Pattern("b.xy", 2000, 100);
  OpenFile(test.file("a.xy"));
  const auto counts = CountsNow();
  const char* lists[] = {"b.xy\nnone.xy\n", "none.xy\n", ""};
  for (const char* list : lists) {
    test.Run(list, "1.xy\n2.xy\n", "INFM    2\nSCAL    2.0000\n");
    EXPECT_EQ(CountsNow(), counts) << list;
    EXPECT_EQ(ws.patternpath, test.file("a.xy"));
    EXPECT_EQ(ws.stem20, "a");
    EXPECT_EQ(ws.scalefactor, 1);
    EXPECT_EQ(ws.npts(1), 200);
  }
  const Boxes nothing{kDone + "0, written: 0, skipped: 0"};
  EXPECT_EQ(test.Run("b.xy\n", "", "no command\n"), nothing);
  EXPECT_EQ(test.Run("", "", "INFM    2\nTRUN   12.0000   18.0000\nBKGR    9\n"), nothing);
  EXPECT_EQ(ws.stem20, "a");
}

// A stop comes between two files.
TEST(RunScript, AStopKeepsWhatIsWritten) {
  const ScriptTest test;
  for (const char* name : {"a.xy", "b.xy", "c.xy"}) test.Pattern(name, 10 * name[0]);
  test.Write("in.mlt", "a.xy\nb.xy\nc.xy\n");
  test.Write("out.mlt", "1.xy\n2.xy\n3.xy\n");
  test.Write("a.scp", "in.mlt\nout.mlt\nINFM    2\nUTFM    2\n");
  test.Write("t.scp", "in.mlt\ntable.sum\nINFM    2\nUTFM    5\n");
  const ReplayRun run = RunReplay(
      "open c.xy\nstop 3\nmenu 40136\nfile a.scp\nget stem20\nmenu 40134\nfile t.scp\npress "
      "Cancel\nstop 2\nmenu 40136\nget stem20\n",
      test.path());
  EXPECT_EQ(run.status, 0);
  Boxes told;
  for (const std::string& line : run.lines)
    if (line.starts_with("box") || line.starts_with("value")) told.push_back(line);
  EXPECT_EQ(told, (Boxes{"box\tScript\tScript stopped\\nFiles read: 2, written: 2, skipped: 0",
                         "value\tstem20\tc",
                         "box\tScript\tScript stopped\\nFiles read: 1, written: 1, skipped: 0",
                         "value\tstem20\tc"}));
  EXPECT_TRUE(exists(test.file("2.xy")));
  EXPECT_FALSE(exists(test.file("3.xy")));
  EXPECT_EQ(test.Read("table.sum").substr(0, 18), "2theta   a.xy    \n");
}

}  // namespace
