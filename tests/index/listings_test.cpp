// The solutions of listings that are whole, cut off, damaged, too long, or of another kind.
#include "index/listings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "solutionlistings.h"
#include "support/support.h"

namespace {

using Reader = int (*)(LineReader&, SolutionTable&);
using Row = std::array<float, solnix>;

Row RowOf(const SolutionTable& s, int k) {
  Row row;
  for (int field = sola; field <= solnix; ++field) row[field - 1] = s(k, field);
  return row;
}

class Listings : public testing::Test {
 protected:
  int Read(Reader reader, const std::string& text) {
    WriteFile(dir_.file("listing"), text);
    LineReader file(dir_.file("listing"));
    return reader(file, s);
  }
  std::string Place(const std::string& name) const { return dir_.file(name); }
  // A row that the listing says nothing about.
  void SetUp() override { s.fill(-7); }
  SolutionTable s;

 private:
  TempDir dir_;
};

const auto Edges = [](int k) { return Row{4.0f + k, 5.0f + k, 6.0f + k, 90, 91, 92, 100.0f * k}; };

Row ItoRow(int k) {
  Row row = Edges(k);
  row[solfom - 1] = 50 - k / 2.0f;
  row[solnix - 1] = static_cast<float>(k);
  return row;
}
Row TreorRow(int k) {
  Row row = Edges(k);
  row[solfom - 1] = static_cast<float>(50 - k);
  row[solnix - 1] = static_cast<float>(k);
  return row;
}

// Of a listing that is damaged too there is a letter for each solution.
TEST_F(Listings, TellTheCenteringsOfIto) {
  std::string text = listings::Ito(3);
  text.replace(text.find("       p\n", text.find("       p\n") + 1), 9, "       i\n");
  const auto letters = [&](const std::string& listing) {
    WriteFile(Place("letters"), listing);
    LineReader file(Place("letters"));
    return ReadItoCenterings(file);
  };
  EXPECT_EQ(letters(text), "pip");
  EXPECT_EQ(letters(text.replace(text.find("       p\n"), 9, "\n")), " ip");
  EXPECT_EQ(letters(listings::Ito(101)), std::string(100, 'p'));
  EXPECT_EQ(letters(listings::Treor(2)), "");
}

TEST_F(Listings, GiveTheirSolutionsUpToAHundred) {
  for (int n : {1, 99, 100, 101}) {
    const int kept = std::min(n, 100);
    ASSERT_EQ(Read(ReadItoSolutions, listings::Ito(n)), kept);
    for (int k = 1; k <= kept; ++k) ASSERT_EQ(RowOf(s, k), ItoRow(k)) << n << ' ' << k;
    ASSERT_EQ(Read(ReadTreorSolutions, listings::Treor(n)), kept);
    for (int k = 1; k <= kept; ++k) ASSERT_EQ(RowOf(s, k), TreorRow(k)) << n << ' ' << k;
  }
}

// Of ITO a solution counts as soon as the second table begins, behind 8 lines, the heading, three
// solutions and 3 more; a cell that is not there is 0. Of TREOR90 it counts with the 6th of its 9
// lines, which begin behind 2; the figures of a test that is missing stay as they were.
TEST_F(Listings, CutBehindEveryLine) {
  constexpr int table = 9 + 3 + 3;
  const auto cut = [this](Reader reader, const std::string& text, auto number, auto expected) {
    int lines = 0;
    for (std::size_t end = 0; end != std::string::npos; end = text.find('\n', end + 1), ++lines) {
      s.fill(-7);
      ASSERT_EQ(Read(reader, text.substr(0, end)), number(lines)) << lines;
      for (int k = 1; k <= number(lines); ++k)
        EXPECT_EQ(RowOf(s, k), expected(lines, k)) << lines << ' ' << k;
    }
  };
  cut(
      ReadItoSolutions, listings::Ito(3), [](int lines) { return lines < table ? 0 : 3; },
      [](int lines, int k) {
        Row row = ItoRow(k);
        if (lines < table + k) std::fill_n(row.begin(), int{solvolume}, 0.0f);
        return row;
      });
  cut(
      ReadTreorSolutions, listings::Treor(3),
      [](int lines) { return std::clamp((lines - 2 + 3) / 9, 0, 3); },
      [](int lines, int k) {
        Row row = TreorRow(k);
        if (lines < 2 + 9 * k - 1) row[solfom - 1] = row[solnix - 1] = -7;
        return row;
      });
}

TEST_F(Listings, WithNumbersThatDoNotFit) {
  std::string text = listings::Ito(2);
  text.replace(text.find("    5.000    6.000"), 9, "*********");
  text.replace(text.find("       2.     49.0"), 18, "*****************.");
  ASSERT_EQ(Read(ReadItoSolutions, text), 2);
  EXPECT_EQ(RowOf(s, 1), (Row{0, 0, 0, 0, 0, 0, 0, 49.5f, 1}));
  Row second = ItoRow(2);
  second[solfom - 1] = second[solnix - 1] = -7;
  EXPECT_EQ(RowOf(s, 2), second);

  text = listings::Treor(1);
  text.replace(text.find("  6.000000"), 10, "**********");
  ASSERT_EQ(Read(ReadTreorSolutions, text), 1);
  EXPECT_EQ(RowOf(s, 1), (Row{5, 0, 7, 90, 0, 92, 100, 49, 1}));
}

}  // namespace
