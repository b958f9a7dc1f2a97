// The reflections of a cell in a range of two-theta.
#include "crystal/reflections.h"

#include <algorithm>
#include <cmath>

#include "crystal/laue.h"
#include "workspace/text.h"       // for nint, RowSort
#include "workspace/workspace.h"  // for MaxPeaks, RadToDeg

float SineSquared(float tth, float wavelength) {
  const float s = std::sin(tth / 2 / RadToDeg) / wavelength;
  return s * s;
}

bool AnglesAreEqual(const UnitCell& cell) {
  const auto cosine = [&](int k) { return std::cos(cell(k) / RadToDeg); };
  return cosine(4) == cosine(5) && cosine(5) == cosine(6);
}

namespace {

constexpr int kMostIndex = 99;  // that a code holds with either sign
constexpr std::size_t kMostCodes = 10000;

struct Limits {
  float low, high;  // of the form
  Hkl most;         // indices, of either sign; -1 for an edge that is negative
};

Limits LimitsOf(const UnitCell& cell, float low, float high) {
  const float shortest = 2 * std::sqrt(high);  // 1/d at the end of the range
  const auto most = [&](int k) {
    return std::clamp(nint(1.5f * cell(k) * shortest), -1, kMostIndex);
  };
  return {low, high, {most(1), most(2), most(3)}};
}

struct Row {
  int first, last;
};

// The l that can lie below the upper limit for this h and k: between the roots of the form, which
// is widened by what rounding can do to it. Only the form itself says which of them are in range.
Row RowOf(const Metric& q, int h, int k, const Limits& limits) {
  const int lmax = limits.most.l;
  const double hh = q[0] * double(h * h), kk = q[1] * double(k * k), hk = q[3] * double(h * k);
  const double slope = q[4] * double(h) + q[5] * double(k);
  const double largest = hh + kk + std::abs(hk) + q[2] * double(lmax * lmax) +
                         (std::abs(q[4] * double(h)) + std::abs(q[5] * double(k))) * lmax;
  const double rest = hh + kk + hk - limits.high - 1e-6 * (largest + limits.high);
  const double c = q[2], square = slope * slope - 4 * c * rest;
  if (!(square >= 0)) return {1, 0};
  const double root = std::sqrt(square);
  const double first = std::min(std::floor((-slope - root) / (2 * c)), lmax + 1.0);
  const double last = std::max(std::ceil((-slope + root) / (2 * c)), -lmax - 1.0);
  return {static_cast<int>(std::max<double>(-lmax, first)),
          static_cast<int>(std::min<double>(lmax, last))};
}

// The codes of the families of all reflections between the limits, one for each member; the first
// 10000 of them.
std::vector<int> CodesBetween(const Limits& limits, const Metric& q, int laueclass,
                              const Centering& centering) {
  const auto& [low, high, most] = limits;
  std::vector<int> codes;
  codes.reserve(kMostCodes);
  for (int h = -most.h; h <= most.h; ++h)
    for (int k = -most.k; k <= most.k; ++k) {
      const auto [first, last] = RowOf(q, h, k, limits);
      for (int l = first; l <= last; ++l) {
        const float value = QuadraticForm(q, {h, k, l});
        if (!(value >= low && value <= high) || !centering.allows({h, k, l})) continue;
        if (h == 0 && k == 0 && l == 0) continue;
        codes.push_back(PackHkl(CanonicalIndices({h, k, l}, laueclass)));
        if (codes.size() == kMostCodes) return codes;
      }
    }
  return codes;
}

// Rows of position, code and multiplicity, by position. Equal positions may change places, so that
// the order is that of this sort and of no other.
std::vector<Reflection> ByPosition(const std::vector<Family>& families, const Metric& q,
                                   float wavelength) {
  const std::size_t n = families.size();
  std::vector<float> table(3 * n);
  for (std::size_t j = 0; j < n; ++j) {
    const float square = QuadraticForm(q, UnpackHkl(families[j].code));
    table[j] = TwoThetaOfSine(std::sqrt(std::max(square, 0.0f)) * wavelength);
    table[n + j] = static_cast<float>(families[j].code);
    table[2 * n + j] = static_cast<float>(families[j].multiplicity);
  }
  RowSort(table.data(), static_cast<int>(n), 3, static_cast<int>(n), 1);
  std::vector<Reflection> list(std::min<std::size_t>(n, MaxPeaks));
  for (std::size_t j = 0; j < list.size(); ++j)
    list[j] = {table[j], UnpackHkl(static_cast<int>(table[n + j])),
               static_cast<int>(table[2 * n + j])};
  return list;
}

}  // namespace

std::vector<Family> MergeCodes(std::span<const int> codes) {
  std::vector<Family> families;
  int count = 1;
  for (std::size_t j = 1; j < codes.size(); ++j) {
    const bool last = j + 1 == codes.size();
    if (codes[j] == codes[j - 1] && !last) {
      ++count;
      continue;
    }
    families.push_back({codes[j - 1], count});
    count = 1;
  }
  if (!families.empty()) ++families.back().multiplicity;
  return families;
}

std::optional<std::vector<Reflection>> AssignReflections(UnitCell& cell, int laueclass,
                                                         int& centering, const TthRange& range,
                                                         float& wavelength,
                                                         const StageReport& report) {
  const auto tell = [&](const char* text) {
    if (report) report(text);
  };
  ForceCell(cell, laueclass);
  tell("Laueclass found");
  const std::optional<Metric> q = SineMetric(cell);
  if (!q) return {};
  tell("Cell conversion done");
  if (centering == CenteringR && AnglesAreEqual(cell)) centering = CenteringP;
  if (wavelength <= 0) wavelength = kUsualWavelength;

  const float low = SineSquared(range.low, wavelength);
  float high = SineSquared(range.high, wavelength);
  std::vector<int> codes;
  while (true) {
    const Limits limits = LimitsOf(cell, low, high);
    tell("Limits found");
    codes = CodesBetween(limits, *q, laueclass, CenteringOf(centering));
    if (codes.size() < kMostCodes) break;
    const float halfway = (low + high) / 2;
    // A limit that falls no more: too many reflections for any range of this lattice.
    if (!(halfway < high)) return std::vector<Reflection>{};
    high = halfway;
  }
  tell("Before first sorting");
  std::ranges::sort(codes);
  const std::vector<Family> families = MergeCodes(codes);
  tell("Before second sorting");
  return ByPosition(families, *q, wavelength);
}
