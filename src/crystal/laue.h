// Laue classes and lattice centerings: what they force on a cell, which reflections they make
// equivalent, and which they forbid.
#pragma once

#include <array>

#include "crystal/cellmetric.h"
#include "crystal/hklcode.h"

struct LaueClass {
  const char* label;
  const char* family;
  // For each of a, b, c, alpha, beta, gamma the constant (0 to 5) whose value it takes: itself if
  // it is free. Negative for a fixed angle: -90 or -120.
  std::array<int, 6> master;
  void (*fold)(Hkl&);  // on to the one member of a family that stands for it
};

struct Centering {
  const char* label;
  bool (*allows)(const Hkl&);
};

inline constexpr int kLaueClasses = 16;
inline constexpr int kCenterings = 7;
enum { CenteringP = 1, CenteringR = 7 };

// By number, from 1. A number that there is not gives the triclinic class or no centering.
const LaueClass& LaueClassOf(int laueclass);
const Centering& CenteringOf(int centering);

// Gives the cell's constants the values that the class asks for.
void ForceCell(UnitCell& cell, int laueclass);

// The same triple for every member of a family of equivalent reflections, Friedel mates included.
// Class 4/m takes (k,h) for (-k,h): other families, with the same d and as many members.
Hkl CanonicalIndices(Hkl hkl, int laueclass);
