// Menus by keyboard, on an empty program and on a loaded one.
#include <gtest/gtest.h>

#include <QHelpEvent>
#include <QMenuBar>
#include <QToolTip>
#include <set>

#include "shell/shell.h"
#include "toolkit/frontend.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/mnemonics.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

constexpr int MenuExit = 40006;

QAction* Action(int id) { return Root()->findChild<QAction*>(QString("menu%1").arg(id)); }

// Closes whatever a command has put up, by Escape alone.
Script EscapeAll() {
  for (int quiet = 0; quiet < 3; ++quiet) {
    co_await Until{[] { return true; }};
    QWidget* open = QApplication::activeModalWidget();
    if (!open && !ReadyForCommands()) open = QApplication::activeWindow();
    if (!open || open == Root()) continue;
    QTest::keyClick(open, Qt::Key_Escape);
    quiet = 0;
  }
}

// Every command, twice: none may crash or leave something that Escape does not close. Adds up how
// many there were.
Script TryAll(int& tried) {
  ws.editorpath = "true";  // an editor that closes by itself
  for (const MenuItem& item : MenuItems()) {
    if (item.row.popup || item.row.id == MenuExit) continue;
    for (int time = 0; time < 2; ++time) {
      if (!Action(item.row.id)->isEnabled()) continue;
      ++tried;
      Action(item.row.id)->trigger();
      Script escape = EscapeAll();
      escape.handle.resume();
      co_await Until{[&] { return escape.handle.done(); }, item.row.text};
      escape.handle.destroy();
      co_await Idle();
    }
  }
}

QChar Mnemonic(const QString& text) {
  const qsizetype at = QString(text).replace("&&", "  ").indexOf('&');
  return at < 0 ? QChar() : text[at + 1].toLower();
}

}  // namespace

TEST(Menus, EveryCommandTwiceOnAnEmptyProgram) {
  int tried = 0;
  RunWith([&]() -> Script {
    EXPECT_EQ(Root()->windowTitle(), "Quillagram");
    for (const int id : {MenuPopupModify, MenuPopupPlot, MenuPopupIndex, MenuPopupBackground})
      EXPECT_TRUE(Action(id) && !Action(id)->isEnabled()) << id;
    return TryAll(tried);
  });
  EXPECT_GE(tried, 2 * 10) << "opening, settings, help";
}

TEST(Menus, EveryCommandTwiceOnAPattern) {
  const std::string file = MakePattern("all.xy");
  int tried = 0;
  RunWith([&] { return TryAll(tried); }, {file});
  EXPECT_GE(tried, 2 * 50);
}

// Each button has an icon and words of its own, and does what its menu item does.
TEST(Menus, ToolbarFollowsTheMenu) {
  RunOn("tools.xy", []() -> Script {
    const auto tool = [](int id) { return Root()->findChild<QAction*>(QString("tool%1").arg(id)); };
    for (const QAction* action : Root()->toolbar->actions()) {
      if (action->isSeparator()) continue;
      EXPECT_FALSE(action->icon().isNull());
      EXPECT_FALSE(action->toolTip().isEmpty());
      const QImage icon = action->icon().pixmap(32).toImage();
      std::set<QRgb> colours;
      for (int x = 0; x < icon.width(); ++x)
        for (int y = 0; y < icon.height(); ++y) colours.insert(icon.pixel(x, y));
      EXPECT_GT(colours.size(), 2u) << action->toolTip().toStdString();
    }
    EXPECT_FALSE(tool(MenuRedo)->isEnabled());
    EXPECT_TRUE(tool(MenuRedo)->toolTip().endsWith("\nNothing has been taken back"));
    EXPECT_EQ(tool(MenuUndo)->toolTip(), "Undo Open pattern (Ctrl+Z)");
    tool(MenuUndo)->trigger();
    co_await Idle();
    EXPECT_EQ(ws.npts(SlotInput), 0);
    EXPECT_TRUE(tool(MenuRedo)->isEnabled());
    // What stands in a popup that cannot be opened cannot be picked here either.
    for (const int id : {MenuSavePattern, MenuFullPattern, MenuAutosubtract, MenuPeakSearch,
                         MenuFitPeak, MenuFitPattern, MenuFindCell}) {
      EXPECT_FALSE(tool(id)->isEnabled()) << id;
      EXPECT_TRUE(tool(id)->toolTip().endsWith("\nNeeds a pattern: open one first")) << id;
    }
    tool(MenuRedo)->trigger();
    co_await Idle();
    EXPECT_TRUE(tool(MenuPeakSearch)->isEnabled());
    EXPECT_EQ(tool(MenuPeakSearch)->toolTip(), "Auto peak search");
    EXPECT_TRUE(Root()->toolbar->isVisible());
    Pick(MenuToolbar);
    co_await Idle();
    EXPECT_FALSE(Root()->toolbar->isVisible());
  });
}

TEST(Menus, WhatIsDisabledTellsWhatItNeeds) {
  RunWith([]() -> Script {
    const auto tip = [](int id) {
      const QPoint at = Root()->menuBar()->actionGeometry(Action(id)).center();
      QHelpEvent help(QEvent::ToolTip, at, Root()->menuBar()->mapToGlobal(at));
      QApplication::sendEvent(Root()->menuBar(), &help);
      return QToolTip::text();
    };
    EXPECT_EQ(tip(MenuPopupEdit), "");
    EXPECT_EQ(tip(MenuPopupModify), "Needs a pattern: open one first");
    EXPECT_EQ(Action(MenuAddSum)->toolTip(), "Needs a summary file: File > Open sum file");
    EXPECT_EQ(Action(MenuOpenAny)->toolTip(), "Any format");
    PostDropped(MakePattern("tip.xy"));
    co_await Until{[] { return ws.patternloaded == 1; }, "the pattern"};
    co_await Idle();
    const auto* search = Root()->findChild<QAction*>(QString("tool%1").arg(MenuPeakSearch));
    EXPECT_TRUE(search->isEnabled());
    Pick(MenuManualPeaks);
    co_await Shown("dialog130");
    EXPECT_EQ(tip(MenuPopupModify), "Close the dialog beside the plot first");
    EXPECT_TRUE(search->toolTip().endsWith("\nClose the dialog beside the plot first"));
    Press("Escape");
    co_await Idle();
    EXPECT_FALSE(search->toolTip().contains("first"));
  });
}

TEST(Menus, LettersAreUniqueAndLiteralAmpersandsStay) {
  const std::vector<QString> shown = WithMnemonics(
      {{"E&xit", true}, {"x-axis"}, {"Info"}, {"Index"}, {"In"}, {"/home/a&b.xy"}, {""}});
  EXPECT_EQ(shown[0], "E&xit");
  EXPECT_TRUE(shown[5].contains("a&&b"));
  std::set<QChar> letters;
  for (std::size_t i = 0; i + 1 < shown.size(); ++i)
    EXPECT_TRUE(!Mnemonic(shown[i]).isNull() && letters.insert(Mnemonic(shown[i])).second)
        << shown[i].toStdString();

  int lettered = 0;
  RunWith([&]() -> Script {
    for (QMenu* menu : Root()->findChildren<QMenu*>()) {
      std::set<QChar> seen;
      for (const QAction* action : menu->actions()) {
        const QChar letter = Mnemonic(action->text());
        EXPECT_TRUE(letter.isNull() ? action->text().isEmpty() : seen.insert(letter).second)
            << action->text().toStdString();
        lettered += !letter.isNull();
      }
    }
    co_return;
  });
  EXPECT_GT(lettered, 50);
}

TEST(Menus, ByKeyboard) {
  RunOn("axis.xy", []() -> Script {
    EXPECT_EQ(Root()->windowTitle(), "axis - Quillagram");
    Press("Alt+S");
    co_await Until{[] { return QApplication::activePopupWidget(); }, "the Settings menu"};
    Press("X");  // x-axis
    co_await Until{[] { return Action(MenuAxisQ)->menu() == nullptr; }};
    Press("Q");
    co_await Until{[] { return ws.xaxismode == AxisQ; }, "the q axis"};
    co_await Idle();
    EXPECT_TRUE(Action(MenuAxisQ)->isChecked());
    EXPECT_FALSE(Action(MenuAxisTth)->isChecked());
    // The mark follows the program where the click alone would have turned it off.
    Action(MenuAxisQ)->trigger();
    co_await Idle();
    EXPECT_TRUE(Action(MenuAxisQ)->isChecked());
    const QImage sheet = Sheet();
    for (const char* keys : {"Ctrl+Z", "Ctrl+Shift+Z"}) {
      Press(keys);
      co_await Until{[] { return Idle().ready() && Root()->isActiveWindow(); }, keys};
      EXPECT_EQ(Sheet() == sheet, ws.xaxismode == AxisQ) << keys;
    }
    EXPECT_EQ(ws.xaxismode, AxisQ);
  });
}
