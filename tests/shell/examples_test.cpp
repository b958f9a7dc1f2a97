// The examples are what their README says: each opens, and its strongest line lies where the cell
// puts it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "patternfiles/patternfiles.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

struct ExampleCase {
  const char* file;
  int points;
  float alpha1, alpha2;  // as the file says
  double wavelength;
  double d;  // of the strongest line
};

const ExampleCase kCases[] = {
    {"ceria.xy", 5501, 1.54056f, 1.54433f, 1.54056, 5.4113 / std::sqrt(8)},
    {"corundum.xrdml", 5501, 1.54056f, 1.54433f, 1.54056,
     1 / std::sqrt(4 / 3.0 / 4.7589 / 4.7589 + 1 / 12.991 / 12.991)},
    {"forsterite.gdf", 9001, 1.54056f, 1.54056f, 1.54056,
     1 / std::sqrt(1 / 4.756 / 4.756 + 1 / 10.207 / 10.207 + 1 / 5.980 / 5.980)},
    {"gypsum.uxd", 4101, 1.54056f, 1.54433f, 1.54056, 15.202 / 4},
    {"halite.udf", 4960, 1.54056f, 1.54433f, 1.54056, 5.6402 / std::sqrt(3)},
    {"rutile.cif", 5501, 1.78897f, 1.78897f, 1.78897,
     1 / std::sqrt(1 / 4.5937 / 4.5937 + 1 / 2.9587 / 2.9587)},
    {"calcite.txt", 3068, 1.54056f, 1.54433f, 1.54056,
     1 / std::sqrt(4 / 3.0 / 4.9896 / 4.9896 + 1 / 17.061 / 17.061)},
    {"silicon.chi", 3500, 1.54056f, 1.54433f, 0.4, 5.4309 / std::sqrt(11)},
    {"quartz-in-glass.dat", 3510, 1.54056f, 1.54433f, 1.54056,
     1 / std::sqrt(4 / 3.0 / 4.9137 / 4.9137 + 1 / 5.4047 / 5.4047)},
    {"polyethylene.xy", 1001, 1.54056f, 1.54433f, 1.54056, 4.942},
};

TEST(Examples, EachHoldsItsPattern) {
  for (const ExampleCase& c : kCases) {
    SCOPED_TRACE(c.file);
    FreshWorkspace();
    ws.patternpath = std::string(QUILLAGRAM_SOURCE "/examples/") + c.file;
    OpenPattern(MaxRecent + 1);
    EXPECT_EQ(ws.npts(SlotInput), c.points);
    EXPECT_EQ(ws.scanwave(1), c.alpha1);
    EXPECT_EQ(ws.scanwave(2), c.alpha2);
    const auto y = ws.yval.row(SlotInput);
    const auto highest = std::max_element(y.begin(), y.end()) - y.begin();
    const double bragg = 2 * std::asin(c.wavelength / 2 / c.d) * 180 / M_PI;
    EXPECT_NEAR(ws.xval(AxisTth, SlotInput, static_cast<int>(highest) + 1), bragg, 0.04);
  }
}

TEST(Examples, TheTourRuns) {
  const TempDir directory;
  std::filesystem::create_directory_symlink(QUILLAGRAM_SOURCE "/examples",
                                            directory.file("examples"));
  const ReplayRun run =
      RunReplay(ReadFile(QUILLAGRAM_SOURCE "/examples/tour.replay"), directory.path());
  EXPECT_EQ(run.status, 0);
  for (const char* drawing : {"corundum.eps", "corundum, zoomed.eps", "corundum, d.svg"})
    EXPECT_GT(ReadFile(directory.file(drawing)).size(), 10000u) << drawing;
}

}  // namespace
