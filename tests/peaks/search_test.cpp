// Auto peak search on patterns with known peaks.
#include <gtest/gtest.h>

#include <cmath>

#include "peaks/gaussmatch.h"
#include "peaks/peaks.h"
#include "peaks/simulate.h"
#include "support/support.h"

using simulate::Load;
using simulate::Pattern;
using simulate::Symmetric;

namespace {

struct PeakSearch : testing::Test {
  PeakSearch() { FreshWorkspace(); }
};

void Search(int smooth, float minfwhm = 0.05f, float maxfwhm = 0.4f, float sigma = 2) {
  ws.pksmooth = smooth;
  ws.pkminfwhm = minfwhm;
  ws.pkmaxfwhm = maxfwhm;
  ws.pksigma = sigma;
  OnPeakSearch();
}

// Twelve peaks of rising height, each with a lower one beside it if `partner` is not 0.
struct Kind {
  const char* name;
  double background, height, rise, fwhm, partner, alpha2;
  int smooth;
  float minfwhm, maxfwhm, sigma;
};

Pattern Make(const Kind& kind) {
  Pattern p{.background = kind.background, .alpha2 = kind.alpha2};
  for (int i = 0; i < 12; ++i) {
    const double place = 14 + 6.1073 * i, top = kind.height + kind.rise * i;
    p.peaks.push_back(Symmetric(place, top, kind.fwhm));
    if (kind.partner > 0) p.peaks.push_back(Symmetric(place + kind.partner, 0.6 * top, kind.fwhm));
  }
  return p;
}

// With options that suit the pattern at most one peak in twelve is missed or invented.
TEST_F(PeakSearch, FindsKnownPeaksInNoise) {
  const Kind kinds[] = {
      {"isolated", 100, 200, 400, 0.12, 0, 0, 5, 0.05f, 0.4f, 10},
      {"overlapped", 100, 2000, 0, 0.12, 0.18, 0, 3, 0.05f, 0.4f, 8},
      {"weak", 2000, 350, 30, 0.12, 0, 0, 61, 0.15f, 0.8f, 3},  // from 8 standard deviations
      {"broad", 100, 300, 50, 1.2, 0, 0, 21, 0.3f, 1.2f, 2},
      {"doublets", 100, 3000, 0, 0.1, 0, 0.5, 3, 0.05f, 0.8f, 10},
  };
  for (const Kind& kind : kinds) {
    const Pattern pattern = Make(kind);
    std::vector<double> lines;  // the peaks, then their alpha2 lines, which may be found
    for (const auto& p : pattern.peaks) lines.push_back(p.position);
    if (kind.alpha2 > 0)
      for (const auto& p : pattern.peaks) lines.push_back(simulate::Alpha2Position(p.position));
    int missed = 0, invented = 0;
    for (int seed = 1; seed <= 5; ++seed) {
      Load(pattern, seed);
      Search(kind.smooth, kind.minfwhm, kind.maxfwhm, kind.sigma);
      std::vector<double> found;
      for (int j = 1; j <= ws.npeaks; ++j) found.push_back(ws.peaks(ptth, j) - 0.02);
      const auto alone = [&](const std::vector<double>& others) {
        return [&](double place) {
          const auto near = [&](double at) { return std::fabs(at - place) < kind.fwhm / 3; };
          return std::ranges::none_of(others, near);
        };
      };
      missed += std::count_if(lines.begin(), lines.begin() + pattern.peaks.size(), alone(found));
      invented += std::ranges::count_if(found, alone(lines));
    }
    EXPECT_LE(missed, 5) << kind.name;
    EXPECT_LE(invented, 5) << kind.name;
  }
}

// The second difference S(i-2) - 2 S(i-1) + S(i) is kept at i: a peak at a point p is found at p
// + 1. Without smoothing its run is where a Gaussian is concave, |x| < FWHM / 2.3548 = 0.051: 5
// points.
TEST_F(PeakSearch, PositionIsOneStepHighAndAnEvenWindowScales) {
  Load({.peaks = {Symmetric(50, 1000, 0.12, 0)}});
  Search(1);
  ASSERT_EQ(ws.npeaks, 1);
  EXPECT_NEAR(ws.peaks(ptth, 1), 50.02, 1e-4);
  EXPECT_NEAR(ws.peaks(pfwhm, 1), 5 * 0.02, 1e-4);
  EXPECT_NEAR(ws.peaks(pint, 1), 100 + 1000 * std::exp2(-1.0 / 9), 0.01);  // 0.02 off the top
  EXPECT_EQ(ws.plotmask, 35);
  Search(14);  // 13 places divided by 14, twice
  EXPECT_NEAR(ws.peaks(ptth, 1), 50.02 * 13 * 13 / (14 * 14), 1e-3);
}

// The first candidate is held against the background at the first point, wherever it stands.
TEST_F(PeakSearch, BackgroundIsLeftAndIsReadAtTheOrdinalNumber) {
  Load({.background = 400, .slope = -3.75, .peaks = {Symmetric(70, 60, 0.12)}});
  Search(15);  // 60 counts above 175, but 400 at the start
  EXPECT_EQ(ws.npeaks, 0);
  EXPECT_EQ(ws.plotmask, 1);
  Load({.background = 100, .slope = 3.75, .peaks = {Symmetric(70, 10, 0.12)}});
  Search(15);  // 10 counts above 325 are below two sigma, but 235 above the start
  EXPECT_EQ(ws.npeaks, 1);
  EXPECT_EQ(ws.npts(SlotBackground), 4001);
  EXPECT_EQ(ws.bgintend, 90);
  EXPECT_NEAR(ws.yval(SlotBackground, 3001), 325, 2);
  Load({.background = -100, .peaks = {Symmetric(70, 60, 0.12, 0)}});
  Search(1);  // a negative background has no root, and so rejects nothing
  EXPECT_EQ(ws.npeaks, 1);
}

TEST_F(PeakSearch, GaussianMatchIsExactOnAGaussianAndAConstant) {
  for (int width : {1, 4, 9}) {
    const int reach = 3 * width / 2;
    std::vector<float> y(101, 900);
    for (int k = -reach; k <= reach; ++k)
      y[50 + k] += 250 * static_cast<float>(std::exp2(-4.0 * k * k / (width * width)));
    const GaussianMatch match = GaussMatch(y, {50, width}, 0.02f);
    EXPECT_NEAR(match.height, 250, 0.2);
    EXPECT_NEAR(match.root, 30, 0.01);
    EXPECT_EQ(GaussMatch(y, {reach + 1, width}, 0.02f).root, 0);  // too near to the ends
    EXPECT_NE(GaussMatch(y, {100 - reach, width}, 0.02f).root, 0);
  }
}

TEST_F(PeakSearch, TheListEndsAt200) {
  Pattern p;
  for (int i = 0; i < 250; ++i) p.peaks.push_back(Symmetric(12 + 0.3 * i, 1000, 0.06));
  Load(p);
  Search(1, 0.02f);
  EXPECT_EQ(ws.npeaks, 201);
  EXPECT_EQ(ws.peaks(ptth, 201), 0);
  EXPECT_EQ(Events(), std::vector<std::string>{"status\t3\tPeak list is full: 200 peaks"});
  // The mouse adds none to it, and takes one out of the 200 that there are.
  Answer("mouse left 50 500\nmouse right 12.02 500\npress OK");
  ManualPeakSearch();
  EXPECT_EQ(ws.npeaks, 199);
  EXPECT_NEAR(ws.peaks(ptth, 199), 12 + 0.3 * 199 + 0.02, 1e-3);
}

TEST_F(PeakSearch, SurvivesPatternsWithNothingToFind) {
  for (const auto& [points, step] : {std::pair{0, 0.02}, {1, 0.02}, {2, 0.02}, {50, 0.0}}) {
    ws.npeaks = 7;
    Load({.step = step, .points = points});
    for (int smooth : {0, 3, 501}) Search(smooth, 0);
    EXPECT_EQ(ws.npeaks, 0) << points;
  }
}

}  // namespace
