// The configuration file: creation, keys, the recent-files block, updates.
#include <gtest/gtest.h>

#include "shell/shell.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

class Configuration : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    ws.startdir = home.path() + "/";
  }
  void Write(const std::string& text) { WriteFile(home.file("quillagram.ini"), text); }
  std::string Contents() { return ReadFile(home.file("quillagram.ini")); }
  TempDir home;
};

TEST_F(Configuration, FirstStartWritesAFileAndReadsIt) {
  ReadConfiguration();
  EXPECT_EQ(Contents(),
            "ini-file for quillagram\n\n! Starting directory\n\nDIR=/home/\n\n! Editor\n\n"
            "EDT=quillagram-edit\n\n! Minimum Cagliotti parameters\n\nMINU=0.\nMINV=0.\n"
            "MINW=0.01\n\n! Your coordinates\n\nDEPARTMENT=\nCOMPANY=\nADDRESS=\n\n");
  EXPECT_FLOAT_EQ(ws.caglmin(3), 0.01f);  // of the file, not the built-in 0.02
}

TEST_F(Configuration, KeysCountOnlyAtTheStartAndInOneCase) {
  Write(
      "edt=vi\n! MINU=7\nMinV=7\nminu=0.25\nMINW=abc\nDEPART no value\n"
      "department=Solids\nCOMPANY=A=B\r\n ADDRESS=elsewhere");
  ReadConfiguration();
  EXPECT_EQ(ws.editorpath, "vi");
  EXPECT_FLOAT_EQ(ws.caglmin(1), 0.25f);
  EXPECT_FLOAT_EQ(ws.caglmin(2), 0);
  EXPECT_FLOAT_EQ(ws.caglmin(3), 0.02f);
  EXPECT_EQ(ws.infodepartment, "Solids");
  EXPECT_EQ(ws.infocompany, "A=B");
  EXPECT_EQ(ws.infoaddress, "");
}

TEST_F(Configuration, RecentBlockEndsWhereItShould) {
  const struct {
    const char* block;
    std::vector<std::string> files;
    const char* editor;
  } cases[] = {
      {"/a.xy\n\n  /no.xy\n/b b.xy\nEND QUILLAGRAM FILES\nEDT=vi\n", {"/a.xy", "/b b.xy"}, "vi"},
      {"/1\n/2\n/3\n/4\n/5\n", {"/1", "/2", "/3", "/4"}, "quillagram-edit"},
      {"/1\n! comment\n/2\n", {"/1"}, "quillagram-edit"},
      {"/1\n[more]\n/2\n", {"/1"}, "quillagram-edit"},
      {"\xc3\xa4.xy\nend quillagram\n/2\n", {"\xc3\xa4.xy"}, "quillagram-edit"},
  };
  for (const auto& c : cases) {
    Write(std::string("old quillagram files\n") + c.block);
    ReadConfiguration();
    std::vector<std::string> files;
    for (const std::string& file : ws.recentfiles.cells)
      if (!file.empty()) files.push_back(file);
    EXPECT_EQ(files, c.files) << c.block;
    EXPECT_EQ(ws.editorpath, c.editor) << c.block;
  }
}

TEST_F(Configuration, UpdateKeepsTheHeadAndReplacesTheBlock) {
  Write("EDT=vi\nmine\nOLD QUILLAGRAM FILES\n/1\n/2\nEND QUILLAGRAM FILES\nbehind\n");
  ReadConfiguration();
  ws.recentpending = 1;
  ws.patternpath = "/2";  // already second: now first and, as it was, also third
  UpdateRecentFiles();
  const std::string expected =
      "EDT=vi\nmine\nOLD QUILLAGRAM FILES\n/2\n/1\n/2\n\nEND QUILLAGRAM FILES\n";
  EXPECT_EQ(Contents(), expected);
  UpdateRecentFiles();  // the same file once more changes nothing
  EXPECT_EQ(Contents(), expected);
  EXPECT_EQ(WMenuGetString(40022), "/2");
  EXPECT_EQ(WMenuGetString(40025), "");
}

TEST_F(Configuration, OfALongFileWithoutBlockFiftyLinesStay) {
  std::string head;
  for (int i = 1; i <= 50; ++i) head += "line " + std::to_string(i) + "\n";
  Write(head + "line 51\nOLD QUILLAGRAM FILES\n/9\n");
  ReadConfiguration();
  ws.recentpending = 1;
  ws.patternpath = "/a";
  UpdateRecentFiles();
  EXPECT_EQ(Contents(), head + "OLD QUILLAGRAM FILES\n/a\n/9\n\n\nEND QUILLAGRAM FILES\n");
}

TEST_F(Configuration, AddressLinesAreReplacedButNotAdded) {
  Write("x\ndepart=old\nCOMPANY=old\n! ADDRESS=old\n");
  ReadConfiguration();
  ws.infodepartment = "  Physics ";
  ws.infocompany = "";
  ws.infoaddress = "Here";
  WriteInfoToConfiguration();
  EXPECT_EQ(Contents(), "x\nDEPARTMENT=Physics\nCOMPANY=\n! ADDRESS=old\n");
}

TEST_F(Configuration, FailuresAreOneBoxEachAndTheRunGoesOn) {
  ws.startdir = home.file("missing") + "/";
  ReadConfiguration();
  EXPECT_EQ(ws.editorpath, "quillagram-edit");
  EXPECT_EQ(WMenuGetString(40022), "empty");
  ws.recentpending = 1;
  ws.patternpath = "/a";
  UpdateRecentFiles();
  EXPECT_EQ(ws.recentfiles(1), "/a");
  WriteInfoToConfiguration();
  EXPECT_EQ(Events(), (std::vector<std::string>{"box\tError\tError creating ini-file",
                                                "box\tError\tError opening inifile",
                                                "box\tError\tError opening inifile"}));
}

}  // namespace
