// Commands with a dialog, from the first click to the last.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <algorithm>
#include <memory>

#include "background/curve.h"
#include "shell/shell.h"
#include "toolkit/displaylist.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/slots.h"
#include "workspace/workspace.h"

namespace {

constexpr int MenuManualBackground = 40088, MenuGeneralFit = 40107;
constexpr int kWithParameters[] = {
    40003, 40018, 40038, 40052, 40054, 40055, 40056, 40057, 40058, 40059, 40060, 40061,
    40062, 40063, 40064, 40072, 40073, 40075, 40079, 40093, 40111, 40124, 40278,
};

QWidget* OnShow() { return QApplication::activeModalWidget(); }

Until PointCount(const int& list, int count) {
  return {[&list, count] { return list == count; }, "the number of points"};
}

void PressButton(const char* name) { QTest::mouseClick(Find(name), Qt::LeftButton); }

// All that can be entered in the dialog on show.
QStringList Entries() {
  QStringList entries;
  for (const QLineEdit* line : OnShow()->findChildren<QLineEdit*>()) entries += line->text();
  for (const QAbstractButton* button : OnShow()->findChildren<QAbstractButton*>())
    if (button->isCheckable()) entries += button->isChecked() ? "on" : "off";
  return entries;
}

// Enters another number, or else takes the next choice.
void FillIn() {
  const auto lines = OnShow()->findChildren<QLineEdit*>();
  if (lines.isEmpty()) return Press("Down");
  lines[0]->setFocus();
  lines[0]->selectAll();
  Type(QString::number(lines[0]->text().toDouble() + 2));
}

bool SameCurves(const Workspace& other) {
  return std::ranges::equal(ws.xval.cells, other.xval.cells) &&
         std::ranges::equal(ws.yval.cells, other.yval.cells);
}

}  // namespace

// What the dialog beside the plot opens stands above it, and gives the keys back to it.
TEST(Commands, GeneralFitBesideThePlot) {
  RunOn("fit.xy", []() -> Script {
    Pick(MenuGeneralFit);
    co_await Shown("dialog124");
    const QWidget* dialog = Find("dialog124");
    co_await Until{[=] { return dialog->isActiveWindow(); }, "the keys"};
    EXPECT_TRUE(dialog->screen()->availableGeometry().contains(dialog->frameGeometry()));
    Press("Alt+S");
    co_await Shown("dialog111");
    EXPECT_EQ(OnShow()->parentWidget(), dialog);
    Press("Down");
    Press("Return");
    co_await Until{[] { return !OnShow(); }, "the end of the dialog above"};
    EXPECT_EQ(FindA<QLabel>("field1407")->text(), "Laue class 2 (2/m-a, P)");
    EXPECT_TRUE(Find("field1404")->isEnabled());
    EXPECT_FALSE(Find("field1405")->isEnabled());
    PressButton("button1501");
    co_await Idle();
    EXPECT_EQ(ws.laueclass, 2);
    EXPECT_EQ(ws.npeaks, 200);
    Pick(MenuUndo);
    co_await Idle();
    EXPECT_EQ(ws.laueclass, 1);
    EXPECT_EQ(ws.npeaks, 0);
  });
}

TEST(Commands, ManualBackgroundByMouse) {
  RunOn("manual.xy", []() -> Script {
    ws.manualbgmode = 1;  // straight lines
    Pick(MenuManualBackground);
    co_await Shown("dialog128");
    EXPECT_FALSE(Root()->menuBar()->isEnabled());
    Click(12, 100);
    Click(40, 600);
    co_await PointCount(ws.nmanualbg, 2);
    Click(35, 600, Qt::RightButton);  // nothing there
    Click(40, 600, Qt::RightButton);
    co_await PointCount(ws.nmanualbg, 1);
    // The plot follows the window, and the mouse the plot.
    const auto drawn = ScreenList().points;
    Root()->resize(Root()->width() * 0.7, Root()->height());
    co_await Until{[&] { return ScreenList().points != drawn; }, "letters of the new shape"};
    QTest::mouseMove(Root()->canvas, OnPlot(45, 500));
    co_await Until{[] { return Root()->parts[0]->text().startsWith("TwoTh  4"); }, "read-outs"};
    Click(20, 200);
    co_await PointCount(ws.nmanualbg, 2);
    PressButton("button1110");
    co_await Idle();
    EXPECT_TRUE(Root()->menuBar()->isEnabled());
    EXPECT_EQ(ws.nmanualbg, 0);
    EXPECT_EQ(ws.npts(SlotBackground), 1000);
    for (const int i : {1, 121, 601})  // 10, 16 and 40 degrees
      EXPECT_NEAR(ws.yval(SlotBackground, i), 100 + 12.5 * (8 + 0.05 * i - 10.05), 15) << i;
  });
}

TEST(Commands, TheWindowCanBeClosedBesideADialog) {
  RunOn("close.xy", []() -> Script {
    Pick(MenuManualPeaks);
    co_await Shown("dialog130");
    Click(30, 500);
    co_await PointCount(ws.npeaks, 1);
    Root()->close();
    co_await Shown("unsaved");
    Press("Alt+D");
    co_await Until{[] { return false; }, "the end of the program"};
  });
  EXPECT_EQ(Root(), nullptr);
  EXPECT_EQ(ws.npeaks, 1);
}

// What is cancelled leaves no trace. What is accepted changes a curve, asks or tells something, or
// is there when the dialog is opened again.
TEST(Commands, EveryParameterDialogIsCancelledAndAccepted) {
  RunOn("each.xy", []() -> Script {
    std::ranges::fill(ws.yval.row(SlotBackground), 20.0f);
    PutBackgroundOnInputGrid();
    const auto start = std::make_unique<Workspace>(ws);
    const Until dialog{[] { return OnShow() && OnShow()->isActiveWindow(); }, "a dialog"};
    const Until answer{[=] { return ReadyForCommands() || dialog.ready(); }, "an answer"};
    for (const int id : kWithParameters) {
      ws = *start;
      Pick(id);
      co_await dialog;
      const QStringList shown = Entries();
      FillIn();
      EXPECT_NE(Entries(), shown) << id;
      Press("Escape");
      co_await Idle();
      EXPECT_TRUE(SameCurves(*start)) << id;

      Pick(id);
      co_await dialog;
      EXPECT_EQ(Entries(), shown) << id;
      FillIn();
      Press("Return");
      bool done = false;
      for (co_await answer; OnShow(); co_await answer) {
        EXPECT_FALSE(OnShow()->objectName().startsWith("dialog")) << id;
        done = true;
        Press("Escape");
      }
      if (done || !SameCurves(*start)) continue;
      Pick(id);
      co_await dialog;
      EXPECT_NE(Entries(), shown) << id;
      Press("Escape");
      co_await Idle();
    }
  });
}
