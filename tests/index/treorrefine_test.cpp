// Refinement of trial cells, their figures of merit, and the way to a solution.
#include "index/treor/refine.h"

#include <gtest/gtest.h>

#include "index/simulate.h"
#include "index/treor/accept.h"
#include "index/treor/cell.h"
#include "index/treor/merit.h"

namespace {

constexpr auto kWavelength = static_cast<float>(kWave);

TEST(TreorCell, OfConstantsThatBelongToNone) {
  EXPECT_FALSE(CellOf(CrystalSystem::Cubic, {}, kWavelength));
  EXPECT_FALSE(CellOf(CrystalSystem::Orthorhombic, {0.01f, -0.01f, 0.01f}, kWavelength));
  EXPECT_FALSE(CellOf(CrystalSystem::Monoclinic, {0.01f, 0.01f, 0.01f, 0.021f}, kWavelength));
  EXPECT_FALSE(CellOf(CrystalSystem::Triclinic, {0.01f, 0.01f, 0.01f, 0.015f, -0.015f, 0.015f},
                      kWavelength));
  EXPECT_FALSE(CellOf(CrystalSystem::Cubic, {0.01f, 0.01f, 0.01f}, 0));
}

TEST(TreorForms, LinesAreThoseOfTheCell) {
  for (const TrueCell& truth : kCells) {
    const float smax = 0.3f;
    const auto lines = CalculatedLines(truth.system, ConstantsOf(truth.cell), smax);
    const auto expected = TrueLines(truth.cell, smax);
    // Equal s of different forms are one line there.
    std::size_t i = 0;
    for (const double s : expected) {
      ASSERT_LT(i, lines.size());
      EXPECT_NEAR(lines[i].s, s, 1e-6);
      while (i < lines.size() && lines[i].s < s + 1e-6) ++i;
    }
    EXPECT_EQ(i, lines.size()) << static_cast<int>(truth.system);
    // Of equivalent reflections the usual one.
    using enum CrystalSystem;
    for (const auto& [s, r] : lines) {
      const bool half = r.l > 0 || r.k > 0 || (r.k == 0 && r.h > 0);
      EXPECT_TRUE(r.l >= 0 && half);
      EXPECT_TRUE(truth.system == Triclinic || r.k >= 0);
      EXPECT_TRUE(truth.system == Triclinic || r.h >= 0 || (truth.system == Monoclinic && r.l > 0));
      EXPECT_TRUE(r.h >= r.k || (truth.system != Cubic && truth.system != Tetragonal &&
                                 truth.system != Hexagonal));
      EXPECT_TRUE(r.k >= r.l || truth.system != Cubic);
    }
  }
  // 333 and 511 are of one form, 300 and 221 likewise: 1 to 14 without 7 are 13 sums of squares.
  const Constants cube = ConstantsOf({9, 9, 9, 90, 90, 90});
  EXPECT_EQ(CalculatedLines(CrystalSystem::Cubic, cube, 14.5f * cube.a).size(), 13u);
  EXPECT_EQ(CalculatedLines(CrystalSystem::Triclinic, {1e-4f, 1e-4f, 1e-4f}, 0.3f).size(), 270u);
  for (const Constants& none : {Constants{-0.01f, 0.01f, 0.01f}, Constants{0.01f, 0, 0.01f},
                                Constants{0.01f, 0.01f, -0.01f}})
    EXPECT_TRUE(CalculatedLines(CrystalSystem::Orthorhombic, none, 0.3f).empty());
}

// Errors of the refined cells in units of their standard deviations: their mean square is near 1
// for the edges and angles that a system leaves free, and lines of one error in s, as they count.
TEST(TreorRefinement, FindsTheCellWithinItsDeviations) {
  for (const TrueCell& truth : kCells) {
    std::mt19937 generator(1);
    std::normal_distribution<double> error(0, 3e-5);
    double sum = 0;
    int n = 0;
    for (int run = 1; run <= 40; ++run) {
      DataSet data;
      auto lines = TreorLinesAt(Pattern(truth.cell, 24, 0));
      for (TreorLine& line : lines) line.s += static_cast<float>(error(generator));
      TrialCell trial{truth.system, ConstantsOf(truth.cell, 1.002)};
      RefineCell(trial, lines, data.search.options, data.listing);
      const auto found = CellOf(truth.system, trial.constants, kWavelength);
      ASSERT_TRUE(found);
      const UnitCell deviation = CellDeviations(trial, kWavelength);
      for (int i = 1; i <= 6; ++i) {
        const double off = found->cell(i) - truth.cell[static_cast<std::size_t>(i - 1)];
        EXPECT_NEAR(off, 0, i > 3 ? 0.2 : 0.01);
        if (deviation(i) == 0) continue;
        sum += std::pow(off / deviation(i), 2);
        ++n;
      }
    }
    EXPECT_NEAR(sum / n, 1, 0.5) << static_cast<int>(truth.system);
    const int free[] = {3, 3, 3, 3, 4, 6};  // a and b of equal axes both count
    EXPECT_EQ(n, 40 * free[static_cast<int>(truth.system) - 1]);
  }
}

TEST(TreorRefinement, FewLinesOrARunawayCellEndIt) {
  const Constants truth = ConstantsOf(kCells[3].cell);
  DataSet data;
  TrialCell trial{CrystalSystem::Orthorhombic, truth};
  const auto two = TreorLinesAt(Pattern(kCells[3].cell, 2, 0));
  RefineCell(trial, two, data.search.options, data.listing);
  EXPECT_EQ(trial.constants.a, truth.a);
  EXPECT_EQ(trial.singles, 2);
  RefineCell(trial, {}, data.search.options, data.listing);
  // One line of each axis fits within the tolerance, but b would go by more than 0.001.
  data.search.options.d1 = data.search.options.d2 = 0.004f;
  std::vector<TreorLine> axes;
  for (const float s : {truth.c, truth.a, truth.b + 0.003f}) axes.push_back({s, 0, ""});
  std::ranges::sort(axes, {}, &TreorLine::s);
  RefineCell(trial, axes, data.search.options, data.listing);
  EXPECT_EQ(trial.constants.b, truth.b);
  EXPECT_NE(data.Text().find("NUMBER OF EQ LESS THAN NUMBER OF PARAMETERS"), std::string::npos);
}

// M of n lines, by its definition and in double precision, for lines that are all near their own.
struct Reference {
  double m, f;
  int calculated;
};
Reference ReferenceOf(const TrueCell& truth, const std::vector<double>& twotheta, std::size_t n) {
  const auto squared = [](double at) { return std::pow(std::sin(at * kDegree / 2), 2); };
  const double last = squared(twotheta[n - 1]);
  const auto all = TrueLines(truth.cell, last);
  const auto more = TrueLines(truth.cell, last + 0.01);
  double epsilon = 0, delta = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const double s = squared(twotheta[i]);
    const double near =
        *std::ranges::min_element(more, {}, [&](double each) { return std::fabs(each - s); });
    epsilon += std::fabs(near - s) / static_cast<double>(n);
    delta +=
        std::fabs(2 * std::asin(std::sqrt(near)) / kDegree - twotheta[i]) / static_cast<double>(n);
  }
  const auto calculated = static_cast<double>(all.size());
  return {last / (2 * epsilon * calculated), static_cast<double>(n) / (delta * calculated),
          static_cast<int>(all.size())};
}

TEST(TreorMerit, FiguresByTheirDefinition) {
  for (const TrueCell& truth : kCells) {
    const auto twotheta = Pattern(truth.cell, 32, 0.012);
    if (truth.system == CrystalSystem::Cubic) continue;  // different forms of equal s
    const auto lines = TreorLinesAt(twotheta);
    const LineTest test = TestLines(truth.system, ConstantsOf(truth.cell), lines, TreorOptions{});
    ASSERT_EQ(test.figures.size(), 3u);
    EXPECT_EQ(test.unindexed, 0);
    EXPECT_EQ(test.m, test.figures[0].m);
    std::size_t i = 0;
    for (const std::size_t n : {20u, 30u, 32u}) {
      const Reference expected = ReferenceOf(truth, twotheta, n);
      const FigureOfMerit& figure = test.figures[i++];
      EXPECT_EQ(figure.lines, static_cast<int>(n));
      EXPECT_EQ(figure.calculated, expected.calculated);
      EXPECT_NEAR(figure.m, expected.m, 0.51 + 0.002 * expected.m)
          << static_cast<int>(truth.system);
      EXPECT_NEAR(figure.f, expected.f, 0.51 + 0.002 * expected.f);
    }
  }
}

TEST(TreorMerit, OfTwoCalculatedLinesTheNearer) {
  // 100 at 0.0100, 010 at 0.0102: the observed line at 0.01015 is that of 010.
  TreorOptions options;
  const std::vector<TreorLine> lines{{0.01015f, 1015, ""}};
  const LineTest test =
      TestLines(CrystalSystem::Orthorhombic, {0.01f, 0.0102f, 1.0f}, lines, options);
  ASSERT_EQ(test.rows.size(), 2u);
  EXPECT_EQ(test.rows[0].observed, nullptr);
  ASSERT_TRUE(test.rows[1].observed && test.rows[1].calculated);
  EXPECT_EQ(test.rows[1].calculated->hkl.k, 1);
}

}  // namespace
