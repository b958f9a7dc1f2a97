// The lines of a cell that a pattern can show.
#include "index/celllines.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "crystal/laue.h"
#include "workspace/text.h"       // for nint
#include "workspace/workspace.h"  // for MaxPeaks

namespace {

constexpr int kMostIndex = 40;
constexpr std::size_t kMostCodes = 20000;

struct Search {
  Metric square;  // the form of (sin(theta) / wavelength)^2
  float low, high;
  Hkl most;  // indices of either sign; negative for none at all
  const Centering& centering;
  int laueclass;
};

Search SearchFor(const CellLines& asked, const Metric& square, float wavelength) {
  const float high = SineSquared(asked.range.high, wavelength);
  const float shortest = 2 * std::sqrt(high);  // 1/d at the end of the range
  const auto most = [&](int k) {
    return std::min(kMostIndex, nint(1.5f * asked.cell(k) * shortest));
  };
  const bool absences = asked.lattice != CenteringR || !AnglesAreEqual(asked.cell);
  return {square,
          SineSquared(asked.range.low, wavelength),
          high,
          {most(1), most(2), most(3)},
          CenteringOf(absences ? asked.lattice : int{CenteringP}),
          asked.laueclass};
}

// One code for each reflection, that of its family.
std::vector<int> CodesOf(const Search& search) {
  const auto& [square, low, high, most, centering, laueclass] = search;
  std::vector<int> codes;
  for (int h = -most.h; h <= most.h; ++h)
    for (int k = -most.k; k <= most.k; ++k)
      for (int l = -most.l; l <= most.l; ++l) {
        if ((h == 0 && k == 0 && l == 0) || !centering.allows({h, k, l})) continue;
        const float value = QuadraticForm(square, {h, k, l});
        if (!(value >= low && value <= high)) continue;
        codes.push_back(PackHkl(CanonicalIndices({h, k, l}, laueclass)));
        if (codes.size() == kMostCodes) return codes;
      }
  return codes;
}

}  // namespace

std::vector<Reflection> ReflectionsFromCell(const CellLines& asked) {
  const std::optional<Metric> square = SineMetric(asked.cell);
  if (!square) return {};
  const float wavelength = asked.wavelength > 0 ? asked.wavelength : kUsualWavelength;
  std::vector<int> codes = CodesOf(SearchFor(asked, *square, wavelength));
  std::ranges::sort(codes);
  // The merging loses a last code that stands alone: here that is none of a reflection.
  codes.push_back(std::numeric_limits<int>::max());

  std::vector<Reflection> rows;
  for (const Family& family : MergeCodes(codes)) {
    const Hkl hkl = UnpackHkl(family.code);
    const float sine = wavelength * std::sqrt(std::max(QuadraticForm(*square, hkl), 0.0f));
    rows.push_back({TwoThetaOfSine(sine) + asked.zeroshift, hkl, family.multiplicity});
  }
  std::ranges::stable_sort(rows, {}, &Reflection::tth);

  std::vector<Reflection> lines;
  float last = 0;
  for (Reflection row : rows) {
    if (!lines.empty() && !(row.tth - last > asked.step)) continue;
    if (lines.size() == MaxPeaks) break;
    last = row.tth;
    row.tth += asked.offset;
    lines.push_back(row);
  }
  return lines;
}
