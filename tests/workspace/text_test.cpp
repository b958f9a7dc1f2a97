// Text and list utilities.
#include "workspace/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "workspace/table.h"

namespace {

TEST(Text, CleanNumberLine) {
  const char* cases[][2] = {{"1.5   200", "1.5,200"},
                            {" ,, 1.5 ; 200 ;", "1.5,200"},
                            {"1.5\t200", "1.5,200"},
                            {"1,5 200", "1,5,200"},
                            {"1,,2", "1,,2"},
                            {"Sum: 1/2", "1/2"},
                            {"abc", ""},
                            {"12\xC3\xA4 7\xFF", "12,7"},
                            {"1 e 2", "1,e,2"}};
  for (const auto& [text, expected] : cases) {
    std::string line = text;
    EXPECT_EQ(CleanNumberLine(line), 0) << text;
    EXPECT_EQ(line, expected) << text;
  }
  for (std::string empty : {"", "   "}) EXPECT_EQ(CleanNumberLine(empty), 1);
}

TEST(Text, Paths) {
  const char* cases[][3] = {
      {"/data/a.b.xy", "/data/", "a"},
      {"/d:/scan 12:30 \\2.xy", "/d:/", "scan 12:30 \\2"},  // only "/" parts names
      {"quartz.xy", "", "quartz"},
      {"/tmp.d/quartz", "/tmp.d/", "quartz"},
      {"", "", ""},
      {"\xC3\xA4/.xy", "\xC3\xA4/", ""},
  };
  for (const auto& [path, directory, stem] : cases) {
    EXPECT_EQ(FileDirectory(path), directory);
    EXPECT_EQ(FileStem(path), stem);
  }
  std::string path = "a.b.Xrdml  ", ext = "old";
  FileExtension(path, ext);
  EXPECT_EQ(ext, "Xrdml");
  path = "a.";
  FileExtension(path, ext);
  EXPECT_EQ(ext, "");
  path = std::string(300, 'p');
  ext = "gdf";
  FileExtension(path, ext);
  EXPECT_EQ(path, std::string(252, 'p') + ".gdf");
  EXPECT_EQ(ext, "gdf");
}

TEST(Text, FindAlignAndCase) {
  EXPECT_EQ(FindText("a q(a) ", "q(a)  "), 3);
  EXPECT_EQ(FindText("abc", "cd"), 0);
  EXPECT_EQ(LeftAlign("  a b  "), "a b");
  EXPECT_EQ(RightAlign("ab ", 4), "  ab");
  EXPECT_EQ(RightAlign("abcdef", 4), "abcd");
  EXPECT_EQ(SqueezeBlanks(" 1 0. 5 "), "10.5");
  EXPECT_EQ(UpperText("aZ1\xE4"), "AZ1\xE4");
  EXPECT_EQ(LowerText("aZ[\xC4"), "az[\xC4");
  EXPECT_EQ(Field(std::string(255, 'x') + " y"), std::string(255, 'x'));
  EXPECT_EQ(Trim("   "), "");
}

// Letters of one to four bytes count one each, and so does a byte that belongs to none.
TEST(Text, CutsEndAtWholeLetters) {
  const std::string letters = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x92\x8E";
  const std::string strays = "\xA4\xFC\xE2\x82x\xC3";
  for (int n : {-1, 0}) EXPECT_EQ(Cut(letters, n), "");
  const std::size_t ends[] = {1, 3, 6, 10};
  for (int n = 1; n <= 4; ++n) EXPECT_EQ(Cut(letters, n), letters.substr(0, ends[n - 1])) << n;
  for (int n = 1; n <= 6; ++n) EXPECT_EQ(Cut(strays, n), strays.substr(0, n)) << n;
  EXPECT_EQ(Field("\xC3\xA4 \xC3\xA4", 2), "\xC3\xA4");
  EXPECT_EQ(RightAlign("\xC3\xA4\xC3\xB6", 3), " \xC3\xA4\xC3\xB6");

  std::string path;
  for (int i = 0; i < 256; ++i) path += "\xC3\xA4";
  EXPECT_TRUE(FitsField(path));
  EXPECT_FALSE(FitsField(path + "x"));
  EXPECT_EQ(TooLongPath("/a\nb"), "/a b is longer than 256 characters");
  EXPECT_EQ(FileMessage("Stated", "/a\r\nb", "gone"), "Stated\n/a  b: gone");
}

TEST(Text, NearestInteger) {
  const double infinite = std::numeric_limits<double>::infinity();
  EXPECT_EQ(nint(2.5f), 3);
  EXPECT_EQ(nint(-2.5f), -3);
  EXPECT_EQ(nint(0.49999997f), 0);
  EXPECT_EQ(nint(8388609.0f), 8388609);
  EXPECT_EQ(nint(1e30f), std::numeric_limits<int>::max());
  EXPECT_EQ(nint(-infinite), std::numeric_limits<int>::min());
  EXPECT_EQ(nint(std::nan("")), 0);
}

TEST(Text, NumberFields) {
  struct Case {
    float value;
    int w, d;
    const char* text;
  };
  const float infinite = std::numeric_limits<float>::infinity();
  const Case cases[] = {{0.25f, 8, 3, "    .250"},
                        {-0.0001f, 8, 3, "    .000"},
                        {12.345f, 8, 3, "  12.345"},
                        {0.125f, 5, 2, "  .13"},
                        {-2.5f, 4, 0, " -3."},
                        {1234.5f, 6, 2, "***.**"},
                        {99.996f, 6, 2, "100.00"},
                        {-100, 6, 2, "***.**"},
                        {3e38f, 8, 4, "***.****"},
                        {infinite, 5, 1, "***.*"},
                        {std::nanf(""), 5, 1, "***.*"},
                        {1, 3, 3, "***"},
                        {1, -4, 2, ""},
                        {1, 5, -1, "   1."}};
  for (const Case& c : cases) EXPECT_EQ(RealField(c.value, c.w, c.d), c.text) << c.value;

  EXPECT_EQ(IntField(-42, 6), "   -42");
  EXPECT_EQ(IntField(0, 3), "  0");
  EXPECT_EQ(IntField(7, 5, 3), "  007");
  EXPECT_EQ(IntField(-1000, 4), "****");
  EXPECT_EQ(IntField(std::numeric_limits<int>::min(), 11), "-2147483648");
  EXPECT_EQ(IntField(5, -3), "");

  EXPECT_EQ(ExpField(0, 8, 3), "    0.e0");
  EXPECT_EQ(ExpField(-12345, 10, 3), "  -0.123e5");
  EXPECT_EQ(ExpField(0.00099996f, 9, 4), "0.1000e-2");
  EXPECT_EQ(ExpField(infinite, 4, 3), "****");
}

TEST(Lists, Sorts) {
  std::mt19937 random(7);
  for (int n : {0, 1, 2, 3, 50, 201}) {
    std::vector<float> list(static_cast<std::size_t>(n));
    for (float& x : list) x = static_cast<float>(random() % 60);
    std::vector<float> rising = list, falling = list;
    ShellSort(rising.data(), n);
    ShellSort(falling.data(), -n);
    std::sort(list.begin(), list.end());
    EXPECT_EQ(rising, list);
    if (n == 1) continue;
    EXPECT_EQ(falling, std::vector<float>(list.rbegin(), list.rend()));
  }
  std::vector<float> strange{3, std::nanf(""), 1, std::nanf(""), 2};
  ShellSort(strange.data(), 5);

  // All fields of a row move together, and rows behind the last stay.
  static Table<float, 3, 12> table;
  for (int j = 1; j <= 12; ++j) {
    table(2, j) = static_cast<float>(j * 7 % 11);
    table(1, j) = static_cast<float>(j);
    table(3, j) = table(2, j) * 2;
  }
  for (int key : {2, -2}) {
    RowSort(&table(1, 1), 12, 3, 10, key);
    for (int j = 1; j <= 10; ++j) {
      EXPECT_EQ(table(2, j), static_cast<float>(key > 0 ? j : 11 - j));
      EXPECT_EQ(table(3, j), table(2, j) * 2);
      EXPECT_EQ(static_cast<int>(table(1, j)) * 7 % 11, static_cast<int>(table(2, j)));
    }
    EXPECT_EQ(table(1, 11), 11);
  }
  // Equal keys are not exchanged.
  table.fill(1);
  for (int j = 1; j <= 12; ++j) table(1, j) = static_cast<float>(j);
  RowSort(&table(1, 1), 12, 3, 12, -3);
  for (int j = 1; j <= 12; ++j) EXPECT_EQ(table(1, j), static_cast<float>(j));
}

}  // namespace
