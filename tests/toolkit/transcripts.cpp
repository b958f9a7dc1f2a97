// Lines and events of transcripts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>

#include "support/support.h"
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
  const std::pair<const char*, std::vector<replay::Word>> cases[] = {
      {"menu 40105", {{"menu"}, {"40105"}}},
      {"\t set  \"Min FWHM\"\t0,05 \r", {{"set"}, {"Min FWHM", true}, {"0,05"}}},
      {"file a#1.xy # the first", {{"file"}, {"a#1.xy"}}},
      {"file \"# is no comment\"", {{"file"}, {"# is no comment", true}}},
      {"set 5 \"\"", {{"set"}, {"5"}, {"", true}}},
      {"file \"a \"\"b\"\" c\"", {{"file"}, {"a \"b\" c", true}}},
      {"# nothing\n\n  \nfile", {{"file"}}},
  };
  for (const auto& [line, words] : cases) {
    Answer(line);
    std::vector<replay::Word> got;
    ASSERT_TRUE(replay::NextLine(got)) << line;
    ASSERT_EQ(got.size(), words.size()) << line;
    for (std::size_t i = 0; i < words.size(); ++i) {
      EXPECT_EQ(got[i].text, words[i].text) << line;
      EXPECT_EQ(got[i].quoted, words[i].quoted) << line;
    }
  }
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
      {"menu 99\n", "error\t1\tno menu item 99"},
      {"menu 40001\n", "error\t1\tmenu File is not an item"},
      {"menu \"Modify/Smooth\"\n", "error\t1\tmenu item Modify/Smooth is disabled"},
      {"get nothing\n", "error\t1\tno field nothing"},
      {"menu 40008\nmenu 40008\n", "error\t2\tmenu cannot be done while dialog 101 is open"},
      {"menu 40038\nset Samples x\n", "error\t2\tno field Samples"},
      {"menu 40124\nset 2.5 x\n", "error\t2\tno field 2.5"},
      {"menu 40008\n", "error\t1\tdialog 101 is still open at the end"},
      {"menu 40011\n", "error\t1\ta file selector is still open at the end"},
      {"plot /nowhere/x.eps\n", "error\t1\tcannot write /nowhere/x.eps"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(LastEvent(c.lines), std::make_pair(std::string(c.error), 1)) << c.lines;
}

TEST(Transcript, BoxesAreAcknowledgedAndKeepTheStatus) {
  const auto [box, status] = LastEvent("open nothing.abc\n");
  EXPECT_TRUE(box.starts_with("box\tError\tUnrecognized file type\\n/")) << box;
  EXPECT_EQ(status, 0);
  // A cancelled dialog or selector is an ordinary end.
  EXPECT_EQ(LastEvent("menu \"Help/About\"\npress OK\nmenu 40011\nfile\nget npts(1)\n"),
            std::make_pair(std::string("value\tnpts(1)\t0"), 0));
}

// The count of the reports ends with the command.
TEST(Transcript, UndoAndRedoAreFoundByTheirKeys) {
  constexpr int undo = 7, redo = 8;
  constexpr MenuRow rows[] = {
      {.id = 1, .text = "&Edit", .parent = 0, .popup = true},
      {.id = undo, .text = "Back", .parent = 1, .accelerator = "F9|Ctrl+Z"},
      {.id = redo, .text = "Forth", .parent = 1, .accelerator = "Ctrl+Shift+Z", .enabled = false}};
  FreshWorkspace();
  WRegisterMenu(9001, {rows, 1});
  WindowOpen(0, 0, 100, 100, 9001, "");
  Message message;
  const auto error = [&](const char* lines) {
    Answer(lines);
    EXPECT_THROW(WMessage(message), std::runtime_error);
    const std::string event = Events().back();
    return event.substr(event.rfind('\t') + 1);
  };
  EXPECT_EQ(error("undo"), "there is no undo");
  WRegisterMenu(9001, rows);
  Answer("undo");
  EXPECT_EQ(WMessage(message), MessageMenu);
  EXPECT_EQ(message.value1, undo);
  EXPECT_EQ(error("redo"), "nothing to redo");
  WMenuSetState(redo, MenuEnabled, 1);
  Answer("redo");
  EXPECT_EQ(WMessage(message), MessageMenu);
  EXPECT_EQ(message.value1, redo);
}

TEST(Transcript, ATabInAValueIsABlank) {
  EXPECT_EQ(LastEvent("menu 40038\nset Sample \"a\tb\"\npress OK\nget sampleid\n"),
            std::make_pair(std::string("value\tsampleid\ta b"), 0));
}

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
  EXPECT_EQ(LastEvent("stop soon\n"),
            std::make_pair(std::string("error\t1\t\"soon\" is not the number of a report"), 1));
}

TEST(Transcript, AStrictOneEndsWithAFailedCommand) {
  FreshWorkspace();
  WCommandEnded(true);  // not so by default
  char name[] = "test", option[] = "--strict";
  char* arguments[] = {name, option, nullptr};
  WInitialise(2, arguments);
  replay::NoInput();
  Answer("# told to fail\nkey up\n");
  Message message;
  WMessage(message);
  WCommandEnded(false);
  EXPECT_EQ(Events(), Lines{});
  EXPECT_THROW(WCommandEnded(true), std::runtime_error);
  EXPECT_EQ(Events(), Lines{"error\t2\tthe command failed"});
}

TEST(Transcript, CommandLine) {
  const TempDir work;
  EXPECT_EQ(RunReplay("", work.path(), {"--help"}).status, 0);
  EXPECT_EQ(RunReplay("", work.path(), {"--version"}).lines, Lines{"quillagram-replay 1.0"});
  EXPECT_EQ(RunReplay("", work.path(), {"other"}).status, 2);
  EXPECT_EQ(RunReplay("", work.path(), {"--jump"}).status, 2);
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
  Answer("mouse right 28.5 99\nkey down\ndrag 1 2 3 4\n");
  const struct {
    int type, value;
    float x, y;
  } expected[] = {{MessageMouseDown, MouseRight, 285, 100},
                  {MessageMouseUp, MouseRight, 285, 100},
                  {MessageKey, KeyDown, 0, 0},
                  {MessageMouseDown, MouseLeft, 10, 3}};
  Message message;
  for (const auto& e : expected) {
    EXPECT_EQ(WMessage(message), e.type);
    EXPECT_EQ(message.value1, e.value);
    EXPECT_EQ(message.x, e.x);
    EXPECT_EQ(message.y, e.y);
  }
  float endx = 0, endy = 0;
  int ending = 0;
  WGrInput(3, message.x, message.y, endx, endy, ending);
  EXPECT_EQ(ending, MessageMouseUp);
  EXPECT_EQ(endx, 30);
  EXPECT_EQ(endy, 5);
  EXPECT_EQ(WMessage(message), MessageClose);  // the release has been taken by the band

  // One broken off ends where it began and leaves nothing to come; in the program, nothing changes.
  Answer("band 100 200 escape\nkey up");
  EXPECT_EQ(WMessage(message), MessageMouseDown);
  WGrInput(3, message.x, message.y, endx, endy, ending);
  EXPECT_EQ(ending, MessageKey);
  EXPECT_EQ(std::pair(endx, endy), std::pair(100.0f, 200.0f));
  EXPECT_EQ(WMessage(message), MessageKey);
}

TEST(Transcript, ABandThatIsBrokenOffLeavesTheZoom) {
  const TempDir work;
  std::string pattern;
  for (int i = 0; i <= 1000; ++i) pattern += std::to_string(10 + 0.05 * i) + " 500\n";
  WriteFile(work.file("a.xy"), pattern + "60.1 1000\n");
  std::string state;
  for (const char* field : {"bandx1", "bandx2", "bandy1", "bandy2", "plotxmin", "plotxmax",
                            "viewxmin", "viewxmax", "viewymin", "viewymax"})
    state += std::string("get ") + field + "\n";
  const ReplayRun run = RunReplay(
      "open a.xy\nband 300 200 500 900\n" + state + "band 400 400 escape\n" + state, work.path());
  EXPECT_EQ(run.status, 0);
  Lines values;
  for (const std::string& line : run.lines)
    if (line.starts_with("value")) values.push_back(line);
  ASSERT_EQ(values.size(), 20u);
  EXPECT_NE(values[0], "value\tbandx1\t0");
  EXPECT_EQ(Lines(values.begin(), values.begin() + 10), Lines(values.begin() + 10, values.end()));
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

TEST(Clock, TellsLocalDateAndTime) {
  const auto now = [] {
    const std::time_t seconds = std::time(nullptr);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d %H%M%S", std::localtime(&seconds));
    return std::string(text);
  };
  std::string before, told;
  do {
    before = now();
    char text[32];
    std::snprintf(text, sizeof text, "%08d %06d", IOsDate(), IOsTime());
    told = text;
  } while (before != now());
  EXPECT_EQ(told, before);
}

}  // namespace
