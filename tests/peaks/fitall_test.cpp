// The fit of all peaks of a list.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "peaks/peakgroups.h"
#include "peaks/peaks.h"
#include "peaks/simulate.h"
#include "peaks/splitpeak.h"
#include "support/support.h"

using simulate::Load;
using simulate::Pattern;
using simulate::Peak;
using simulate::Symmetric;

namespace {

struct FitAll : testing::Test {
  FitAll() { FreshWorkspace(); }
};

void ListAt(const std::vector<float>& positions) {
  ws.npeaks = static_cast<int>(positions.size());
  std::ranges::copy(positions, ws.peaks.row(ptth).begin());
}

TEST_F(FitAll, ProfileAndDerivativesAreThoseOfThePeak) {
  for (double ratio : {0.0, 0.5})
    for (double position : {20.0, 155.0}) {
      const FitWavelengths lines{simulate::Lambda1, simulate::Lambda2, static_cast<float>(ratio)};
      const auto make = [&](const SplitDerivatives& p) {
        return SplitPeak{p[Area],      p[Position],           std::exp(p[LogLeft]),
                         p[LeftShape], std::exp(p[LogRight]), p[RightShape]};
      };
      const SplitDerivatives p{300, position, std::log(0.11), 0.3, std::log(0.08), 0.8};
      const Peak truth{position, 300, 0.11, 0.3, 0.08, 0.8};
      for (double d : {-0.5, -0.07, -0.01, 0.02, 0.09, 0.6}) {
        const double x = position + d;
        SplitDerivatives derivatives;
        const double value = DoubletProfile(make(p), lines).At(x, derivatives);
        EXPECT_NEAR(value, DoubletProfile(make(p), lines).At(x), 1e-12 * value);
        EXPECT_NEAR(value,
                    simulate::Intensity({.background = 0, .alpha2 = ratio, .peaks = {truth}}, x),
                    2e-4 * value);  // of the wavelengths, which are 32-bit here
        for (int k = 0; k < SplitParameters; ++k) {
          SplitDerivatives above = p, below = p;
          const double h = 1e-6;
          above[k] += h, below[k] -= h;
          const double slope = (DoubletProfile(make(above), lines).At(x) -
                                DoubletProfile(make(below), lines).At(x)) /
                               (2 * h);
          EXPECT_NEAR(derivatives[k], slope, 1e-5 * (1 + std::fabs(slope))) << k << " " << d;
        }
      }
    }
}

// Deviations of position, area and FWHM from the truth in e.s.d.s.
struct Spread {
  int fitted = 0, all = 0;
  double squares[3] = {}, error = 0;

  void Add(const std::vector<Peak>& peaks, double unit) {
    for (int j = 1; j <= ws.npeaks; ++j) {
      ++all;
      if (ws.peakfailed(j)) continue;
      ++fitted;
      const Peak& t = peaks[j - 1];
      const double off[] = {ws.peaks(ptth, j) - t.position, ws.peaks(pint, j) - unit * t.area,
                            ws.peaks(pfwhm, j) - (t.left + t.right) / 2};
      error += std::fabs(off[0]);
      for (int k = 0; k < 3; ++k) squares[k] += std::pow(off[k] / ws.peakesd(k + 1, j), 2);
    }
  }
  double Of(int k) const { return std::sqrt(squares[k] / fitted); }
};

// Each of 40 peaks, with a partner of half its height behind it if there is a distance.
struct Kind {
  const char* name;
  double height, distance;
  double left, right, shape;
  double slope, bend;
  double error;                       // mean of the positions' in degrees
  double narrow = 0.85, wide = 1.12;  // of the spreads
  double unit = 1;                    // of the counts, whose weights are then off by a factor
};

std::vector<Peak> PeaksOf(const Kind& kind) {
  std::vector<Peak> peaks;
  const Peak shape = Symmetric(0, 1, (kind.left + kind.right) / 2, kind.shape);
  for (int i = 0; i < 40; ++i) {
    Peak p{12.003 + 1.91 * i, kind.height * shape.area, kind.left, kind.shape, kind.right,
           kind.shape};
    peaks.push_back(p);
    p.position += kind.distance;
    p.area /= 2;
    if (kind.distance > 0) peaks.push_back(p);
  }
  return peaks;
}

// A twentieth of a step is 0.001 degrees. Restraints know the truth of pairs beforehand: their
// spreads are below 1.
TEST_F(FitAll, FindsTheTruthWithinHonestErrors) {
  const Kind kinds[] = {
      {"symmetric", 10000, 0, 0.1, 0.1, 0.5, 0, 0, 0.001},
      {"split", 10000, 0, 0.12, 0.08, 0.4, 4, 0, 0.001},
      {"curved background", 10000, 0, 0.12, 0.08, 0.6, -8, 0.1, 0.001},
      {"Gaussian", 10000, 0, 0.1, 0.1, 0, 0, 0, 0.001, 0.85, 1.2},  // shapes end at the limit
      {"counts by the second", 10000, 0, 0.12, 0.08, 0.4, 4, 0, 0.001, 0.85, 1.12, 0.02},
      {"a tenth", 1000, 0, 0.12, 0.08, 0.4, 0, 0, 0.0025},
      {"two widths apart", 10000, 0.2, 0.12, 0.08, 0.5, 0, 0, 0.0012, 0.6},
      {"nearer", 10000, 0.12, 0.1, 0.1, 0.5, 0, 0, 0.0012, 0.6},
  };
  for (const Kind& kind : kinds) {
    const std::vector<Peak> peaks = PeaksOf(kind);
    std::vector<float> rows;  // on the points and a step high, as a search leaves them
    for (const Peak& p : peaks) rows.push_back(0.02f * std::round(float(p.position) / 0.02f + 1));
    Spread spread;
    for (int seed = 1; seed <= 5; ++seed) {
      Load({.background = 400,
            .slope = kind.slope,
            .bend = kind.bend,
            .alpha2 = 0.5,
            .peaks = peaks},
           seed);
      for (float& y : ws.yval.row(SlotInput)) y *= static_cast<float>(kind.unit);
      ws.peakfailed.fill(0);
      ListAt(rows);
      FitAllPeaks();
      spread.Add(peaks, kind.unit);
    }
    EXPECT_GE(spread.fitted, 0.97 * spread.all) << kind.name;
    EXPECT_LT(spread.error / spread.fitted, kind.error) << kind.name;
    for (int k = 0; k < 3; ++k) {
      EXPECT_GT(spread.Of(k), kind.narrow) << kind.name << " " << k;
      EXPECT_LT(spread.Of(k), kind.wide) << kind.name << " " << k;
    }
  }
}

// The list of a search, in the order of a list by hand; then in order with all that a row holds.
TEST_F(FitAll, RowsKeepTheirIndicesAndTheBadOnesAll) {
  const std::vector<Peak> peaks = {Symmetric(30, 3000, 0.1), Symmetric(50, 500, 0.12)};
  Load({.slope = 1, .alpha2 = 0.5, .peaks = peaks}, 7);
  ListAt({50.03f, 29.98f, 40});
  for (int field = pint; field <= pmult; ++field)
    for (int j = 1; j <= 3; ++j) ws.peaks(field, j) = static_cast<float>(10 * j + field);
  for (int j = 1; j <= 3; ++j) ws.peakorigin(j) = PeakPicked;
  ws.peakesd(1, 3) = 0.25f;
  ws.xval(AxisQ, SlotInput, 7) = 2;
  EXPECT_EQ(FitAllPeaks(), Outcome::Done);
  const float code[] = {27, 37, 17};
  for (int j = 1; j <= 3; ++j) {
    EXPECT_EQ(ws.peaks(phkl, j), code[j - 1]);
    EXPECT_EQ(ws.peaks(pmult, j), code[j - 1] + 1);
    EXPECT_EQ(ws.peakfailed(j), j == 2);
    EXPECT_EQ(ws.peakorigin(j), j == 2 ? PeakPicked : PeakFitted);
  }
  EXPECT_NEAR(ws.peaks(ptth, 1), 30, 4 * ws.peakesd(1, 1));
  EXPECT_NEAR(ws.peaks(pint, 3), peaks[1].area, 4 * ws.peakesd(2, 3));
  for (int field : {pshape, pshaper}) EXPECT_NEAR(ws.peaks(field, 1), 0.5, 0.2);
  EXPECT_NEAR(ws.peaks(pfwhmr, 1), 0.1, 0.02);
  const float kept[] = {40, 32, 33, 34, 35, 36};
  for (int field = ptth; field <= pshaper; ++field) EXPECT_EQ(ws.peaks(field, 2), kept[field - 1]);
  EXPECT_EQ(ws.peakesd(1, 2), 0.25f);
  EXPECT_EQ(ws.plotmask, 53);
  EXPECT_EQ(ws.npts(SlotRefined), 4001);
  EXPECT_EQ(ws.xval(AxisQ, SlotRefined, 7), 2);
  EXPECT_EQ(Events().back(), "status\t3\t2 of 3 peaks fitted, 1 did not converge");

  ws.npeaks = 1;
  FitAllPeaks();
  EXPECT_EQ(Events().back(), "status\t3\t1 peak fitted");
  ws.npeaks = 0;
  EXPECT_EQ(FitAllPeaks(), Outcome::Failed);
  EXPECT_EQ(Events(), std::vector<std::string>{"box\tError\tNo peaks in list"});
}

// Widths by the nearer side that falls to half of the height, heights by the top in reach.
TEST_F(FitAll, BeginsWithWhatThePatternShows) {
  const std::vector<float> background(12, 10);
  std::vector<float> x;
  for (int i = 0; i < 12; ++i) x.push_back(20 + 0.02f * static_cast<float>(i));
  const struct {
    const char *name, *tens;  // above the background
    float row;
    double fwhm, height;
  } table[] = {
      {"left side, at the start", "468877665000", 20, 0.08, 80},
      {"right side, at the end", "000566778864", 20 + 0.02f * 11, 0.08, 80},
      {"flat top", "000088800000", 20.1f, 0.08, 80},
      {"two steps off", "000034843000", 20.073f, 0.04, 80},
      {"three steps off", "000034843000", 20.065f, 0.08, 40},
      {"a higher one out of reach", "900004840000", 20.12f, 0.04, 80},
      {"no side", "000000000000", 20.1f, 0.1, std::sqrt(10)},
  };
  for (const auto& row : table) {
    std::vector<float> y;
    for (int i = 0; i < 12; ++i) y.push_back(10 + 10 * static_cast<float>(row.tens[i] - '0'));
    const auto peaks = StartPeaks({x, y, background}, std::vector{row.row});
    ASSERT_EQ(peaks.size(), 1u) << row.name;
    EXPECT_NEAR(peaks[0].peak.Fwhm(), row.fwhm, 1e-4) << row.name;
    EXPECT_NEAR(peaks[0].peak.area * simulate::PseudoVoigt(0, row.fwhm, 0.5), row.height,
                0.01 * row.height)
        << row.name;
  }
}

// Near peaks the curve is the pattern; further off it goes from the lines under the groups, five
// FWHM to both sides of a peak, to the estimate, over as many points as these have or there are.
TEST_F(FitAll, TheCurveJoinsLinesAndEstimate) {
  const std::vector<float> positions = {22, 40, 43.2f, 58}, estimate(2001, 60);
  Pattern pattern{.start = 20, .points = 2001, .background = 100, .slope = 0.5};
  for (float place : positions) pattern.peaks.push_back(Symmetric(place, 1000, 0.19, 0));
  Load(pattern);
  std::vector<int> told;
  const auto report = [&](int done, int) { return told.push_back(done), true; };
  const auto x = ws.xval.row(AxisTth, SlotInput).first(2001);
  const PeakFits fits =
      FitPeaks({x, ws.yval.row(SlotInput).first(2001), estimate}, positions, {}, report);
  EXPECT_EQ(told, (std::vector{0, 0, 1, 1, 2, 2, 3, 3}));  // two rounds are one count
  for (double u : {21.1, 22.0, 22.1, 40.06, 57.96, 58.9})
    EXPECT_NEAR(fits.curve[std::lround((u - 20) * 50)], simulate::Intensity(pattern, u), 1) << u;
  // Groups of 101 points, give or take one; half of them at either end of the pattern, and
  // 60 between two.
  const std::pair<double, double> between[] = {
      {20, 40.5 / 51},       {20.5, 40.5 * 26 / 51},  {24, 41.5 * 52 / 102}, {30, 0},
      {38, 49.5 * 52 / 102}, {41.6, 101.6 * 31 / 61}, {56, 58.5 * 52 / 102}, {59.5, 59.5 * 26 / 51},
      {60, 59.5 / 51}};
  for (const auto& [u, above] : between)
    EXPECT_NEAR(fits.curve[std::lround((u - 20) * 50)], 60 + above, 0.04 * above + 0.01) << u;
}

// One peak may reach over the next one to a third.
TEST_F(FitAll, BroadPeaksJoinWhatLiesWithinThem) {
  std::vector<ListedPeak> peaks(4);
  for (int k = 0; k < 4; ++k) peaks[k].peak = {1, 30.0 + k, k ? 0.1 : 1, 0.5, k ? 0.1 : 1, 0.5};
  const auto groups = GroupPeaks(peaks, {});
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups[0].peaks.size(), 3u);
  peaks.insert(peaks.begin() + 1, 6, peaks[1]);  // nine with them: one too many
  EXPECT_EQ(GroupPeaks(peaks, {}).size(), 3u);
  peaks.erase(peaks.begin() + 1);
  EXPECT_EQ(GroupPeaks(peaks, {}).size(), 2u);
}

// A doublet, a peak by itself, and nine in a row that are parted in their widest gap.
TEST_F(FitAll, GroupsAreWhatOverlaps) {
  std::vector<float> rows = {20, 20.1f, 30};
  for (int i = 0; i < 9; ++i)
    rows.push_back(40 + 0.2f * static_cast<float>(i) + (i > 4 ? 0.1f : 0));
  Pattern pattern{.background = 0};
  for (float row : rows) pattern.peaks.push_back(Symmetric(row, 1000, row == 30 ? 0.17 : 0.09, 0));
  Load(pattern);
  const std::vector<float> background(4001, 0);
  const auto x = ws.xval.row(AxisTth, SlotInput).first(4001);
  const FitWavelengths lines{simulate::Lambda1, simulate::Lambda2, 0.5f};
  const auto peaks = StartPeaks({x, ws.yval.row(SlotInput).first(4001), background}, rows);
  ASSERT_EQ(peaks.size(), rows.size());
  for (const ListedPeak& one : peaks) {
    const double fwhm = one.row == 2 ? 0.2 : 0.12;  // below the half from the third point on
    EXPECT_NEAR(one.peak.Fwhm(), fwhm, 1e-3) << one.row;
    EXPECT_NEAR(one.peak.area, 1000 / simulate::PseudoVoigt(0, fwhm, 0.5), 5) << one.row;
    EXPECT_NEAR(one.limits.narrowest, 0.12 / 5, 1e-3) << one.row;  // of its own and the usual
    EXPECT_NEAR(one.limits.broadest, fwhm * 5, 1e-2) << one.row;
  }
  EXPECT_NEAR(peaks[0].limits.highest, 20.075, 1e-4);  // three quarters of the way
  EXPECT_NEAR(peaks[1].limits.lowest, 20.025, 1e-4);
  EXPECT_NEAR(peaks[2].limits.highest, 30 + peaks[2].peak.Fwhm(), 1e-4);

  const auto groups = GroupPeaks(peaks, lines);
  ASSERT_EQ(groups.size(), 4u);
  const int sizes[] = {2, 1, 5, 4};
  for (int k = 0; k < 4; ++k) EXPECT_EQ(std::ssize(groups[k].peaks), sizes[k]) << k;
  EXPECT_NEAR(groups[1].from, 29, 1e-4);
  EXPECT_NEAR(groups[1].to, simulate::Alpha2Position(30) + 1, 1e-4);
  // The fifth of the row has its alpha2 line on the way to the sixth, which keeps a FWHM.
  EXPECT_NEAR(groups[2].to, (simulate::Alpha2Position(40.8) + 41.1) / 2, 1e-4);
  EXPECT_NEAR(groups[3].from, 41.1 - 0.12, 1e-3);
}

// From a search with finds in the noise: each peak has its fitted row, and hardly any find of noise
// counts as one.
TEST_F(FitAll, IsTheRoadBehindASearch) {
  std::vector<Peak> peaks;
  for (int i = 0; i < 30; ++i)
    peaks.push_back(Symmetric(12.007 + 2.47 * i, 100 + 10 * i * i, 0.11));
  std::ptrdiff_t found = 0, fitted = 0;
  for (int seed = 1; seed <= 5; ++seed) {
    Load({.peaks = peaks}, seed);
    ws.pksmooth = 5;
    ws.pksigma = 4;
    OnPeakSearch();
    FitAllPeaks();
    found += ws.npeaks;
    fitted += std::ranges::count(ws.peakfailed.row().first(ws.npeaks), 0);
  }
  EXPECT_GT(found, 250);
  EXPECT_NEAR(static_cast<double>(fitted), 150, 5);
}

TEST_F(FitAll, BadListsAndPatternsEndWithMarks) {
  const auto steps = [](float (*x)(int)) {
    return [x] {
      for (int i = 1; i <= 4001; ++i) ws.xval(AxisTth, SlotInput, i) = x(i);
    };
  };
  const auto counts = [](float (*changed)(float)) {
    return [changed] {
      std::ranges::transform(ws.yval.row(SlotInput), &ws.yval(SlotInput, 1), changed);
    };
  };
  const auto points = [](int n) { return [n] { ws.npts(SlotInput) = n; }; };
  constexpr float most = std::numeric_limits<float>::max();
  const struct {
    const char* name;
    std::vector<float> rows;
    std::function<void()> spoil;
    std::vector<int> failed;
  } table[] = {
      {"as it is", {30, 50}, [] {}, {0, 0}},
      {"two rows for one", {30, 30, 50}, [] {}, {0, 1, 0}},
      {"a step apart", {30, 30.02f, 50}, [] {}, {0, 1, 0}},
      {"outside", {-5, 9.9f, 50, 95}, [] {}, {1, 1, 0, 1}},
      {"at the ends", {10, 50, 90}, [] {}, {1, 0, 1}},
      {"half a peak", {30, 50}, points(2003), {0, 0}},
      {"where nothing is", {20, 30, 41, 77}, [] {}, {1, 0, 1, 1}},
      {"on the tail of a peak", {30, 30.4f}, [] {}, {0, 1}},
      {"behind a peak that is not listed", {30.2f}, [] {}, {1}},
      {"before it", {29.65f}, [] {}, {1}},
      {"not a number", {30, NAN}, [] {}, {0, 1}},
      {"negative counts", {30, 50}, counts([](float y) { return y - 150; }), {0, 0}},
      {"zeros", {30, 50}, counts([](float y) { return std::max(0.0f, y - 130); }), {0, 0}},
      {"nothing at all", {30, 50}, counts([](float) { return 0.0f; }), {1, 1}},
      {"flat", {30, 50}, counts([](float) { return 7.0f; }), {1, 1}},
      {"the largest", {30, 50}, counts([](float y) { return y > 1000 ? most : y; }), {1, 1}},
      {"all the largest", {30, 50}, counts([](float) { return most; }), {1, 1}},
      {"one point", {10, 50}, points(1), {1, 1}},
      {"few points", {10.02f}, points(5), {1}},
      {"one place", {30, 50}, steps([](int) { return 30.0f; }), {1, 1}},
      {"falling", {30, 50}, steps([](int i) { return 90 - 0.02f * float(i); }), {1, 1}},
  };
  for (const auto& row : table) {
    Load({.peaks = {Symmetric(30, 2000, 0.1), Symmetric(50, 1000, 0.12)}}, 2);
    row.spoil();
    ListAt(row.rows);
    ws.peakfailed.fill(0);
    FitAllPeaks();
    for (std::size_t j = 1; j <= row.rows.size(); ++j) {
      EXPECT_EQ(ws.peakfailed(j), row.failed[j - 1]) << row.name << " " << j;
      if (ws.peakfailed(j)) continue;
      for (int k = 1; k <= 3; ++k) EXPECT_GT(ws.peakesd(k, j), 0) << row.name;
      EXPECT_NEAR(ws.peaks(ptth, j), ws.peaks(ptth, j) < 40 ? 30 : 50, 0.01) << row.name;
    }
    for (int i = 1; i <= ws.npts(SlotRefined); ++i)
      ASSERT_TRUE(std::isfinite(ws.yval(SlotRefined, i))) << row.name << " " << i;
  }
}

}  // namespace
