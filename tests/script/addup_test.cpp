// The table of all files of a script.
#include <gtest/gtest.h>

#include <filesystem>

#include "scripts.h"
#include "support/smallfiles.h"

namespace {

constexpr const char* kAddUp = "INFM    2\nUTFM    5\n";

// The first pattern has the rows; a shorter one leaves the rest of its column at 0.
TEST(AddUp, ColumnsOfCountsBehindTwoTheta) {
  const ScriptTest test;
  test.Write("first_one.xy", "10.0 1.5\n10.05 2.4\n10.1 123456789\n");
  test.Write("\u00fc.xy", "20 7\n21 8\n");
  test.Write("c.xy", "10 -4.5\n11 5\n12 6\n13 7\n");
  const auto boxes = test.Run("first_one.xy\n\u00fc.xy\nnone.xy\nc.xy\n", "old", kAddUp);
  EXPECT_EQ(boxes.back(),
            "Script\tScript done\\nFiles read: 3, written: 1, skipped: 1\\nnone.xy: Error opening "
            "xy file: No such file or directory");
  EXPECT_EQ(test.Read("out.mlt"),
            "2theta   first_on \u00fc.xy     c.xy    \n"
            " 10.0000        2        7       -5\n"
            " 10.0500        2        8        5\n"
            " 10.1000123456792        0        6\n");
}

TEST(AddUp, AHundredFilesAndTenThousandRows) {
  const ScriptTest test;
  test.Pattern("long.xy", 1000, 12000);
  test.Pattern("short.xy", 1000, 3);
  std::string inputs = "long.xy\nlong.xy\n";
  for (int i = 0; i < 99; ++i) inputs += "short.xy\n";
  const auto boxes = test.Run(inputs, "", kAddUp);
  EXPECT_EQ(
      boxes,
      (Lines{"Pattern Error\tMore than 10000 data points",
             "Script\tScript done\\nFiles read: 101, written: 1, skipped: 0\\nMore than 10000 "
             "data points\\nthe table holds 100 files: 1 more is not in it"}));
  const auto lines = LinesOf(test.Read("out.mlt"));
  ASSERT_EQ(lines.size(), 10001u);
  EXPECT_EQ(lines[0].size(), 8u + 101 * 9);
  EXPECT_EQ(lines[0].substr(8 + 99 * 9), " short.xy" + std::string(9, ' '));
  EXPECT_EQ(lines[1].size(), 8u + 100 * 9);
  EXPECT_TRUE(lines[1].ends_with("      100"));
  EXPECT_TRUE(lines[10000].ends_with("        0"));
}

TEST(AddUp, WithoutFilesOrAheadOfThemThereIsNoColumn) {
  const ScriptTest test;
  test.Run("", "", kAddUp);
  EXPECT_EQ(test.Read("out.mlt"), "2theta  \n");
  // Each file has the column of the one before, and the last none.
  test.Write("a.xy", "10 1\n11 2\n");
  test.Write("b.xy", "10 3\n11 4\n");
  test.Run("a.xy\nb.xy\n", "", "UTFM    5\nINFM    2\n");
  EXPECT_EQ(test.Read("out.mlt"),
            "2theta   a.xy     b.xy    \n 10.0000        1        0\n 11.0000        2        0\n");
}

TEST(AddUp, ATableThatCannotBeWrittenIsTold) {
  const ScriptTest test;
  test.Pattern("a.xy", 1000);
  const std::string done =
      "Script\tScript done\\nFiles read: 1, written: 0, skipped: 0\\nout.mlt: ";
  {
    test.Write("out.mlt", "old");
    test.Write("in.mlt", "a.xy\n");
    test.Write("a.scp", "in.mlt\nout.mlt\n" + std::string(kAddUp));
    const SmallFiles full(100);
    EXPECT_EQ(test.RunFile("a.scp").back(), done + "Error writing sum file: File too large");
  }
  EXPECT_EQ(test.Read("out.mlt"), "old");
  std::filesystem::remove(test.file("out.mlt"));
  std::filesystem::create_directory(test.file("out.mlt"));
  EXPECT_EQ(test.RunFile("a.scp"), (Lines{"File Error\tError opening sum file\\n" +
                                              test.file("out.mlt") + ": Is a directory",
                                          done + "Error opening sum file: Is a directory"}));
  // The list and the script are no places for it.
  for (const std::string name : {"in.mlt", "a.scp"}) {
    test.Write("a.scp", "in.mlt\n" + name + "\n" + kAddUp);
    EXPECT_EQ(test.RunFile("a.scp"), Lines{"File Error\tError opening sum file\\n" +
                                           test.file(name) + ": is read by the script"});
  }
  EXPECT_EQ(test.Read("in.mlt"), "a.xy\n");
}

}  // namespace
