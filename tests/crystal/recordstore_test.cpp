// The store of keyed lines: where reading ends, what a lookup finds and hands out.
#include "crystal/recordstore.h"

#include <gtest/gtest.h>

#include "support/support.h"

namespace {

class Records : public testing::Test {
 protected:
  int Read(const std::string& text) {
    WriteFile(path_, text);
    return ReadRecords(path_, store_, failure_);
  }
  // The value of the next line with a key, or "none".
  std::string Find(const std::string& key) {
    std::string value;
    return FindRecord(store_, key, value) ? value : "none";
  }
  TempDir dir_;
  const std::string path_ = dir_.file("records");
  RecordStore store_;
  RecordFailure failure_;
};

TEST_F(Records, EachLookupTakesALine) {
  EXPECT_EQ(Read("BKGR      1\r\n\r\nbkgr      2\nZETT      7\nBkgr      3"), 6);
  EXPECT_EQ(Find("bKGR"), "1");
  EXPECT_EQ(Find("ZETT"), "7");
  EXPECT_EQ(Find("BKGR      "), "2");
  EXPECT_EQ(Find("BKGR"), "3");
  EXPECT_EQ(Find("BKGR"), "none");
  EXPECT_EQ(Find("ZETT"), "none");
  EXPECT_EQ(Find("BKG"), "none");
}

TEST_F(Records, EndHidesWhatFollows) {
  EXPECT_EQ(Read("A         1\nENDING\nB         2\n"), 2);
  EXPECT_EQ(Find("B"), "none");
  EXPECT_EQ(Read("end\nB         2\n"), 1);
  // A lookup knows it in any letters.
  EXPECT_EQ(Read("A         1\nEnd\nB         2\n"), 4);
  EXPECT_EQ(Find("A"), "1");
  EXPECT_EQ(Find("B"), "none");
}

TEST_F(Records, ValuesBehindTheKey) {
  const struct {
    const char *line, *value;
  } cases[] = {
      {"KEYS", ""},
      {"KEYS      ", ""},
      {"KEYS 1 2 34 5", "4,5"},  // the field of the key has ten columns
      {"KEYS,1 2", "1,2"},       // unless a comma or a control character ends it
      {"KEYS\t1\t2", "1,2"},
      {"KEYS     \t1 2", "1,2"},
      {"KEYS      ,1 2", "1,2"},  // a comma in front of the numbers parts nothing
      {"KEYSWORD, 1  2,3 , 4", "1,2,3,4"},
      {"KEYS      -1.5E+03 +.2e1/", "-1.5E+03,+.2e1/"},
      {"KEYS        1  2;3", "  1  2;3"},  // no numbers alone: as it stands
      {"KEYS        1  2 d", "  1  2 d"},
      {"KEYS        1  2 \xC2\xB0", "  1  2 \xC2\xB0"},
  };
  for (const auto& c : cases) {
    Read(c.line);
    EXPECT_EQ(Find("KEYS"), c.value) << c.line;
  }
  Read("lres        1  2");
  EXPECT_EQ(Find("LRES"), "  1  2");
}

TEST_F(Records, FailuresAreTold) {
  EXPECT_EQ(Read(""), 0);
  EXPECT_EQ(failure_.text, "Error reading recfile");
  EXPECT_EQ(failure_.reason, "is empty");
  Read("A         1");
  const std::string nowhere = dir_.file("none");
  EXPECT_EQ(ReadRecords(nowhere, store_, failure_), 0);
  EXPECT_EQ(failure_.text, "Error opening " + nowhere);
  EXPECT_EQ(failure_.reason, "No such file or directory");
  EXPECT_EQ(Find("A"), "none");
}

}  // namespace
