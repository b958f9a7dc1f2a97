// Overlays opened and closed: which pattern lies where, on which axes, and what the menu shows.
#include <gtest/gtest.h>

#include <cmath>

#include "multi/multi.h"
#include "multi/putoverlay.h"
#include "shell/shell.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/snapshot.h"

namespace {

constexpr int kXy = 40040, kCif = 40042, kCloseAll = 40037;

class Overlays : public testing::Test {
 protected:
  // Slot 1 goes from 20 to 40 degrees. The files a to f have 100, 200 ... counts from 30 degrees up
  // in steps of 1 and the wavelengths 1, 1.1 ...; x has no counts.
  Overlays() {
    PutPattern(20, 0.5f, 41, [](double) { return 50; });
    SetMenuLoaded(1);
    for (int k = 0; k < 6; ++k) WriteCif("abcdef"[k], 1 + 0.1 * k, 100 * (k + 1));
    WriteCif('x', 2.5, 0);
  }
  std::string File(char name) const { return dir_.file(std::string(1, name) + ".cif"); }
  void WriteCif(char name, double wave, int counts) const {
    std::string text = "_diffrn_radiation_wavelength   " + std::to_string(wave) +
                       "\n_pd_meas_2theta_range_min 30.0\n_pd_meas_2theta_range_inc 1.0\nloop_\n"
                       "  _pd_meas_intensity_total\n\n";
    for (int i = 0; i < 3; ++i) text += std::to_string(counts) + "\n";
    WriteFile(File(name), text);
  }
  void Open(const std::string& names) const {
    std::string answer = "file";
    for (char name : names) answer += " \"" + File(name) + "\"";
    RunMenu(kCif, answer);
  }
  // The overlays by the names of their files: name, counts and axes agree, and so does the
  // wavelength of the overlay's place, which `waves` names by a file.
  void ExpectOverlays(const std::string& names, const std::string& waves) const {
    ASSERT_EQ(ws.noverlay, std::ssize(names));
    for (int k = 1; k <= MaxOverlays; ++k) {
      const bool open = k <= ws.noverlay;
      EXPECT_EQ(WMenuGetString(MenuCloseOverlay1 + k - 1), open ? File(names[k - 1]) : "");
      EXPECT_EQ(WMenuGetState(MenuCloseOverlay1 + k - 1, MenuEnabled), open);
      if (!open) continue;
      const int slot = SlotOverlay + k - 1;
      EXPECT_EQ(ws.npts(slot), 3);
      EXPECT_EQ(ws.yval(slot, 3), 100 * (names[k - 1] - 'a' + 1)) << names;
      const double wave = 1 + 0.1 * (waves[k - 1] - 'a');
      EXPECT_FLOAT_EQ(ws.wavelen(slot), wave);
      EXPECT_NEAR(ws.xval(AxisD, slot, 3), wave / 2 / std::sin(Degrees(16)), 1e-5);
      EXPECT_NEAR(ws.xval(AxisQ, slot, 3), 4 * M_PI / wave * std::sin(Degrees(16)), 1e-4);
    }
  }
  TempDir dir_;
};

TEST_F(Overlays, TheOldestGivesWayAndTakesItsWavelengthAlong) {
  Open("abc");
  ExpectOverlays("abc", "abc");
  Open("de");
  ExpectOverlays("bcde", "bcde");
  Open("abcdef");
  ExpectOverlays("abcd", "abcd");
  EXPECT_EQ(WStatusText(3), "4 of 6 files opened: there is room for four");
}

// The wavelengths stay with their places when others move up.
TEST_F(Overlays, EachIsClosedInItsTurn) {
  const std::string left[] = {"bcd", "acd", "abd", "abc"};
  Open("abcd");
  for (int k = 1; k <= 4; ++k) {
    RunMenu(MenuCloseOverlay1 + k - 1);
    ExpectOverlays(left[k - 1], "abc");
    RunMenu(MenuUndo);
    ExpectOverlays("abcd", "abcd");
  }
  // A number beyond counts as the last one's, and one below is none.
  CloseOverlay(-1);
  EXPECT_EQ(ws.noverlay, 4);
  CloseOverlay(9);
  EXPECT_EQ(ws.noverlay, 3);
}

TEST_F(Overlays, TheMenuFollows) {
  const auto enabled = [] {
    int count = 0;
    for (int id : {MenuPopupClosePattern, MenuAddPatterns, MenuDisplacePatterns, MenuFitPatterns,
                   MenuSaveFitted, MenuClearFit})
      count += WMenuGetState(id, MenuEnabled);
    return count;
  };
  const Snapshot before = TakeSnapshot();
  RunMenu(kCif, "file");
  EXPECT_TRUE(TakeSnapshot(&before) == before);
  EXPECT_EQ(enabled(), 0);
  Open("ab");
  EXPECT_EQ(enabled(), 6);
  RunMenu(kCloseAll);
  EXPECT_EQ(enabled(), 0);
  ExpectOverlays("", "");
  RunMenu(MenuUndo);
  ExpectOverlays("ab", "ab");
  RunMenu(MenuUndo);
  EXPECT_EQ(enabled(), 0);
  EXPECT_EQ(WMenuGetString(40048), "Empty");
}

TEST_F(Overlays, AreCutToThePattern) {
  const std::string narrow = dir_.file("narrow.xy"), beside = dir_.file("beside.xy");
  WriteFile(narrow, "19 1\n19.999 2\n20 3\n25 4\n40 5\n40.001 6\n30 7\n");
  WriteFile(beside, "41 1\n42 2\n");
  RunMenu(kXy, "file " + narrow + " " + beside);
  ASSERT_EQ(ws.npts(5), 3);
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(ws.yval(5, i), i + 2);
  EXPECT_EQ(ws.xval(AxisTth, 5, 3), 40);
  EXPECT_NEAR(ws.xval(AxisD, 5, 3), CuKalpha1 / 2 / std::sin(Degrees(20)), 1e-5);
  EXPECT_EQ(ws.npts(6), 0);
  EXPECT_EQ(ws.noverlay, 2);
  EXPECT_EQ(WStatusText(3), "beside has no points between 20.000 and 40.000 degrees");
}

// A file that cannot be read leaves neither points nor its wavelength behind; others come in.
TEST_F(Overlays, AFileThatFailsIsLeftOut) {
  Open("axb");
  const Lines boxes = Boxes();
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_TRUE(boxes[0].starts_with("box\tFile Error\tNothing read from cif\\n" + File('x')));
  EXPECT_EQ(boxes[1], "box\tError\tError handling cif");
  ExpectOverlays("ab", "ab");
  const Snapshot before = TakeSnapshot();
  Open("x");
  EXPECT_TRUE(TakeSnapshot(&before) == before);
  Boxes();

  const std::string far = dir_.file(std::string(300, 'x'));
  EXPECT_EQ(OpenOverlay(Lines{far, File('x'), File('c')}, 5), Outcome::Done);
  EXPECT_EQ(Boxes()[0], "box\tError\t" + far + " is longer than 256 characters");
  ShowMenuState();
  ExpectOverlays("abc", "abc");
  EXPECT_FLOAT_EQ(ws.scanwave(1), 1.2f);
  EXPECT_EQ(OpenOverlay(Lines{File('c')}, 11), Outcome::Failed);
  EXPECT_EQ(Boxes(), Lines{"box\tError\tUnrecognized file type"});
}

}  // namespace
