// Reading and writing text files line by line.
#include "workspace/lines.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <vector>

namespace {

class Lines : public testing::Test {
 protected:
  std::string path_ = testing::TempDir() + "lines " +
                      testing::UnitTest::GetInstance()->current_test_info()->name() + ".txt";
  void TearDown() override { std::filesystem::remove(path_); }

  void Put(std::string_view bytes) { std::ofstream(path_, std::ios::binary) << bytes; }
  std::vector<std::string> Get(int width = 256) {
    LineReader reader(path_);
    EXPECT_TRUE(reader.IsOpen());
    std::vector<std::string> lines;
    for (std::string line; reader.Read(line, width);) lines.push_back(line);
    return lines;
  }
};

TEST_F(Lines, EndsAndBytes) {
  using namespace std::string_view_literals;
  struct Case {
    std::string_view bytes;
    std::vector<std::string> lines;
  };
  const Case cases[] = {
      {"", {}},
      {"\n", {""}},
      {"a\nb\n", {"a", "b"}},
      {"a\r\n\r\nb", {"a", "", "b"}},
      {"a\rb\r", {"a\rb"}},
      {"a  \n  b", {"a", "  b"}},
      {"\xEF\xBB\xBF"sv
       "1 2\n\xEF\xBB\xBF",
       {"1 2", "\xEF\xBB\xBF"}},
      {"\xEF\xBB\xBF"sv, {}},
      {"a\0b\0\n\0\0\r\n\xFF\x80"sv, {"a b", "", "\xFF\x80"}},
  };
  for (const Case& c : cases) {
    Put(c.bytes);
    EXPECT_EQ(Get(), c.lines) << c.bytes;
    if (c.bytes.empty()) continue;
    Put("what the file holds by now");
    const std::string bytes(c.bytes);
    const HeldFile held(path_, bytes);
    EXPECT_EQ(Get(), c.lines) << "held: " << c.bytes;
  }
  EXPECT_EQ(Get().size(), 1u);  // nothing is held any more
}

TEST_F(Lines, LongLinesAreCut) {
  const std::string wide(200000, 'x');
  Put(wide + "\r\n" + wide.substr(0, 256) + "\r\n" + wide.substr(0, 257) + "\n12345\r\n123456\n" +
      wide);
  const std::string cut(256, 'x');
  EXPECT_EQ(Get(), (std::vector<std::string>{cut, cut, cut, "12345", "123456", cut}));
  EXPECT_EQ(Get(5)[3], "12345");
  EXPECT_EQ(Get(5)[4], "12345");
  EXPECT_EQ(Get(200000)[0], wide);
  // A width counts letters: none is cut in two.
  Put("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x92\x8E\xC3\xA4x\n");
  EXPECT_EQ(Get(3)[0], "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x92\x8E");
}

TEST_F(Lines, MemoryStaysBounded) {
  Put("first\n");
  std::filesystem::resize_file(path_, 100'000'000);
  LineReader reader(path_);
  std::string line;
  EXPECT_TRUE(reader.Read(line));
  EXPECT_TRUE(reader.Read(line));
  EXPECT_EQ(line, "");
  EXPECT_LT(line.capacity(), 10000u);
  EXPECT_FALSE(reader.Read(line));
}

TEST_F(Lines, OnlyRegularFilesOpen) {
  std::string line;
  const std::string below = path_ + "/file";
  EXPECT_EQ(LineReader(testing::TempDir()).Reason(), "is a directory");
  EXPECT_EQ(LineReader("/dev/zero").Reason(), "is no regular file");
  EXPECT_EQ(LineReader(path_).Reason(), "No such file or directory");
  EXPECT_FALSE(LineReader(path_).Read(line));
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_FALSE(LineReader(path_).IsOpen());
  EXPECT_EQ(LineReader(below).Reason(), "Not a directory");
}

TEST_F(Lines, WritingThatFailsIsTold) {
  LineWriter nowhere(testing::TempDir());
  EXPECT_FALSE(nowhere.IsOpen());
  EXPECT_FALSE(nowhere.Write("x"));
  EXPECT_FALSE(nowhere.Close());
  EXPECT_EQ(nowhere.Reason(), "Is a directory");

  LineWriter full("/dev/full");
  if (!full.IsOpen()) GTEST_SKIP();
  full.Write("small enough for the buffer");
  EXPECT_FALSE(full.Close());
  EXPECT_EQ(full.Reason(), "No space left on device");
  LineWriter fuller("/dev/full");
  bool good = true;
  for (int i = 0; i < 1000; ++i) good = fuller.Write(std::string(100, 'x')) && good;
  EXPECT_FALSE(good);
  EXPECT_FALSE(fuller.Close());
  EXPECT_EQ(fuller.Reason(), "No space left on device");
}

}  // namespace
