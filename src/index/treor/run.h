// A data set of TREOR90 on its way through the searches: keywords, lines, limits and the candidate
// cells.
//
// s is sin^2(theta) throughout, and so are the constants of a cell.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "index/listing.h"
#include "index/treor/treor.h"
#include "workspace/table.h"

// In the numbers of the listing's users; the searches come in an order of their own.
enum class CrystalSystem { Cubic = 1, Tetragonal, Orthorhombic, Hexagonal, Monoclinic, Triclinic };

// The searches.
enum class Stage {
  Cubic,
  Tetragonal,
  Hexagonal,
  OrthorhombicZone,
  Orthorhombic,
  Monoclinic020,
  MonoclinicZone,
  Monoclinic,
  TriclinicZone,
  Triclinic,
};

// s = a hh + b kk + c ll + d hl + e hk + f kl. Of systems with equal axes all constants are set:
// b = a in tetragonal cells, b = e = a in hexagonal ones, b = c = a in cubic ones.
struct Constants {
  float a = 0, b = 0, c = 0, d = 0, e = 0, f = 0;
};

// Largest indices of a base line, and the largest sum of them.
struct IndexLimits {
  int h, k, l, sum;
};

// The keywords of the control lines and their defaults.
struct TreorOptions {
  Table<IndexLimits, 3> orthorhombic{{{{2, 2, 2, 3}, {2, 2, 2, 4}, {2, 2, 2, 4}}}};
  IndexLimits cubic{4, 4, 4, 6};
  IndexLimits tetragonal{4, 4, 4, 4};  // and hexagonal
  Table<IndexLimits, 4> monoclinic{{{{2, 2, 2, 2}, {2, 2, 2, 3}, {2, 2, 2, 3}, {2, 2, 2, 4}}}};
  int merit = 10;   // least M of a solution
  int nix = 1;      // most lines left over in the test of M
  int list = 0;     // not 0: all trials that index enough lines are listed
  int omit = 0;     // not 0: orthorhombic cells only
  int select = 0;   // 1 to the number of lines: it belongs to all sets of base lines
  int use = -1;     // test lines; below 0: not given, until the lines are prepared
  int iq = -1;      // those of them that a trial must index; below 0 alike
  int mono = 0;     // largest beta, degrees; 0: nothing monoclinic, below 0: dominant zone only
  int resume = 0;   // above 0: another data set follows
  int monogam = 0;  // not 0: the general monoclinic search ends at its first candidate
  int monoset = 0;  // sets of base lines of the general monoclinic search
  int choice = 0, mresone = 0, mrestwo = 0, vcrit = 0;  // read and without effect
  int idiv = 0;        // not 0: the first lines are put right by their higher orders
  int shorttest = 0;   // not 0: of the monoclinic searches that of the dominant zone comes first
  int tric = 0;        // not 0: triclinic searches
  float d1 = 0.0002f;  // tolerance of s below ssqtl
  float ssqtl = 0.05f;
  float d2 = 0.0004f;      // tolerance above
  float cem = 25.0f;       // largest edge, angstrom
  float vol = 2000.0f;     // largest volume, cubic angstrom; below 0: stepwise
  bool stepped = false;    // it was below 0, and is not any more
  float wave = 1.540598f;  // angstrom
  float dens = 0, edens = 0.2f, molw = 0;
};

// An observed line.
struct TreorLine {
  float s = 0;
  int code = 0;       // s x 100000
  std::string label;  // four characters
  int number = 0;     // among all, from 1
};

inline constexpr int kTreorMostLines = 99;

// s x 100000, rounded; far out of reach where that is no number of this size.
int LineCode(float s);

// What a trial has to keep to.
struct SearchLimits {
  float lambda6 = 0;    // a b c of an orthorhombic cell of volume V is at least lambda6 / V^2
  float amin = 0;       // least constant, for the longest edge allowed
  float hexamin = 0;    // the same of hexagonal cells
  float stagevol = 0;   // largest volume at present, cubic angstrom
  float testlimit = 0;  // lambda6 / stagevol^2
  int d1 = 0, d2 = 0;   // tolerances x 100000
  int ssqtl = 0;        // where they change, x 100000
  float cos4 = 0;       // most of d^2 / (a c) in a monoclinic cell
  // Windows of a b c that the density leaves open; none: no density is known.
  std::vector<std::array<float, 2>> density{};
};

struct TreorCandidate {
  CrystalSystem system{};
  Constants constants{};
  float product = 0;  // a b c, of a monoclinic cell times 1 - d^2 / (4 a c)
  float volume = 0;   // of a triclinic cell, cubic angstrom
  int count = 0;      // test lines indexed
};

inline constexpr int kMostCandidates = 5, kMostTriclinicCandidates = 10;

// Cells that indexed enough lines, by search.
struct SearchCounts {
  int zone020 = 0, dominantzone = 0, general = 0, triclinic = 0;
};

struct TreorSearch {
  TreorRun& run;
  Listing& listing;
  std::string title{};
  TreorOptions options{};
  std::vector<TreorLine> all{};    // rising s, at most 99
  std::vector<TreorLine> lines{};  // those without higher orders of the first ones
  SearchLimits limits{};
  std::vector<TreorCandidate> candidates{};  // of the present search, best first
  SearchCounts counts{};
  // Cells of the general monoclinic search before this one have been handed over; 0: none.
  int handedover = 0;
  std::string stage = "TREOR90";  // as the report tells it

  // The k-th line of the search, from 1.
  const TreorLine& Line(int k) const { return lines[static_cast<std::size_t>(k - 1)]; }
  int Lines() const { return static_cast<int>(lines.size()); }
  // Asks the run's report; false once it has said no. Cheap enough for some thousand calls a
  // second.
  bool GoOn();
};
