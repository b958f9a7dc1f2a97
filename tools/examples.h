// An example pattern: what it is made of, and what came of it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

struct Cell {
  double a, b, c, alpha, beta, gamma;
};

// All reflections that are equivalent by symmetry.
struct Line {
  int h, k, l, multiplicity;
  double d;
  double square;  // |F| squared of the cell, mean of hkl and its opposite
};

struct Structure {
  const char* name;
  const char* source;  // of cell and atoms
  Cell cell;
  const char* spacegroup;
  std::span<const Line> lines;
};

struct Hump {
  double center, fwhm, height;  // degrees two-theta; height against the other humps
};

struct Example {
  const char* file;
  const char* text;
  const char* structure;           // its name
  double wavelength, wavelength2;  // wavelength2 0: alpha1 alone
  double start, step;
  int points;
  double u, v, w;      // FWHM squared = u tan^2 + v tan + w, of theta
  double shape;        // Lorentz fraction at two-theta 0; it rises by 0.3 over 100 degrees
  double highest;      // counts of the strongest point above background
  double background;   // counts far out; four times as many at two-theta 0
  double crystalline;  // share of the lines in lines and humps, by area; 1 without humps
  std::uint64_t seed;
  std::vector<Hump> humps;
  double stop() const { return start + step * (points - 1); }
};

extern const std::vector<Example> kExamples;

struct Pattern {
  const Example& example;
  std::vector<double> tth;
  std::vector<int> counts;
};

// Writes the pattern to its file in the format of the file's extension.
bool WritePattern(const std::string& directory, const Pattern& pattern);
