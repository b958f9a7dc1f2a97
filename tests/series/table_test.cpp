// Tables of series and lists of files, read back.
#include <gtest/gtest.h>

#include <random>

#include "series/seriestable.h"
#include "support/support.h"
#include "workspace/csv.h"

namespace {

using Cells = std::vector<std::string>;

TEST(Csv, CellsComeBackAsTheyWere) {
  std::mt19937 random(11);
  constexpr std::string_view kLetters = "\",ab\" ";
  for (int turn = 0; turn < 2000; ++turn) {
    Cells cells(1 + random() % 4);
    for (std::string& cell : cells)
      for (std::size_t n = random() % 6; n > 0; --n) cell += kLetters[random() % kLetters.size()];
    EXPECT_EQ(CsvCells(CsvLine(cells)), cells) << CsvLine(cells);
  }
}

TEST(SeriesTable, IsReadAsFarAsItIsWritten) {
  const TempDir folder;
  const std::string path = folder.file("t.csv");
  WriteFile(path,
            "\xEF\xBB\xBF"
            "file,date,a,failed\r\nx.xy,,5,\n\"y,\"\"z\"\"\",,6,\nshort\nhalf.xy,,");
  const SeriesTable table = ReadSeriesTable(path);
  EXPECT_EQ(table.columns, (Cells{"file", "date", "a", "failed"}));
  ASSERT_EQ(table.rows.size(), 3u);
  EXPECT_EQ(table.rows[1], (Cells{"y,\"z\"", "", "6", ""}));
  EXPECT_EQ(table.rows[2], (Cells{"short", "", "", ""}));
  EXPECT_EQ(table.ColumnOf("a"), 2);
  EXPECT_EQ(table.ColumnOf("b"), -1);
  WriteFile(path, "a,b\n1,2\n");
  EXPECT_THROW(ReadSeriesTable(path), SeriesError);
}

TEST(FileList, IsPathsOrATable) {
  const TempDir folder;
  const std::string path = folder.file("list");
  WriteFile(path, "a, b.xy\r\n\n \"c\".xy");
  FileList list = ReadFileList(path);
  ASSERT_EQ(list.files.size(), 2u);
  EXPECT_EQ(list.files[0].path, "a, b.xy");
  EXPECT_EQ(list.files[1].path, " \"c\".xy");
  EXPECT_TRUE(list.columns.empty());
  WriteFile(path, "temperature,file,note\n300,\"a, b.xy\",\n310,c.xy,\"hot\"");
  list = ReadFileList(path);
  EXPECT_EQ(list.columns, (Cells{"temperature", "note"}));
  ASSERT_EQ(list.files.size(), 2u);
  EXPECT_EQ(list.files[0].path, "a, b.xy");
  EXPECT_EQ(list.files[1].cells, (Cells{"310", "hot"}));
  for (const char* none : {"", "\n \n", "file,temperature\n"}) {
    WriteFile(path, none);
    EXPECT_THROW(ReadFileList(path), SeriesError);
  }
}

}  // namespace
