// How well a lattice explains the lines: refined on them, and judged by its likelihood.
#pragma once

#include <optional>
#include <span>

#include "index/find/limits.h"
#include "index/find/lines.h"
#include "index/find/positions.h"
#include "index/find/symmetry.h"

struct Assessment {
  SymmetricLattice lattice{};  // refined, on the axes that it had
  Form reciprocal{};
  double zero = 0;        // degrees: the lines lie at calculated positions + zero
  double likelihood = 0;  // natural logarithm, against lines that lie anywhere
  int hits = 0, positions = 0;
};

// A lattice as a search finds it is refined on more and more lines, one that comes from a refined
// one on all of them.
enum class RefinementStart { Rough, Refined };

// Least squares in the reciprocal form and the zero shift, which begins at, and is drawn towards,
// `zero`. None for a lattice that explains too few lines.
std::optional<Assessment> Assess(std::span<const ObservedLine> lines,
                                 const SymmetricLattice& lattice, RefinementStart start,
                                 double zero, const PhaseModel& model = kOnePhase);

// By least squares on all lines, with neither of the limits that hold a search: what the table
// shows. As it was where the lines do not fix it. The likelihood stays that of the judged lines.
Assessment RefinedOnAll(std::span<const ObservedLine> lines, const Assessment& assessment);

// The e.s.d.s of what has been refined: the covariances of the sums of `lattice.parameters`, the
// zero shift last, from the scatter of the lines. Empty if the lines do not fix them.
std::vector<std::vector<double>> CovarianceOf(std::span<const ObservedLine> lines,
                                              const Assessment& assessment);
