// A long session undone to its start and redone to its end, bit for bit, and done again from its
// history.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "patternfiles/patternfiles.h"
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

// The commands of the session, each with the lines that belong to it.
std::vector<std::string> SessionSteps() {
  std::vector<std::string> steps;
  for (const std::string& line :
       LinesOf(ReadFile(QUILLAGRAM_SOURCE "/tests/transcripts/session.replay"))) {
    if (line.starts_with('#')) continue;
    if (!line.starts_with(' ')) steps.emplace_back();
    steps.back() += line + '\n';
  }
  return steps;
}

// What a user can step back through, whatever the pattern is.
bool IsStep(const MenuItem& item) {
  const int id = item.row.id;
  return item.row.parent == MenuPopupEdit || id == MenuZoomBack || id == MenuZoomForward;
}

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
    if (!IsStep(item)) state.menu.emplace_back(item.enabled, item.checked);
  return state;
}

void Play(const std::string& lines) {
  Answer(lines);
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
  // The steps with their files where they are.
  std::vector<std::string> Steps() const {
    std::vector<std::string> steps = SessionSteps();
    for (std::string& step : steps)
      if (step.starts_with("open \"")) step.insert(6, dir_.path() + "/");
    return steps;
  }
  // What a session and its history tell with the gets of so many lines, which has to be the same.
  std::vector<std::string> ExpectSameAgain(const std::string& transcript, const std::string& gets,
                                           std::ptrdiff_t count) const {
    const std::string history = dir_.file("h.replay");
    const std::string save = "menu 40205\nfile \"" + history + "\"\n";
    std::vector<std::string> told[2];
    for (const bool again : {false, true}) {
      const ReplayRun run = again ? RunReplay(ReadFile(history) + gets, "/")
                                  : RunReplay(transcript + save + gets, dir_.path());
      EXPECT_EQ(run.status, 0) << run.lines.back();
      told[again].assign(run.lines.end() - std::min(count, std::ssize(run.lines)), run.lines.end());
    }
    EXPECT_EQ(told[0], told[1]);
    EXPECT_EQ(std::ssize(told[1]), count);
    told[1].resize(count);
    return told[1];
  }
  TempDir dir_;
};

TEST_F(Session, UndoneToTheStartAndRedoneToTheEnd) {
  struct Done {
    std::string step;
    State before;
    std::string title;
  };
  std::vector<Done> commands;
  for (const std::string& step : Steps()) {
    const State before = Now(nullptr);
    Play(step);
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
                            "viewmode",       "viewxmin",         "viewymax",
                            "bandx1",         "xaxismode",        "wavelen",
                            "spsize",         "chebycoef",        "sampleid",
                            "patternpath",    "smoothwindow",     "savestart"})
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
  for (const std::string& step : Steps()) transcript += step;
  // What was cancelled or taken back is no less part of the way, a Cancel is not.
  transcript += "undo\nundo\nredo\nmenu 40061\nset 1033 77\npress Cancel\nopen none.xy\n";
  const std::string history = dir_.file("a \"b\" c.replay");
  const std::string save = "menu 40205\nfile \"" + dir_.path() + "/a \"\"b\"\" c.replay\"\n";
  const std::vector<std::string> first = Told(transcript + save, dir_.path());
  const std::vector<std::string> again = Told(ReadFile(history), "/");
  ASSERT_EQ(first.size(), 21u);
  EXPECT_EQ(first, again);
  EXPECT_EQ(ReadFile(history).find("\"77\""), std::string::npos);
}

// What a failed or cancelled command leaves behind by rule, a key in front of the first pick, a
// stopped fit, and a change of the laboratory's address are part of the history too.
TEST_F(Session, DoneAgainWithItsAccidents) {
  const std::string transcript =
      Steps()[0] +
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
  const std::vector<std::string> told = ExpectSameAgain(transcript, gets, 7);
  EXPECT_EQ(told[5], "value\tinfodepartment\tLab");
  EXPECT_EQ(told[0], "value\tsaveformat\t1");
}

// Zooms by all means, with and without a dialog that is cancelled, closed or not worth a line.
TEST_F(Session, ZoomsAreDoneAgainAndGoneBackThrough) {
  const std::string transcript =
      Steps()[0] +
      "wheel 333.333 500 1.7\nband 300 300 escape\nwheel 301 500 0.3\npan 1 1 escape\npan 500 500 "
      "471.123 503\nband 300 100 300 100\n"
      "menu 40088\nwheel 300 300 1\nclick left 300 300\nband 200 200 800 900\n"
      "click left 400 350\nclick right 400 350\nclick left 600 500\ndoubleclick 600 500\n"
      "key backspace\nkey escape\nwheel 400 500 2\nmenu 40209\nkey shift+backspace\n"
      "menu 40106\nwheel 50 400 1\nclick left 410 500\nkey escape\nkey up\nkey backspace\n"
      "menu 40107\nset 1483 on\npress Refine\nmenu 40206\nwheel 400 500 1.1\nkey escape\nwheel 500 "
      "300 1\n"
      "menu 40209\n";
  const std::string gets =
      "get viewxmin\nget viewxmax\nget viewymin\nget viewymax\nget npeaks\nget peaks(1,1:3)\n"
      "get nmanualbg\nitem 40209\nitem 40210\nkey backspace\nget viewxmin\n";
  ExpectSameAgain(transcript, gets, 10);
}

// Of what was entered again the last counts, a number as it was typed; places have nine digits.
TEST_F(Session, HistoryTellsWhatWasEntered) {
  Play(Steps()[0] +
       "menu 40056\nset 1020 5\nset 1020 0,08\nset 1021 on\nset 1021 off\nset 1021 on\npress OK\n"
       "menu 40038\nset 1011 \"a \"\"b\"\" #c\"\npress OK\nmenu 40064\nset 1063 on\npress OK\n"
       "menu 40088\nclick left 223.456789 400.1\nclick right 9e2 350\npress OK\n"
       "band 200 200.5 600.25 9e2\nkey up\nmenu 40078\npress Cancel\n");
  const std::string path = dir_.file("done.replay");
  WriteHistory(path);
  std::vector<std::string> told;
  for (const std::string& line : LinesOf(ReadFile(path)))
    if (!line.starts_with('#')) told.push_back(line.substr(0, line.find("  # ")));
  EXPECT_EQ(told,
            (std::vector<std::string>{
                "open \"" + dir_.file("first pattern.xy") + "\"", "menu 40056", "set 1020 \"0,08\"",
                "set 1021 \"on\"", "press 1", "menu 40038", "set 1011 \"a \"\"b\"\" #c\"",
                "press 1", "menu 40064", "set 1063 \"on\"", "press 1", "menu 40088",
                "click left 223.456787 400.100006", "click right 900 350", "press 1",
                "band 200 200.5 600.25 900", "key up", "menu 40078", "press 2"}));
}

// Fifty steps back, no more; a new command ends what could be redone.
TEST_F(Session, KeepsFiftyStates) {
  Play(Steps()[0]);
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
