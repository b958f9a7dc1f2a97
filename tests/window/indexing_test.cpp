// Solutions of an indexing run, chosen with keys and mouse.
#include <gtest/gtest.h>

#include <QTableWidget>
#include <fstream>

#include "../index/solutionlistings.h"
#include "toolkit/displaylist.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

constexpr int kPlotIto = 40123;

QPoint RowOf(const QTableWidget* grid, int row) {
  return grid->visualItemRect(grid->item(row - 1, 2)).center();
}

}  // namespace

TEST(Indexing, SolutionsAreChosenByKeysAndMouse) {
  RunOn("index.xy", []() -> Script {
    std::ofstream(Place() + "/ito.out") << listings::Ito(3);
    const auto choose = [] {
      ws.indexoutfile = Place() + "/ito.out";
      Pick(kPlotIto);
      return Shown("dialog134");
    };
    co_await choose();
    const auto* grid = FindA<QTableWidget>("field1751");
    EXPECT_EQ(grid->item(2, 1)->text(), "7.000");
    EXPECT_EQ(grid->item(0, 0)->background().color(), QColor(Qt::blue));
    Press("Down");
    co_await Until{[] { return ws.selsolution == 2; }, "the second row"};
    EXPECT_EQ(grid->item(1, 9)->background().color(), QColor(Qt::blue));
    EXPECT_EQ(grid->item(0, 0)->background(), QBrush());
    const auto before = ScreenList().points;
    Press("Return");
    co_await Idle();
    EXPECT_EQ(ws.cell(1), 6);
    EXPECT_GT(ws.npeaks, 0);
    EXPECT_NE(ScreenList().points, before);

    co_await choose();
    grid = FindA<QTableWidget>("field1751");
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, RowOf(grid, 3));
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, RowOf(grid, 3));
    co_await Idle();
    EXPECT_EQ(ws.cell(1), 7);
    co_await choose();
    Press("Escape");
    co_await Idle();
    EXPECT_EQ(ws.cell(1), 7);
    EXPECT_EQ(ws.selsolution, 0);
    Pick(MenuUndo);
    co_await Idle();
    EXPECT_EQ(ws.cell(1), 6);
    Pick(MenuUndo);
    co_await Idle();
    EXPECT_EQ(ws.npeaks, 0);
  });
}
