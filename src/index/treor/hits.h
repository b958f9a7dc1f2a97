// The test of a trial cell: how many of the test lines it indexes.
//
// It is made for every trial of every search, so it runs on integers, s x 100000, and looks up what
// lines a calculated one hits.
#pragma once

#include <cstdint>
#include <vector>

#include "index/treor/run.h"

class HitCounter {
 public:
  // For the first options.use lines of the search.
  explicit HitCounter(const TreorSearch& search);
  // Test lines within the tolerance of a calculated line. No constants of a cell index none. A
  // triclinic cell that leaves out too many of the first lines has a count of 0.
  int Count(CrystalSystem system, const Constants& constants);
  // Calculated lines looked at so far.
  long Calculated() const { return calculated_; }

 private:
  struct Coded {
    long a, b, c, d, e, f;  // x 100000
  };
  struct HitLines {
    std::uint8_t first, end;
  };
  std::vector<int> codes_;      // of the test lines, rising
  std::vector<HitLines> hits_;  // of a calculated line, by its code
  int allowed_;                 // lines that a cell may leave out
  long calculated_ = 0;

  // Of the present count: it ends at the code top_ and has marked hit_ of the first lines_ lines.
  int top_ = 0, lines_ = 0, hit_ = 0;
  std::vector<std::uint8_t> marked_;

  void Begin(int lines);
  void Mark(long code);
  void CountUpright(const Coded& m);
  void CountMonoclinic(const Coded& m);
  void CountTriclinic(const Coded& m);
};
