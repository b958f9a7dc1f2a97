// The Modify menu as a user goes through it, from its dialogs to the pattern.
#include <gtest/gtest.h>

#include <charconv>

#include "modify/patterns.h"

namespace {

TEST(ModifyMenu, OnARamp) {
  const TempDir dir;
  std::string ramp;
  for (int i = 0; i <= 40; ++i)
    ramp += std::to_string(20 + 0.25 * i) + " " + std::to_string(200 + 2.5 * i) + "\n";
  WriteFile(dir.file("ramp.xy"), ramp);
  const ReplayRun run =
      RunReplay(ReadFile(QUILLAGRAM_SOURCE "/tests/modify/modify.replay"), dir.path());
  EXPECT_EQ(run.status, 0) << run.lines.back();

  const struct {
    const char* name;
    std::vector<float> values;
  } expected[] = {
      {"yval(1,1:2)", {400, 405}},  // doubled
      {"yval(1,1:2)", {0, 5}},      // and lowered
      {"npts(1)", {37}},            // 21 to 30 degrees
      {"xval(1,1,1)", {21}},
      {"npts(1)", {36}},  // shifted
      {"xval(1,1,1)", {21.25f}},
      {"yval(1,1)", {23}},               // what stood at 21.15 degrees
      {"yval(1,1:3)", {28, 30.5f, 33}},  // means of 3, 4 and 5 points
      {"sgwindow", {3}},
      {"yval(1,3)", {53}},  // the window around the seventh point
      {"yval(1,31)", {173}},
      {"yval(1,34:36)", {0, 0, 0}},
  };
  std::size_t at = 0;
  Lines others;
  for (const std::string& line : run.lines) {
    if (line.starts_with("dialog") || line.starts_with("field")) continue;
    if (!line.starts_with("value\t")) {
      others.push_back(line);
      continue;
    }
    ASSERT_LT(at, std::size(expected));
    std::string head = std::string("value\t") + expected[at].name;
    ASSERT_TRUE(line.starts_with(head + "\t")) << line;
    const char* p = line.c_str() + head.size();
    for (float wanted : expected[at].values) {
      float value = -1;
      p = std::from_chars(p + 1, line.data() + line.size(), value).ptr;
      EXPECT_NEAR(value, wanted, 2e-3) << line;
    }
    ++at;
  }
  EXPECT_EQ(at, std::size(expected));
  ASSERT_EQ(others.size(), 4u);
  EXPECT_EQ(others[0], "item\t40031\tAutodivergence\t0\t0");
  EXPECT_EQ(others[1], "item\t40052\tAlpha2 stripping\t0\t0");
  EXPECT_EQ(others[2], "box\tError\tShould only be applied to raw data");
  EXPECT_TRUE(others[3].starts_with("command\t") && others[3].ends_with("ramp.xy")) << others[3];
}

}  // namespace
