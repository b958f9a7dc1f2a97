// The normal equations of the whole-pattern fit.
#pragma once

#include <vector>

#include "fit/derivatives.h"

// What the equations of one cycle come from, with unit weights.
struct ResidualSums {
  float residual = 0, total = 0;                // sums of |e| and |y|
  float residualsquares = 0, totalsquares = 0;  // sums of e^2 and y^2
  int points = 0;
};

class NormalEquations {
 public:
  explicit NormalEquations(int npar);
  void Clear();
  // Adds a point whose observed intensity is e above the calculated one. Each sum takes the points
  // in their order; products with 0 change none and are left out by blocks.
  void Add(const Derivatives& d, float e);
  float Right(int k) const { return right_[k]; }
  // The symmetric matrix of order npar, without the row of number 0.
  std::vector<float> Matrix(int npar) const;

 private:
  // Blocks of kBlock by kBlock elements, those on and above the diagonal.
  float* BlockAt(int row, int column) { return &matrix_[Offset(row, column)]; }
  std::size_t Offset(int row, int column) const {
    return (static_cast<std::size_t>(row) * blocks_ + column) * Derivatives::kBlock *
           Derivatives::kBlock;
  }
  int blocks_;
  std::vector<float> matrix_, right_;
};

// One pass over the points in the range of the fit: fills `calculated`, 0 outside, and the
// equations.
ResidualSums AccumulatePattern(FitModel& model, const ParameterNumbers& numbers,
                               std::span<const RowState> rows, NormalEquations& equations);
