// The examples are what their README says: each opens, its strongest lines are those of the phase's
// reference cards, and there are none where its space group forbids them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <numeric>

#include "patternfiles/patternfiles.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

struct CardLine {
  double d;
  // Percent of the first line, at Cu K alpha; as far apart as cards and calculations are.
  double low = 100, high = 100;
};

struct ExampleCase {
  const char* file;
  int points;
  float alpha1, alpha2;  // as the file says
  double wavelength;
  double reach;  // half the two-theta that holds a line and none beside it
  std::vector<CardLine> lines;
  std::vector<double> absent;
};

// clang-format off
const ExampleCase kCases[] = {
    // 111, 220, 311, 200; no 110, 210
    {"ceria.xy", 5501, 1.54056f, 1.54433f, 1.54056, 0.5,
     {{3.1234}, {1.9134, 46, 55}, {1.6318, 34, 44}, {2.7056, 26, 31}}, {3.826, 2.420}},
    // 113, 104, 116, 012, 024, 110, 300; no 003, 101, 107, 009
    {"corundum.xrdml", 5501, 1.54056f, 1.54433f, 1.54056, 0.4,
     {{2.085}, {2.551, 86, 106}, {1.601, 78, 104}, {3.479, 55, 76}, {1.740, 40, 54},
      {2.379, 36, 50}, {1.374, 48, 62}}, {4.330, 3.929, 1.693, 1.4434}},
    // 112, 131, 222, 021, 130, 020; no 001, 100, 030
    {"forsterite.gdf", 9001, 1.54056f, 1.54056f, 1.54056, 0.2,
     {{2.457}, {2.511, 68, 85}, {1.749, 58, 70}, {3.882, 60, 80}, {2.767, 50, 65}, {5.10, 18, 28}},
     {5.980, 4.756, 3.402}},
    // -121, 020, -141, 121, 022; no -101
    {"gypsum.uxd", 4101, 1.54056f, 1.54433f, 1.54056, 0.35,
     {{4.281}, {7.60, 70, 110}, {3.064, 65, 110}, {2.874, 40, 55}, {2.683, 30, 55}}, {5.181}},
    // 200, 220, 222, 420, 111; no 110, 210, 211
    {"halite.udf", 4960, 1.54056f, 1.54433f, 1.54056, 0.45,
     {{2.8201}, {1.9941, 54, 66}, {1.6282, 14, 20}, {1.2612, 11, 20}, {3.2564, 8, 13}},
     {3.988, 2.522, 2.303}},
    // 110, 211, 101, 111, 220; no 100, 001
    {"rutile.cif", 5501, 1.78897f, 1.78897f, 1.78897, 0.5,
     {{3.248}, {1.6874, 52, 62}, {2.487, 42, 52}, {2.188, 17, 26}, {1.6237, 14, 21}},
     {4.594, 2.959}},
    // 104, 116, 113, 110, 202, 012; no 101
    {"calcite.txt", 3068, 1.54056f, 1.54433f, 1.54056, 0.4,
     {{3.036}, {1.875, 16, 23}, {2.285, 16, 21}, {2.495, 12, 16}, {2.094, 12, 18},
      {3.855, 8, 12}}, {4.190}},
    // 111, 220, 311, 400, 331; no 200, 222
    {"silicon.chi", 3500, 1.54056f, 1.54433f, 0.4, 0.2,
     {{3.1355}, {1.9201, 55, 68}, {1.6375, 30, 39}, {1.3577, 6, 11}, {1.2459, 11, 16}},
     {2.7155, 1.5677}},
    // 101, 100, 112, 110, 102; no 001, 002
    {"quartz-in-glass.dat", 3510, 1.54056f, 1.54433f, 1.54056, 0.35,
     {{3.343}, {4.255, 16, 23}, {1.818, 11, 17}, {2.457, 6, 10}, {2.281, 5, 9}}, {5.405, 2.702}},
    // 110, 200, 020; no 100
    {"polyethylene.xy", 1001, 1.54056f, 1.54433f, 1.54056, 1.0,
     {{4.11}, {3.71, 25, 45}, {2.471, 2, 8}}, {7.414}},
    // 002 and 040, -201, 001
    {"albite.xy", 3501, 1.54056f, 1.54433f, 1.54056, 0.1,
     {{3.19}, {4.03, 16, 80}, {6.39, 5, 20}}, {}},
};
// clang-format on

double TwoTheta(double wavelength, double d) {
  return 2 * std::asin(wavelength / 2 / d) * 180 / M_PI;
}

// What a line of this d owes to the geometry, without a monochromator.
double LorentzPolarisation(double wavelength, double d) {
  const double sine = wavelength / 2 / d, c = 1 - 2 * sine * sine;
  return (1 + c * c) / (sine * sine * std::sqrt(1 - sine * sine));
}

// Counts around a place of the loaded pattern above the straight line between both sides.
double Area(double place, double reach) {
  const auto x = ws.xval.row(AxisTth, SlotInput);
  const auto from = std::lower_bound(x.begin(), x.begin() + ws.npts(SlotInput), place - reach);
  const auto to = std::lower_bound(from, x.begin() + ws.npts(SlotInput), place + reach);
  const auto y = ws.yval.row(SlotInput).subspan(from - x.begin(), to - from);
  const auto side = y.size() / 8;
  const double ends = std::accumulate(y.begin(), y.begin() + side, 0.0) +
                      std::accumulate(y.end() - side, y.end(), 0.0);
  return std::accumulate(y.begin(), y.end(), 0.0) - ends / (2 * side) * y.size();
}

// The area that the line would have at Cu K alpha.
double Intensity(const ExampleCase& c, double d) {
  return Area(TwoTheta(c.wavelength, d), c.reach) * LorentzPolarisation(1.5418, d) /
         LorentzPolarisation(c.wavelength, d);
}

TEST(Examples, EachHoldsLinesAsStrongAsCardsSay) {
  for (const ExampleCase& c : kCases) {
    SCOPED_TRACE(c.file);
    FreshWorkspace();
    OpenPattern(std::string(QUILLAGRAM_SOURCE "/examples/") + c.file);
    EXPECT_EQ(ws.npts(SlotInput), c.points);
    EXPECT_EQ(ws.scanwave(1), c.alpha1);
    EXPECT_EQ(ws.scanwave(2), c.alpha2);
    const auto y = ws.yval.row(SlotInput);
    const auto highest = std::max_element(y.begin(), y.end()) - y.begin();
    EXPECT_NEAR(ws.xval(AxisTth, SlotInput, static_cast<int>(highest) + 1),
                TwoTheta(c.wavelength, c.lines[0].d), 0.04);
    const double first = Intensity(c, c.lines[0].d);
    for (const CardLine& line : c.lines) {
      const double percent = 100 * Intensity(c, line.d) / first;
      EXPECT_TRUE(percent >= line.low && percent <= line.high) << "d " << line.d << ": " << percent;
    }
    for (const double d : c.absent)
      EXPECT_LT(std::fabs(Intensity(c, d)), 0.01 * first) << "d " << d;
  }
}

// The log of a fit stands beside the pattern.
struct ExampleRun {
  const TempDir directory;
  ReplayRun run;

  explicit ExampleRun(const char* transcript) {
    std::filesystem::copy(QUILLAGRAM_SOURCE "/examples", directory.file("examples"));
    run = RunReplay(ReadFile(directory.file("examples/") + transcript), directory.path());
    EXPECT_EQ(run.status, 0);
  }
  std::size_t SizeOf(const std::string& name) const {
    return ReadFile(directory.file(name)).size();
  }
};

TEST(Examples, TheTourRuns) {
  const ExampleRun example("tour.replay");
  for (const char* drawing : {"corundum.eps", "corundum, zoomed.eps", "corundum, d.svg"})
    EXPECT_GT(example.SizeOf(drawing), 10000u) << drawing;
}

TEST(Examples, CorundumIsRefinedToItsCell) {
  const ExampleRun example("refine.replay");
  std::vector<std::string> cells;
  for (const std::string& line : example.run.lines)
    if (line.starts_with("value\tcell\t")) cells.push_back(line);
  ASSERT_EQ(cells.size(), 2u);
  for (const std::string& cell : cells) {
    float a = 0, b = 0, c = 0;
    std::sscanf(cell.c_str(), "value cell %f %f %f", &a, &b, &c);
    EXPECT_NEAR(a, 4.7589, 0.0001) << cell;
    EXPECT_EQ(a, b);
    EXPECT_NEAR(c, 12.9910, 0.0003) << cell;
  }
  EXPECT_GT(example.SizeOf("corundum.fit"), 3000u);
  EXPECT_GT(example.SizeOf("examples/%refine.out"), 3000u);
}

TEST(Examples, ForsteriteIsIndexed) {
  const ExampleRun example("index.replay");
  int cells = 0;
  for (const std::string& line : example.run.lines) {
    float a = 0, b = 0, c = 0, alpha = 0, beta = 0, gamma = 0;
    if (std::sscanf(line.c_str(), "value cell %f %f %f %f %f %f", &a, &b, &c, &alpha, &beta,
                    &gamma) != 6)
      continue;
    ++cells;
    EXPECT_NEAR(a, 10.2070, 0.005) << line;
    EXPECT_NEAR(b, 5.9800, 0.005) << line;
    EXPECT_NEAR(c, 4.7560, 0.005) << line;
    EXPECT_TRUE(alpha == 90 && beta == 90 && gamma == 90) << line;
  }
  EXPECT_EQ(cells, 1);
  EXPECT_GT(example.SizeOf("forsterite, indexed.svg"), 10000u);
}

}  // namespace
