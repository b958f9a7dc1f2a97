// Overlays opened and closed: which pattern lies where, on which axes, and what the menu shows.
#include <gtest/gtest.h>

#include <cmath>

#include "multi/multi.h"
#include "multi/putoverlay.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/snapshot.h"

namespace {

constexpr int kXy = 40040, kCif = 40042, kCloseAll = 40037;

// A cif file from 30 degrees up in steps of 1: a number of counts, and more by the point.
void WriteCifFile(const std::string& path, double wave, int counts, int points = 3) {
  std::string text = "_diffrn_radiation_wavelength   " + std::to_string(wave) +
                     "\n_pd_meas_2theta_range_min 30.0\n_pd_meas_2theta_range_inc 1.0\nloop_\n"
                     "  _pd_meas_intensity_total\n\n";
  for (int i = 0; i < points; ++i) text += std::to_string(counts + i) + "\n";
  WriteFile(path, text);
}

class Overlays : public testing::Test {
 protected:
  // Slot 1 goes from 20 to 40 degrees; the files a to f have 100, 200 ... counts and the
  // wavelengths 1, 1.1 ...
  Overlays() {
    PutPattern(20, 0.5f, 41, [](double) { return 50; });
    SetMenuLoaded(1);
    for (int k = 0; k < 6; ++k) WriteCifFile(File("abcdef"[k]), 1 + 0.1 * k, 100 * (k + 1));
  }
  std::string File(char name) const { return dir_.file(std::string(1, name) + ".cif"); }
  void Open(const std::string& names) {
    std::string answer = "file";
    for (char name : names) answer += " \"" + File(name) + "\"";
    RunMenu(kCif, answer);
  }
  // The overlays by the names of their files. Name, first counts and axes agree, and so does the
  // wavelength of the overlay's place, which `waves` names by a file.
  void ExpectOverlays(const std::string& names, const std::string& waves) {
    ASSERT_EQ(ws.noverlay, std::ssize(names));
    for (int k = 1; k <= ws.noverlay; ++k) {
      const int slot = SlotOverlay + k - 1;
      EXPECT_EQ(ws.overlayname(k), File(names[k - 1])) << names;
      EXPECT_EQ(WMenuGetString(MenuCloseOverlay1 + k - 1), File(names[k - 1]));
      EXPECT_EQ(ws.npts(slot), 3);
      EXPECT_EQ(ws.yval(slot, 3), 100 * (names[k - 1] - 'a' + 1) + 2);
      const double wave = 1 + 0.1 * (waves[k - 1] - 'a');
      EXPECT_FLOAT_EQ(ws.wavelen(slot), wave);
      EXPECT_NEAR(ws.xval(AxisD, slot, 2), wave / 2 / std::sin(Degrees(31) / 2), 1e-5);
      EXPECT_NEAR(ws.xval(AxisQ, slot, 2), 4 * M_PI / wave * std::sin(Degrees(31) / 2), 1e-4);
    }
    for (int k = ws.noverlay + 1; k <= MaxOverlays; ++k) {
      EXPECT_EQ(WMenuGetString(MenuCloseOverlay1 + k - 1), "");
      EXPECT_EQ(WMenuGetState(MenuCloseOverlay1 + k - 1, MenuEnabled), 0);
    }
  }
  TempDir dir_;
};

TEST_F(Overlays, TheOldestGivesWayAndTakesItsWavelengthAlong) {
  Open("abc");
  ExpectOverlays("abc", "abc");
  Open("de");
  ExpectOverlays("bcde", "bcde");
  Open("f");
  ExpectOverlays("cdef", "cdef");
  Open("abcdef");
  ExpectOverlays("abcd", "abcd");
  EXPECT_EQ(WStatusText(3), "4 of 6 files opened: there is room for four");
}

// The wavelengths stay with their places when others move up.
TEST_F(Overlays, EachIsClosedInItsTurn) {
  const struct {
    int k;
    std::string left, waves;
  } rows[] = {{1, "cde", "bcd"}, {2, "bde", "bcd"}, {3, "bce", "bcd"}, {4, "bcd", "bcd"}};
  Open("abcde");
  Open("e");  // of more than four only the first are taken, so that this is the fifth
  for (const auto& row : rows) {
    RunMenu(MenuCloseOverlay1 + row.k - 1);
    ExpectOverlays(row.left, row.waves);
    RunMenu(MenuUndo);
    ExpectOverlays("bcde", "bcde");
  }
  // There is one that bears a number beyond, or below.
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
  ShowMenuState();
  EXPECT_EQ(enabled(), 0);
  EXPECT_EQ(WMenuGetString(40051), "Empty");
  const Snapshot before = TakeSnapshot();
  RunMenu(kCif, "file");
  EXPECT_TRUE(TakeSnapshot(&before) == before);
  EXPECT_EQ(UndoTitle(), "");
  Open("a");
  EXPECT_EQ(enabled(), 6);
  EXPECT_EQ(WMenuGetState(40048, MenuEnabled), 1);
  RunMenu(40048);
  EXPECT_EQ(enabled(), 0);
  Open("ab");
  RunMenu(kCloseAll);
  EXPECT_EQ(enabled(), 0);
  ExpectOverlays("", "");
  RunMenu(MenuUndo);
  RunMenu(MenuUndo);
  RunMenu(MenuUndo);
  ExpectOverlays("a", "a");
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

// One file of three cannot be read. It leaves neither points nor its wavelength behind, and the
// others come in.
TEST_F(Overlays, AFileThatFailsIsLeftOut) {
  WriteCifFile(File('x'), 2.5, 0, 0);
  ws.scanwave(1) = 1.7f;
  Open("axb");
  const Lines boxes = Boxes();
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_TRUE(boxes[0].starts_with("box\tFile Error\tNothing read from cif\\n" + File('x')));
  EXPECT_EQ(boxes[1], "box\tError\tError handling cif");
  ExpectOverlays("ab", "ab");

  RunMenu(kCloseAll);
  ws.scanwave(1) = 1.7f;
  const Snapshot before = TakeSnapshot();
  Open("xx");
  EXPECT_EQ(Boxes().size(), 4u);
  EXPECT_TRUE(TakeSnapshot(&before) == before);

  const std::string far = dir_.file(std::string(300, 'x'));
  EXPECT_EQ(OpenOverlay(Lines{far, File('c')}, 5), Outcome::Done);
  EXPECT_EQ(Boxes(), Lines{"box\tError\t" + far + " is longer than 256 characters"});
  ShowMenuState();
  ExpectOverlays("c", "c");
  EXPECT_EQ(OpenOverlay(Lines{File('c')}, 10), Outcome::Failed);
  EXPECT_EQ(Boxes(), Lines{"box\tError\tUnrecognized file type"});
}

}  // namespace
