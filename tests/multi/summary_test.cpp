#include "multi/summary.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/smallfiles.h"
#include "support/support.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

namespace fs = std::filesystem;

std::string Columns(int n, const std::string& field) {
  std::string columns;
  for (int k = 0; k < n; ++k) columns += field;
  return columns;
}

// A table of n columns and two rows.
std::string TableOf(int n) {
  return "     tth" + Columns(n, "  pattern") + "\n 20.0000" + Columns(n, "      -12") +
         "\n 20.0200" + Columns(n, "999999999") + "\n";
}

class Summary : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    fs::current_path(dir.path());
    SetPattern("silicon-640c", {100, 151.5f, 99.4f});
  }
  void TearDown() override { fs::current_path("/"); }

  static void SetPattern(const std::string& stem, const std::vector<float>& counts) {
    ws.patternstem = stem;
    ws.npts(SlotInput) = static_cast<int>(counts.size());
    for (int i = 1; i <= ws.npts(SlotInput); ++i) {
      ws.xval(AxisTth, SlotInput, i) = 20 + 0.02f * static_cast<float>(i - 1);
      ws.yval(SlotInput, i) = counts[i - 1];
    }
  }
  Outcome Open() { return OpenSumFile(table); }
  std::string Content() const { return ReadFile(table); }
  std::string Copy() const { return ReadFile(dir.file("temp.sum")); }
  // The last box says this, its line end as a blank, and the table is as it was.
  void ExpectRefused(const std::string& text) {
    const std::string content = Content();
    Events();
    EXPECT_EQ(AddToSumFile(), Outcome::Failed);
    const auto events = Events();
    EXPECT_EQ(events, std::vector<std::string>{"box\tFile error\t" + text});
    EXPECT_EQ(Content(), content);
  }

  const TempDir dir;
  const std::string table = dir.file("t.sum");
};

// The rows are those of the first pattern; what a shorter one lacks comes from the points that were
// there before, and the status bar tells.
TEST_F(Summary, ColumnsComeByTheNumberOfThePoint) {
  ASSERT_EQ(Open(), Outcome::Done);
  EXPECT_EQ(Content(), "");
  EXPECT_EQ(AddToSumFile(), Outcome::Done);
  EXPECT_EQ(Content(),
            "     tth silicon-\n 20.0000      100\n 20.0200      152\n 20.0400       99\n");
  EXPECT_EQ(WStatusText(3), "silicon-640c added: 1 pattern in t.sum");
  SetPattern(
      "Glasur \xc3\xbc"
      "ber Ton",
      {-1.5f, 0.4f});
  EXPECT_EQ(AddToSumFile(), Outcome::Done);
  EXPECT_TRUE(WStatusText(3).ends_with("which ends at row 2: 2 patterns in t.sum"));
  SetPattern("longer patterns", {1, 2, 3, 4});  // the eighth letter is a blank
  ws.patternstem = "quarz 5 in glass";
  EXPECT_EQ(AddToSumFile(), Outcome::Done);
  EXPECT_TRUE(WStatusText(3).ends_with("cut to 3 rows: 3 patterns in t.sum"));
  SetPattern("", {5, 6, 7});
  EXPECT_EQ(AddToSumFile(), Outcome::Done);
  EXPECT_EQ(Content(),
            "     tth silicon- Glasur \xc3\xbc  quarz 5        -\n"
            " 20.0000      100       -2        1        5\n"
            " 20.0200      152        0        2        6\n"
            " 20.0400       99       99        3        7\n");
  EXPECT_EQ(Copy(), "");
  CloseSumFile();
  EXPECT_EQ(ws.sumcount, 0);
  EXPECT_EQ(AddToSumFile(), Outcome::Idle);
  EXPECT_EQ(Open(), Outcome::Done);
  EXPECT_EQ(ws.sumcount, 4);
}

// Only what could have been written by this program is opened: a column would take the place of
// anything else.
TEST_F(Summary, OtherFilesStayAsTheyAre) {
  const std::string kOther[] = {"20.00 100\n20.02 150\n",     "     tth\n 20.0000\n",
                                "     tth   quartz   glas\n", "     tth silicon-quartz---\n",
                                "     tth quartz  \n",        "     2th   quartz\n",
                                std::string(100, 'x') + "\n"};
  for (const std::string& other : kOther) {
    SCOPED_TRACE(other);
    WriteFile(table, other);
    Events();
    EXPECT_EQ(Open(), Outcome::Failed);
    EXPECT_EQ(Events().front(), "box\tFile error\tError opening summary file\\n" + table +
                                    ": its first line is not that of a summary file");
    EXPECT_EQ(ws.sumopen, 0);
    EXPECT_EQ(Content(), other);
  }
  for (const std::string& path : {dir.path(), dir.file("none/t.sum")})
    EXPECT_EQ(OpenSumFile(path), Outcome::Failed) << path;
  for (const std::string& good : {TableOf(2), "tth     " + TableOf(2).substr(8)}) {
    WriteFile(table, "\n\n" + good);
    EXPECT_EQ(Open(), Outcome::Done);
    EXPECT_EQ(ws.sumcount, 2);
  }
}

TEST_F(Summary, HoldsAHundredColumns) {
  WriteFile(table, TableOf(99));
  Open();
  EXPECT_EQ(ws.sumcount, 99);
  SetPattern("last", {123456789.0f, -12345678.0f});
  EXPECT_EQ(AddToSumFile(), Outcome::Done);
  EXPECT_EQ(Content(), "     tth" + Columns(99, "  pattern") + "     last\n 20.0000" +
                           Columns(99, "      -12") + "123456792\n 20.0200" +
                           Columns(99, "999999999") + "-12345678\n");
  for (int columns : {100, 120}) {
    WriteFile(table, columns == 100 ? Content() : TableOf(columns));
    EXPECT_EQ(Open(), Outcome::Done);
    EXPECT_GE(ws.sumcount, 100);
    ExpectRefused("Too many files in summary file");
  }
}

// What the editor has made of the table counts.
TEST_F(Summary, ATableThatCannotBeReadIsKept) {
  WriteFile(table, TableOf(3));
  Open();
  WriteFile(table, TableOf(1) + "\n\n");
  EXPECT_EQ(AddToSumFile(), Outcome::Done);
  EXPECT_EQ(ws.sumcount, 2);
  const std::string head = "Cannot add to summary file\\n" + table + ": ", two = TableOf(2);
  const struct {
    std::string content, fault;
  } kFaulty[] = {
      {two + " 20.0400        1\n" + two, "line 4 is not a row of 2 columns"},
      {two + "\n 20.0400        1        2\n", "line 4 is not a row of 2 columns"},
      {two + " 20.0400        1*********\n", "line 4 is not a row of 2 columns"},
      {two + " 20,0400        1        2\n", "line 4 is not a row of 2 columns"},
      {two + " 20.0400        1      2.5\n", "line 4 is not a row of 2 columns"},
      {two + " 20.0400        1        2        3\n", "line 4 is not a row of 2 columns"},
      {"     tth  pattern\n" + Columns(MaxPoints + 1, " 20.0000        1\n"),
       "it has more than 20000 rows"},
  };
  for (const auto& faulty : kFaulty) {
    WriteFile(table, faulty.content);
    ExpectRefused(head + faulty.fault);
    EXPECT_EQ(Copy(), "");
  }
  WriteFile(table, "     tth  pattern\n" + Columns(MaxPoints, " 20.0000        1\n"));
  EXPECT_EQ(AddToSumFile(), Outcome::Done);
  WriteFile(table, two);
  for (float counts : {1e9f, -1e8f, 3e38f}) {
    ws.yval(SlotInput, 2) = counts;
    ExpectRefused(head + "point 2 of the pattern has no room in its columns");
  }
  ws.npts(SlotInput) = 0;
  ExpectRefused("There is no pattern to add");
}

// A file of the copy's name is another's, unless it is no more than a copy.
TEST_F(Summary, TheCopyTakesNobodysPlace) {
  WriteFile(table, TableOf(2));
  Open();
  const std::string copy = dir.file("temp.sum"), head = "Error copying summary file\\n" + copy;
  WriteFile(copy, "my own results");
  ExpectRefused(head + ": is there already and holds something else; move it away");
  EXPECT_EQ(Copy(), "my own results");
  fs::remove(copy);
  fs::create_symlink(table, copy);
  ExpectRefused(head + ": is the name of the copy, and cannot be that of the table");
  EXPECT_TRUE(fs::is_symlink(copy));
  fs::remove(copy);
  fs::create_symlink(dir.file("nowhere"), copy);
  ExpectRefused(head + ": is there already and holds something else; move it away");
  fs::remove(copy);
  WriteFile(copy, TableOf(2));
  EXPECT_EQ(AddToSumFile(), Outcome::Done);
  EXPECT_FALSE(fs::exists(copy));
  fs::remove(table);
  ExpectRefused("Error copying summary file\\n" + table + " to " + copy +
                ": No such file or directory");
  EXPECT_FALSE(fs::exists(copy));
}

// The folder of the pattern need not be one to write to.
TEST_F(Summary, TheCopyLiesBesideTheTable) {
  WriteFile(table, TableOf(2));
  Open();
  fs::create_directories(dir.file("measured/temp.sum"));
  fs::current_path(dir.file("measured"));
  EXPECT_EQ(AddToSumFile(), Outcome::Done);
  EXPECT_EQ(Copy(), "");
}

// Full in the copy, full in the new table: the old one is there, and the copy is gone.
TEST_F(Summary, SurvivesAFullDisk) {
  WriteFile(table, TableOf(2));
  Open();
  for (const auto& [bytes, text] :
       {std::pair{40, "Error copying summary file\\n" + table + " to " + dir.file("temp.sum")},
        {90, "Error writing summary file\\n" + table}}) {
    const SmallFiles full(bytes);
    ExpectRefused(text + ": File too large");
    EXPECT_FALSE(fs::exists(dir.file("temp.sum")));
  }
  EXPECT_EQ(Content(), TableOf(2));
  EXPECT_EQ(AddToSumFile(), Outcome::Done);
  EXPECT_EQ(ws.sumcount, 3);
}

// A name that leaves no room for another beside it makes the table be written in its place.
TEST_F(Summary, TheCopyIsWhatIsLeftOfATableWrittenInPlace) {
  std::string path = dir.file("");
  for (int k = 0; k < 125; ++k) path += "\xc3\xbc";
  path += ".sum";
  WriteFile(path, TableOf(2));
  ASSERT_EQ(OpenSumFile(path), Outcome::Done);
  Events();
  {
    const SmallFiles full(90);
    EXPECT_EQ(AddToSumFile(), Outcome::Failed);
  }
  EXPECT_TRUE(Events()[0].ends_with("\\nThe table of before is in " + dir.file("temp.sum")));
  EXPECT_EQ(Copy(), TableOf(2));
}

}  // namespace
