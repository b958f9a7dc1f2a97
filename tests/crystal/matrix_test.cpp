// The least-squares kernel: known inverses, pivoting, failure, and the bits of the plain formulas.
#include "crystal/matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace {

using Matrix = std::vector<float>;

// The stated decomposition and solution, an element at a time. Returns the inverse.
Matrix PlainInverse(Matrix a, int n, int dim) {
  std::vector<float> scale(n);
  std::vector<int> pivot(n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) scale[i] = std::max(scale[i], std::fabs(a[i + dim * j]));
    scale[i] = 1.0f / scale[i];
  }
  for (int j = 0; j < n; ++j) {
    int p = j;
    float largest = 0;
    for (int i = 0; i < n; ++i) {
      for (int k = 0; k < std::min(i, j); ++k) a[i + dim * j] -= a[i + dim * k] * a[k + dim * j];
      if (i < j || scale[i] * std::fabs(a[i + dim * j]) < largest) continue;
      largest = scale[i] * std::fabs(a[i + dim * j]);
      p = i;
    }
    for (int k = 0; k < n; ++k) std::swap(a[p + dim * k], a[j + dim * k]);
    scale[p] = scale[j];
    pivot[j] = p;
    if (a[j + dim * j] == 0) a[j + dim * j] = 1.0e-20f;
    for (int i = j + 1; i < n; ++i) a[i + dim * j] *= 1.0f / a[j + dim * j];
  }
  Matrix inverse(a.size());
  for (int c = 0; c < n; ++c) {
    std::vector<float> b(n);
    b[c] = 1;
    for (int i = 0; i < n; ++i) {
      std::swap(b[i], b[pivot[i]]);
      for (int k = 0; k < i; ++k) b[i] -= a[i + dim * k] * b[k];
    }
    for (int i = n - 1; i >= 0; --i) {
      for (int k = i + 1; k < n; ++k) b[i] -= a[i + dim * k] * b[k];
      inverse[i + dim * c] = b[i] /= a[i + dim * i];
    }
  }
  return inverse;
}

TEST(MatrixInverse, EqualsThePlainFormulasBitForBit) {
  std::mt19937 random(3);
  std::uniform_real_distribution<float> value(-10, 10);
  for (int n : {1, 2, 3, 8, 17, 33, 64, 100, 230}) {
    const int dim = n + n % 3;
    Matrix a(dim * dim);
    for (float& v : a) v = value(random);
    for (int i = 0; i < n; ++i) a[i] *= static_cast<float>(1 + i);  // rows of different scale
    const Matrix plain = PlainInverse(a, n, dim);
    int order = n;
    ASSERT_EQ(MatrixInverse(a.data(), order, dim), 0);
    for (int j = 0; j < n; ++j)
      ASSERT_EQ(std::memcmp(&a[dim * j], &plain[dim * j], n * sizeof(float)), 0) << n << " " << j;
  }
}

TEST(MatrixInverse, OfKnownMatrices) {
  // The leading 2 by 2 part of a 3 by 3 array; the rest is not touched.
  Matrix a{4, 2, 99, 7, 6, 99, 99, 99, 99};
  int n = 2;
  ASSERT_EQ(MatrixInverse(a.data(), n, 3), 0);
  const float expected[] = {0.6f, -0.2f, 99, -0.7f, 0.4f, 99, 99, 99, 99};
  for (int i = 0; i < 9; ++i) EXPECT_NEAR(a[i], expected[i], 1e-6) << i;

  Matrix one{4};
  n = 5;  // more than the array holds
  ASSERT_EQ(MatrixInverse(one.data(), n, 1), 0);
  EXPECT_EQ(n, 1);
  EXPECT_EQ(one[0], 0.25f);

  Matrix zerorow{1, 0, 2, 0};
  n = 2;
  EXPECT_EQ(MatrixInverse(zerorow.data(), n, 2), -1);

  Matrix singular{1, 2, 2, 4};
  EXPECT_EQ(MatrixInverse(singular.data(), n, 2), 0);
  EXPECT_GT(std::fabs(singular[3]), 1e18f);
}

// Equal scaled elements: the later row is the pivot, and its swap turns the sign.
TEST(LuDecompose, LaterOfEqualRowsWins) {
  int pivots[3];
  float sign;
  Matrix tie{2, -2, 2, 1, 1, 2, 1, 2, -2};  // all three scaled elements of column 1 are 1
  ASSERT_EQ(LuDecompose(tie.data(), 3, pivots, sign, 3), 0);
  EXPECT_EQ(pivots[0], 3);
  EXPECT_FLOAT_EQ(tie[0], 2);
  EXPECT_FLOAT_EQ(tie[1], -1);
  // Below the pivot then stand rows (-2, 1, 2) and (2, 1, 1), both scaled by 1/2: 3 against -1.
  EXPECT_EQ(pivots[1], 2);
  EXPECT_EQ(sign, -1);
}

TEST(LuImprove, TakesTheResidualInDoublePrecision) {
  constexpr int n = 6;  // a Hilbert matrix, on which single precision loses most digits
  Matrix a(n * n);
  std::vector<float> b(n);
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) a[i + n * j] = 1.0f / static_cast<float>(i + j + 1);
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) b[i] += a[i + n * j];
  Matrix lu = a;
  std::vector<float> x = b;
  int pivots[n];
  float sign;
  ASSERT_EQ(LuDecompose(lu.data(), n, pivots, sign, n), 0);
  ASSERT_EQ(LuSolve(lu.data(), n, pivots, x.data(), n), 0);
  const auto residual = [&] {
    double worst = 0;
    for (int i = 0; i < n; ++i) {
      double r = -b[i];
      for (int j = 0; j < n; ++j) r += static_cast<double>(a[i + n * j]) * x[j];
      worst = std::max(worst, std::fabs(r));
    }
    return worst;
  };
  x[2] += 0.01f;  // a solution that is off
  ASSERT_EQ(LuImprove(a.data(), lu.data(), n, pivots, b.data(), x.data(), n), 0);
  EXPECT_LT(residual(), 1e-6);
}

TEST(PolyFit, FindsThePolynomialAndKeepsItsLimits) {
  std::vector<float> x, y;
  for (int i = -5; i <= 5; ++i) {
    x.push_back(0.5f * static_cast<float>(i));  // 0 among them
    y.push_back(3 - 2 * x.back() + 0.5f * x.back() * x.back());
  }
  float coef[3] = {7, 7, 7};
  int m = 3;
  ASSERT_EQ(PolyFit(x, y, coef, m), 0);
  for (int k = 0; k < 3; ++k) EXPECT_NEAR(coef[k], (std::vector{3.0f, -2.0f, 0.5f})[k], 1e-5);

  for (int terms : {1, 0, 11, 40}) {
    m = terms;
    EXPECT_EQ(PolyFit(x, y, coef, m), 0);
    EXPECT_EQ(m, std::min(terms, 25));
    EXPECT_NEAR(coef[0], 3, 1e-5);
  }
  // All powers of 0 but the first vanish: a row of zeros.
  m = 2;
  EXPECT_EQ(PolyFit(std::vector<float>(4), std::vector<float>(4, 1.0f), coef, m), -1);
  EXPECT_NEAR(coef[0], 3, 1e-5);
}

}  // namespace
