// The normal equations of the whole-pattern fit.
#include "fit/normalequations.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kBlock = Derivatives::kBlock;

// sums += column x row, element by element.
void AddProducts(float* __restrict sums, const float* column, const float* row) {
  float r[kBlock];
  std::copy_n(row, kBlock, r);
  for (int k = 0; k < kBlock; ++k) {
    const float c = column[k];
    for (int l = 0; l < kBlock; ++l) sums[k * kBlock + l] += c * r[l];
  }
}

}  // namespace

NormalEquations::NormalEquations(int npar)
    : blocks_(npar / kBlock + 1),
      matrix_(static_cast<std::size_t>(blocks_) * blocks_ * kBlock * kBlock),
      right_(static_cast<std::size_t>(blocks_) * kBlock) {}

void NormalEquations::Clear() {
  std::ranges::fill(matrix_, 0.0f);
  std::ranges::fill(right_, 0.0f);
}

void NormalEquations::Add(const Derivatives& d, float e) {
  int used[Derivatives::kBlocks], count = 0;
  d.ForEachBlock([&](int block) { used[count++] = block; });
  for (int i = 0; i < count; ++i) {
    const float* const column = &d.values[used[i] * kBlock];
    for (int k = 0; k < kBlock; ++k) right_[used[i] * kBlock + k] += e * column[k];
    for (int j = i; j < count; ++j)
      AddProducts(BlockAt(used[i], used[j]), column, &d.values[used[j] * kBlock]);
  }
}

std::vector<float> NormalEquations::Matrix(int npar) const {
  std::vector<float> matrix(static_cast<std::size_t>(npar) * npar);
  for (int k = 1; k <= npar; ++k)
    for (int l = k; l <= npar; ++l)
      matrix[(k - 1) + npar * (l - 1)] = matrix[(l - 1) + npar * (k - 1)] =
          matrix_[Offset(k / kBlock, l / kBlock) + k % kBlock * kBlock + l % kBlock];
  return matrix;
}

ResidualSums AccumulatePattern(FitModel& model, const ParameterNumbers& numbers,
                               std::span<const RowState> rows, NormalEquations& equations) {
  const FitParameters& fit = model.fit;
  ResidualSums sums;
  Derivatives derivatives;
  equations.Clear();
  for (int i = 1; i <= model.Points(); ++i) {
    float& calculated = model.calculated[i - 1];
    calculated = 0;
    const float x = fit.tthzero + model.x[i - 1], y = model.y[i - 1];
    if (x < fit.fitmin2th || x > fit.fitmax2th) continue;
    derivatives.Clear();
    calculated = EvaluatePoint(model, numbers, rows, i, x, derivatives);
    const float e = y - calculated;
    ++sums.points;
    sums.residual += std::fabs(e);
    sums.total += std::fabs(y);
    sums.residualsquares += e * e;
    sums.totalsquares += y * y;
    equations.Add(derivatives, e);
  }
  return sums;
}
