// Systems of two to four equations with integers as coefficients, solved by cofactors: whether they
// have a solution is never a matter of rounding.
#pragma once

#include <array>
#include <cstddef>
#include <optional>

template <std::size_t N>
using IntMatrix = std::array<std::array<int, N>, N>;

// The matrix without a row and a column.
template <std::size_t N>
constexpr IntMatrix<N - 1> Without(const IntMatrix<N>& m, std::size_t row, std::size_t column) {
  IntMatrix<N - 1> rest{};
  for (std::size_t i = 0; i + 1 < N; ++i)
    for (std::size_t j = 0; j + 1 < N; ++j) rest[i][j] = m[i + (i >= row)][j + (j >= column)];
  return rest;
}

template <std::size_t N>
constexpr long Determinant(const IntMatrix<N>& m) {
  if constexpr (N == 1) {
    return m[0][0];
  } else if constexpr (N == 2) {
    return static_cast<long>(m[0][0]) * m[1][1] - static_cast<long>(m[0][1]) * m[1][0];
  } else {
    long sum = 0;
    for (std::size_t j = 0; j < N; ++j)
      if (m[0][j] != 0) sum += (j % 2 ? -1 : 1) * m[0][j] * Determinant(Without(m, 0, j));
    return sum;
  }
}

// None if the equations are not independent.
template <std::size_t N>
std::optional<std::array<float, N>> Solve(const IntMatrix<N>& m, const std::array<float, N>& side) {
  const long determinant = Determinant(m);
  if (determinant == 0) return {};
  std::array<float, N> x{};
  for (std::size_t j = 0; j < N; ++j) {
    for (std::size_t i = 0; i < N; ++i) {
      const long cofactor = ((i + j) % 2 ? -1 : 1) * Determinant(Without(m, i, j));
      x[j] += static_cast<float>(cofactor) * side[i];
    }
    x[j] /= static_cast<float>(determinant);
  }
  return x;
}
