// Zones of the reciprocal lattice: what they are, how they are brought into normal form, fitted to
// the lines, and rated.
#pragma once

#include <array>
#include <bitset>

#include "index/ito/histogram.h"
#include "index/ito/ito.h"
#include "index/ito/problem.h"

// q = h h a + k k b + h k f.
struct Zone {
  float a = 0, b = 0, f = 0;
  float quality = 0;  // the inverse of the chance to come about by accident
  int number = 0;     // in the list as it was found
  bool centred = false;
};

// Of the lines of a problem, which ones a zone or a lattice indexes.
using LineSet = std::bitset<kItoMostLines>;

// For each h from -8 to 8 and k from 0 to 8 the chance of the calculated line: positive if a line
// is seen there, negative if not, 0 if it lies out of range.
class ZoneTable {
 public:
  static constexpr int kMost = 8;
  static bool Holds(int h, int k) { return h >= -kMost && h <= kMost && k >= 0 && k <= kMost; }
  float& operator()(int h, int k) { return cells_[h + kMost][k]; }

 private:
  std::array<std::array<float, kMost + 1>, 2 * kMost + 1> cells_{};
};

struct ZoneHits {
  LineSet lines;
  ZoneTable table;
};

// Brings a zone into the form 0 <= f < a <= b, where rhombic zones become rectangles of half their
// edges. False if a falls below the limit of the problem.
bool NormalForm(Zone& zone, const ItoProblem& problem, Listing* test);

// Matches the zone with the lines up to qmax and improves its constants by one step of least
// squares, which is left out where the lines do not fix them.
ZoneHits ZoneFit(Zone& zone, const ItoProblem& problem, float qmax, Listing* test);

// The inverse of the chance that the rows of the zone with h and k in steps of i and j, all of them
// or those of a centred net, are met as often as the table tells.
float ZoneProbability(ZoneTable table, int i, int j, bool centred);

// Finds up to five cross constants with which two lines as a and b index many others.
std::vector<Trial> Finzon(float a, float b, const ItoProblem& problem, Listing* test);

// Reforms and rates a zone: takes the net, of the zone and those with doubled axes, that is least
// likely an accident, and gives the lines that it indexes. The quality is 0 if the zone is of no
// use.
LineSet Evalu8(Zone& zone, const ItoProblem& problem, Listing* test);
