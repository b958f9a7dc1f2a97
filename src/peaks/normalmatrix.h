// Normal equations of a small fit in double precision.
#pragma once

#include <vector>

// A symmetric matrix; only its lower triangle, j <= i, is in use.
class SymmetricMatrix {
 public:
  explicit SymmetricMatrix(int order)
      : order_(order), cells_(static_cast<std::size_t>(order) * order) {}
  int Order() const { return order_; }
  double* Row(int i) { return &cells_[static_cast<std::size_t>(i) * order_]; }
  double& operator()(int i, int j) { return Row(i)[j]; }
  double operator()(int i, int j) const { return cells_[static_cast<std::size_t>(i) * order_ + j]; }

 private:
  int order_;
  std::vector<double> cells_;
};

// The part of normal equations that belongs to some of the parameters, ready to be solved.
class NormalSystem {
 public:
  // `refined` are the parameters' numbers from 0; the diagonal is multiplied by 1 + damping.
  NormalSystem(const SymmetricMatrix& matrix, std::vector<int> refined, double damping = 0);
  bool Singular() const { return singular_; }
  // The solution for a right side of all parameters; 0 for those that are not refined.
  std::vector<double> Solve(const std::vector<double>& right) const;

 private:
  std::vector<int> refined_;
  std::vector<double> scale_;  // that makes the diagonal 1
  SymmetricMatrix factor_;     // of Cholesky's decomposition
  bool singular_ = false;
};
