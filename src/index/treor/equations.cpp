#include "index/treor/equations.h"

#include <array>
#include <cmath>
#include <utility>

namespace {

struct Place {
  int row = 0, column = 0;
};

// The largest element of the rows and columns that have not been pivots.
Place Largest(std::span<const float> m, int n, const std::array<bool, kMostUnknowns>& done) {
  Place at;
  float largest = -1;
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) {
      if (done[i] || done[j] || !(std::fabs(m[i * n + j]) > largest)) continue;
      largest = std::fabs(m[i * n + j]);
      at = {i, j};
    }
  return at;
}

void SwapRows(std::span<float> m, int n, int i, int j) {
  for (int k = 0; k < n; ++k) std::swap(m[i * n + k], m[j * n + k]);
}

void SwapColumns(std::span<float> m, int n, int i, int j) {
  for (int k = 0; k < n; ++k) std::swap(m[k * n + i], m[k * n + j]);
}

// Clears column p but for its pivot, and puts the column of the inverse in its place.
void Eliminate(std::span<float> m, int n, int p) {
  const float factor = 1.0f / m[p * n + p];
  m[p * n + p] = 1;
  for (int k = 0; k < n; ++k) m[p * n + k] *= factor;
  for (int i = 0; i < n; ++i) {
    if (i == p) continue;
    const float f = std::exchange(m[i * n + p], 0.0f);
    for (int k = 0; k < n; ++k) m[i * n + k] -= f * m[p * n + k];
  }
}

}  // namespace

bool InvertInPlace(std::span<float> matrix, int n) {
  std::array<bool, kMostUnknowns> done{};
  std::array<Place, kMostUnknowns> pivots;
  for (int step = 0; step < n; ++step) {
    const Place at = pivots[step] = Largest(matrix, n, done);
    // The rows trade places, so that the pivot stands on the diagonal.
    SwapRows(matrix, n, at.row, at.column);
    done[at.column] = true;
    const float pivot = matrix[at.column * n + at.column];
    if (pivot == 0 || !std::isfinite(pivot)) return false;
    Eliminate(matrix, n, at.column);
  }
  for (int step = n - 1; step >= 0; --step)
    SwapColumns(matrix, n, pivots[step].row, pivots[step].column);
  return true;
}
