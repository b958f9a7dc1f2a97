// The calculated intensity of a point and its derivatives by all refined values.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

#include "fit/model.h"
#include "fit/parameters.h"
#include "fit/splitprofile.h"

// Derivatives by parameter number. Most are 0 at any one point, so they are kept in blocks of
// which only those with an entry need to be looked at. Number 0 is that of values that are not
// refined: what is added there is of no use to anyone.
struct Derivatives {
  static constexpr int kBlock = 8;
  static constexpr int kBlocks = 64;

  alignas(32) std::array<float, kBlock * kBlocks> values{};
  std::uint64_t used = 0;  // one bit for each block

  void Add(int number, float d) {
    values[number] += d;
    used |= std::uint64_t{1} << (number / kBlock);
  }
  // Calls visit(block) for the blocks in use, rising.
  template <class Visit>
  void ForEachBlock(Visit visit) const {
    for (std::uint64_t rest = used; rest != 0; rest &= rest - 1) visit(std::countr_zero(rest));
  }
  void Clear() {
    ForEachBlock([this](int block) { std::fill_n(&values[block * kBlock], kBlock, 0.0f); });
    used = 0;
  }
};

// A reflection as it is during one cycle.
struct RowState {
  PeakShape shape;
  SplitProfile profile;
  SpectralLines lines;
  float area;
  float tangent, cosine;          // of theta
  std::array<float, 6> gradient;  // of 1/d by the cell
};

// Intensities below 0.5 are raised to it.
std::vector<RowState> PrepareRows(FitModel& model);

// The intensity at point i (from 1), whose two-theta with the zero is x. Adds the derivatives of
// background and peaks to d. The ratio of the halves is not differentiated, nor is the way of
// alpha2 with alpha1, and each line's derivative by the intensity counts in full.
float EvaluatePoint(const FitModel& model, const ParameterNumbers& numbers,
                    std::span<const RowState> rows, int i, float x, Derivatives& d);
