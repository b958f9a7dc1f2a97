// The table of found cells beside the plot, by keys and mouse.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QLabel>
#include <QScreen>
#include <QTableWidget>
#include <cmath>

#include "peaks/peaklist.h"
#include "plot/page.h"
#include "toolkit/displaylist.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

constexpr double kRad = 0.017453292519943295;

QTableWidget* Grid() { return FindA<QTableWidget>("field1811"); }
int BlueStrokes() {
  return static_cast<int>(std::ranges::count_if(ScreenList().strokes, [](const Stroke& s) {
    return static_cast<int>(s.pen.colour) == colours::kBlue;
  }));
}

void List(std::vector<double> lines) {
  std::ranges::sort(lines);
  const int n = static_cast<int>(lines.size());
  RelistPeaks(n, PeakPicked);
  for (int j = 1; j <= n; ++j)
    ws.peaks(ptth, j) = static_cast<float>(lines[static_cast<std::size_t>(j - 1)]);
  ws.plotmask = PlotInput + PlotPeaks;
}

// Lines of a body-centred orthorhombic cell of 6.21, 8.13 and 10.35 angstrom.
void ListPeaks() {
  std::vector<double> lines;
  for (int h = 0; h < 6; ++h)
    for (int k = 0; k < 8; ++k)
      for (int l = 0; l < 10; ++l)
        if (const double sine = 0.77028 * std::hypot(h / 6.21, k / 8.13, l / 10.35);
            (h + k + l) % 2 == 0 && h + k + l > 0 && sine < 0.45)
          lines.push_back(2 * std::asin(sine) / kRad);
  std::ranges::sort(lines);
  lines.resize(20);
  List(lines);
}

}  // namespace

TEST(FindCell, IsChosenByKeysAndTakenByReturn) {
  RunOn("cell.xy", []() -> Script {
    ListPeaks();
    Pick(MenuFindCell);
    co_await Shown("dialog146");
    const QWidget* dialog = Find("dialog146");
    EXPECT_TRUE(dialog->screen()->availableGeometry().contains(dialog->frameGeometry()));
    EXPECT_EQ(Grid()->item(0, 1)->text(), "orthorhombic I");
    EXPECT_EQ(Grid()->currentRow(), 0);
    EXPECT_EQ(Root()->parts[3]->text(), "Unexplained: none");
    EXPECT_FALSE(Find("button1816")->isEnabled()) << "no second phase without lines";
    const int first = BlueStrokes();
    EXPECT_GE(first, 20);
    Press("Down");
    co_await Until{[] { return ws.selfindcell == 2; }, "the second row"};
    co_await Until{[=] { return BlueStrokes() != first; }, "the lines of another cell"};
    Press("Ctrl+C");
    co_await Until{[] { return QGuiApplication::clipboard()->text().contains("ln odds"); }, "copy"};
    Press("Up");
    co_await Until{[] { return ws.selfindcell == 1; }, "the first row"};
    Press("Return");
    co_await Idle();
    EXPECT_EQ(BlueStrokes(), 0);
    EXPECT_NEAR(ws.cell(3), 10.35, 0.01);
    EXPECT_EQ(ws.npeaks, 20);
    EXPECT_EQ(LastDeed(), "press 1");
    Pick(MenuUndo);
    co_await Idle();
    EXPECT_EQ(ws.cell(3), 10);

    // Escape leaves the cell as it was.
    Pick(MenuFindCell);
    co_await Shown("dialog146");
    Press("Escape");
    co_await Idle();
    EXPECT_EQ(ws.cell(3), 10);
    EXPECT_EQ(BlueStrokes(), 0);
  });
}

// The second phase leaves no lines, so that its button goes out of use under the user's hand: the
// next Return is to take the cell.
TEST(FindCell, GoesBackToTheTableAfterASecondPhase) {
  RunOn("cell.xy", []() -> Script {
    std::vector<double> lines;
    const auto add = [&](double a, std::initializer_list<int> squares) {
      for (const int n : squares) lines.push_back(2 * std::asin(0.77028 * std::sqrt(n) / a) / kRad);
    };
    add(4.1, {1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 14, 16});
    add(5.43, {3, 8, 11, 12, 16, 19, 20, 24});
    List(lines);
    Pick(MenuFindCell);
    co_await Shown("dialog146");
    EXPECT_EQ(Grid()->item(0, 1)->text(), "cubic P");
    Find("button1816")->setFocus();
    Press("Space");
    co_await Until{[] { return !Find("button1816")->isEnabled(); }, "the second phase"};
    EXPECT_EQ(Grid()->item(0, 1)->text(), "cubic F");
    EXPECT_TRUE(Grid()->hasFocus());
    Press("Return");
    co_await Idle();
    EXPECT_NEAR(ws.cell(1), 5.43, 0.01);
  });
}

// Lines without a cell are searched for a while. What has been found by then stays.
TEST(FindCell, StopKeepsWhatHasBeenFound) {
  RunOn("cell.xy", []() -> Script {
    RelistPeaks(40, PeakPicked);
    for (int j = 1; j <= 40; ++j)
      ws.peaks(ptth, j) = 9 + static_cast<float>(j) + 0.37f * static_cast<float>(j * j % 7);
    Pick(MenuFindCell);
    co_await Until{[] { return Find("stop")->isVisible(); }, "the Stop button"};
    QTest::keyClick(Root()->canvas, Qt::Key_Escape);
    co_await Until{[] { return Root()->parts[2]->text().startsWith("Stopped"); }, "the end"};
    if (ws.nfindcell > 0) {
      co_await Shown("dialog146");
      EXPECT_TRUE(FindA<QLabel>("field1812")->text().startsWith("Stopped: "));
      EXPECT_EQ(Grid()->rowCount(), ws.nfindcell);
      Press("Escape");
    }
    co_await Idle();
    EXPECT_EQ(ws.npeaks, 40);
  });
}
