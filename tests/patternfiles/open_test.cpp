// Opening a pattern: which file, which reader, what a load sets.
#include <gtest/gtest.h>

#include <cmath>

#include "patternfiles/patternfiles.h"
#include "patternfiles/samples.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

class Open : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    Events();
  }
  std::string Make(const std::string& name, const std::string& text) {
    const std::string path = dir_.file(name);
    WriteFile(path, text);
    return path;
  }
  TempDir dir_;
};

TEST_F(Open, ByExtensionWhateverItsCase) {
  const std::string xy = "5 100\n5.02 120\n5.04 -90\n";
  const std::string path = Make("a b.c d.Xy", xy);
  ws.smoothwindow = 11;
  ws.npeaks = ws.nmanualbg = 3;
  ws.gdfhead(3) = "earlier";
  ws.plotmask = 1;
  EXPECT_EQ(OpenPattern(path), Outcome::Done);
  EXPECT_TRUE(Events().empty());
  EXPECT_EQ(ws.patternpath, path);
  EXPECT_EQ(ws.patternstem, "a b");
  EXPECT_EQ(ws.viewmode, 1);
  EXPECT_EQ(ws.recentpending, 1);
  EXPECT_EQ(ws.smoothwindow, 3);
  EXPECT_EQ(ws.npeaks, 0);
  EXPECT_EQ(ws.gdfhead(3), "");
  EXPECT_EQ(ws.nmanualbg, 0);  // points set by hand belong to their pattern
  EXPECT_EQ(ws.fullstart, 5);
  EXPECT_EQ(ws.crystend, ws.xval(AxisTth, 1, 3));
  EXPECT_NEAR(ws.xval(AxisD, 1, 1), 1.54056 / 2 / std::sin(2.5 * std::acos(-1) / 180), 1e-4);
}

// What no file states is an assumption, whatever an earlier file or an overlay has stated.
TEST_F(Open, TheWavelengthIsStatedOrAssumed) {
  const std::string states = "txt uxd udf cif xrdml";
  const std::string cobalt = Make("co.cif", FormatSamples()[7].text());
  for (const FormatSample& sample : FormatSamples()) {
    SCOPED_TRACE(sample.extension);
    ASSERT_EQ(OpenPattern(cobalt), Outcome::Done);
    EXPECT_EQ(OpenPattern(Make("stem." + std::string(sample.extension), sample.text())),
              Outcome::Done);
    const bool stated = states.find(sample.extension) != states.npos;
    EXPECT_EQ(ws.statedwave, stated ? sample.wave[0] : 0);
    EXPECT_EQ(ws.axiswave, sample.wave[0]);
    ReadAs("cif", SlotOverlay, cobalt);
    EXPECT_EQ(ws.statedwave, stated ? sample.wave[0] : 0);
  }
  EXPECT_EQ(OpenPattern(Make("a.uxd", "_2THETACOUNTS\n 5 1\n 6 2\n")), Outcome::Done);
  EXPECT_EQ(ws.statedwave, 0);
}

}  // namespace
