// The program that does a recipe to many files, as a command.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <thread>

#include "series/seriestable.h"
#include "support/smallfiles.h"
#include "support/support.h"

namespace {

struct SeriesRun {
  int status = -1;   // -1 if a signal ended it
  std::string told;  // on standard error
};

// The command line behind the program's name, as a shell takes it, in `folder`.
SeriesRun RunSeries(const TempDir& folder, const std::string& words) {
  const std::string told = folder.file("told");
  const int status = std::system(("cd '" + folder.path() + "' && " + QUILLAGRAM_SERIES + " " +
                                  words + " >/dev/null 2>'" + told + "'")
                                     .c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(told)};
}

// A line over a flat background, with its top at `place`.
std::string PatternWithLine(double place, double height) {
  std::string text;
  for (int i = 0; i < 400; ++i) {
    const double x = 20 + 0.02 * i, t = (x - place) / 0.1;
    char line[64];
    std::snprintf(line, sizeof line, "%.2f %.0f\n", x, 50 + height / (1 + t * t));
    text += line;
  }
  return text;
}

constexpr const char* kRecipe =
    "open \"{file}\"\n"
    "menu \"Peak search/Auto peak search\"\n"
    "get npeaks as peaks\n"
    "get peaks(1:2,1) as \"two theta\" \"height, counts\"\n"
    "get npts(1)\n";

// Files of a folder, some of them no patterns, with names that need care, and their list. The place
// of the line in each that has one.
std::map<std::string, double> WriteFiles(const TempDir& folder, int count) {
  std::map<std::string, double> places;
  std::string list;
  for (int k = 0; k < count; ++k) {
    const std::string name = "run, \"" + std::to_string(k) + "\" \u00e4.xy";
    list += name + "\r\n\n";
    if (k % 7 == 3) continue;
    if (k % 7 == 5) {
      WriteFile(folder.file(name), "no pattern\n");
      continue;
    }
    places[name] = 22 + 0.1 * k;
    WriteFile(folder.file(name), PatternWithLine(places[name], 5000));
  }
  WriteFile(folder.file("list"), list);
  WriteFile(folder.file("lines.recipe"), kRecipe);
  return places;
}

TEST(Series, OneRowAFileInTheirOrderHoweverItIsDone) {
  const TempDir folder;
  constexpr int kCount = 30;
  const auto places = WriteFiles(folder, kCount);
  ASSERT_EQ(RunSeries(folder, "lines.recipe --list list").status, 0);
  const std::string whole = ReadFile(folder.file("lines.csv"));
  const SeriesTable table = ReadSeriesTable(folder.file("lines.csv"));
  EXPECT_EQ(table.columns,
            (std::vector<std::string>{"file", "date", "peaks", "two theta", "height, counts",
                                      "npts(1)", "recipe", "boxes", "failed"}));
  ASSERT_EQ(table.rows.size(), kCount);
  for (int k = 0; k < kCount; ++k) {
    const auto& row = table.rows[k];
    EXPECT_EQ(row[0], "run, \"" + std::to_string(k) + "\" \u00e4.xy");
    if (const auto place = places.find(row[0]); place != places.end()) {
      EXPECT_EQ(row[2], "1");
      EXPECT_NEAR(std::stod(row[3]), place->second, 0.03);
      EXPECT_NEAR(std::stod(row[4]), 5000, 200);
      EXPECT_EQ(row[5] + row[7] + row[8], "400");
    } else {
      EXPECT_EQ(row[2] + row[3] + row[4] + row[5], "");
      EXPECT_EQ(row[8].find(folder.path()), std::string::npos) << row[8];
      EXPECT_NE(row[8].find(k % 7 == 3 ? "No such file" : "no points in it"), std::string::npos)
          << row[8];
    }
  }

  for (const char* how : {"--jobs 1", "--jobs 5 --chunk 1", "--chunk 4"}) {
    std::remove(folder.file("other.csv").c_str());
    const std::string words = std::string("lines.recipe --list list --table other.csv ") + how;
    EXPECT_EQ(RunSeries(folder, words).status, 0) << how;
    EXPECT_EQ(ReadFile(folder.file("other.csv")), whole) << how;
  }
  // Parts, and nothing more to be done the second time.
  for (const char* part : {"3", "1", "2"})
    for (int again = 0; again < 2; ++again)
      EXPECT_EQ(RunSeries(folder, std::string("lines.recipe --list list --chunk 4 --part ") + part +
                                      "/3 --table part" + part)
                    .status,
                0);
  EXPECT_EQ(RunSeries(folder, "--join joined part2 part3 part1 --list list").status, 0);
  EXPECT_EQ(ReadFile(folder.file("joined")), whole);
  const SeriesRun lacking = RunSeries(folder, "--join joined part2 part3 --list list");
  EXPECT_EQ(lacking.status, 2);
  EXPECT_NE(lacking.told.find("8 of 30 files have no row in the parts, the first is run, \"0\""),
            std::string::npos)
      << lacking.told;
  EXPECT_EQ(RunSeries(folder, "--join joined part2 part2 part3 part1 --list list").status, 2);
  EXPECT_EQ(RunSeries(folder, "--join part2 part2 part3 part1 --list list").status, 2);
  // A part named in place of the table, and one whose last row is not whole.
  const std::string part2 = ReadFile(folder.file("part2"));
  EXPECT_EQ(RunSeries(folder, "--join part2 part3 part1").status, 2);
  EXPECT_EQ(ReadFile(folder.file("part2")), part2);
  WriteFile(folder.file("torn"), part2.substr(0, part2.size() - 5));
  EXPECT_NE(RunSeries(folder, "--join joined torn").told.find("middle of a row"),
            std::string::npos);
  WriteFile(folder.file("lines.recipe"), std::string("# other\n") + kRecipe);
  EXPECT_EQ(
      RunSeries(folder, "lines.recipe --list list --chunk 4 --part 2/3 --table other2").status, 0);
  const SeriesRun mixed = RunSeries(folder, "--join joined part1 other2 part3 --list list");
  EXPECT_EQ(mixed.status, 2);
  EXPECT_NE(mixed.told.find("another recipe"), std::string::npos) << mixed.told;
}

TEST(Series, PlacesStandForWhatTheListTells) {
  const TempDir folder;
  std::filesystem::create_directory(folder.file("in"));
  WriteFile(folder.file("in/a b.xy"), PatternWithLine(23, 1000));
  std::filesystem::copy(QUILLAGRAM_SOURCE "/examples/halite.udf", folder.file("c.udf"));
  WriteFile(folder.file("list.csv"), "mark,file\nfirst,in/a b.xy\n\"2 \"\"nd\"\"\",c.udf\n");
  WriteFile(folder.file("r"),
            "open \"{file}\"  # {no place}\nplot \"{folder}/{mark} {name}-{number}!.svg\"\nget "
            "npts(1)\n");
  const SeriesRun first = RunSeries(folder, "r --list list.csv --table t --progress --jobs 1");
  EXPECT_EQ(first.status, 0) << first.told;
  EXPECT_TRUE(first.told.ends_with("done 2 of 2, 0 failed\n")) << first.told;
  EXPECT_TRUE(std::filesystem::exists(folder.file("in/first a b-1!.svg")));
  EXPECT_TRUE(std::filesystem::exists(folder.file("2 \"nd\" c-2!.svg")));
  const SeriesTable table = ReadSeriesTable(folder.file("t"));
  ASSERT_EQ(table.rows.size(), 2u);
  EXPECT_EQ(table.rows[0][1] + table.rows[0][2], "first");
  EXPECT_EQ(table.rows[1][1], "2024-07-15 09:30:00");
  EXPECT_EQ(table.rows[1][2], "2 \"nd\"");
  // What is blank is no start value, and a recipe that leaves has not come to its end.
  WriteFile(folder.file("list.csv"), "file,T\nc.udf,5\nin/a b.xy,\n");
  WriteFile(folder.file("b"), "open {file}\nplot \"{T}.svg\"\nmenu \"File/Exit\"\nget npts(1)\n");
  EXPECT_EQ(RunSeries(folder, "b --list - --table left <list.csv").status, 0);
  const SeriesTable left = ReadSeriesTable(folder.file("left"));
  EXPECT_EQ(left.rows[0].back(), "the recipe leaves the program before its end");
  EXPECT_EQ(left.rows[1].back(), "{T} is blank in the list");
  WriteFile(folder.file("list.csv"), "mark,file\nfirst,in/a b.xy\n2,c.udf\n");
  // The part of a list counts its own rows.
  const SeriesRun part =
      RunSeries(folder, "r --list list.csv --table p --progress --part 2/2 --chunk 1");
  EXPECT_TRUE(part.told.ends_with("done 1 of 1, 0 failed\n")) << part.told;
  const SeriesRun again = RunSeries(folder, "r --list list.csv --table p --part 2/2 --chunk 1");
  EXPECT_TRUE(again.told.starts_with("1 of 1 files")) << again.told;
}

TEST(Series, GoesOnWhereItWasKilled) {
  const TempDir folder;
  WriteFiles(folder, 60);
  ASSERT_EQ(RunSeries(folder, "lines.recipe --list list").status, 0);
  const std::string whole = ReadFile(folder.file("lines.csv"));
  std::mt19937 random(5);
  for (int kill = 0; kill < 4; ++kill) {
    const std::string pause = std::to_string(random() % 40 / 1000.0 + 0.01);
    std::system(("cd '" + folder.path() + "' && timeout -s KILL " + pause + " " +
                 QUILLAGRAM_SERIES " lines.recipe --list list --table killed 2>/dev/null")
                    .c_str());
    const std::string sofar = ReadFile(folder.file("killed"));
    EXPECT_TRUE(whole.starts_with(sofar)) << sofar;
  }
  // A row that a power cut has left half-way.
  const std::string half = whole.substr(0, whole.size() * 2 / 3 + 3);
  WriteFile(folder.file("killed"), half);
  ASSERT_FALSE(half.ends_with('\n'));
  EXPECT_EQ(RunSeries(folder, "lines.recipe --list list --table killed").status, 0);
  EXPECT_EQ(ReadFile(folder.file("killed")), whole);
  // More files at the end of the list are done, those in the table are not looked at.
  std::remove(folder.file("run, \"0\" \u00e4.xy").c_str());
  WriteFile(folder.file("list"), ReadFile(folder.file("list")) + "new.xy");
  EXPECT_EQ(RunSeries(folder, "lines.recipe --list list --table killed").status, 0);
  EXPECT_TRUE(ReadFile(folder.file("killed")).starts_with(whole + "new.xy,"));
}

TEST(Series, RowsThatFailedAreDoneAgain) {
  const TempDir folder;
  WriteFiles(folder, 30);
  ASSERT_EQ(RunSeries(folder, "lines.recipe --list list").status, 0);
  const std::string before = ReadFile(folder.file("lines.csv"));
  // Half of those that failed can be read now; what did not fail is not looked at.
  WriteFile(folder.file("run, \"0\" \u00e4.xy"), "no pattern\n");
  for (const int k : {10, 17, 24})
    WriteFile(folder.file("run, \"" + std::to_string(k) + "\" \u00e4.xy"),
              PatternWithLine(24, 900));
  {
    const SmallFiles small(before.size() / 2);
    EXPECT_EQ(RunSeries(folder, "lines.recipe --list list --again").status, 1);
  }
  EXPECT_LT(ReadFile(folder.file("lines.csv")).size(), before.size());
  for (int again = 0; again < 2; ++again) {
    ASSERT_EQ(RunSeries(folder, "lines.recipe --list list --again --jobs 3").status, 0);
    const SeriesTable table = ReadSeriesTable(folder.file("lines.csv"));
    ASSERT_EQ(table.rows.size(), 30u);
    for (int k = 0; k < 30; ++k) EXPECT_EQ(table.rows[k].back().empty(), k != 3 && k % 7 != 5) << k;
    EXPECT_FALSE(std::filesystem::exists(folder.file("lines.csv.before")));
  }
  WriteFile(folder.file("lines.csv.before"), "a file of its own\n");
  EXPECT_EQ(RunSeries(folder, "lines.recipe --list list --again").status, 2);
  EXPECT_EQ(ReadFile(folder.file("lines.csv.before")), "a file of its own\n");
}

TEST(Series, ATableHasOneRunAtATimeAndAFullDiskStopsIt) {
  const TempDir folder;
  WriteFiles(folder, 20);
  ASSERT_EQ(RunSeries(folder, "lines.recipe --list list").status, 0);
  const std::string whole = ReadFile(folder.file("lines.csv"));
  const int other = open(folder.file("lines.csv").c_str(), O_RDWR);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  const SeriesRun second = RunSeries(folder, "lines.recipe --list list");
  close(other);
  EXPECT_EQ(second.status, 2);
  EXPECT_NE(second.told.find("another run is writing it"), std::string::npos);

  SeriesRun full;
  {
    const SmallFiles small(whole.size() / 2);
    full = RunSeries(folder, "lines.recipe --list list --table full --chunk 1");
  }
  EXPECT_EQ(full.status, 1);
  EXPECT_NE(full.told.find("File too large"), std::string::npos) << full.told;
  const std::string sofar = ReadFile(folder.file("full"));
  EXPECT_TRUE(whole.starts_with(sofar) && sofar.ends_with('\n')) << sofar;
  EXPECT_EQ(RunSeries(folder, "lines.recipe --list list --table full").status, 0);
  EXPECT_EQ(ReadFile(folder.file("full")), whole);
}

TEST(Series, WhatCannotBeIsToldBeforeTheFirstFile) {
  const TempDir folder;
  WriteFile(folder.file("a.xy"), PatternWithLine(23, 1000));
  WriteFile(folder.file("b.xy"), "no pattern");
  WriteFile(folder.file("empty"), "\n \n");
  WriteFile(folder.file("twice"), "a.xy\nb.xy\na.xy\n");
  WriteFile(folder.file("marked.csv"), "file,field\na.xy,5\n");
  WriteFile(folder.file("headless.csv"), "File;T\na.xy;5\n");
  WriteFile(folder.file("good"), "open {file}\nget npeaks\n");
  const struct {
    const char* recipe;
    const char* words;
    const char* told;
  } cases[] = {
      {"open {file}\nget npeak\n", "a.xy", "line 2: no field npeak"},
      {"open {file}\n\nmenu 99999\n", "a.xy", "line 3: no menu item 99999"},
      {"open {file}\njump\n", "a.xy", "line 2: unknown line jump"},
      {"open \"{file}\n", "a.xy", "line 1: quote is not closed"},
      {"open {file}\nplot a.svg\n", "a.xy", "line 2: every file would write the same picture"},
      {"open {file}\nplot {nam}.svg\n", "a.xy", "line 2: {nam} stands for nothing"},
      {"open {file}\nplot {field}.svg\n", "a.xy", "line 2: {field} stands for nothing"},
      {"open {file}\nget cell(1:3) as a b\n", "a.xy", "3 values for 2 names"},
      {"open {file}\nget npeaks as date\n", "a.xy", "two columns \"date\""},
      {"open {file}\nget npeaks as field\n", "--list marked.csv", "two columns \"field\""},
      {"open a.xy\nget npeaks\n", "a.xy", "no line opens \"{file}\""},
      {"open {file}\nmenu 40111\nset 77777 1\n", "b.xy a.xy", "when it was tried on a.xy"},
      {"open {file}\nget npeaks\n", "--list empty", "names no file"},
      {"open {file}\nget npeaks\n", "--list nowhere", "No such file"},
      {"open {file}\nget npeaks\n", "--list twice", "a.xy stands twice"},
      {"open {file}\nget npeaks\n", "--list .", "no regular file"},
      {"open {file}\nget npeaks\n", "--list headless.csv", "no column \"file\""},
      {"open {file}\nget npeaks\n", "--list twice --list empty", "one list, please"},
      {"open {file}\nget npeaks as \"\"\n", "a.xy", "a column without a name"},
      {"open {file}\nget npeaks\n", "", "which files?"},
      {"open {file}\nget npeaks\n", "a.xy --part 4/3", "from 1 to 3"},
      {"open {file}\nget npeaks\n", "a.xy --chain --restart-when Rp", "and a number"},
      {"open {file}\nget npeaks\n", "a.xy --chain --restart-when 'Rp>3'", "no column \"Rp\""},
      {"open {file}\nget npts(1)\n", "a.xy --restart-when 'npts(1)<3' --restart-with good",
       "other columns"},
      {"open {file}\nget npeaks\n", "a.xy --table nowhere/t", "cannot write"},
      {"open {file}\nget npeaks\n", "a.xy --table good", "no column \"file\""},
  };
  for (const auto& [recipe, words, told] : cases) {
    WriteFile(folder.file("r"), recipe);
    const SeriesRun run = RunSeries(folder, std::string("r --jobs 1 ") + words);
    EXPECT_EQ(run.status, 2) << recipe << words;
    EXPECT_NE(run.told.find(told), std::string::npos) << recipe << words << '\n' << run.told;
    EXPECT_EQ(ReadFile(folder.file("r.csv")), "") << recipe << words;
  }
  // A table of another recipe, or of other files.
  ASSERT_EQ(RunSeries(folder, "good a.xy --table t").status, 0);
  const std::string before = ReadFile(folder.file("t"));
  WriteFile(folder.file("good"), "open {file}\nmenu 40105\nget npeaks\n");
  for (const char* words : {"good a.xy --table t", "good b.xy a.xy --table t"})
    EXPECT_EQ(RunSeries(folder, words).status, 3) << words;
  EXPECT_EQ(ReadFile(folder.file("t")), before);
}

TEST(Series, AFileThatTakesTooLongIsARow) {
  const TempDir folder;
  WriteFile(folder.file("a.xy"), PatternWithLine(23, 1000));
  std::string recipe = "open {file}\nget npts(1) as points\n";
  for (int k = 0; k < 100000; ++k) recipe += "menu 40105\n";
  WriteFile(folder.file("long"), recipe + "get npeaks as peaks\n");
  ASSERT_EQ(RunSeries(folder, "long a.xy --limit 1").status, 0);
  const SeriesTable table = ReadSeriesTable(folder.file("long.csv"));
  ASSERT_EQ(table.rows.size(), 1u);
  EXPECT_EQ(table.rows[0].back(), "stopped after 1 s");
}

// ---- Processes that end ----

// The first child of a process; 0 if it has none.
pid_t ChildOf(pid_t parent) {
  const std::string id = std::to_string(parent);
  return std::atoi(ReadFile("/proc/" + id + "/task/" + id + "/children").c_str());
}

constexpr int kHeldRow = 6;
constexpr const char* kHeldPicture = "7.svg";

// Starts a series with one job, whose held row writes a picture that nobody reads, and sends a
// signal to the process of that file, or to that of its chunk.
int RunAndSignal(const TempDir& folder, int signal, bool tochunk) {
  const pid_t run = fork();
  if (run == 0) {
    if (chdir(folder.path().c_str()) != 0 || !std::freopen("/dev/null", "w", stderr)) _exit(9);
    execl(QUILLAGRAM_SERIES, QUILLAGRAM_SERIES, "held", "--list", "list", "--jobs", "1", "--chunk",
          "10", "--table", "hit", nullptr);
    _exit(9);
  }
  // The rows before it and the head are in the table: a process that is there now is its own.
  bool sent = false;
  for (int pause = 0; pause < 30000 && !sent; ++pause) {
    const std::string sofar = ReadFile(folder.file("hit"));
    const pid_t chunk = std::ranges::count(sofar, '\n') == 1 + kHeldRow ? ChildOf(run) : 0;
    const pid_t file = chunk ? ChildOf(chunk) : 0;
    sent = file && kill(tochunk ? chunk : file, signal) == 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  EXPECT_TRUE(sent);
  // A reader lets the next try through.
  const int reader = open(folder.file(kHeldPicture).c_str(), O_RDONLY | O_NONBLOCK);
  int status = 0;
  waitpid(run, &status, 0);
  close(reader);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// What is killed from outside is done again; what crashes is a row, and the others stay as they
// are.
TEST(Series, AProcessThatEndsIsDoneAgainOrARow) {
  const TempDir folder;
  WriteFiles(folder, 10);
  WriteFile(folder.file("held"), std::string(kRecipe) + "plot {number}.svg\n");
  ASSERT_EQ(RunSeries(folder, "held --list list").status, 0);
  const SeriesTable whole = ReadSeriesTable(folder.file("held.csv"));
  std::filesystem::remove(folder.file(kHeldPicture));
  ASSERT_EQ(mkfifo(folder.file(kHeldPicture).c_str(), 0600), 0);
  for (const auto& [signal, tochunk] :
       {std::pair{SIGKILL, false}, {SIGKILL, true}, {SIGABRT, false}, {SIGABRT, true}}) {
    std::remove(folder.file("hit").c_str());
    ASSERT_EQ(RunAndSignal(folder, signal, tochunk), 0);
    const SeriesTable table = ReadSeriesTable(folder.file("hit"));
    ASSERT_EQ(table.rows.size(), whole.rows.size());
    int others = 0;
    for (std::size_t k = 0; k < whole.rows.size(); ++k) {
      EXPECT_EQ(table.rows[k][0], whole.rows[k][0]);
      if (table.rows[k] == whole.rows[k]) continue;
      ++others;
      EXPECT_NE(table.rows[k].back().find("signal 6"), std::string::npos) << table.rows[k].back();
    }
    EXPECT_EQ(others, signal == SIGABRT ? 1 : 0) << signal << tochunk;
  }
}

// ---- Chains ----

// Lines of a cubic cell of edge `a` for copper radiation.
std::string CubicPattern(double a, unsigned seed) {
  constexpr double kWave = 1.54056, kDegree = 0.017453292519943295;
  std::mt19937 random(seed);
  std::vector<double> places;
  for (int n : {3, 4, 8, 11, 12, 16, 19, 20})
    places.push_back(2 * std::asin(kWave / 2 / a * std::sqrt(n)) / kDegree);
  std::string text;
  for (int i = 0; i < 2000; ++i) {
    const double x = 20 + 0.04 * i;
    double y = 100;
    for (const double place : places) y += 3000 / (1 + std::pow((x - place) / 0.1, 2));
    char line[64];
    std::snprintf(line, sizeof line, "%.2f %.0f\n", x,
                  std::normal_distribution<>(y, std::sqrt(y))(random));
    text += line;
  }
  return text;
}

// One cycle from an edge of 5.40: a chain comes nearer with each file.
std::string CubicRecipe(double edge, int cycles) {
  return "open \"{file}\"\n"
         "menu \"Peak fit/General peak fit\"\n"
         "press \"Laue class\"\nset \"m3m\" on\nset \"F\" on\npress OK\n"
         "set 1401 " +
         std::to_string(edge) +
         "\nset 1411 on\n"
         "set 1423 0.04\nset 1426 0.04\n"
         "set 1484 " +
         std::to_string(cycles) +
         "\n"
         "press Refine\n"
         "get cell(1) as a\nget cellesd(1) as \"a esd\"\nget fitrwp as rwp\n";
}

TEST(Series, WhatWasDoneToOnePatternIsDoneToOthers) {
  const TempDir folder;
  for (const char* name : {"a", "b"})
    WriteFile(folder.file(std::string(name) + ".xy"), CubicPattern(5.4, *name));
  const std::string work = CubicRecipe(5.402, 20);
  const std::string behind = work.substr(work.find('\n'));
  const ReplayRun run = RunReplay(
      "open b.xy\nopen a.xy" + behind + "menu 40279\nfile saved.recipe\nopen b.xy" + behind,
      folder.path());
  ASSERT_EQ(RunSeries(folder, "saved.recipe b.xy a.xy").status, 0);
  const SeriesTable table = ReadSeriesTable(folder.file("saved.csv"));
  std::vector<std::string> edges;
  for (const std::string& line : run.lines)
    if (line.starts_with("value\ta\t")) edges.push_back(line.substr(8));
  ASSERT_EQ(edges.size(), 2u);
  ASSERT_EQ(table.rows.size(), 2u);
  EXPECT_EQ(table.rows[0][table.ColumnOf("a")], edges[1]);
  EXPECT_EQ(table.rows[1][table.ColumnOf("a")], edges[0]);
  EXPECT_NE(edges[0], edges[1]);
}

TEST(Series, AChainGoesOnFromTheLastGoodFile) {
  const TempDir folder;
  constexpr std::array kEdges{5.400, 5.402, 5.404, 0.0, 5.408, 5.410, 5.600, 5.602};
  std::string list = "file,truth\n";
  for (std::size_t k = 0; k < kEdges.size(); ++k) {
    const std::string name = std::to_string(k) + ".xy";
    WriteFile(folder.file(name), kEdges[k] > 0 ? CubicPattern(kEdges[k], k) : "nothing");
    list += name + "," + std::to_string(kEdges[k]) + "\n";
  }
  WriteFile(folder.file("list.csv"), list);
  WriteFile(folder.file("cold"), CubicRecipe(5.402, 20));
  WriteFile(folder.file("hot"), CubicRecipe(5.601, 20));
  const std::string words =
      "cold --restart-with hot --list list.csv --chain --restart-when 'a<5' --restart-when "
      "'Rwp>20' --table t";
  const SeriesRun run = RunSeries(folder, words);
  ASSERT_EQ(run.status, 0) << run.told;
  const SeriesTable table = ReadSeriesTable(folder.file("t"));
  const int truth = table.ColumnOf("truth"), a = table.ColumnOf("a"),
            start = table.ColumnOf(kStartColumn), recipe = table.ColumnOf(kRecipeColumn);
  const std::vector<std::string> starts{"recipe", "chain", "chain",   "chain",
                                        "chain",  "chain", "restart", "chain"};
  ASSERT_EQ(table.rows.size(), kEdges.size());
  for (std::size_t k = 0; k < kEdges.size(); ++k) {
    const auto& row = table.rows[k];
    EXPECT_EQ(row[start], starts[k]) << k;
    EXPECT_TRUE(row[recipe].starts_with(k < 6 ? "cold#" : "hot#")) << row[recipe];
    if (kEdges[k] == 0)
      EXPECT_NE(row.back(), "");
    else
      EXPECT_NEAR(std::stod(row[a]), std::stod(row[truth]), 0.0005) << k;
  }
  // A chain that is gone on with in its middle is the same.
  const std::string whole = ReadFile(folder.file("t"));
  std::size_t cut = 0;
  for (int line = 0; line < 4; ++line) cut = whole.find('\n', cut) + 1;
  WriteFile(folder.file("t"), whole.substr(0, cut));
  ASSERT_EQ(RunSeries(folder, words).status, 0);
  EXPECT_EQ(ReadFile(folder.file("t")), whole);
  // So is one whose missing file has come: the files behind it begin with what it gives.
  WriteFile(folder.file("3.xy"), CubicPattern(5.406, 3));
  ASSERT_EQ(RunSeries(folder, words + " --again").status, 0);
  ASSERT_EQ(RunSeries(folder, words + " --table anew").status, 0);
  EXPECT_EQ(ReadFile(folder.file("t")), ReadFile(folder.file("anew")));
}

}  // namespace
