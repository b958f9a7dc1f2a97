// Which of the lattices found is the right one.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "index/find/assess.h"

// Lattices that differ, by falling likelihood, each on its reduced axes.
using Ranking = std::vector<Assessment>;

inline constexpr std::size_t kRanked = 40;

// Refines a lattice given on its reduced axes, in the symmetry that it has.
void AddAssessed(std::span<const ObservedLine> lines, const Form& reduced, double zero,
                 const PhaseModel& model, Ranking& ranking);

// The best of each lattice.
Ranking Distinct(Ranking all);

// Runs work(0) to work(n - 1) in any order, on several threads perhaps; some may be left out once
// the user has asked to stop.
using ForEach = std::function<void(std::size_t n, const std::function<void(std::size_t)>& work)>;

// With the sub- and superlattices of the best ones and their relatives in turn, each in all
// symmetries that it comes close to.
Ranking WithRelatives(std::span<const ObservedLine> lines, Ranking ranking, const PhaseModel& model,
                      const ForEach& each);

// Whether one lattice is a sub- or superlattice of the other, of index 2, 3 or 4.
bool AreRelatives(const Form& reduced, const Form& other);
