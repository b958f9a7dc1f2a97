// Least squares of a lattice's constants, and its figure of merit.
#pragma once

#include <array>
#include <vector>

#include "crystal/hklcode.h"
#include "index/ito/zones.h"

// Bravais types, and their letters.
enum LatticeType { TypeA = 1, TypeB, TypeC, TypeI, TypeF, TypeP };
inline constexpr std::string_view kTypeLetters = "abcifp";
bool TypeAllows(int type, const Hkl& r);

// A calculated line, and whether a line before it has been indexed with it already.
struct Calculated {
  Hkl hkl;
  float q;
  bool used = false;
};

struct LatticeFit {
  static constexpr std::size_t kMostCandidates = 5;  // of an observed line
  std::vector<std::vector<Calculated>> candidates;   // for each line that takes part
  std::vector<Calculated> calculated;                // all of them up to the last of these lines
  int ncalc = 0;                                     // calculated up to line 20
  float variance = 0;                                // of an observation of unit weight, q squared
  std::array<float, 6> esd{};                        // of the constants
  bool singular = false;
};

// Tells that the lines do not fix the constants.
void PutSingular(Listing& listing);

enum class FitLines { First20, All };

// Refines the constants in cycles whose windows close in on those of the lines, and sets lines,
// merit and type of the lattice; the type is chosen where none of the lines was indexed before.
// Cross constants within the tolerance of equal values are 0 and stay so.
LatticeFit Refpar(Lattice& lattice, const ItoProblem& problem, int cycles, FitLines which,
                  Listing* test);
