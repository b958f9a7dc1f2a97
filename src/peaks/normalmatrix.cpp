// Normal equations of a small fit: Cholesky's decomposition.
#include "peaks/normalmatrix.h"

#include <cmath>

namespace {

constexpr double kLeastPivot = 1e-14;  // of a diagonal of 1

bool Decompose(SymmetricMatrix& a) {
  for (int i = 0; i < a.Order(); ++i) {
    double* row = a.Row(i);
    for (int j = 0; j <= i; ++j) {
      const double* other = a.Row(j);
      for (int k = 0; k < j; ++k) row[j] -= row[k] * other[k];
      if (j < i) row[j] /= other[j];
    }
    if (!(row[i] > kLeastPivot)) return false;
    row[i] = std::sqrt(row[i]);
  }
  return true;
}

}  // namespace

NormalSystem::NormalSystem(const SymmetricMatrix& matrix, std::vector<int> refined, double damping)
    : refined_(std::move(refined)), factor_(static_cast<int>(refined_.size())) {
  for (int j : refined_) scale_.push_back(1 / std::sqrt(matrix(j, j)));
  for (int i = 0; i < factor_.Order(); ++i)
    for (int j = 0; j <= i; ++j)
      factor_(i, j) =
          i == j ? 1 + damping : matrix(refined_[i], refined_[j]) * scale_[i] * scale_[j];
  singular_ = !Decompose(factor_);
}

std::vector<double> NormalSystem::Solve(const std::vector<double>& right) const {
  const int n = factor_.Order();
  std::vector<double> b(n), solution(right.size());
  for (int i = 0; i < n; ++i) {
    b[i] = right[refined_[i]] * scale_[i];
    for (int k = 0; k < i; ++k) b[i] -= factor_(i, k) * b[k];
    b[i] /= factor_(i, i);
  }
  for (int i = n - 1; i >= 0; --i) {
    for (int k = i + 1; k < n; ++k) b[i] -= factor_(k, i) * b[k];
    b[i] /= factor_(i, i);
    solution[refined_[i]] = b[i] * scale_[i];
  }
  return solution;
}
