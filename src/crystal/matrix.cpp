// Dense single-precision least-squares kernel.
//
// Every element is the accumulator of its own sum, and the products are subtracted in rising k. The
// loops below go through independent elements side by side, so that this order, and with it every
// bit, is that of the plain formulas.
#include "crystal/matrix.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace {

constexpr int kChunk = 16;  // elements that the compiler takes in vectors

// y -= a x, element by element.
void SubtractMultiple(float* __restrict y, const float* __restrict x, float a, int n) {
  int i = 0;
  for (; i + kChunk <= n; i += kChunk)
    for (int r = 0; r < kChunk; ++r) y[i + r] -= a * x[i + r];
  for (; i < n; ++i) y[i] -= a * x[i];
}

// 1 / largest absolute element of each row; false for a row of zeros.
bool RowScales(const float* A, int n, int dim, std::span<float> scale) {
  std::fill(scale.begin(), scale.end(), 0.0f);
  for (int j = 0; j < n; ++j)
    for (int i = 0; i < n; ++i)
      scale[i] = std::max(scale[i], std::abs(A[i + static_cast<std::ptrdiff_t>(dim) * j]));
  for (float& s : scale) {
    if (s == 0) return false;
    s = 1.0f / s;
  }
  return true;
}

// Solves LU X = P I for all columns of the identity at once. Row i of the result lies at X + i * n,
// and its element f belongs to column order[f]: the one whose 1 the row swaps bring to row f.
// Column f has leading zeros down to row f, so row j takes part in the forward sums with j + 1
// elements.
void SolveIdentity(const float* LU, int n, const int* pivots, int dim, float* X, int* order) {
  std::iota(order, order + n, 0);
  for (int i = 0; i < n; ++i) std::swap(order[i], order[pivots[i] - 1]);
  const auto at = [=](int i, int j) { return LU[i + static_cast<std::ptrdiff_t>(dim) * j]; };
  const auto row = [=](int i) { return X + static_cast<std::ptrdiff_t>(n) * i; };
  for (int i = 0; i < n; ++i) {
    std::fill_n(row(i), n, 0.0f);
    row(i)[i] = 1.0f;
    for (int j = 0; j < i; ++j) SubtractMultiple(row(i), row(j), at(i, j), j + 1);
  }
  for (int i = n - 1; i >= 0; --i) {
    for (int j = i + 1; j < n; ++j) SubtractMultiple(row(i), row(j), at(i, j), n);
    const float diagonal = at(i, i);
    for (int f = 0; f < n; ++f) row(i)[f] /= diagonal;
  }
}

}  // namespace

int LuDecompose(float* A, int n, int* pivots, float& sign, int dim) {
  std::vector<float> scale(std::max(n, 0));
  sign = 1.0f;
  if (!RowScales(A, n, dim, scale)) return -1;
  const auto column = [=](int j) { return A + static_cast<std::ptrdiff_t>(dim) * j; };
  for (int j = 0; j < n; ++j) {
    float* const c = column(j);
    for (int k = 0; k < j; ++k) SubtractMultiple(c + k + 1, column(k) + k + 1, c[k], n - k - 1);
    int p = j;
    float largest = 0;
    for (int i = j; i < n; ++i) {
      const float size = scale[i] * std::abs(c[i]);
      if (size >= largest) largest = size, p = i;
    }
    if (p != j) {
      for (int k = 0; k < n; ++k) std::swap(column(k)[p], column(k)[j]);
      sign = -sign;
      scale[p] = scale[j];
    }
    pivots[j] = p + 1;
    if (c[j] == 0) c[j] = 1.0e-20f;  // a singular matrix goes on and gives huge values
    const float inverse = 1.0f / c[j];
    for (int i = j + 1; i < n; ++i) c[i] *= inverse;
  }
  return 0;
}

int LuSolve(const float* LU, int n, const int* pivots, float* b, int dim) {
  const auto at = [=](int i, int j) { return LU[i + static_cast<std::ptrdiff_t>(dim) * j]; };
  int first = n;  // the first row whose value is not 0
  for (int i = 0; i < n; ++i) {
    float sum = b[pivots[i] - 1];
    b[pivots[i] - 1] = b[i];
    for (int j = first; j < i; ++j) sum -= at(i, j) * b[j];
    if (first == n && sum != 0) first = i;
    b[i] = sum;
  }
  for (int i = n - 1; i >= 0; --i) {
    float sum = b[i];
    for (int j = i + 1; j < n; ++j) sum -= at(i, j) * b[j];
    if (at(i, i) == 0) return -1;
    b[i] = sum / at(i, i);
  }
  return 0;
}

int LuImprove(const float* A, const float* LU, int n, const int* pivots, const float* b, float* x,
              int dim) {
  std::vector<float> r(std::max(n, 0));
  for (int i = 0; i < n; ++i) {
    double sum = -static_cast<double>(b[i]);
    for (int j = 0; j < n; ++j)
      sum += static_cast<double>(A[i + static_cast<std::ptrdiff_t>(dim) * j]) * x[j];
    r[i] = static_cast<float>(sum);
  }
  if (LuSolve(LU, n, pivots, r.data(), dim) < 0) return -1;
  for (int j = 0; j < n; ++j) x[j] -= r[j];
  return 0;
}

void PowerBasis(float x, std::span<float> p) {
  std::fill(p.begin(), p.end(), 0.0f);
  p[0] = 1.0f;
  if (x == 0) return;
  float value = 1.0f / x;
  for (float& power : p) power = value *= x;
}

int PolyFit(std::span<const float> x, std::span<const float> y, float* coef, int& m) {
  constexpr int kMost = 25;
  m = std::min(m, kMost);
  if (m >= static_cast<int>(x.size()) || m <= 1) return 0;
  float normal[kMost * kMost] = {}, right[kMost] = {}, basis[kMost];
  for (std::size_t i = 0; i < x.size(); ++i) {
    PowerBasis(x[i], {basis, static_cast<std::size_t>(m)});
    for (int j = 0; j < m; ++j) {
      right[j] += y[i] * basis[j];
      for (int k = 0; k <= j; ++k) normal[k + kMost * j] += basis[k] * basis[j];
    }
  }
  for (int j = 0; j < m; ++j)
    for (int k = 0; k < j; ++k) normal[j + kMost * k] = normal[k + kMost * j];
  float lu[kMost * kMost], solution[kMost], sign;
  int pivots[kMost];
  std::copy(std::begin(normal), std::end(normal), lu);
  std::copy(std::begin(right), std::end(right), solution);
  if (LuDecompose(lu, m, pivots, sign, kMost) < 0) return -1;
  if (LuSolve(lu, m, pivots, solution, kMost) < 0) return -1;
  if (LuImprove(normal, lu, m, pivots, right, solution, kMost) < 0) return -1;
  std::copy_n(solution, m, coef);
  return 0;
}

int MatrixInverse(float* A, int& n, int dim) {
  n = std::min(n, dim);
  if (n < 1) return 0;
  std::vector<int> pivots(n), order(n);
  float sign;
  if (LuDecompose(A, n, pivots.data(), sign, dim) < 0) return -1;
  std::vector<float> X(static_cast<std::size_t>(n) * n);
  SolveIdentity(A, n, pivots.data(), dim, X.data(), order.data());
  for (int i = 0; i < n; ++i)
    for (int f = 0; f < n; ++f)
      A[i + static_cast<std::ptrdiff_t>(dim) * order[f]] =
          X[f + static_cast<std::ptrdiff_t>(n) * i];
  return 0;
}
