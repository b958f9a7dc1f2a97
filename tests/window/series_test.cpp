// A series beside the plot: run, stopped and looked at by keys and mouse.
#include <gtest/gtest.h>

#include <QAbstractSpinBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QRadioButton>
#include <QScreen>
#include <QTableWidget>
#include <fstream>

#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

QTableWidget* Grid() { return FindA<QTableWidget>("field1900"); }
bool IsOn(const char* field) { return FindA<QRadioButton>(field)->isChecked(); }
std::string Told() { return FindA<QLabel>("status3")->text().toStdString(); }

Until Row(int row) {
  return {[=] { return FindA<QAbstractSpinBox>("field1922")->text() == QString::number(row); },
          "the row"};
}

void ClickHead(int column) {
  const QHeaderView* heads = Grid()->horizontalHeader();
  QTest::mouseClick(
      heads->viewport(), Qt::LeftButton, {},
      {heads->sectionViewportPosition(column - 1) + heads->sectionSize(column - 1) / 2, 5});
}

void WriteText(const std::string& name, const std::string& text) {
  std::ofstream(Place() + "/" + name) << text;
}

// Files s1.xy to s9.xy, of which the fourth is not there, and `more` that are not there either.
void MakeSeries(int more = 0) {
  std::string list;
  for (int k = 1; k <= 9 + more; ++k) {
    const std::string name = "s" + std::to_string(k) + ".xy";
    if (k < 10 && k != 4) MakePattern(name);
    list += name + "\n";
  }
  WriteText("all.list", list);
  WriteText("points.recipe", "open \"{file}\"\nget npts(1) as points\nget xval(1,1,1) as first\n");
}

void PressLetter(Qt::Key letter) { QTest::keyClick(Find("dialog148"), letter, Qt::AltModifier); }

// Answers the selector that a letter opens; behind it the dialog is in front again.
Until Chosen(Qt::Key letter, const std::string& name) {
  PressLetter(letter);
  return {[=, typed = false]() mutable {
            QWidget* const dialog = Find("dialog148");
            if (!typed && Shown("selector").ready()) {
              typed = true;
              Type(QString::fromStdString(Place() + "/" + name));
              Press("Return");
            } else if (typed && !QApplication::activeModalWidget()) {
              dialog->activateWindow();
            }
            return typed && dialog->isActiveWindow();
          },
          "the file"};
}

}  // namespace

TEST(Series, IsRunAndLookedAtByKeysAndMouse) {
  MakeSeries();
  RunOn("one.xy", []() -> Script {
    Pick(MenuSeries);
    co_await Shown("dialog148");
    QWidget* dialog = Find("dialog148");
    EXPECT_TRUE(dialog->screen()->availableGeometry().contains(dialog->frameGeometry()));
    EXPECT_FALSE(Find("button1925")->isEnabled()) << "nothing to run yet";
    co_await Chosen(Qt::Key_F, "all.list");
    co_await Chosen(Qt::Key_R, "points.recipe");
    EXPECT_TRUE(Find("button1925")->isEnabled());
    Grid()->setFocus();
    Press("Return");
    co_await Until{[] { return Told().starts_with("9 rows"); }, "the run"};
    EXPECT_EQ(Told().substr(0, 18), "9 rows, 1 failed, ");
    EXPECT_TRUE(IsOn("field1911")) << "the first column is shown";
    EXPECT_EQ(Grid()->columnCount(), 4);
    EXPECT_EQ(Grid()->horizontalHeaderItem(2)->text(), "points");
    EXPECT_EQ(Grid()->item(8, 2)->text(), "1000");
    EXPECT_NE(Grid()->item(3, 0)->background(), Grid()->item(4, 0)->background());

    // Rows by keys, also one that has failed; the title follows.
    Grid()->setCurrentCell(2, 1);
    Grid()->setFocus();
    Press("Up");
    co_await Row(2);
    EXPECT_EQ(Root()->windowTitle(), "s2 - Quillagram");
    EXPECT_TRUE(IsOn("field1912"));
    Press("Down");
    Press("Down");
    co_await Row(4);
    EXPECT_EQ(Told().substr(0, 7), "s4.xy: ");
    EXPECT_EQ(ws.patternstem, "s3");

    // A line of the map.
    PressLetter(Qt::Key_M);
    co_await Until{[] { return IsOn("field1909") && ws.viewmode == 5; }, "the map"};
    Click(25, 7);
    co_await Row(7);
    EXPECT_EQ(ws.patternstem, "s7");
    EXPECT_EQ(Grid()->currentRow(), 6);

    ClickHead(4);
    co_await Until{[] { return ws.seriescolumn == "first"; }, "the column of the head"};
    EXPECT_EQ(ws.viewmode, 5);
    ClickHead(4);
    co_await Until{[] { return ws.seriesalong == "first"; }, "the column along"};
    QTest::keyClick(Root()->canvas, Qt::Key_Escape);
    co_await Idle();
    EXPECT_EQ(ws.viewmode, 5) << "what was on show stays";
    EXPECT_EQ(LastDeed(), "press 2");
  });
}

TEST(Series, ShowsATableThatIsThere) {
  std::string rows = "file,date,a,recipe,boxes,failed\n";
  for (int k = 1; k <= 2500; ++k)
    rows += "s" + std::to_string(k) + ".xy,," + std::to_string(k) + ".5,x#1,," +
            (k % 1000 == 3 ? "why" : "") + "\n";
  WriteText("old.csv", rows);
  RunOn("one.xy", []() -> Script {
    Pick(MenuSeries);
    co_await Shown("dialog148");
    co_await Chosen(Qt::Key_T, "old.csv");
    EXPECT_EQ(ws.nseries, 2500);
    EXPECT_EQ(Grid()->rowCount(), 2000) << "a page";
    EXPECT_EQ(Grid()->columnCount(), 3) << "no date is known";
    EXPECT_EQ(Grid()->item(1, 2)->text(), "2.5");
    EXPECT_NE(Grid()->item(1, 2)->background(), Grid()->item(2, 2)->background());
    Find("field1922")->setFocus();
    FindA<QAbstractSpinBox>("field1922")->selectAll();
    Type("2003");
    Press("Return");
    co_await Row(2003);
    EXPECT_EQ(Grid()->rowCount(), 500);
    EXPECT_EQ(Grid()->currentRow(), 2);
    EXPECT_EQ(Grid()->item(2, 2)->text(), "2003.5");
    EXPECT_NE(Grid()->item(1, 2)->background(), Grid()->item(2, 2)->background());
    PressLetter(Qt::Key_C);
    co_await Until{[] { return !Find("dialog148") || Idle().ready(); }, "the end"};
  });
}

TEST(Series, WithoutAPatternMenusStayAsTheyWere) {
  const auto enabled = [] {
    QStringList texts;
    for (const QAction* menu : Root()->menuBar()->actions())
      if (menu->isEnabled()) texts += menu->text().remove('&');
    return texts;
  };
  RunWith([=]() -> Script {
    const QStringList before = enabled();
    EXPECT_EQ(before,
              (QStringList{"File", "Edit", "Settings", "Script", "Multiple patterns", "Help"}));
    Pick(MenuSeries);
    co_await Shown("dialog148");
    QTest::keyClick(Find("dialog148"), Qt::Key_Escape);
    co_await Idle();
    EXPECT_EQ(enabled(), before);
  });
}

TEST(Series, IsStoppedAndGoesOn) {
  constexpr int kMore = 20000;  // than any machine does meanwhile
  MakeSeries(kMore);
  RunOn("one.xy", []() -> Script {
    for (const bool first : {true, false}) {
      Pick(MenuSeries);
      co_await Shown("dialog148");
      if (first) {
        co_await Chosen(Qt::Key_F, "all.list");
        co_await Chosen(Qt::Key_R, "points.recipe");
      }
      const int before = ws.nseries;
      QTest::mouseClick(Find("button1925"), Qt::LeftButton);
      co_await Until{[=] { return ws.nseries > before && Find("stop")->isVisible(); }, "rows"};
      // On this small screen, too, and with all the columns of the table.
      const QRect hidden = Find("dialog148")->frameGeometry();
      const QWidget *canvas = Root()->canvas, *stop = Find("stop");
      EXPECT_GE(hidden.left(), canvas->mapToGlobal(QPoint(canvas->width() * 2 / 3, 0)).x());
      EXPECT_FALSE(hidden.intersects({stop->mapToGlobal(QPoint(0, 0)), stop->size()}));
      QTest::mouseClick(Find("stop"), Qt::LeftButton);
      co_await Until{[] { return Told().starts_with("Stopped at "); }, "the end"};
      EXPECT_GT(ws.nseries, before);
      EXPECT_LT(ws.nseries, ws.nseriesfile);
      // The page of the table that holds the last row.
      EXPECT_EQ(Grid()->item(0, 0)->text().toInt() % 2000, 1);
      QTest::keyClick(Root()->canvas, Qt::Key_Escape);
      co_await Idle();
    }
  });
}
