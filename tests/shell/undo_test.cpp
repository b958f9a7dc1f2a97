// A long session undone to its start and redone to its end, bit for bit, and done again from its
// history.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "plot/plot.h"
#include "shell/history.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "support/support.h"
#include "toolkit/displaylist.h"
#include "toolkit/frontend.h"
#include "workspace/menuids.h"

namespace {

// Three peaks on a slope, with a grain that no command makes even.
std::string PatternText(double shift) {
  std::string text;
  for (int i = 0; i <= 2000; ++i) {
    const double x = 20 + 0.02 * i;
    double y = 200 - x + 10 * std::sin(977.0 * i);
    for (const double centre : {28.0, 40.0, 51.0}) {
      const double d = (x - centre - shift) / 0.12;
      y += 900 * std::exp(-2.77 * d * d);
    }
    text += std::to_string(x) + " " + std::to_string(std::lround(y)) + "\n";
  }
  return text;
}

// One command each; the lines of a step are parted by bars. Zooms and pages are not undone by
// themselves.
const char* const kSession[] = {
    "open \"first pattern.xy\"",
    "menu 40061|set 1033 5|press OK",
    "drag 27 100 30 900",
    "menu 40100",
    "menu 40131",
    "menu 40127",
    "key down",
    "menu 40128",
    "menu 40126",
    "menu 40130",
    "menu 40101",
    "menu 40031",
    "menu 40052|set 1062 on|set 1054 on|press OK",
    "menu 40064|set 1063 on|press OK",
    "menu 40054|set 1035 0.7|press OK",
    "menu 40055|set 1036 0.3|press OK",
    "menu 40056|set 1020 0.013|set 1021 on|press OK",
    "menu 40059|set 1043 12.5|press OK",
    "menu 40060|set 1032 1.7|press OK",
    "menu 40062|set 1049 3|press OK",
    "menu 40063|set 1048 4|press OK",
    "menu 40065",
    "menu 40077",
    "menu 40078|press OK",
    "menu 40089",
    "menu 40088|mouse left 22 300|mouse left 35 200|mouse left 58 100|press Fit",
    "menu 40072|set 1093 0.9|press OK",
    "menu 40074|press Cancel",
    "menu 40105",
    "menu 40106|mouse left 45 200|mouse right 28.02 300|press OK",
    "menu 40111|set 1144 6|press 1145",
    "drag 39 0 41 3000",
    "menu 40020|press OK",
    "menu 40096",
    "menu 40099",
    "menu 40029",
    "key up",
    "menu 40038|set 1011 \"Tone \"\"A\"\"\"|press OK",
    "menu 40124|set 1161 1.5418|press OK",
    "menu 40058|set 1039 0.7093|set 1042 0.02|press OK",
    "menu 40057|set 1022 12|set 1023 24|press OK",
    "open \"zw\xc3\xb6lf.xy\"",
    "menu 40105",
    "menu 40095",
    "menu 40061|set 1033 9|press OK",
};

bool OnlyZooms(const std::string& step) {
  return step.starts_with("drag ") || step.starts_with("key ");
}

struct State {
  Snapshot snapshot;
  std::vector<std::pair<bool, bool>> menu;  // enabled and checked
  std::vector<DrawPoint> drawing;
  std::filesystem::path directory;

  bool operator==(const State&) const = default;
};

State Now(const Snapshot* before) {
  State state{TakeSnapshot(before), {}, ScreenList().points, std::filesystem::current_path()};
  for (const MenuItem& item : MenuItems())
    if (item.row.parent != MenuPopupEdit) state.menu.emplace_back(item.enabled, item.checked);
  return state;
}

void Play(const std::string& lines) {
  Answer(lines + "\n");
  RunProgram();
}

class Session : public testing::Test {
 protected:
  Session() {
    FreshWorkspace();
    ws.startdir = dir_.path();
    FollowPattern();
    WriteFile(dir_.file("first pattern.xy"), PatternText(0));
    WriteFile(dir_.file("zw\xc3\xb6lf.xy"), PatternText(0.3));
  }
  // The lines of a step, its files where they are.
  std::string LinesOf(std::string step) const {
    std::ranges::replace(step, '|', '\n');
    if (step.starts_with("open \"")) step.insert(6, dir_.path() + "/");
    return step + "\n";
  }
  TempDir dir_;
};

TEST_F(Session, UndoneToTheStartAndRedoneToTheEnd) {
  struct Done {
    const char* step;
    State before;
    std::string title;
  };
  std::vector<Done> commands;
  for (const char* step : kSession) {
    const State before = Now(nullptr);
    Play(LinesOf(step));
    if (!OnlyZooms(step)) commands.push_back({step, before, UndoTitle()});
  }
  ASSERT_GT(commands.size(), 30u);
  const State end = Now(nullptr);
  const auto same = [](const State& wanted) { return Now(&wanted.snapshot) == wanted; };
  for (auto done = commands.rbegin(); done != commands.rend(); ++done) {
    ASSERT_EQ(UndoTitle(), done->title) << done->step;
    Play("undo\n");
    ASSERT_TRUE(same(done->before)) << done->step;
  }
  EXPECT_EQ(UndoTitle(), "");
  EXPECT_EQ(ws.viewmode, 0);
  for (std::size_t k = 0; k < commands.size(); ++k) {
    ASSERT_EQ(RedoTitle(), commands[k].title);
    Play("redo\n");
    ASSERT_TRUE(same(k + 1 < commands.size() ? commands[k + 1].before : end)) << commands[k].step;
  }
  EXPECT_EQ(RedoTitle(), "");
}

// The state at the end, as a transcript tells it: every field that is no path of the program's own.
std::vector<std::string> Told(const std::string& transcript, const std::string& directory) {
  std::string gets;
  for (const char* field : {"npts",           "xval(1,1,1:2001)", "xval(1:3,1:4,1:50)",
                            "yval(1,1:2001)", "yval(2:4,1:2001)", "peaks",
                            "npeaks",         "manualbg",         "plotmask",
                            "viewmode",       "viewxmin",         "viewxmax",
                            "viewymin",       "viewymax",         "plotxmin",
                            "plotxmax",       "bandx1",           "bandy2",
                            "xaxismode",      "yaxismode",        "xgrid",
                            "wavelen",        "scanwave",         "spposition",
                            "sparea",         "spsize",           "chebycoef",
                            "sampleid",       "patternpath",      "smoothwindow",
                            "pksigma",        "savestart",        "bgscale"})
    gets += "get " + std::string(field) + "\n";
  const ReplayRun run = RunReplay(transcript + gets, directory);
  EXPECT_EQ(run.status, 0);
  std::vector<std::string> values;
  for (const std::string& line : run.lines)
    if (line.starts_with("value\t")) values.push_back(line);
  return values;
}

TEST_F(Session, DoneAgainFromItsHistory) {
  std::string transcript;
  for (const char* step : kSession) transcript += LinesOf(step);
  // What was cancelled or taken back is no less part of the way, a Cancel is not.
  transcript += "undo\nundo\nredo\nmenu 40061\nset 1033 77\npress Cancel\nopen none.xy\n";
  const std::string history = dir_.file("a \"b\" c.replay");
  const std::string save = "menu 40205\nfile \"" + dir_.path() + "/a \"\"b\"\" c.replay\"\n";
  const std::vector<std::string> first = Told(transcript + save, dir_.path());
  const std::vector<std::string> again = Told(ReadFile(history), "/");
  ASSERT_GT(first.size(), 30u);
  EXPECT_EQ(first, again);
  EXPECT_EQ(ReadFile(history).find("\"77\""), std::string::npos);
}

// What a failed or cancelled command leaves behind by rule, a key in front of the first pick, a
// stopped fit, and a change of the laboratory's address are part of the history too.
TEST_F(Session, DoneAgainWithItsAccidents) {
  const std::string transcript =
      LinesOf(kSession[0]) +
      "menu 40003\nset 1103 on\npress 1\nfile\n"
      "menu 40105\nmenu 40094\nfile /nowhere/x.pks\n"
      "menu 40106\nkey left\nmouse left 30 300\npress OK\n"
      "menu 40018\nset 1113 on\npress OK\n"
      "menu 40088\nmouse left 22 200\nmouse left 33 180\nmouse left 47 150\nmouse left 58 150\n"
      "stop 1\npress Fit\nmouse left 35 180\npress Fit\n"
      "menu 40038\nset 1012 Lab\npress OK\n";
  const std::string gets =
      "get saveformat\nget peakfilename\nget peaks\nget yval(2,1:2001)\nget chebyorder\n"
      "get infodepartment\nget nmanualbg\n";
  const std::string save = "menu 40205\nfile \"" + dir_.file("h.replay") + "\"\n";
  const ReplayRun first = RunReplay(transcript + save + gets, dir_.path());
  const ReplayRun again = RunReplay(ReadFile(dir_.file("h.replay")) + gets, "/");
  EXPECT_EQ(first.status + again.status, 0) << again.lines.back();
  ASSERT_GT(first.lines.size(), 7u);
  EXPECT_TRUE(std::equal(first.lines.end() - 7, first.lines.end(), again.lines.end() - 7));
  EXPECT_EQ(again.lines[again.lines.size() - 2], "value\tinfodepartment\tLab");
  EXPECT_EQ(again.lines[again.lines.size() - 7], "value\tsaveformat\t1");
}

// Fifty steps back, no more; a new command ends what could be redone.
TEST_F(Session, KeepsFiftyStates) {
  Play(LinesOf(kSession[0]));
  for (int k = 0; k < 60; ++k) Play("menu 40100\n");
  int steps = 0;
  for (; Undo(); ++steps) {
  }
  EXPECT_EQ(steps, 50);
  EXPECT_TRUE(Redo());
  Play("menu 40101\n");
  EXPECT_FALSE(Redo());
}

}  // namespace
