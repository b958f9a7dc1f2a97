// The refinement of the whole pattern: what it finds, when it stops, and what it writes.
#include "fit/refine.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <sstream>
#include <utility>

#include "crystal/laue.h"
#include "fit/simulate.h"
#include "support/support.h"

namespace {

using namespace simulate;

const FitReport kGoOn = [](int, float) { return true; };

struct RefinementTest : testing::Test {
  RefineResult Run(FitData& data, const FitReport& report = kGoOn) {
    FitModel model = data.Model();
    AssignProfiles(model);
    numbers = AssignParameters(model);
    const std::string path = dir.file("log");
    LineWriter writer(path);
    const RefineResult result = Refine(model, numbers, writer, report);
    EXPECT_TRUE(writer.Close());
    log = ReadFile(path);
    return result;
  }
  // The fields of the log's lines, text left out.
  std::vector<std::vector<double>> Log() const {
    std::vector<std::vector<double>> lines;
    std::istringstream in(log);
    for (std::string line; std::getline(in, line);) {
      std::istringstream words(line);
      lines.emplace_back();
      for (std::string word; words >> word;)
        if (word.find_first_of("0123456789") != word.npos) lines.back().push_back(std::stod(word));
    }
    return lines;
  }
  TempDir dir;
  ParameterNumbers numbers;
  std::string log;
};

// Three points of 10, 12 and 14 counts on a background of one term, which is 0 at first.
FitData ThreePoints() {
  Truth t;
  t.points = 3;
  t.start = 20, t.step = 0.5;
  FitData data = MakeFit(t);
  data.y = {10, 12, 14};
  data.fit.bgcoef(1) = 0;
  data.fit.diagdamp = 1;
  return data;
}

TEST_F(RefinementTest, LogOfAConstantBackground) {
  FitData data = ThreePoints();
  std::vector<std::pair<int, float>> reported;
  const RefineResult result = Run(data, [&](int cycle, float rw) {
    reported.push_back({cycle, rw});
    return true;
  });
  // M = 3, b = 36; squares of 440 at first and 8 at last; e.s.d. sqrt(1 / 3) sqrt(440 / 2)
  EXPECT_EQ(log,
            "Cycle    1  Rp =    1.0000  Rwp =    1.0000  GOF =   14.8324 npar =    1\n"
            "     12.0000      8.5635      1.4013\n"
            "Cycle    2  Rp =    0.1111  Rwp =    0.1348  GOF =    2.0000 npar =    1\n"
            "     12.0000      1.1547      0.0000\n"
            "Cycle    3  Rp =    0.1111  Rwp =    0.1348  GOF =    2.0000 npar =    1\n");
  EXPECT_EQ(result.end, RefineEnd::Done);
  EXPECT_EQ(result.cycles, 3);
  EXPECT_EQ(result.points, 3);
  EXPECT_EQ(reported.size(), 2);
  EXPECT_NEAR(reported[1].second, std::sqrt(8.0 / 440), 1e-6);
  EXPECT_NEAR(data.fit.bgesd(1), 2 / std::sqrt(3.0), 1e-5);
  EXPECT_NEAR(data.fit.fitgof, 2, 1e-5);
  EXPECT_NEAR(data.fit.fitrp, 4 / 36.0, 1e-6);
  EXPECT_NEAR(data.fit.fitrwp, std::sqrt(8.0 / 440), 1e-6);
  EXPECT_EQ(data.fit.fitpoints * 100 + data.fit.fitnpar * 10 + data.fit.fitcycles, 313);
  EXPECT_EQ(data.fit.nbkgcycles, 0);
}

TEST_F(RefinementTest, DampingCycleLimitAndStop) {
  FitData data = ThreePoints();
  data.fit.diagdamp = 1.25f;
  data.fit.ncycles = 2;
  Run(data);
  EXPECT_NEAR(data.fit.bgcoef(1), 12 / 1.25, 1e-5);
  for (int cycles : {0, 1}) {
    data = ThreePoints();
    data.fit.ncycles = cycles;
    data.fit.fitnpar = 77;
    const RefineResult result = Run(data);
    EXPECT_EQ(result.end, RefineEnd::Done);
    EXPECT_EQ(Log().size(), 1);
    EXPECT_EQ(data.fit.bgcoef(1), 0);
    EXPECT_EQ(data.fit.nbkgcycles, 0);
    EXPECT_EQ(data.fit.fitnpar, cycles ? 1 : 77);
  }
  data = ThreePoints();
  EXPECT_EQ(Run(data, [](int, float) { return false; }).end, RefineEnd::Stopped);
  EXPECT_EQ(data.fit.bgcoef(1), 0);
}

// One peak whose alpha2 is five times as strong: its derivative leaves out that factor, so that
// each full shift goes too far, by the same factor again and again.
TEST_F(RefinementTest, ShiftsThatTurnAreHalved) {
  Truth t;
  t.ratio = 5;
  t.hkl = {{2, 2, 2}}, t.area = {1000};
  FitData data = MakeFit(t);
  data.fit.bgorder = 0;
  for (int i = 0; i < t.points; ++i) {
    data.background[i] = static_cast<float>(100 + i % 7);
    data.y[i] += static_cast<float>(i % 7);
  }
  data.fit.diagdamp = 1, data.fit.ncycles = 5;
  data.peaks(pint, 1) = 1200;
  Run(data);
  const auto lines = Log();
  ASSERT_EQ(lines.size(), 9);
  std::vector<double> left{200};
  for (int k : {1, 3, 5, 7}) left.push_back(lines[k][0] - 1000);
  const double full = (left[0] - left[1]) / left[0];
  ASSERT_GT(full, 1.9);
  // Sides change at every shift but the one after a halved shift that fell short.
  for (int k = 2; k <= 4; ++k) {
    const double before = left[k - 2] - left[k - 1], wanted = full * left[k - 1];
    EXPECT_NEAR(left[k - 1] - left[k], before * wanted < 0 ? wanted / 2 : wanted, 0.01) << k;
  }
}

// Rows 2 and 3 lie at one place and share an intensity. From cycle 3 on what cannot fall any more
// goes; a row that leaves a group leaves its number to the others.
TEST_F(RefinementTest, IntensitiesThatStayAtOneAreTakenOut) {
  const struct {
    std::vector<double> truth;
    float second, third;  // start
    std::array<int, 5> numbers;
    int npar;
  } cases[] = {{{800, -300, -300, -300, 500}, 300, 300, {1, 0, 0, 0, 2}, 2},
               {{800, 0, 300, -300, 500}, 1, 900, {1, 0, 2, 0, 3}, 3}};
  for (const auto& c : cases) {
    Truth t;
    t.laueclass = 16;
    t.cell = {8.3, 8.3, 8.3, 90, 90, 90};
    t.hkl = {{2, 0, 0}, {3, 0, 0}, {2, 2, 1}, {2, 2, 2}, {4, 0, 0}};
    t.area = c.truth;
    FitData data = MakeFit(t);
    data.fit.bgorder = 0;
    data.fit.diagdamp = 1;
    std::ranges::fill(data.background, 100.0f);
    for (int j = 1; j <= 5; ++j) data.peaks(pint, j) = 300;
    data.peaks(pint, 2) = c.second, data.peaks(pint, 3) = c.third;
    const RefineResult result = Run(data);
    EXPECT_EQ(result.end, RefineEnd::Done);
    EXPECT_EQ(result.npar, c.npar);
    EXPECT_EQ(data.fit.fitnpar, c.npar);
    std::vector<double> npar;  // of the first four cycles
    for (const auto& line : Log())
      if (line.size() == 5 && npar.size() < 4) npar.push_back(line[4]);
    EXPECT_EQ(npar, (std::vector<double>{4, 4, 4, 1.0 * c.npar}));
    for (int j = 1; j <= 5; ++j) {
      EXPECT_EQ(numbers.intparam(j), c.numbers[j - 1]) << j;
      EXPECT_NEAR(data.peaks(pint, j), c.numbers[j - 1] ? c.truth[j - 1] : 0.5, 0.1) << j;
    }
  }
}

using Flags = std::function<void(FitParameters&)>;

// Takes the values of a kind off the truth, refines, and has them back.
class KnockedOff : public RefinementTest {
 protected:
  void Expect(const Truth& t, const Flags& flags, ParameterKind kind, float off, double precision) {
    FitData data = MakeFit(t);
    flags(data.fit);
    FitModel model = data.Model();
    AssignProfiles(model);
    std::vector<RefinedValue> values = RefinedValues(model, AssignParameters(model));
    std::erase_if(values, [&](const RefinedValue& v) { return v.kind != kind; });
    ASSERT_FALSE(values.empty());
    std::vector<float> truth;
    for (const RefinedValue& v : values) truth.push_back(std::exchange(*v.value, *v.value + off));
    EXPECT_EQ(Run(data).end, RefineEnd::Done);
    for (std::size_t k = 0; k < values.size(); ++k)
      EXPECT_NEAR(*values[k].value, truth[k], precision)
          << "class " << t.laueclass << ", kind " << static_cast<int>(kind) << ", "
          << values[k].index;
    EXPECT_LT(data.fit.fitrwp, 3e-3);
    const Peak peak = PeakOf(t, 0);
    EXPECT_NEAR(data.peaks(pfwhm, 1), (peak.left + peak.right) / 2, 1e-3);
  }
};

Truth OrthorhombicSplit() {
  Truth t;
  t.laueclass = 5;
  t.cell = {5.2, 6.7, 8.1, 90, 90, 90};
  t.left = {0.02, -0.01, 0.03}, t.right = {0.01, 0.01, 0.02};
  t.leftshape = {0.3, 0.002, 0.00001}, t.rightshape = {0.6, -0.002, 0.00002};
  t.background = {100, -20, 5};
  t.zero = 0.02;
  FillRows(t, CenteringP, 400);
  return t;
}

TEST_F(KnockedOff, EachParameterComesBack) {
  const Truth split = OrthorhombicSplit();
  Expect(
      split, [](FitParameters& fit) { fit.tthzerorefine = 1; }, ParameterKind::Zero, 0.02f, 2e-5);
  Expect(
      split, [](FitParameters&) {}, ParameterKind::Background, 15, 2e-2);
  Expect(
      split, [](FitParameters&) {}, ParameterKind::Intensity, 30, 2e-1);
  for (int k = 1; k <= 6; ++k) {
    const double power = std::pow(30, (k - 1) % 3);
    Expect(
        split, [=](FitParameters& fit) { fit.fwhmrefine(k) = 1; }, ParameterKind::Fwhm, 0.005f,
        5e-4);
    Expect(
        split, [=](FitParameters& fit) { fit.shaperefine(k) = 1; }, ParameterKind::Shape,
        static_cast<float>(0.1 / power), 2e-3 / power);
  }
  Truth even = split;  // a tie holds for equal sides
  even.right = even.left, even.rightshape = even.leftshape;
  for (int k = 1; k <= 3; ++k) {
    const double power = std::pow(30, k - 1);
    Expect(
        even, [=](FitParameters& fit) { fit.fwhmtie(k) = 1; }, ParameterKind::Fwhm, 0.005f, 5e-4);
    Expect(
        even, [=](FitParameters& fit) { fit.shapetie(k) = 1; }, ParameterKind::Shape,
        static_cast<float>(0.1 / power), 2e-3 / power);
  }
  Truth individual;
  individual.position = {23.001, 25, 33.337};
  individual.area = {300, 500, 200};
  Expect(
      individual, [](FitParameters&) {}, ParameterKind::Position, 0.03f, 1e-4);
}

// Cell and zero of all systems at once, with counting noise that is the same everywhere, so that
// unit weights are right: cell and zero are told to within their errors.
TEST_F(RefinementTest, FindsCellAndZeroOfNoisyPatterns) {
  for (const CrystalSystem& system : kSystems)
    for (unsigned seed = 1; seed <= 3; ++seed) {
      Truth t;
      t.laueclass = system.laueclass;
      t.cell = system.cell;
      t.zero = 0.02;
      t.background = {20000, -2000, 500};
      FillRows(t, system.centering, 600);
      FitData data = MakeFit(t, seed);
      FitParameters& fit = data.fit;
      fit.diagdamp = 1;
      fit.tthzero = 0;
      fit.tthzerorefine = 1;
      for (int k = 1; k <= 6; ++k) {
        fit.cellrefine(k) = LaueClassOf(t.laueclass).master[k - 1] >= 0;
        if (k <= 3) fit.cell(k) *= 1.0005f;
      }
      fit.fwhmtie(3) = fit.shapetie(1) = 1;
      MoveToCell(data);
      EXPECT_EQ(Run(data).end, RefineEnd::Done);
      EXPECT_NEAR(fit.fitgof, std::sqrt(20000), 10) << system.name;
      EXPECT_NEAR(fit.tthzero, t.zero, 4 * fit.zeroesd);
      EXPECT_LT(fit.zeroesd, 0.004);
      for (int k = 1; k <= 6; ++k) {
        EXPECT_NEAR(fit.cell(k), t.cell[k - 1], 4 * fit.cellesd(k) + 1e-5) << system.name << k;
        EXPECT_LT(fit.cellesd(k), k <= 3 ? 0.004 : 0.04) << system.name << k;
      }
    }
}

// Against that of the one constant which is free, and of those that follow it.
TEST_F(RefinementTest, ErrorOfTheVolumeObeysTies) {
  for (const auto& [laueclass, constant] : {std::pair{16, 0}, {14, 0}, {14, 2}, {10, 0}, {10, 3}}) {
    Truth t;
    t.laueclass = laueclass;
    t.cell = std::ranges::find(kSystems, laueclass, &CrystalSystem::laueclass)->cell;
    FillRows(t, CenteringP, 400);
    FitData data = MakeFit(t, 1);
    data.fit.cellrefine(constant + 1) = 1;
    Run(data);
    UnitCell up = data.fit.cell, down = up;
    for (int k = 0; k < 6; ++k)
      if (LaueClassOf(laueclass).master[k] == constant) up(k + 1) += 0.05f, down(k + 1) -= 0.05f;
    const float slope = (CellVolume(up) - CellVolume(down)) / 0.1f;
    EXPECT_NEAR(data.fit.volumeesd / std::abs(slope * data.fit.cellesd(constant + 1)), 1, 5e-3)
        << laueclass << " " << constant;
  }
}

// z is -1, -0.5 and 0: the sums are 3, -1.5 and 1.25.
TEST_F(RefinementTest, LargestCorrelation) {
  FitData data = ThreePoints();
  data.fit.bgorder = 2;
  data.fit.fitmax2th = 22;
  Run(data);
  EXPECT_NEAR(data.fit.fitcorrelation, 1.5 / std::sqrt(3 * 1.25), 1e-5);
  EXPECT_EQ(data.fit.fitcorrelated, "background 1, background 2");
}

TEST_F(RefinementTest, WhatCannotBeRefinedEndsClearly) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const struct {
    const char* name;
    std::function<void(FitData&)> spoil;
    RefineEnd end;
    int zeroderivatives = 0;
  } cases[] = {
      {"not a number", [=](FitData& d) { d.y[700] = nan; }, RefineEnd::Diverged},
      {"squares too large", [](FitData& d) { d.y[700] = 1e30f; }, RefineEnd::Diverged},
      {"outside the range", [=](FitData& d) { d.y[0] = nan, d.fit.fitmin2th = 20.03f; },
       RefineEnd::Done},
      {"no number to begin with", [=](FitData& d) { d.fit.fwhmleft(3) = nan; },
       RefineEnd::Diverged},
      {"rows without a place", [](FitData& d) { d.fit.cell(1) = 1; }, RefineEnd::Diverged},
      {"no rows", [](FitData& d) { d.npeaks = 0, d.fit.tthzerorefine = 1; },
       RefineEnd::ZeroDerivatives, 4},
      {"no wavelength", [](FitData& d) { d.wavelength = 0; }, RefineEnd::ZeroDerivatives, 3},
      {"no number for wavelength", [=](FitData& d) { d.wavelength = nan; }, RefineEnd::NoInverse},
      {"nothing to refine", [](FitData& d) { d.npeaks = d.fit.bgorder = 0, d.fit.cellrefine = {}; },
       RefineEnd::Done},
  };
  for (const auto& c : cases) {
    FitData data = MakeFit(OrthorhombicSplit());
    data.fit.cellrefine = {{1, 1, 1}};
    c.spoil(data);
    const FitParameters before = data.fit;
    const RefineResult result = Run(data);
    EXPECT_EQ(result.end, c.end) << c.name;
    EXPECT_EQ(result.zeroderivatives, c.zeroderivatives) << c.name;
    EXPECT_EQ(log.find("Matrix inversion error\n") == 0, c.end == RefineEnd::NoInverse) << c.name;
    EXPECT_TRUE(c.end != RefineEnd::ZeroDerivatives || data.fit == before) << c.name;
  }
}

TEST_F(RefinementTest, FewPointsAndManyCycles) {
  for (int points = 0; points <= 3; ++points) {
    FitData data = ThreePoints();
    data.x.resize(points), data.y.resize(points);
    data.fit.bgorder = 16;
    EXPECT_LE(Run(data).cycles, data.fit.ncycles) << points;
    for (float esd : data.fit.bgesd.cells) EXPECT_TRUE(std::isfinite(esd)) << points;
  }
  FitData data = ThreePoints();
  data.fit.ncycles = 10000;
  data.fit.maxshift = 0;  // never at rest
  EXPECT_EQ(Run(data).cycles, 10000);
}

}  // namespace
