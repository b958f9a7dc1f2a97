// Lines and events of transcripts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "support/support.h"
#include "toolkit/journal.h"
#include "toolkit/replay/transcript.h"
#include "toolkit/toolkit.h"

namespace {

using Lines = std::vector<std::string>;

// Runs lines in the program and gives its last event and exit status.
std::pair<std::string, int> LastEvent(const std::string& lines) {
  const TempDir work;
  const ReplayRun run = RunReplay(lines, work.path());
  return {run.lines.empty() ? "" : run.lines.back(), run.status};
}

TEST(Transcript, WordsAreSplitAtBlanksOutsideQuotes) {
  FreshWorkspace();
  const std::pair<const char*, Lines> cases[] = {
      {"menu 40105", {"menu", "40105"}},
      {"\t set  \"Min FWHM\"\t0,05 \r", {"set", "\"Min FWHM", "0,05"}},
      {"file a#1.xy # the first", {"file", "a#1.xy"}},
      {"file \"# is no comment\"", {"file", "\"# is no comment"}},
      {"set 5 \"\"", {"set", "5", "\""}},
      {"file \"a \"\"b\"\" c\"", {"file", "\"a \"b\" c"}},
      {"# nothing\n\n  \nfile", {"file"}},
  };
  for (const auto& [line, words] : cases) {
    Answer(line);
    std::vector<replay::Word> got;
    ASSERT_TRUE(replay::NextLine(got)) << line;
    Lines texts;  // those that stood in quotes with one in front
    for (const auto& word : got) texts.push_back((word.quoted ? "\"" : "") + word.text);
    EXPECT_EQ(texts, words) << line;
  }
}

TEST(Transcript, ValuesHaveTheNamesGivenToThem) {
  const TempDir work;
  const ReplayRun run = RunReplay(
      "get cell(3:4) as c \"alpha, deg\"\nget cell(3:4) as cell\nget cell(3:4)\n", work.path());
  EXPECT_EQ(run.lines, (Lines{"value\tc\t10", "value\talpha, deg\t90", "value\tcell 1\t10",
                              "value\tcell 2\t90", "value\tcell(3:4)\t10\t90"}));
}

TEST(Transcript, WhatCannotBeDoneEndsTheRun) {
  const struct {
    const char* lines;
    const char* error;
  } cases[] = {
      {"# a comment\n\npress OK\n", "error\t3\tno dialog is on show"},
      {"file x.xy\n", "error\t1\tno file selector is on show"},
      {"jump\n", "error\t1\tunknown line jump"},
      {"key up down\n", "error\t1\tkey has too many words"},
      {"key sideways\n", "error\t1\t\"sideways\" is not known here"},
      {"file \"x.xy\n", "error\t1\tquote is not closed"},
      {"file \"x\".xy\n", "error\t1\ttext behind a closing quote"},
      {"menu \"Nothing/Smooth\"\n", "error\t1\tno menu item Nothing/Smooth"},
      {"menu 99\n", "error\t1\tno menu item 99"},
      {"menu 40001\n", "error\t1\tmenu File is not an item"},
      {"menu \"Modify/Smooth\"\n", "error\t1\tmenu item Modify/Smooth is disabled"},
      {"get nothing\n", "error\t1\tno field nothing"},
      {"get npeaks called n\n", "error\t1\tbehind the field stands \"as\" with names"},
      {"get npeaks as\n", "error\t1\tbehind the field stands \"as\" with names"},
      {"get npeaks as n m\n", "error\t1\tnpeaks has 1 values for 2 names"},
      {"menu 40008\nmenu 40008\n", "error\t2\tmenu cannot be done while dialog 101 is open"},
      {"menu 40038\nset Samples x\n", "error\t2\tno field Samples"},
      {"menu 40124\nset 2.5 x\n", "error\t2\tno field 2.5"},
      {"menu 40008\n", "error\t1\tdialog 101 is still open at the end"},
      {"menu 40011\n", "error\t1\ta file selector is still open at the end"},
      {"plot /nowhere/x.eps\n", "error\t1\tcannot write /nowhere/x.eps"},
      {"redo\n", "error\t1\tnothing to redo"},
      {"stop soon\n", "error\t1\t\"soon\" is not the number of a report"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(LastEvent(c.lines), std::make_pair(std::string(c.error), 1)) << c.lines;
}

TEST(Transcript, BoxesAreAcknowledgedAndKeepTheStatus) {
  const auto [box, status] = LastEvent("open nothing.abc\n");
  EXPECT_TRUE(box.starts_with("box\tError\tUnrecognized file type\\n/")) << box;
  EXPECT_EQ(status, 0);
  // A selector that is cancelled is an ordinary end, and a tab in a value a blank.
  EXPECT_EQ(LastEvent("menu 40011\nfile\nmenu 40038\nset Sample \"a\tb\"\npress OK\n"
                      "get sampleid\n"),
            std::make_pair(std::string("value\tsampleid\ta b"), 0));
}

// The count of the reports ends with the command.
TEST(Transcript, ALongCalculationIsStoppedAtAReport) {
  FreshWorkspace();
  const auto reports = [](const char* lines) {
    Answer(lines);
    Message message;
    EXPECT_EQ(WMessage(message), MessageKey);
    int done = 0;
    while (done < 5 && WProgress(3, done < 3 ? "Cycle 1" : "Cycle 2")) ++done;
    return done;
  };
  EXPECT_EQ(reports("stop 5\nkey up\n"), 4);
  EXPECT_FALSE(WProgress(4, "and stays stopped"));
  EXPECT_EQ(Events(),
            (Lines{"status\t3\tCycle 1", "status\t3\tCycle 2", "status\t4\tand stays stopped"}));
  EXPECT_EQ(reports("stop 9\nkey up\n"), 5);
  EXPECT_EQ(reports("key up\n"), 5);
}

// Nobody waits in front of a transcript: what is held is told all the same.
TEST(Transcript, HeldBoxesAreCollectedAndShown) {
  FreshWorkspace();
  {
    HoldBoxes boxes;
    MessageBoxError("Error", "one");
    MessageBoxInfo("Note", "two");
    Answer("press OK\n");
    EXPECT_EQ(MessageBoxQuery("Question", "three"), 1);
    EXPECT_EQ(boxes.Take(), (Lines{"one", "two"}));
    MessageBoxError("Error", "four");
    EXPECT_EQ(boxes.Take(), Lines{"four"});
    EXPECT_EQ(boxes.Take(), Lines{});
  }
  MessageBoxError("Error", "five");
  EXPECT_EQ(Events(), (Lines{"box\tError\tone", "box\tNote\ttwo", "query\tQuestion\tthree",
                             "box\tError\tfour", "box\tError\tfive"}));
}

TEST(Transcript, CommandLine) {
  const TempDir work;
  EXPECT_EQ(RunReplay("", work.path(), {"--help"}).status, 0);
  EXPECT_EQ(RunReplay("", work.path(), {"--version"}).lines,
            Lines{"quillagram-replay " QUILLAGRAM_VERSION});
  for (const char* wrong : {"other", "--jump", "-x", "--settings"})
    EXPECT_EQ(RunReplay("", work.path(), {wrong}).status, 2) << wrong;
  EXPECT_EQ(RunReplay("get npeaks\n", work.path(), {"--settings", "none", "--"}).lines.size(), 1);
}

TEST(Events, TextsStayOnOneLineAndQueriesWait) {
  FreshWorkspace();
  Answer("press Cancel\npress 1\n");
  const std::string text = std::string("Full.\rClose one\r\nand\tgo") + '\0' + "on.";
  EXPECT_EQ(MessageBoxQuery("Window error", text), 0);
  EXPECT_EQ(MessageBoxQuery("", "again"), 1);
  EXPECT_EQ(Events(),
            (Lines{"query\tWindow error\tFull.\\nClose one\\nand go on.", "query\t\tagain"}));
  EXPECT_THROW(MessageBoxQuery("", "no answer"), std::runtime_error);
}

// A click moves to its place, presses and releases; only enabled messages come.
TEST(Events, MouseAndKeys) {
  FreshWorkspace();
  SetApplicationHooks({{}, [](float x, float y) { return std::pair(10 * x, y + 1); }});
  WMessageEnable(MessageMouseMove, 0);
  WMessageEnable(MessageMouseUp, 1);
  Answer("mouse right 28.5 99\nkey down\nband 100 200 escape\nkey up");
  Message message;
  for (const int type : {MessageMouseDown, MessageMouseUp}) {
    EXPECT_EQ(WMessage(message), type);
    EXPECT_EQ(message.value1, MouseRight);
    EXPECT_EQ(std::pair(message.x, message.y), std::pair(285.0f, 100.0f));
  }
  EXPECT_EQ(WMessage(message), MessageKey);
  EXPECT_EQ(message.value1, KeyDown);
  // A band that is broken off ends where it began and leaves nothing to come.
  EXPECT_EQ(WMessage(message), MessageMouseDown);
  float x = 0, y = 0;
  int ending = 0;
  WGrInput(3, message.x, message.y, x, y, ending);
  EXPECT_EQ(ending, MessageKey);
  EXPECT_EQ(std::pair(x, y), std::pair(100.0f, 200.0f));
  EXPECT_EQ(WMessage(message), MessageKey);
}

// Modifiers, the wheel and drags of other buttons; each leaves the line that enters it again.
TEST(Events, WheelPanAndModifiers) {
  FreshWorkspace();
  WTakeJournal();
  WMessageEnable(MessageMouseMove, 1);
  Answer(
      "wheel 285 100 -2.5 ctrl\ndoubleclick 1 2\nkey shift+backspace\nkey home\n"
      "click left 3 4 shift ctrl\npan 10 20.25 30 20.25\npan 1 2 1 2\npan 1 2 escape");
  Message message;
  const auto next = [&](int type, int value, int modifiers) {
    while (WMessage(message) == MessageMouseMove || message.type == MessageMouseUp) {
    }
    EXPECT_EQ(message.type, type);
    EXPECT_EQ(message.value1, value);
    EXPECT_EQ(message.modifiers, modifiers);
  };
  next(MessageWheel, -300, ModifierControl);
  EXPECT_EQ(std::pair(message.x, message.y), std::pair(285.0f, 100.0f));
  next(MessageDoubleClick, MouseLeft, 0);
  next(MessageKey, KeyBackspace, ModifierShift);
  next(MessageKey, KeyHome, 0);
  next(MessageMouseDown, MouseLeft, ModifierShift + ModifierControl);
  std::vector<std::pair<float, float>> way;
  for (const int ending : {MessageMouseUp, MessageMouseUp, MessageKey}) {
    next(MessagePan, MouseMiddle, 0);
    float x = 0, y = 0;
    int ended = 0;
    WGrInput(GraphicsPan, message.x, message.y, x, y, ended,
             [&](float atx, float aty) { way.emplace_back(atx, aty); });
    EXPECT_EQ(ended, ending);
  }
  EXPECT_EQ(way, (std::vector{std::pair(30.0f, 20.25f)}));
  EXPECT_EQ(WTakeJournal(), (Lines{"wheel 285 100 -2.5 ctrl", "doubleclick 1 2",
                                   "key shift+backspace", "key home", "pan 10 20.25 30 20.25"}));
}

TEST(Selector, AddsTheExtensionOnSavingAndStartsFromTheFirstDirectory) {
  const std::string start = std::filesystem::current_path().string();
  const struct {
    const char *line, *filter;
    int flags;
    std::string path;
  } cases[] = {
      {"file", "EPS file|*.eps|", FileSave, ""},
      {"file plot", "EPS file|*.eps|", FileSave, start + "/plot.eps"},
      {"file plot.ps", "EPS file|*.eps|", FileSave, start + "/plot.ps"},
      {"file \"/tmp/dir.x/two words\"", "|*.xy|", FileSave, "/tmp/dir.x/two words.xy"},
      {"file plot", "|*.xy|", FileMustExist, start + "/plot"},
      {"file plot", "All files|*|", FileSave, start + "/plot"},
  };
  FreshWorkspace();
  IOsDirChange("/");
  for (const auto& c : cases) {
    Answer(c.line);
    std::string path = "*.xy";
    WSelectFile(c.filter, c.flags, path, "Title");
    EXPECT_EQ(path, c.path) << c.line;
    EXPECT_EQ(Events(), Lines{"select\tTitle\t" + std::string(c.filter) + "\t*.xy"});
  }
  IOsDirChange(start);
}

TEST(Selector, TakesSeveralFilesWhereSeveralAreAskedFor) {
  FreshWorkspace();
  WTakeJournal();
  Answer("file /a.xy \"/b \"\"c\"\".xy\"\nfile\nfile /d.xy\nfile /a.xy /b.xy");
  const auto several = [] { return WSelectFiles("|*.xy|", FileMustExist, "", "Title"); };
  EXPECT_EQ(several(), (Lines{"/a.xy", "/b \"c\".xy"}));
  EXPECT_EQ(WTakeJournal(), Lines{"file \"/a.xy\" \"/b \"\"c\"\".xy\""});
  EXPECT_EQ(several(), Lines{});
  EXPECT_EQ(several(), Lines{"/d.xy"});
  std::string path;
  EXPECT_THROW(WSelectFile("|*.xy|", FileMustExist, path, "Title"), std::runtime_error);
}

TEST(Commands, WordsAndFilesNeverMix) {
  FreshWorkspace();
  IOsCommand("  edit  -n \"two words\" --x=\"a b\"c  ");
  IOsCommandOnFile("\"my editor\" -w", "/tmp/a; rm -rf \"b\" $HOME.xy");
  IOsCommandOnFile("  ", "/tmp/a.xy");
  EXPECT_EQ(Events(), (Lines{"command\tedit -n \"two words\" \"--x=a bc\"",
                             "command\t\"my editor\" -w \"/tmp/a; rm -rf \"b\" $HOME.xy\"",
                             "box\tError\tCannot start   "}));
}

TEST(Commands, OneThatCannotStartIsNamed) {
  const TempDir work;
  WriteFile(work.file("quillagram.ini"), "EDT=/nowhere/editor -w\n");
  WriteFile(work.file("a b.xy"), "10 1\n11 2\n12 3\n");
  const ReplayRun run = RunReplay("open \"a b.xy\"\nmenu \"Modify/Edit data\"\n", work.path(),
                                  {"--run-commands"}, work.path());
  const Lines last(run.lines.end() - std::min<std::size_t>(2, run.lines.size()), run.lines.end());
  EXPECT_EQ(last, (Lines{"command\t/nowhere/editor -w \"" + work.file("a b.xy") + "\"",
                         "box\tError\tCannot start /nowhere/editor -w"}));
}

TEST(Journal, ALineEndIsOnlyTold) {
  WTakeJournal();
  JournalFiles(Lines{"/tmp/two\nlines.xy"});
  EXPECT_EQ(WTakeJournal(), Lines{"# file \"/tmp/two lines.xy\""});
}

TEST(Clock, TellsLocalDateAndTime) {
  const auto clock = [] {
    const std::time_t now = std::time(nullptr);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S", std::localtime(&now));
    return std::atof(text);
  };
  double before = 0, told = -1;
  while (before != clock()) before = clock(), told = IOsDate() * 1e6 + IOsTime();
  EXPECT_EQ(told, before) << "within one second";
}

// A failure that nobody asked about is not held against the next operation.
TEST(Files, TheErrorIsThatOfTheLastOperation) {
  const TempDir work;
  WriteFile(work.file("a b"), "1 2\n");
  IOsDirChange(work.file("missing"));
  IOsCopyFile(work.file("a b"), work.file("c"));
  EXPECT_EQ(WInfoError(0), 0);
  EXPECT_EQ(ReadFile(work.file("c")), "1 2\n");
  IOsDeleteFile(work.file("c"));
  EXPECT_EQ(WInfoError(0), 0);
  IOsDeleteFile(work.file("c"));
  EXPECT_NE(WInfoError(0), 0);
  IOsCopyFile(work.file("c"), work.file("a b"));
  EXPECT_NE(WInfoError(0), 0);
}

}  // namespace
