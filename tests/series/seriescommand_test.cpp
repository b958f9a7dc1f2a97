// "Series" from a user's side: a run, its table, and looking at it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "series/seriestable.h"
#include "support/support.h"

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

// A line over a flat background, with its top at `place`.
std::string PatternWithLine(double place) {
  std::string text;
  for (int i = 0; i < 400; ++i) {
    const double x = 20 + 0.02 * i, t = (x - place) / 0.1;
    char line[64];
    std::snprintf(line, sizeof line, "%.2f %.0f\n", x, 50 + 5000 / (1 + t * t));
    text += line;
  }
  return text;
}

class SeriesCommand : public testing::Test {
 protected:
  // Files 1 to 6, the last one as number 10, of which the third is no pattern.
  void SetUp() override {
    for (const int k : {1, 2, 4, 5, 10})
      WriteFile(folder_.file("run" + std::to_string(k) + ".xy"), PatternWithLine(22 + 0.1 * k));
    WriteFile(folder_.file("run3.xy"), "no pattern\n");
    WriteRecipe("lines", "");
    fs::create_directory(folder_.file("beside"));
  }
  void WriteRecipe(const std::string& name, const std::string& more) {
    WriteFile(folder_.file(name + ".recipe"),
              "open \"{file}\"\nmenu \"Peak search/Auto peak search\"\n"
              "get peaks(1:2,1) as place height\n" +
                  more);
  }
  // The events of a transcript that opens the series, but for what the dialog shows at first.
  Lines Do(const std::string& lines) {
    const ReplayRun run = RunReplay(
        "open run1.xy\nmenu \"Multiple patterns/Series\"\n"
        "press \"Files...\"\n"
        "file run10.xy run2.xy run1.xy run3.xy run5.xy run4.xy\n"
        "press \"Recipe...\"\nfile lines.recipe\n" +
            lines,
        folder_.path());
    EXPECT_EQ(run.status, 0) << (run.lines.empty() ? "" : run.lines.back());
    return run.lines;
  }
  static bool Has(const Lines& events, const std::string& begin) {
    return std::ranges::any_of(events,
                               [&](const std::string& event) { return event.starts_with(begin); });
  }
  // What the gets have printed, by their names.
  static Lines Values(const Lines& events, const std::string& name) {
    Lines values;
    for (const std::string& event : events)
      if (event.starts_with("value\t" + name + "\t"))
        values.push_back(event.substr(name.size() + 7));
    return values;
  }
  std::string Table() const { return ReadFile(folder_.file("lines.csv")); }
  TempDir folder_;
};

TEST_F(SeriesCommand, RunsAndShowsWhatHasComeOfIt) {
  const Lines events =
      Do("item 40270\nget nseriesfile\npress Run\nget nseries\nget nseriesfailed\nget seriesview\n"
         "get seriescolumn\nget viewmode\n"
         // A row that has failed cannot be opened either; the next one can.
         "set 1900 \"1,3\"\nget patternstem\nset 1900 \"1,4\"\nget patternstem\nget viewmode\n"
         "get seriesrow\nset File 99\nget seriesrow\n"
         // A line of the map, and a point of the column, which a double click does not take back.
         "set Map on\nget viewmode\nmouse left 24 5\nget patternstem\n"
         "set Column on\nmouse left 2 22.2\nget patternstem\ndoubleclick 500 500\nget patternstem\n"
         "get viewymax\nget seriesview\n"
         "set Waterfall on\nset Logarithm on\nplot beside/after.svg\npress Close\nget viewmode\n"
         "menu \"Peak search/Auto peak search\"\nmenu \"Edit/Save as recipe...\"\nfile done\n"
         "menu \"File/Save graphics/*.svg\"\nfile after.svg\n"
         "undo\nundo\nget patternstem\nget viewmode\nundo\nget patternstem\n");
  EXPECT_EQ(Values(events, "nseriesfile"), Lines{"6"});
  EXPECT_EQ(Values(events, "nseries"), Lines{"6"});
  EXPECT_EQ(Values(events, "nseriesfailed"), Lines{"1"});
  EXPECT_EQ(Values(events, "seriescolumn"), Lines{"place"});
  EXPECT_TRUE(Has(events, "status\t3\t6 rows, 1 failed, "));
  EXPECT_TRUE(Has(events, "status\t3\trun3.xy: "));
  EXPECT_TRUE(Has(events, "status\t3\trun4.xy: 4 of 6"));
  EXPECT_EQ(Values(events, "patternstem"),
            (Lines{"run1", "run4", "run5", "run2", "run2", "run5", "run10"}));
  EXPECT_EQ(Values(events, "seriesrow"), (Lines{"4", "6"}));
  EXPECT_EQ(Values(events, "seriesview"), (Lines{"3", "4"}));
  EXPECT_EQ(Values(events, "viewmode"), (Lines{"5", "1", "5", "5", "5"}));

  const SeriesTable table = ReadSeriesTable(folder_.file("lines.csv"));
  ASSERT_EQ(table.rows.size(), 6u);
  const int numbers[] = {1, 2, 3, 4, 5, 10};
  for (std::size_t row = 0; row < 6; ++row) {
    EXPECT_EQ(table.rows[row][0], "run" + std::to_string(numbers[row]) + ".xy");
    if (row == 2) continue;
    EXPECT_NEAR(std::stod(table.rows[row][2]), 22 + 0.1 * numbers[row], 0.03);
  }
  const std::string picture = ReadFile(folder_.file("after.svg"));
  EXPECT_GT(picture.size(), 5000u);
  EXPECT_TRUE(picture == ReadFile(folder_.file("beside/after.svg")));
  // What was done to a pattern of the series, and nothing of the series.
  const std::string recipe = ReadFile(folder_.file("done.recipe"));
  EXPECT_NE(recipe.find("open \"{file}\"\nmenu 40105"), recipe.npos) << recipe;
  EXPECT_EQ(recipe.find("40270"), recipe.npos);
}

// It goes on with the table that is there, and a table of another recipe is put aside on demand.
TEST_F(SeriesCommand, GoesOnAndLosesNothing) {
  Do("press Run\npress Close\n");
  const std::string whole = Table();
  const std::size_t half = whole.find("run4.xy");
  WriteFile(folder_.file("lines.csv"), whole.substr(0, half) + "run4.xy,,2");
  Lines events =
      Do("set Column on\nget nseries\nstop 1\npress Run\nget nseries\npress Run\nget nseries\n"
         "get viewxmax\npress Close\n");
  EXPECT_EQ(Values(events, "nseries").front(), "3");
  EXPECT_TRUE(Has(events, "status\t3\tStopped at "));
  EXPECT_EQ(Values(events, "nseries").back(), "6");
  EXPECT_GT(std::stod(Values(events, "viewxmax").at(0)), 6) << "the column has grown";
  EXPECT_EQ(Table(), whole);

  WriteRecipe("lines", "get npts(1)\n");
  WriteFile(folder_.file("lines.csv.old"), "of an earlier time");
  events = Do("press Run\npress Cancel\nget nseries\npress Close\n");
  EXPECT_TRUE(Has(events, "query\tSeries\tTable "));
  EXPECT_EQ(Table(), whole);
  Do("press Run\npress OK\npress Close\n");
  EXPECT_EQ(ReadFile(folder_.file("lines.csv.old2")), whole);
  EXPECT_EQ(ReadFile(folder_.file("lines.csv.old")), "of an earlier time");
  EXPECT_EQ(ReadSeriesTable(folder_.file("lines.csv")).ColumnOf("npts(1)"), 4);
}

// A table that has all its rows: those that have failed are done again, if the user wants that.
TEST_F(SeriesCommand, DoesAgainWhatHasFailed) {
  Do("press Run\npress Close\n");
  const std::string before = Table();
  WriteFile(folder_.file("run3.xy"), PatternWithLine(22.3));
  WriteFile(folder_.file("run4.xy"), "a good row is not done again\n");
  // Where the table is put aside meanwhile lies something else.
  const std::string aside = folder_.file("lines.csv.before");
  WriteFile(aside, "of another kind\n");
  EXPECT_TRUE(Has(Do("press Run\npress OK\npress Close\n"), "box\tSeries\t"));
  EXPECT_EQ(Table(), before);
  fs::remove(aside);
  const Lines events =
      Do("press Run\npress Cancel\nget nseriesfailed\npress Run\npress OK\nget nseriesfailed\n"
         "press Run\npress Close\n");
  EXPECT_TRUE(Has(events, "query\tSeries\t1 of 6 files have failed"));
  EXPECT_EQ(Values(events, "nseriesfailed"), (Lines{"1", "0"}));
  const SeriesTable table = ReadSeriesTable(folder_.file("lines.csv"));
  EXPECT_NEAR(std::stod(table.rows.at(2)[2]), 22.3, 0.03);
  const std::size_t begin = before.find("run3.xy"), end = before.find("run4.xy");
  EXPECT_EQ(Table().substr(0, begin), before.substr(0, begin));
  EXPECT_EQ(Table().substr(Table().find("run4.xy")), before.substr(end));
}

// What the dialog says of chains and of other recipes makes the rows that the program makes of its
// options, to the digest.
TEST_F(SeriesCommand, RunsWithTheOptionsOfTheDialog) {
  WriteRecipe("other", "");
  WriteFile(folder_.file("lines.recipe"),
            "open \"{file}\"\nget npts(1) as place\nget npts(1) as height\n");
  const Lines events =
      Do("press \"By other recipe...\"\nfile other.recipe\npress Run\n"
         "set \"Restart when\" \"place>100, height<0\"\nset Chain on\nset \"Break after\" 2\nset "
         "\"Break after\" \"\"\n"
         "press Run\npress Close\nmenu \"Multiple patterns/Series\"\npress Remove\n"
         "press \"Table...\"\nfile own.csv\npress Run\npress Close\n");
  EXPECT_TRUE(Has(events, "box\tSeries\tWhen is the other recipe, other.recipe, to be tried?"));
  EXPECT_TRUE(Has(events, "field\t1928\tBreak after\t2\t1"));
  const std::string command =
      "cd '" + folder_.path() +
      "' && " QUILLAGRAM_SERIES
      " --chain --chunk 2 --restart-when 'place>100' --restart-when 'height<0' --restart-with "
      "other.recipe --table ran.csv lines.recipe run1.xy run2.xy run3.xy run4.xy run5.xy run10.xy";
  ASSERT_EQ(std::system((command + " 2>/dev/null").c_str()), 0);
  EXPECT_EQ(Table(), ReadFile(folder_.file("ran.csv")));
  const SeriesTable table = ReadSeriesTable(folder_.file("lines.csv"));
  EXPECT_NEAR(std::stod(table.rows.at(5)[2]), 23, 0.03) << "by the other recipe";
  EXPECT_EQ(ReadSeriesTable(folder_.file("own.csv")).rows.at(5)[2], "400") << "removed";
}

// What cannot be is told in a box, and no table is written or touched.
TEST_F(SeriesCommand, TellsWhatIsWrong) {
  Lines events = Do("set \"Restart when\" \"Rwp 12\"\npress Run\npress Close\n");
  EXPECT_TRUE(Has(events, "box\tSeries\t\"Restart when\" takes "));
  events = Do("set \"Restart when\" \"b>12\"\nset Chain on\npress Run\npress Close\n");
  EXPECT_TRUE(Has(events, "box\tSeries\t--restart-when: the recipe has no column \"b\""));
  WriteRecipe("lines", "menu \"No such item\"\n");
  events = Do("press Run\nget nseries\npress Close\n");
  EXPECT_TRUE(Has(events, "box\tSeries\t" + folder_.file("lines.recipe, line 4: no menu item ")));
  EXPECT_FALSE(fs::exists(folder_.file("lines.csv")));
  WriteRecipe("lines", "");
  WriteFile(folder_.file("lines.csv"), "an,other\n1,2\n");
  events =
      Do("press Run\npress \"Table...\"\nfile lines.csv\nget seriestable\n"
         "press \"Files...\"\nfile\npress Close\n");
  EXPECT_TRUE(
      Has(events, "box\tSeries\t" + folder_.file("lines.csv") + " is no table of a series"));
  EXPECT_EQ(Table(), "an,other\n1,2\n");
}

// Nothing is run: rows, columns by their heads, and what a column stands along.
TEST_F(SeriesCommand, LooksAtATable) {
  WriteFile(folder_.file("old.csv"),
            "file,date,T,a,a esd,start,recipe,boxes,failed\n"
            "run1.xy,2026-01-01 10:00,300,5.4,0.1,chain,x#1,,\n"
            "run2.xy,2026-01-01 10:30,310,5.5,0.1,chain,x#1,,\n"
            "run9.xy,,320,,,chain,x#1,,went away\n");
  const Lines events =
      Do("press \"Table...\"\nfile old.csv\nget nseriesfile\nget seriesalong\n"
         // No. 1, file 2, date 3, T 4, a 5
         "set 1900 \"1,0\"\nset 1900 \"5,0\"\nget seriescolumn\nget seriesview\nset 1900 "
         "\"4,0\"\nset 1900 \"4,0\"\n"
         "get seriesalong\nset 1900 \"5,0\"\nget seriescolumn\nget viewxmax\nget viewymax\n"
         "set 1900 \"7,0\"\nset 1900 \"1,0\"\nget seriesalong\nset Along 1\nget seriesalong\n"
         "get viewxmax\nset Second 3\nget seriessecond\nset Second 0\nset Upward 77\n"
         "get seriescolumn\nset File 3\nset Map on\nget viewmode\npress Close\n");
  EXPECT_EQ(Values(events, "nseriesfile"), Lines{"3"});
  EXPECT_EQ(Values(events, "seriescolumn"), (Lines{"a", "a", "a esd"}));
  EXPECT_EQ(Values(events, "seriesalong"), (Lines{"T", "T", "", "date"}))
      << "T stands in front of the results";
  EXPECT_EQ(Values(events, "seriessecond"), Lines{"a"});
  EXPECT_EQ(Values(events, "seriesview"), Lines{"3"});
  const Lines ends = Values(events, "viewxmax"), tops = Values(events, "viewymax");
  ASSERT_EQ(ends.size(), 2u);
  EXPECT_NEAR(std::stod(ends[0]), 310.3, 0.01) << "a little beyond the highest T";
  EXPECT_NEAR(std::stod(ends[1]), 0.515, 0.001) << "hours since the first date";
  ASSERT_EQ(tops.size(), 1u);
  EXPECT_GT(std::stod(tops[0]), 5.6) << "with the error bar";
  EXPECT_TRUE(Has(events, "status\t3\tstart is no column of numbers"));
  EXPECT_TRUE(Has(events, "status\t3\trun9.xy: "));
  EXPECT_EQ(Values(events, "viewmode"), Lines{"5"});
}

// From file to file the part of the pattern that is shown stays, but not all of the first one.
TEST_F(SeriesCommand, KeepsThePartThatIsShown) {
  WriteFile(folder_.file("run4.xy"), "10 5\n11 6\n12 7\n");
  const Lines events =
      Do("set File 1\ndrag 22 0 24 1000\nset File 2\nget patternstem\nget viewxmin\nget viewxmax\n"
         "key home\nset File 5\nget patternstem\nget viewxmax\ndrag 22 0 24 1000\n"
         "set File 4\nget patternstem\nget viewxmax\npress Close\nundo\nget patternstem\n"
         "redo\nget patternstem\n");
  EXPECT_EQ(Values(events, "patternstem"), (Lines{"run2", "run5", "run4", "run5", "run4"}));
  const Lines ends = Values(events, "viewxmax");
  ASSERT_EQ(ends.size(), 3u);
  EXPECT_NEAR(std::stod(Values(events, "viewxmin").at(0)), 22, 0.3);
  EXPECT_NEAR(std::stod(ends[0]), 24, 0.3);
  EXPECT_GE(std::stod(ends[1]), 27.98) << "all of it";
  EXPECT_LT(std::stod(ends[2]), 15) << "nothing of it lies in that part";
}

// The map comes back as it was zoomed last, and what a click in it opens shows the same part.
TEST_F(SeriesCommand, AZoomedMapOpensThatPart) {
  const Lines events =
      Do("set Map on\ndrag 22 1 24 6\nset Waterfall on\nset Map on\nkey home\ndrag 23 2 25 5\n"
         "mouse left 24 4\nget patternstem\nget viewxmin\nget viewxmax\nset Map on\nget viewxmin\n"
         "press Close\n");
  EXPECT_EQ(Values(events, "patternstem"), Lines{"run4"});
  EXPECT_EQ(Values(events, "viewxmin"), (Lines{"23", "23"}));
  EXPECT_EQ(Values(events, "viewxmax"), Lines{"25"});
}

// A list with temperatures: columns are drawn along them, and the map has all of them at once.
TEST_F(SeriesCommand, StandsAlongWhatTheListTells) {
  WriteFile(folder_.file("heated.csv"),
            "T,file\n300,run1.xy\n310,run2.xy\n320,run3.xy\n330,run4.xy\n340,run5.xy\n");
  const Lines events =
      Do("press \"Files...\"\nfile heated.csv\npress Run\nget seriesalong\nget seriescolumn\n"
         "get viewxmax\nset Map on\nget viewymin\nget viewymax\nmouse left 24 329\n"
         "get patternstem\npress Close\n");
  EXPECT_EQ(Values(events, "seriesalong"), Lines{"T"});
  EXPECT_EQ(Values(events, "seriescolumn"), Lines{"place"});
  EXPECT_NEAR(std::stod(Values(events, "viewxmax").at(0)), 341.2, 0.01);
  EXPECT_NEAR(std::stod(Values(events, "viewymin").at(0)), 295, 0.01);
  EXPECT_NEAR(std::stod(Values(events, "viewymax").at(0)), 345, 0.01);
  EXPECT_EQ(Values(events, "patternstem"), Lines{"run4"});
  EXPECT_EQ(ReadSeriesTable(folder_.file("lines.csv")).columns[2], "T");
  // Half of the rows are enough for that.
  const std::string whole = Table();
  WriteFile(folder_.file("lines.csv"), whole.substr(0, whole.find("run3.xy")));
  EXPECT_EQ(Values(Do("press \"Files...\"\nfile heated.csv\nget nseries\nset Map on\n"
                      "get viewymax\npress Close\n"),
                   "viewymax"),
            Values(events, "viewymax"));
}

// Choices stay for the next time, but for the file where there are others; a column comes into view
// when it is chosen, what it stands along changes the view that is there.
TEST_F(SeriesCommand, KeepsItsChoices) {
  const Lines events =
      Do("press Run\nset Map on\nset Logarithm on\nset Along 2\nget seriesview\nset Upward 2\n"
         "get seriesview\nset File 4\nset Chain on\npress Close\n"
         "menu \"Multiple patterns/Series\"\nget seriesrow\npress \"Files...\"\n"
         "file run1.xy run2.xy run4.xy run5.xy run10.xy\nget seriesrow\nget seriesalong\n"
         "press Close\n");
  EXPECT_EQ(Values(events, "seriesview"), (Lines{"1", "3"}));
  EXPECT_TRUE(Has(events, "field\t1915\tLogarithm\ton\t1"));
  EXPECT_TRUE(Has(events, "field\t1907\tChain\ton\t1"));
  EXPECT_TRUE(Has(events, "field\t1922\tFile\t4\t1"));
  EXPECT_EQ(Values(events, "seriesrow"), (Lines{"4", "0"}));
  EXPECT_EQ(Values(events, "seriesalong"), (Lines{""})) << "no rows, no columns";
}

// A run of a window that has been killed does not go on by itself.
TEST_F(SeriesCommand, RunsForNobodyNoLonger) {
  constexpr int kMany = 4000;
  std::string list = "run1.xy\n";
  for (int k = 0; k < kMany; ++k) list += "none" + std::to_string(k) + "\n";
  WriteFile(folder_.file("many"), list);
  const std::string command = "cd '" + folder_.path() +
                              "' && { " QUILLAGRAM_SERIES
                              " --progress lines.recipe --list many 2>&1; echo $? > end; } | "
                              "head -n 1 > begin; while [ ! -s end ]; do sleep 0.05; done";
  ASSERT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(ReadFile(folder_.file("begin")).substr(0, 5), "done ");
  EXPECT_EQ(ReadFile(folder_.file("end")), "130\n");
  EXPECT_LT(ReadSeriesTable(folder_.file("lines.csv")).rows.size(), kMany);
}

}  // namespace
