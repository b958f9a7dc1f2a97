// The configuration file: its place, creation, keys, the recent-files block, updates.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <memory>

#include "shell/inifile.h"
#include "shell/shell.h"
#include "support/smallfiles.h"
#include "support/support.h"
#include "toolkit/replay/transcript.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace fs = std::filesystem;

namespace {

// What the program may do with its configuration file, as the replay's option says it.
void Settings(std::string use) {
  std::string name = "test", option = "--settings";
  char* arguments[] = {name.data(), option.data(), use.data(), nullptr};
  WInitialise(3, arguments);
  replay::NoInput();
}

// The administrator may write everywhere, another user may not.
class OtherUser {
 public:
  OtherUser() { EXPECT_EQ(was_ == 0 ? setresuid(kNobody, kNobody, 0) : 0, 0); }
  ~OtherUser() { EXPECT_EQ(setresuid(was_, was_, was_), 0); }

 private:
  static constexpr uid_t kNobody = 65534;
  const uid_t was_ = geteuid();
};

class Configuration : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    Settings("write");
    unsetenv("QUILLAGRAM_HOME");
    setenv("XDG_CONFIG_HOME", home.file("user").c_str(), 1);
    ws.startdir = home.path() + "/";
  }
  void TearDown() override { Settings("read"); }
  // Loads of patterns, as far as they matter here.
  void Load(const std::string& path) {
    ws.recentpending = 1;
    ws.patternpath = path;
    UpdateRecentFiles();
  }
  static std::string Box(const std::string& text, const std::string& reason) {
    return "box\tError\t" + text + "\\n" + ws.inipath + ": " + reason;
  }
  void Write(const std::string& text) { WriteFile(home.file("quillagram.ini"), text); }
  std::string Contents() { return ReadFile(home.file("quillagram.ini")); }
  TempDir home;
};

TEST_F(Configuration, FirstStartWritesAFileAndReadsIt) {
  ReadConfiguration();
  EXPECT_TRUE(Contents().starts_with("ini-file for quillagram\n\n! Starting directory\n\nDIR="));
  EXPECT_EQ(std::ranges::count(Contents(), '\n'), 22);
  EXPECT_EQ(ws.editorpath, "quillagram-edit");
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
  Load("/2");  // already second: now first and, as it was, also third
  const std::string expected =
      "EDT=vi\nmine\nOLD QUILLAGRAM FILES\n/2\n/1\n/2\n\nEND QUILLAGRAM FILES\n";
  EXPECT_EQ(Contents(), expected);
  fs::create_hard_link(home.file("quillagram.ini"), home.file("same"));
  Load("/2");  // the same file once more changes nothing, and nothing is written
  WriteInfoToConfiguration();
  EXPECT_EQ(fs::hard_link_count(home.file("quillagram.ini")), 2u);
  EXPECT_EQ(WMenuGetString(40022), "/2");
  EXPECT_EQ(WMenuGetString(40025), "");
}

// Of a long file fifty lines stay; address lines are replaced but not added. A key behind a line
// end would be one of the file's own, an editor's command for instance.
TEST_F(Configuration, WhatIsWrittenAndWhatIsNot) {
  const std::string old = "depart=old\nCOMPANY=old\n! ADDRESS=old\n";
  std::string more;
  for (int i = 4; i <= 50; ++i) more += "line " + std::to_string(i) + "\n";
  Write(old + more + "line 51\nOLD QUILLAGRAM FILES\n/9\n");
  ReadConfiguration();
  Load("/a\nEDT=worse");
  Load("/b");
  EXPECT_EQ(Contents(), old + more + "OLD QUILLAGRAM FILES\n/b\n\n/9\n\nEND QUILLAGRAM FILES\n");
  ws.infodepartment = "  Physics\r\nEDT=worse ";
  ws.infocompany = "";
  ws.infoaddress = "Here";
  WriteInfoToConfiguration();
  EXPECT_EQ(Contents(), "DEPARTMENT=Physics  EDT=worse\nCOMPANY=\n! ADDRESS=old\n" + more);
}

// A toolbar that was hidden stays so in the next run.
TEST_F(Configuration, ToolbarIsRemembered) {
  Write("EDT=vi\ntoolbar=1\nOLD QUILLAGRAM FILES\n/1\nEND QUILLAGRAM FILES\n");
  ReadConfiguration();
  EXPECT_EQ(ws.toolbar, 1);
  RunCommand(*FindCommand(MenuToolbar));
  EXPECT_EQ(Contents(), "EDT=vi\nTOOLBAR=0\nOLD QUILLAGRAM FILES\n/1\nEND QUILLAGRAM FILES\n");
  ws.toolbar = 1;
  ReadConfiguration();
  EXPECT_EQ(ws.toolbar, 0);
}

TEST_F(Configuration, WhatMayBeDoneWithIt) {
  Settings("read");
  ReadConfiguration();
  EXPECT_FALSE(fs::exists(home.file("quillagram.ini")));
  Write("EDT=vi\nADDRESS=\n");
  ReadConfiguration();
  EXPECT_EQ(ws.editorpath, "vi");
  Load("/a");
  ws.infoaddress = "Here";
  WriteInfoToConfiguration();
  Settings("none");
  ReadConfiguration();
  EXPECT_EQ(ws.editorpath, "quillagram-edit");
  EXPECT_EQ(Contents(), "EDT=vi\nADDRESS=\n");
  EXPECT_TRUE(Events().empty());
}

TEST_F(Configuration, ALinkAndPermissionsStay) {
  fs::create_directory(home.file("real"));
  const std::string real = home.file("real/my.ini");
  fs::create_symlink("real/my.ini", home.file("quillagram.ini"));
  ReadConfiguration();  // the file that the link speaks of is made
  chmod(real.c_str(), 0640);
  Load("/a");
  EXPECT_TRUE(fs::is_symlink(home.file("quillagram.ini")));
  EXPECT_TRUE(ReadFile(real).ends_with("\n/a\n\n\n\nEND QUILLAGRAM FILES\n"));
  EXPECT_EQ(fs::status(real).permissions(), fs::perms(0640));
  EXPECT_EQ(std::distance(fs::directory_iterator(home.file("real")), {}), 1);
  // A device is not replaced.
  fs::remove(home.file("quillagram.ini"));
  fs::create_symlink("/dev/full", home.file("quillagram.ini"));
  ReadConfiguration();
  EXPECT_EQ(Events().back(), Box("Error creating ini-file", "is no regular file"));
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST_F(Configuration, OfAFullDiskTheOldFileComesBack) {
  const std::string before = "EDT=vi\nADDRESS=Here\n";
  Write(before);
  ReadConfiguration();
  {
    const SmallFiles small(30);
    Load("/a");
    Load("/b");  // told once
    ws.infoaddress = std::string(60, 'x');
    WriteInfoToConfiguration();  // and where it has been asked for
  }
  const std::string box = Box("Error opening inifile", "File too large");
  EXPECT_EQ(Events(), (std::vector<std::string>{box, box}));
  EXPECT_EQ(Contents(), before);
  EXPECT_EQ(std::distance(fs::directory_iterator(home.path()), {}), 1);
}

TEST_F(Configuration, AMissingPlaceIsToldOnceAndTheRunGoesOn) {
  setenv("QUILLAGRAM_HOME", "/as/startdir/tells", 1);
  ws.startdir = home.file("missing") + "/";
  ReadConfiguration();
  EXPECT_EQ(ws.editorpath, "quillagram-edit");
  EXPECT_EQ(WMenuGetString(40022), "empty");
  Load("/a");
  EXPECT_EQ(ws.recentfiles(1), "/a");
  const std::string missing = "No such file or directory";
  EXPECT_EQ(Events(), (std::vector<std::string>{Box("Error creating ini-file", missing)}));
  WriteInfoToConfiguration();
  EXPECT_EQ(Events(), (std::vector<std::string>{Box("Error opening inifile", missing)}));
}

// Beside a program that its user cannot write to lies what the user's own file begins with.
TEST_F(Configuration, TheUsersOwnPlace) {
  Write("EDT=vi\nmine\n");
  fs::create_directory(home.file("user"));
  fs::permissions(home.file("user"), fs::perms::all);
  fs::permissions(home.path(), fs::perms(0555));
  {
    const OtherUser other;
    Settings("read");
    ReadConfiguration();
    EXPECT_EQ(ws.editorpath, "vi");
    EXPECT_TRUE(fs::is_empty(home.file("user")));
    Settings("write");
    ReadConfiguration();
    EXPECT_EQ(ws.inipath, home.file("user/quillagram/quillagram.ini"));
    EXPECT_EQ(ReadFile(ws.inipath), "EDT=vi\nmine\n");
    Load("/a");
    ReadConfiguration();
    EXPECT_EQ(ws.recentfiles(1), "/a");
  }
  fs::permissions(home.path(), fs::perms(0755));
  EXPECT_EQ(Contents(), "EDT=vi\nmine\n");
  EXPECT_TRUE(Events().empty());

  // Without that variable it lies below the home directory.
  ws.startdir = home.file("quillagram.ini") + "/";
  unsetenv("XDG_CONFIG_HOME");
  setenv("HOME", home.file("me").c_str(), 1);
  ReadConfiguration();
  EXPECT_TRUE(fs::exists(home.file("me/.config/quillagram/quillagram.ini")));

  // An installed program leaves its folder alone even where it may write.
  fs::create_directories(home.file("prefix/bin"));
  fs::create_directories(home.file("prefix/share/doc/quillagram"));
  ws.startdir = home.file("prefix/bin/");
  EXPECT_EQ(FindInifile(ws.startdir).path, ws.startdir + "quillagram.ini");
  WriteFile(home.file("prefix/share/doc/quillagram/copyright"), "");
  EXPECT_EQ(FindInifile(ws.startdir).path, home.file("me/.config/quillagram/quillagram.ini"));
}

// Two programs at once change the file by turns and never see half of it.
TEST_F(Configuration, TwoProgramsAtOnce) {
  const std::string head = "EDT=vi\nmine\nADDRESS=Here\n";
  Write(head);
  std::string loads;
  for (const char* name : {"a.xy", "b.xy"}) {
    WriteFile(home.file(name), "1 2\n2 3\n");
    loads += std::string("open ") + name + "\nget editorpath\n";
  }
  std::string transcript;
  for (int i = 0; i < 30; ++i) transcript += loads;
  const auto run = [&] {
    return RunReplay(transcript, home.path(), {"--settings", "write"}, home.path());
  };
  auto lock = std::make_unique<InifileLock>(home.file("quillagram.ini"));
  auto other = std::async(std::launch::async, run);
  EXPECT_EQ(other.wait_for(std::chrono::milliseconds(300)), std::future_status::timeout);
  EXPECT_EQ(Contents(), head);
  lock.reset();
  for (const ReplayRun& done : {run(), other.get()}) {
    EXPECT_EQ(done.status, 0);
    for (const std::string& line : done.lines) EXPECT_EQ(line, "value\teditorpath\tvi");
  }
  const std::string a = home.file("a.xy") + "\n", b = home.file("b.xy") + "\n";
  EXPECT_EQ(Contents(), head + "OLD QUILLAGRAM FILES\n" + b + a + b + a + "END QUILLAGRAM FILES\n");
}

}  // namespace
