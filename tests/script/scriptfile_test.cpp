// The script file and its dialog.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "scripts.h"
#include "support/smallfiles.h"

namespace {

// Columns: the word in 1 to 4, integers in 5, reals in 10.
constexpr const char* kAllCommands =
    "INFM    4\n"
    "ZERO    -.0125\n"
    "TRUN   12.5000  140.0000\n"
    "SCAL    2.5000    3   12   17\n"
    "SMOO    7\n"
    "SAGO   11\n"
    "BKGR  151\n"
    "CONV   1.54056    .70930   5.00000  60.00000    .01000\n"
    "SKIP    2\n"
    "UTFM    3\n";

TEST(ScriptFile, AllCommandsAreReadAndWrittenAgain) {
  const ScriptTest test;
  const std::string script = "l\u00f6sung 1.mlt\n/a \"b\"/out.mlt\n" + std::string(kAllCommands);
  test.Write("a.scp", script);
  RunMenu(MenuOpenScript,
          "file " + test.file("a.scp") + "\nset 1252 " + test.file("b.scp") + "\npress OK\n");
  EXPECT_EQ(ScriptTest::Boxes(), Lines());
  EXPECT_EQ(test.Read("b.scp"), script);
  EXPECT_EQ(test.Read("a.scp"), script);
}

// What another script held is not in this one, and its numbers are in columns.
TEST(ScriptFile, OpenTakesWhatTheFileHoldsAndNoMore) {
  const ScriptTest test;
  ws.scriptusezero = ws.scriptusetrun = ws.scriptuseskip = 1;
  test.Write("a.scp",
             "\xEF\xBB\xBFin.mlt   \r\nout.mlt\r\n\r\nsmoo9\r\n# a word that is none\r\n"
             "Scal  1.25,    1\r\nsmoo   11\r\nutfm    5\r\nSAG     5\r\n");
  RunMenu(MenuOpenScript, "file " + test.file("a.scp") + "\npress Cancel\n");
  EXPECT_EQ(ScriptTest::Boxes(), Lines());
  EXPECT_EQ(ws.scriptinlist + ' ' + ws.scriptoutlist, "in.mlt out.mlt");
  EXPECT_EQ(ws.scalefactor, 1.25f);
  EXPECT_EQ((std::array{ws.smoothwindow, ws.scaletype, ws.scaleto, ws.sgwindow, ws.scriptoutfmt}),
            (std::array{11, 1, 0, 5, 5}));
  EXPECT_EQ((std::array{ws.scriptusesmoo, ws.scriptusescal, ws.scriptusezero, ws.scriptusetrun,
                        ws.scriptusesago, ws.scriptuseconv, ws.scriptusebkgr, ws.scriptuseskip}),
            (std::array{1, 1, 0, 0, 0, 0, 0, 0}));
}

// All lines are shown before the first is looked at.
TEST(ScriptFile, DebugShowsTheLines) {
  const ScriptTest test;
  ws.debugmode = 1;
  EXPECT_EQ(
      test.Run("", "", "smoo    5\n\nany thing\nZERO x\n"),
      (Lines{
          "Script buffer:\tsmoo    5", "Script buffer:\tany thing", "Script buffer:\tZERO x",
          "Read Error\tError reading ZERO command\\n" + test.file("a.scp") + ": line 6: ZERO x"}));
}

TEST(ScriptFile, ABadCommandEndsARunBeforeTheFirstFile) {
  const ScriptTest test;
  test.Pattern("a.xy", 1000);
  for (const std::string word :
       {"INFM", "ZERO", "SCAL", "SMOO", "SAGO", "CONV", "BKGR", "SKIP", "UTFM"}) {
    const std::string line = word + "   1x0";
    EXPECT_EQ(test.Run("a.xy\n", "o.xy\n", "INFM    2\n\nUTFM    2\n" + line + "\n"),
              Lines{"Read Error\tError reading " + word + " command\\n" + test.file("a.scp") +
                    ": line 6: " + line});
  }
  test.Run("a.xy\n", "o.xy\n", "TRUN   10.0      abc\nINFM    2\nUTFM    2\n");
  Events();
  RunMenu(MenuRunScript);
  EXPECT_EQ(Events(), Lines{"status\t3\tError in line 3: TRUN   10.0      abc"});
  EXPECT_FALSE(std::filesystem::exists(test.file("o.xy")));
  EXPECT_EQ(ws.npts(1), 0);
  EXPECT_EQ(ws.savestart, 0) << "nothing is left of a run that has not begun";
}

TEST(ScriptFile, OneThatCannotBeReadLeavesTheScriptOfBefore) {
  const ScriptTest test;
  const std::string script = "in.mlt\nout.mlt\n" + std::string(kAllCommands),
                    bad = "x.mlt\ny.mlt\nINFM    1\nSMOO    9\nCONV   1.00000         x\n";
  test.Write("a.scp", script);
  test.Write("b.scp", bad);
  RunMenu(MenuOpenScript, "file " + test.file("a.scp") + "\npress OK\n");
  RunMenu(MenuOpenScript, "file " + test.file("b.scp") + "\n");
  EXPECT_EQ(ScriptTest::Boxes().size(), 1u);
  RunMenu(MenuCreateScript, "press OK\n");
  EXPECT_EQ(test.Read("a.scp"), script);
  EXPECT_EQ(test.Read("b.scp"), bad);
}

TEST(ScriptFile, WhatIsMissingIsTold) {
  const ScriptTest test;
  const std::string cannot = "Read Error\tError reading script file\\n", a = test.file("a.scp");
  const std::string gone = ": No such file or directory";
  EXPECT_EQ(test.RunFile("a.scp"), Lines{"File error\tError opening script file\\n" + a + gone});
  for (const char* text : {"", "in.mlt\n"}) {
    test.Write("a.scp", text);
    EXPECT_EQ(test.RunFile("a.scp"), Lines{cannot + a + ": the names of the lists are not in it"});
  }
  const std::string longname(257, 'x');
  test.Write("a.scp", longname + "\nout.mlt\n");
  EXPECT_EQ(test.RunFile("a.scp"), Lines{"Error\t" + longname + " is longer than 256 characters"});
  const std::string unnamed = " file\\n" + a + ": has no name for it";
  const struct {
    const char *script, *file;
  } withoutname[] = {{"\nout.mlt\n", "input file list"},
                     {"in.mlt\n\n", "output file list"},
                     {"in.mlt\n\nUTFM    5\n", "sum"}};
  for (const auto& row : withoutname) {
    test.Write("a.scp", row.script);
    EXPECT_EQ(test.RunFile("a.scp"), Lines{"File Error\tError opening " + (row.file + unnamed)});
  }
  test.Write("a.scp", "in.mlt\nout.mlt\nUTFM    1\n");
  EXPECT_EQ(test.RunFile("a.scp"), Lines{"File Error\tError opening input file list file\\n" +
                                         test.file("in.mlt") + gone});
  test.Write("in.mlt", "");
  EXPECT_EQ(test.RunFile("a.scp"), Lines{"File Error\tError opening output file list file\\n" +
                                         test.file("out.mlt") + gone});
}

TEST(ScriptFile, AFileThatCannotBeWrittenIsToldAndTheOldOneStays) {
  const ScriptTest test;
  test.Write("a.scp", "old");
  const std::string name = "set 1252 " + test.file("a.scp") + "\n";
  {
    const SmallFiles full(4);
    RunMenu(MenuCreateScript, name + "press OK\n");
  }
  EXPECT_EQ(ScriptTest::Boxes(), Lines{"File Error\tError writing script file\\n" +
                                       test.file("a.scp") + ": File too large"});
  ws.scalefactor = 1e6;  // 1000000.0000 has twelve digits
  RunMenu(MenuCreateScript, name + "set 1016 on\npress OK\n");
  EXPECT_EQ(ScriptTest::Boxes(),
            Lines{"File Error\tError writing script file\\n" + test.file("a.scp") +
                  ": a number of SCAL is too long for it"});
  EXPECT_EQ(test.Read("a.scp"), "old");
  RunMenu(MenuCreateScript, "set 1252 /nowhere/a.scp\nset 1016 off\npress OK\n");
  EXPECT_EQ(ScriptTest::Boxes(), Lines{"File Error\tError opening script file\\n/nowhere/a.scp: No "
                                       "such file or directory"});
}

// ---- The dialog ----

// Numbers of the fields that take input when the dialog opens again.
std::vector<int> Enabled() {
  Events();
  RunMenu(MenuCreateScript, "press Cancel\n");
  std::vector<int> enabled;
  for (const std::string& event : Events())
    if (const int id = event.starts_with("field\t125") || event.starts_with("field\t126") ||
                               event.starts_with("field\t127")
                           ? std::stoi(event.substr(6))
                           : 0;
        id >= 1258 && id <= 1273 && event.ends_with("\t1"))
      enabled.push_back(id);
  return enabled;
}

TEST(ScriptDialog, BoxesEnableTheFieldsBehindThem) {
  const ScriptTest test;
  EXPECT_EQ(Enabled(), std::vector<int>());
  const struct {
    int* use;
    std::vector<int> fields;
  } boxes[] = {
      {&ws.scriptusezero, {1258}},       {&ws.scriptusetrun, {1259, 1260}},
      {&ws.scriptusescal, {1270, 1271}}, {&ws.scriptusesmoo, {1262}},
      {&ws.scriptusesago, {1261}},       {&ws.scriptuseconv, {1263, 1264, 1265, 1266, 1267}},
      {&ws.scriptusebkgr, {1268}},       {&ws.scriptuseskip, {1269}},
  };
  for (const auto& box : boxes) {
    *box.use = 1;
    EXPECT_EQ(Enabled(), box.fields);
    *box.use = 0;
  }
  ws.scaletype = 3;
  EXPECT_EQ(Enabled(), std::vector<int>());
  // As the user ticks and types: what is disabled would end the lines.
  RunMenu(MenuCreateScript, "set 1016 on\nset 1271 3\nset 1272 4\nset 1273 9\nset 1252 " +
                                test.file("a.scp") + "\npress OK\n");
  EXPECT_EQ(test.Read("a.scp"), "\n\nINFM    1\nSCAL    1.0000    3    4    9\nUTFM    1\n");
  EXPECT_THROW(RunMenu(MenuCreateScript, "set 1271 2\nset 1272 4\n"), std::runtime_error);
}

TEST(ScriptDialog, ProposesThePatternAndAsksForAName) {
  const ScriptTest test;
  test.Pattern("a.xy", 1000);
  OpenFile(test.file("a.xy"));
  Events();
  RunMenu(MenuCreateScript, "press OK\nset 1012 on\nset 1015 on\npress 1255\nfile " +
                                test.file("b") + "\npress 1256\nfile " + test.file("in.mlt") +
                                "\npress 1256\nfile\npress 1256\nfile /" + std::string(256, 'x') +
                                "\npress OK\n");
  EXPECT_EQ(ScriptTest::Boxes(),
            (Lines{"File Error\tThe script file needs a name",
                   "Error\t/" + std::string(256, 'x') + " is longer than 256 characters"}));
  EXPECT_EQ(test.Read("b.scp"), test.file("in.mlt") +
                                    "\n\nINFM    1\nTRUN   10.0000   22.4375\n"
                                    "CONV   1.54056   1.54056  10.00000  22.43750    .06250\n"
                                    "UTFM    1\n");
  // What the script has is shown, whatever the pattern.
  ws.savestart = 12;
  RunMenu(MenuCreateScript, "press OK\n");
  EXPECT_EQ(ws.savestart, 12);
}

TEST(ScriptDialog, ViewAndRunAskForAScript) {
  const ScriptTest test;
  ws.editorpath = "edit";
  test.Write("my script.scp", "in.mlt\nout.mlt\n");
  RunMenu(MenuRunScript, "file\n");
  EXPECT_EQ(Events(), Lines{"select\tOpen script file\tScript file *.scp|\t*.scp"});
  RunMenu(MenuViewScript,
          "file "
          "\"" +
              test.file("my script.scp") + "\"\n");
  EXPECT_EQ(Events().back(), "command\tedit \"" + test.file("my script.scp") + "\"");
  RunMenu(MenuRunScript);
  EXPECT_EQ(ScriptTest::Boxes().size(), 1u);
}

}  // namespace
