// Small systems of linear equations.
#pragma once

#include <span>

inline constexpr int kMostUnknowns = 6;

// Replaces a matrix of n rows and columns, n at most 6, by its inverse: Gauss-Jordan elimination
// with full pivoting. False for a singular matrix, which is then partly altered.
bool InvertInPlace(std::span<float> matrix, int n);
