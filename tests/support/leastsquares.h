// Linear least squares in double precision.
#pragma once

#include <vector>

// Weighted least squares, by elimination in the equations with the unit matrix beside them.
class LeastSquares {
 public:
  explicit LeastSquares(std::size_t n) : rows_(n, std::vector<double>(2 * n + 1)) {}
  void Add(const std::vector<double>& row, double miss, double weight = 1) {
    const std::size_t n = rows_.size();
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) rows_[i][j] += weight * row[i] * row[j];
      rows_[i][2 * n] += weight * row[i] * miss;
      rows_[i][n + i] = 1;
    }
  }
  void Solve() {
    for (std::size_t p = 0; p < rows_.size(); ++p) {
      const double pivot = rows_[p][p];
      for (double& each : rows_[p]) each /= pivot;
      for (auto& row : rows_)
        if (&row != &rows_[p])
          for (std::size_t j = row.size(); j-- > p;) row[j] -= row[p] * rows_[p][j];
    }
  }
  double Shift(std::size_t i) const { return rows_[i].back(); }
  double InverseDiagonal(std::size_t i) const { return rows_[i][rows_.size() + i]; }

 private:
  std::vector<std::vector<double>> rows_;
};
