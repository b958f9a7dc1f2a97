// The peak table beside the plot, by keys and mouse.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QScreen>
#include <QTableWidget>

#include "peaks/peaklist.h"
#include "shell/undo.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

QTableWidget* Grid() { return FindA<QTableWidget>("field1801"); }
QString Cell(int row, int column) { return Grid()->item(row - 1, column - 1)->text(); }

Until Chosen(int row) {
  return {[=] { return ws.peakchosen == row; }, "the row"};
}

// Two-theta from 12 degrees on in steps of 0.2.
void ListPeaks(int count) {
  RelistPeaks(count, PeakPicked);
  for (int j = 1; j <= count; ++j) ws.peaks(ptth, j) = 11.8f + 0.2f * static_cast<float>(j);
  ws.plotmask = PlotInput + PlotPeaks;
}

}  // namespace

TEST(PeakTable, IsWorkedByKeysAndMouse) {
  RunOn("table.xy", []() -> Script {
    ListPeaks(MaxPeaks);
    Pick(MenuPeakTable);
    co_await Shown("dialog145");
    const QWidget* dialog = Find("dialog145");
    EXPECT_TRUE(dialog->screen()->availableGeometry().contains(dialog->frameGeometry()));
    EXPECT_EQ(Grid()->rowCount(), MaxPeaks);
    EXPECT_TRUE(Grid()->hasFocus());
    EXPECT_EQ(Grid()->currentRow(), 0);
    Press("Down");
    co_await Chosen(2);
    Press("Ctrl+C");
    co_await Until{[] { return QGuiApplication::clipboard()->text().contains("2theta"); }, "copy"};
    EXPECT_EQ(QGuiApplication::clipboard()->text().count('\n'), 1 + MaxPeaks);
    EXPECT_EQ(FindA<QLabel>("status4")->text(), "200 peaks copied");
    Press("Del");
    co_await Until{[] { return ws.npeaks == MaxPeaks - 1; }, "one peak less"};
    co_await Until{[] { return Grid()->rowCount() == MaxPeaks - 1; }, "one row less"};
    EXPECT_EQ(Cell(2, 2), "12.4000");
    EXPECT_EQ(Grid()->currentRow(), 1);

    // A tick shows its row, and Del holds on the plot too.
    Click(30, 300);
    co_await Chosen(90);
    co_await Until{[] { return Grid()->currentRow() == 89; }, "the row of the tick"};
    EXPECT_TRUE(Grid()->visibleRegion().boundingRect().contains(
        Grid()->visualItemRect(Grid()->item(89, 1)).center()));
    QTest::keyClick(Root()->canvas, Qt::Key_Delete);
    co_await Until{[] { return ws.npeaks == MaxPeaks - 2; }, "two peaks less"};

    // The head sorts, and the row keeps its peak; the button does it by the column of the cell.
    const float place = ws.peaks(ptth, ws.peakchosen);
    const QHeaderView* heads = Grid()->horizontalHeader();
    for (int k = 0; k < 2; ++k)
      QTest::mouseClick(
          heads->viewport(), Qt::LeftButton, {},
          {heads->sectionViewportPosition(2) + heads->sectionSize(2) / 2, heads->height() / 2});
    co_await Until{[] { return Cell(1, 2) == "12.0000"; }, "falling d"};
    EXPECT_EQ(heads->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_EQ(heads->sortIndicatorSection(), 2);
    EXPECT_EQ(Cell(Grid()->currentRow() + 1, 2), QString::number(place, 'f', 4));
    Grid()->setFocus();
    QTest::keyClick(Grid(), Qt::Key_S, Qt::AltModifier);
    co_await Until{[] { return Cell(1, 2) == "51.8000"; }, "rising d"};

    QTest::keyClick(Root()->canvas, Qt::Key_Escape);
    co_await Idle();
    EXPECT_EQ(ws.peakchosen, 0);
    EXPECT_EQ(LastDeed(), "press 2");
    EXPECT_EQ(FindA<QLabel>("status4")->text(), "198 peaks in the list");
    EXPECT_EQ(UndoTitle(), "Delete peak");
    for (const int left : {MaxPeaks - 1, MaxPeaks}) {
      Pick(MenuUndo);
      co_await Idle();
      EXPECT_EQ(ws.npeaks, left);
    }
  });
}
