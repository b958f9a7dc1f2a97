// The limits of the search for a cell, with their reasons.
#pragma once

#include <cstddef>

// The windows of the search, as a share of a line's width: positions are good to a seventh of it,
// and the zero shift is left out of the search.
inline constexpr double kSearchWindow = 0.6;

// The lines that a metric is checked on, first and second; more positions than six a line of the
// second check say nothing.
inline constexpr std::size_t kLinesOfFirstCheck = 8, kLinesOfSecondCheck = 20;
inline constexpr int kMostPositions = 117;

// Whose lines they are. Of those of one phase a metric must hit six of the first eight, so that two
// may be foreign or misread, and twelve of the first twenty, and a refined lattice must explain the
// same share. Of a mixture the half is one phase's, which refinement may bring down a little.
struct PhaseModel {
  int offirst;
  double shareofsecond, shareexplained;
  double mixtures;  // the chance that the list is one of several phases, each with any share
};
inline constexpr PhaseModel kOnePhase{6, 0.6, 0.6, 0}, kMixture{4, 0.5, 0.4, 0.05};

// What a search hands on to the refinement.
inline constexpr std::size_t kMostCandidates = 150;
// Metrics whose coefficients differ by less than this share of the largest are the same.
inline constexpr double kSameMetric = 0.003;

// The longest axes, by the smallest squares of the reciprocal ones: 60 to 70 angstrom, and 140
// for the unique axis of a uniaxial cell.
inline constexpr double kLeastSquare = 2.2e-4;
inline constexpr double kLeastUniaxial = 5e-5;

// How lines and calculated positions go together, as shares of a line's width: a line that lies
// further away than four errors is not on a position, and positions closer than half a width are
// one line.
inline constexpr double kMatchWindow = 0.6;
inline constexpr double kSameLine = 0.5;

// A lattice with more reflections than this by rotation of its symmetry, one of each two opposites,
// explains whatever one likes; and what no memory should be spent on.
inline constexpr double kLongestEdge = 1000;  // of any lattice, angstrom
inline constexpr double kMostOfRotation = 1000;
inline constexpr double kMostReflections = 200000;

// What is judged: lines beyond tell little that is new, and cost much.
inline constexpr std::size_t kLinesJudged = 40;
