// Dense single-precision least-squares kernel: LU decomposition, inverse, polynomial fit.
//
// A(i, j) of a matrix of leading dimension dim is A[(i - 1) + dim * (j - 1)], columns contiguous.
// Orders 1 to 230 are in use.
#pragma once

#include <span>

// Replaces the leading n by n part of A by its inverse. n above dim becomes dim, in the caller's
// variable too. Returns 0, or -1 for a matrix with a row of zeros, which may then be partly
// altered.
int MatrixInverse(float* A, int& n, int dim);

// Crout decomposition with scaled partial pivoting, in place. pivots holds the row swapped at each
// step (1-based), sign the parity. Returns 0, or -1 for a row of zeros.
int LuDecompose(float* A, int n, int* pivots, float& sign, int dim);

// Overwrites b by the solution of the decomposed system. Returns 0, or a negative value on failure.
int LuSolve(const float* LU, int n, const int* pivots, float* b, int dim);

// One round of iterative improvement of x. Returns 0 or -1.
int LuImprove(const float* A, const float* LU, int n, const int* pivots, const float* b, float* x,
              int dim);

// Least-squares polynomial with m coefficients, lowest power first; m above 25 becomes 25. With m
// not below the number of points, or at most 1, nothing is fitted and coef stays. Returns 0, or -1
// with coef unchanged.
int PolyFit(std::span<const float> x, std::span<const float> y, float* coef, int& m);

// Fills p with x^0, x^1 and so on, by multiplying 1/x with x again and again; for x 0: 1, 0, 0 ...
void PowerBasis(float x, std::span<float> p);
