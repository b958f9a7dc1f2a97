// One problem of ITO: its cards, its lines with their tolerances, and where the search begins.
//
// q is 10000/d^2, in 1/angstrom^2, throughout.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "index/listing.h"

// The parameter cards, with the values that blank fields stand for.
struct ItoCards {
  std::string title;
  bool manual = true, features = false, intensities = false;
  int nsolmx = 4;  // solutions printed at length
  // Orthorhombic, monoclinic, triclinic: 1 wanted, -1 not wanted, 0 indifferent.
  std::array<int, 3> nsyst{};
  float tol2 = 3.0f, tol3 = 4.5f;  // of the trial constants of zones and of lattices, q
  float wavel = 1.5406f;           // angstrom
  int linco = 0;                   // above 0: line combinations or zones are given
  bool zerocheck = false;
  int print = 0;  // above 0: intermediate results
  int nq1 = 3, nq2 = 6, nz1 = 6, nz2 = 6;
  int nr = 0;  // above 0: trial lattices are given, which are only refined
  int indat = 5;
  int list = 1;  // solutions with a list of lines
  int test = 0, teststage = 0;
  float wmol = 0, dobs = 0;  // molecular weight, and observed density in g/cm^3; 0: unknown
  float tolg = 0.06f;        // degrees two-theta between an observed and a calculated line
  bool fixedtolg = false;    // it was given and is not adapted to the lines
  float zercor = 0;          // degrees two-theta, added to all lines
  float prntmr = 4.0f;       // least figure of merit of a lattice
  float prntln = 14.0f;      // least number of its lines
};

struct ItoLine {
  float q, low, high;  // the line, and the window of calculated lines that fit it
  float twotheta;      // degrees, with the zero correction
  std::string label;   // of the intensity, two characters
};

// Where a zone may lie: two lines, with a cross constant and a quality for zones given by hand.
struct LineCombination {
  float q1, q2;
  float cross = 0, quality = 0;
};

// q = h h a + k k b + l l c + k l d + l h e + h k f.
struct Lattice {
  float a = 0, b = 0, c = 0, d = 0, e = 0, f = 0;
  float lines = 0;     // histogram count of the search, then lines indexed of the first 20
  float merit = 0;     // pedigree until it is refined, then the figure of merit
  float type = 0;      // 1 to 6 for a, b, c, i, f, p; before: the pedigree of its twin
  float pedigree = 0;  // the digits of both zones and the place in the search
};

struct ItoProblem {
  ItoCards cards;
  std::vector<ItoLine> lines;  // rising q, at most 40
  float eqtol = 0;             // q values closer than this are equal
  float abclimit = 0;          // least value of a, b and c
  // The chance to find a calculated line by accident, in tenths of the range of q.
  float binwidth = 0;
  std::array<float, 11> probability{};  // from element 1 on
  std::vector<LineCombination> combinations;
  std::vector<Lattice> trials;
};

// All pairs of the first lines, but those that are two orders of one line.
std::vector<LineCombination> CombineLines(const std::vector<ItoLine>& lines, const ItoCards& cards,
                                          Listing& listing);

enum class ItoReading {
  End,   // no further problem, or a card that cannot be read
  Skip,  // the listing tells why this problem is of no use
  Run,
};

// Reads the next problem and writes the heading of the listing.
ItoReading ReadProblem(LineReader& input, ItoProblem& problem, Listing& listing);
