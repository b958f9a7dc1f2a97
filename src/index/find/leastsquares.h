// Normal equations of a few unknowns.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <optional>

template <std::size_t N>
class FewEquations {
 public:
  using Row = std::array<double, N>;

  void Add(const Row& row, double right, double weight) {
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t j = 0; j <= i; ++j) matrix_[i][j] += weight * row[i] * row[j];
      right_[i] += weight * row[i] * right;
    }
  }
  // None of these exists if the matrix is not positive definite.
  std::optional<Row> Solve() const { return SolveFor(right_); }
  std::optional<Row> SolveFor(Row x) const {
    const auto factor = Factor();
    if (!factor) return std::nullopt;
    const Matrix& l = *factor;
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t k = 0; k < i; ++k) x[i] -= l[i][k] * x[k];
      x[i] /= l[i][i];
    }
    for (std::size_t i = N; i-- > 0;) {
      for (std::size_t k = i + 1; k < N; ++k) x[i] -= l[k][i] * x[k];
      x[i] /= l[i][i];
    }
    return x;
  }
  std::optional<double> LogRootOfDeterminant() const {
    const auto factor = Factor();
    if (!factor) return std::nullopt;
    double sum = 0;
    for (std::size_t i = 0; i < N; ++i) sum += std::log((*factor)[i][i]);
    return sum;
  }

 private:
  using Matrix = std::array<Row, N>;
  Matrix matrix_{};  // its lower half
  Row right_{};

  // By Cholesky.
  std::optional<Matrix> Factor() const {
    Matrix l = matrix_;
    for (std::size_t i = 0; i < N; ++i)
      for (std::size_t j = 0; j <= i; ++j) {
        double sum = l[i][j];
        for (std::size_t k = 0; k < j; ++k) sum -= l[i][k] * l[j][k];
        if (i != j)
          l[i][j] = sum / l[j][j];
        else if (sum > 0)
          l[i][i] = std::sqrt(sum);
        else
          return std::nullopt;
      }
    return l;
  }
};
