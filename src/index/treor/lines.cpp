#include "index/treor/lines.h"

#include <algorithm>
#include <cmath>

#include "index/treor/listing.h"
#include "workspace/text.h"

namespace {

constexpr float kHalfDegToRad = 0.008726646f, kDegToRad = 0.0174533f;
constexpr int kMostTestLines = 19, kSpareTestLines = 3;
constexpr int kFirstLines = 7;  // those whose higher orders are looked for
constexpr float kHighestTestS = 0.327f;
constexpr float kAvogadro = 0.6023f;  // molecules a mole, in cubic angstrom and centimetre
constexpr int kMostDensityWindows = 1000;
constexpr int kFarCode = 10000000;  // beyond all lines and tolerances

TreorLine LineAt(float twotheta, const std::string& label) {
  const float sine = std::sin(kHalfDegToRad * twotheta);
  return {sine * sine, LineCode(sine * sine), label, 0};
}

bool IsHigherOrder(const TreorLine& line, const TreorLine& first, int n, const TreorOptions& o) {
  return std::fabs(line.s - static_cast<float>(n * n) * first.s) <= ToleranceAt(line.s, o);
}

// Line `first` of them, from 1, is followed by its n-th order: the place of that, or 0.
int PlaceOfOrder(const std::vector<TreorLine>& lines, int first, int n, const TreorOptions& o) {
  for (std::size_t k = static_cast<std::size_t>(first); k < lines.size(); ++k)
    if (IsHigherOrder(lines[k], lines[static_cast<std::size_t>(first - 1)], n, o))
      return static_cast<int>(k) + 1;
  return 0;
}

// Calls f(first, n) for the second to fourth order of the first lines, of those there are.
template <class F>
void ForEachOrder(const std::vector<TreorLine>& lines, F f) {
  for (int n = 2; n <= 4; ++n)
    for (int first = 1; first <= std::min(kFirstLines, static_cast<int>(lines.size())); ++first)
      f(first, n);
}

void AdjustFirstLines(TreorSearch& search) {
  ListAdjusted(search.listing);
  auto& lines = search.all;
  ForEachOrder(lines, [&](int first, int n) {
    const int k = PlaceOfOrder(lines, first, n, search.options);
    if (k == 0) return;
    TreorLine& line = lines[static_cast<std::size_t>(first - 1)];
    line.s = lines[static_cast<std::size_t>(k - 1)].s / static_cast<float>(n * n);
    line.code = LineCode(line.s);
  });
}

void RemoveHigherOrders(TreorSearch& search) {
  auto& lines = search.lines;
  ForEachOrder(lines, [&](int first, int n) {
    while (const int k = PlaceOfOrder(lines, first, n, search.options)) {
      ListHigherOrder(search.listing, lines[static_cast<std::size_t>(k - 1)].number,
                      lines[static_cast<std::size_t>(first - 1)].number, n);
      lines.erase(lines.begin() + k - 1);
    }
  });
}

void CountTestLines(TreorSearch& search) {
  TreorOptions& o = search.options;
  if (o.use < 0) o.use = kMostTestLines;
  o.use = std::min(o.use, search.Lines());
  if (o.iq < 0) o.iq = o.use - kSpareTestLines;
  const auto low = [](const TreorLine& line) { return line.s <= kHighestTestS; };
  const auto end = search.lines.begin() + o.use;
  const auto n =
      static_cast<int>(std::find_if_not(search.lines.begin(), end, low) - search.lines.begin());
  if (n == o.use) return;
  ListFewTestLines(search.listing, o.use);
  o.use = n;
  o.iq = n - kSpareTestLines;
}

float Square(float x) { return x * x; }

// For each number of molecules in the cell, as far as the largest volume.
void SetDensityWindows(TreorSearch& search) {
  const TreorOptions& o = search.options;
  if (o.dens <= 0.00001f || o.molw <= 0) return;
  const float least = kAvogadro * std::max(o.dens - o.edens, 0.0f);
  const float most = kAvogadro * (o.dens + o.edens);
  for (int z = 1; z <= kMostDensityWindows; ++z) {
    const float weight = static_cast<float>(z) * o.molw;
    if (!(weight / most < o.vol)) break;
    const float unit = search.limits.lambda6 / Square(weight);
    search.limits.density.push_back({Square(least) * unit, Square(most) * unit});
  }
  // Not one molecule has room: no cell will do.
  if (search.limits.density.empty()) search.limits.density.push_back({1, 0});
}

}  // namespace

int LineCode(float s) {
  return std::clamp(nint(std::floor(s * 100000.0f + 0.5f)), -kFarCode, kFarCode);
}

bool ReadLines(LineReader& input, TreorSearch& search) {
  for (std::string card; input.Read(card);) {
    float twotheta = 0;
    std::string label;
    if (!ReadRecord<"(f16.0,a4)">(card, twotheta, label)) return false;
    if (twotheta <= 0) {
      // What follows holds on to rising lines.
      std::ranges::stable_sort(search.all, {}, &TreorLine::s);
      return true;
    }
    if (search.all.size() == kTreorMostLines) continue;
    search.listing.Put<"(f16.6)">(twotheta);
    search.all.push_back(LineAt(twotheta, label));
  }
  return false;
}

void PrepareLines(TreorSearch& search) {
  // What is no wavelength stands for the usual one.
  if (!(search.options.wave > 0)) search.options.wave = TreorOptions().wave;
  if (search.options.idiv != 0) AdjustFirstLines(search);
  std::ranges::stable_sort(search.all, {}, &TreorLine::s);
  int number = 0;
  for (TreorLine& line : search.all) line.number = ++number;
  search.lines = search.all;
  RemoveHigherOrders(search);
  CountTestLines(search);
  TreorOptions& o = search.options;
  if (o.select < 0 || o.select > search.Lines()) o.select = 0;
}

void SetVolume(SearchLimits& limits, float volume) {
  limits.stagevol = volume;
  limits.testlimit = limits.lambda6 / Square(volume);
}

void SetLimits(TreorSearch& search) {
  const TreorOptions& o = search.options;
  SearchLimits& limits = search.limits;
  limits.lambda6 = Square(o.wave * o.wave * o.wave) / 64.0f;
  limits.amin = Square(o.wave) / (4.0f * Square(o.cem));
  limits.hexamin = 4.0f * limits.amin / 3.0f;
  SetVolume(limits, o.vol);
  limits.d1 = LineCode(o.d1);
  limits.d2 = LineCode(o.d2);
  limits.ssqtl = LineCode(o.ssqtl);
  limits.cos4 = 4.0f * Square(std::cos(kDegToRad * static_cast<float>(o.mono)));
  SetDensityWindows(search);
}
