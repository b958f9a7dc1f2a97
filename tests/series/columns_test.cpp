// What a table of a series tells in numbers, and how series are chosen.
#include "series/columns.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "series/condition.h"
#include "series/naturalorder.h"
#include "series/series.h"
#include "support/support.h"

namespace {

using Texts = std::vector<std::string>;

TEST(SeriesColumns, DatesAreHours) {
  const auto from = [](const char* date) {
    return HoursOf(date).value_or(NAN) - HoursOf("2026-03-28").value_or(NAN);
  };
  EXPECT_EQ(HoursOf("1970-01-02"), 24);
  EXPECT_EQ(from("2026-03-28 06:30"), 6.5);
  EXPECT_NEAR(from("2026-03-29T06:30:36"), 30.51, 1e-9);
  EXPECT_NEAR(from("2026-03-28 00:00:01.8"), 0.0005, 1e-9);
  EXPECT_EQ(from("2026-03-28T06:30:00Z"), 6.5);
  EXPECT_EQ(from("2026-03-28T06:30+01:30"), 5);
  EXPECT_EQ(from("2026-03-28 06:30-0200"), 8.5);
  EXPECT_EQ(*HoursOf("2024-03-01") - *HoursOf("2024-02-28"), 48) << "a leap year";
  for (const char* none : {"", "2026", "2026-13-01", "2026-02-30", "28-03-2026", "2026-03-28x",
                           "2026-03-28 6:30", "2026-03-28 06:75", "2026-03-28 ", "12.5"})
    EXPECT_FALSE(HoursOf(none)) << none;
}

TEST(SeriesColumns, AreNumbersWhereThereAreSome) {
  const SeriesTable table{{"file", "date", "T", "a", "a esd", "note", "recipe", "failed"},
                          {{"1", "2026-01-01 10:30", "300", "5.5", "0.25", "", "7", ""},
                           {"2", "2026-01-01 10:00", "310", "6", "x", "cold", "7", "it was cold"},
                           {"3", "2026-01-01 10:00", "320", "1e-3", "", "2 cold", "7", ""},
                           {"4", "", "", "nan", "", "", "7", ""}}};
  EXPECT_EQ(NumberColumns(table), (std::vector<int>{1, 2, 3, 4}));
  const SeriesValues a = ValuesOf(table, 3, 5);
  EXPECT_EQ(a.name, "a");
  ASSERT_EQ(a.values.size(), 5u);
  EXPECT_EQ(a.values[0], 5.5);
  EXPECT_TRUE(std::isnan(a.values[1])) << "it has failed";
  EXPECT_EQ(a.values[2], 0.001);
  EXPECT_TRUE(std::isnan(a.values[3]) && std::isnan(a.values[4]));
  ASSERT_EQ(a.esds.size(), 5u);
  EXPECT_EQ(a.esds[0], 0.25);
  EXPECT_TRUE(std::isnan(a.esds[2]));
  const SeriesValues date = ValuesOf(table, 1, 2);
  EXPECT_EQ(date.name, "date (h)");
  EXPECT_EQ(date.values[0], 0) << "the earliest that has not failed";
  EXPECT_EQ(ValuesOf(table, 1, 4).values[0], 0.5);
  EXPECT_TRUE(date.esds.empty());
}

TEST(SeriesColumns, NamesAreOrderedAsPeopleDo) {
  const Texts ordered{"a",
                      "a01",
                      "a1",
                      "a2.xy",
                      "a2b",
                      "a10",
                      "a010b",
                      "a99999999999999999999",
                      "a100000000000000000000",
                      "b",
                      "b1c2",
                      "b1c11"};
  for (std::size_t i = 0; i < ordered.size(); ++i)
    for (std::size_t j = 0; j < ordered.size(); ++j)
      EXPECT_EQ(NaturalOrder(ordered[i], ordered[j]), i < j) << ordered[i] << ' ' << ordered[j];
}

TEST(SeriesColumns, ConditionsAreWholeOrNone) {
  const auto condition = ReadCondition("a > b<-0.5");
  ASSERT_TRUE(condition);
  EXPECT_EQ(condition->column, "a > b");
  EXPECT_FALSE(condition->above);
  EXPECT_EQ(condition->limit, -0.5);
  EXPECT_TRUE(ReadCondition("Rwp>12")->above);
  for (const char* none : {"", "Rwp", ">12", "Rwp>", "Rwp>x", "Rwp>12%", "Rwp>inf", "Rwp=12"})
    EXPECT_FALSE(ReadCondition(none)) << none;
  EXPECT_EQ(ConditionsIn("Rwp, fraction>0.1, a<4.5"), (Texts{"Rwp, fraction>0.1", " a<4.5"}));
  for (const char* none : {"Rwp>12,5", "Rwp>12,", ",Rwp", ""})
    EXPECT_EQ(ConditionsIn(none), Texts()) << none;
}

// Folders can be moved with the table in them; what lies elsewhere has its whole path.
TEST(SeriesChoice, AreNamedAsSeenFromTheTable) {
  const TempDir folder;
  const std::string home = folder.path() + "/";
  Series series;
  WriteFile(home + "x.list", "T,file\n300,b/2.xy\n310,/elsewhere/1.xy\n");
  EXPECT_THROW(ChooseFiles(series, {home + "x.list"}), SeriesError) << "none of them is there";
  std::filesystem::create_directory(home + "b");
  WriteFile(home + "b/2.xy", "");
  ChooseFiles(series, {home + "x.list"});
  EXPECT_EQ(series.list.files[0].path, home + "b/2.xy");
  ChooseRecipe(series, "/recipes/cell.one.recipe");
  EXPECT_EQ(series.tablepath, home + "cell.one.csv");
  EXPECT_EQ(ListForRun(series), "file,T\nb/2.xy,300\n/elsewhere/1.xy,310\n");
  ChooseTable(series, home + "b/t.csv");
  EXPECT_EQ(ListForRun(series), "file,T\n2.xy,300\n/elsewhere/1.xy,310\n");
  ChooseFiles(series, {home + "10.xy", home + "9.xy"});
  EXPECT_EQ(series.tablepath, home + "b/t.csv") << "chosen, and nothing in it yet";
  EXPECT_EQ(ListForRun(series), "file\n" + home + "9.xy\n" + home + "10.xy\n");
  EXPECT_THROW(ChooseFiles(series, {home + "a\nb"}), SeriesError);
  EXPECT_EQ(series.list.files.size(), 2u);
}

// Rows of the first files are those of the series, others make a series of their own.
TEST(SeriesChoice, ATableThatIsThereIsTaken) {
  const TempDir folder;
  const std::string home = folder.path() + "/", table = home + "t.csv";
  Series series;
  ChooseFiles(series, {home + "1.xy", home + "2.xy", home + "3.xy"});
  WriteFile(table, "file,a,failed\n1.xy,5,\n2.xy,6,\n3.x");
  ChooseTable(series, table);
  EXPECT_EQ(series.table.rows.size(), 2u);
  EXPECT_EQ(series.list.files.size(), 3u);
  WriteFile(table, "file,a,failed\n1.xy,5,\n2.xy,6,\n3.xy,7,\n");
  FollowTable(series);
  FollowTable(series);
  ASSERT_EQ(series.table.rows.size(), 3u);
  EXPECT_EQ(series.table.rows[2], (Texts{"3.xy", "7", ""}));
  // Of other files.
  WriteFile(table, "file,a,failed\nsub/4.xy,5,\n/5.xy,6,\n");
  ReadTable(series);
  EXPECT_TRUE(series.table.rows.empty());
  EXPECT_EQ(series.list.files.size(), 3u);
  ChooseTable(series, table);
  ASSERT_EQ(series.list.files.size(), 2u);
  EXPECT_EQ(series.list.files[0].path, home + "sub/4.xy");
  EXPECT_EQ(series.list.files[1].path, "/5.xy");
  EXPECT_EQ(series.table.rows.size(), 2u);
  WriteFile(table, "something,else\n");
  EXPECT_THROW(ChooseTable(series, table), SeriesError);
  EXPECT_EQ(series.table.rows.size(), 2u);
}

}  // namespace
