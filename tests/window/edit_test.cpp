// Pictures for other programs, the menu on the plot, and leaving with work that is not saved.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QClipboard>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QSvgRenderer>
#include <QTimer>
#include <QWindow>
#include <csignal>

#include "peaks/peaklist.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

QMenu* ContextMenu() { return FindA<QMenu>("context"); }

QStringList TextsOf(const QMenu* menu) {
  QStringList texts;
  for (const QAction* action : menu->actions())
    if (!action->isSeparator()) texts.append(action->text().remove('&'));
  return texts;
}

QMessageBox* BoxInFront() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }

QByteArray ContentOf(const QString& name) {
  QFile file(QString::fromStdString(Place()) + '/' + name);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// As the system brings it: press, release and the wish for a menu.
void RightClickOnPlot(QPoint at) {
  QTest::mouseClick(Root()->windowHandle(), Qt::RightButton, {}, Root()->canvas->mapTo(Root(), at));
}

// As the window system brings it.
void MenuKey() {
  QContextMenuEvent event(QContextMenuEvent::Keyboard, {1, 1}, {1, 1});
  QApplication::sendEvent(Root()->windowHandle(), &event);
}

// A change of the pattern that asks nothing.
Until Changed() {
  Pick(MenuAutodivergence);
  return {[] { return !PointsAreKept() && Idle().ready(); }, "the change"};
}

// The program is to end from here on.
Until TheEnd() {
  return {[] { return false; }, "the end of the program"};
}

}  // namespace

TEST(Edit, ThePictureIsCopiedAsBitmapAndSvg) {
  RunOn("copy.xy", []() -> Script {
    Press("Ctrl+Shift+C");
    co_await Until{[] { return Root()->parts[2]->text() == "Picture copied"; }, "the copy"};
    co_await Idle();
    const QMimeData* data = QApplication::clipboard()->mimeData();
    const QImage png = QImage::fromData(data->data("image/png"), "PNG");
    EXPECT_EQ(png.convertToFormat(QImage::Format_RGB32),
              Sheet().convertToFormat(QImage::Format_RGB32));
    EXPECT_TRUE(QSvgRenderer(data->data("image/svg+xml")).isValid());
    EXPECT_TRUE(data->data("image/svg+xml").contains("<title>copy</title>"));
  });
}

// As a new file, over it, and onto a full disk, which leaves it as it was.
TEST(Edit, PicturesAreSavedByName) {
  RunOn("saved.xy", []() -> Script {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit room{};
    getrlimit(RLIMIT_FSIZE, &room);
    const rlimit little{1000, room.rlim_max};
    QByteArray content;
    for (const bool full : {false, false, true}) {
      if (full) setrlimit(RLIMIT_FSIZE, &little);
      Pick(MenuSavePng);
      co_await Shown("selector");
      EXPECT_EQ(Find("selector")->findChild<QLineEdit*>("fileNameEdit")->text(), "saved.png");
      QTimer::singleShot(0, qApp, [] { Press("Return"); });  // a question waits within it
      if (!content.isEmpty()) {
        co_await Until{[] { return BoxInFront() != nullptr; }, "the question before overwriting"};
        BoxInFront()->button(QMessageBox::Yes)->click();
      }
      if (full) {
        co_await Shown("box");
        EXPECT_TRUE(FindA<QMessageBox>("box")->text().contains("saved.png: "));
        setrlimit(RLIMIT_FSIZE, &room);
        Press("Return");
      }
      co_await Until{[] { return !Find("selector") && Idle().ready(); }, "the picture"};
      content = ContentOf("saved.png");
      EXPECT_EQ(QImage::fromData(content, "PNG").size(), Sheet().size());
    }
  });
}

TEST(ContextMenu, OffersItemsOfTheMenuByMouseAndKey) {
  RunOn("context.xy", []() -> Script {
    const QStringList offered{"Full pattern",    "Zoom back",    "Zoom forward",
                              "x-axis",          "y-axis",       "Legend",
                              "Fit single peak", "Copy picture", "Copy points in view"};
    RightClickOnPlot(OnPlot(30, 500));
    co_await Until{[] { return ContextMenu()->isVisible(); }, "the menu"};
    EXPECT_EQ(TextsOf(ContextMenu()), offered);
    EXPECT_EQ(ContextMenu()->pos(), Root()->canvas->mapToGlobal(OnPlot(30, 500)));
    QAction* legend = Root()->findChild<QAction*>(QString("menu%1").arg(MenuLegend));
    EXPECT_TRUE(ContextMenu()->actions().contains(legend) && legend->isChecked());
    ContextMenu()->setActiveAction(legend);
    Press("Return");
    co_await Until{[] { return ws.legend == 0; }, "the legend switched off"};
    co_await Idle();
    EXPECT_FALSE(legend->isChecked());
    MenuKey();
    co_await Until{[] { return ContextMenu()->isVisible(); }, "the menu by its key"};
    EXPECT_TRUE(
        Root()->canvas->rect().contains(Root()->canvas->mapFromGlobal(ContextMenu()->pos())));
    Press("Escape");
    co_await Idle();
    // Without a pattern what needs one is left out or disabled.
    Press("Ctrl+Z");
    co_await Idle();
    Press("Ctrl+Z");
    co_await Until{[] { return ws.npts(SlotInput) == 0; }, "the empty program"};
    co_await Idle();
    RightClickOnPlot(OnCanvas(0.5, 0.5));
    co_await Until{[] { return ContextMenu()->isVisible(); }, "the menu"};
    EXPECT_EQ(TextsOf(ContextMenu()).mid(2), (QStringList{"Copy picture", "Copy points in view"}));
    EXPECT_FALSE(ContextMenu()->actions().back()->isEnabled());
    EXPECT_EQ(ContextMenu()->actions().back()->toolTip(),
              "Needs the pattern on show: Plot > Full pattern");
    Press("Escape");
  });
}

TEST(ContextMenu, ARightClickThatPicksOpensNone) {
  RunOn("picks.xy", []() -> Script {
    ws.npeaks = 1;
    ws.peaks(ptth, 1) = 30;
    Pick(MenuManualPeaks);
    co_await Shown("dialog130");
    RightClickOnPlot(OnPlot(30, 500));
    co_await Until{[] { return ws.npeaks == 0; }, "the peak picked away"};
    EXPECT_TRUE(ContextMenu()->actions().isEmpty()) << "never opened";
    QTest::keyClick(Root()->canvas, Qt::Key_Escape);
    co_await Idle();
  });
}

TEST(Leave, AsksWhatToDoWithAChange) {
  RunOn("left.xy", []() -> Script {
    co_await Changed();
    Press("Ctrl+Q");
    co_await Shown("unsaved");
    EXPECT_EQ(FindA<QMessageBox>("unsaved")->text(), "left has been changed and is not saved.");
    QStringList buttons;
    for (const QAbstractButton* button : FindA<QMessageBox>("unsaved")->buttons())
      buttons.append(button->text().remove('&'));
    buttons.sort();
    EXPECT_EQ(buttons, (QStringList{"Cancel", "Discard", "Save"}));
    Press("Escape");
    co_await Idle();
    EXPECT_TRUE(Root() && Root()->isVisible());

    // A save that is cancelled leaves nothing either, nor does that of another curve.
    Root()->close();
    co_await Shown("unsaved");
    Press("Return");
    co_await Shown("dialog123");
    Press("Escape");
    co_await Idle();
    EXPECT_TRUE(Root() && Root()->isVisible());
    ws.savecontent = 3;
    for (const bool own : {false, true}) {
      if (!own) Root()->close();
      co_await Shown("unsaved");
      Press("Return");
      co_await Shown("dialog123");
      if (own) FindA<QAbstractButton>("field1098")->click();
      Press("Return");
      co_await Shown("selector");
      Type(own ? "own.xy" : "background.xy");
      Press("Return");
    }
    co_await TheEnd();
  });
  EXPECT_TRUE(QFile::exists(QString::fromStdString(Place()) + "/own.xy"));
}

TEST(Leave, AsksAboutPeaksThatAreNotSaved) {
  RunOn("peaks.xy", []() -> Script {
    const auto question = [] { return FindA<QMessageBox>("unsaved")->text(); };
    ws.peaks(ptth, AppendPeak(PeakPicked)) = 30;
    ws.fitpoints = 1000;
    Root()->close();
    co_await Shown("unsaved");
    EXPECT_EQ(question(), "The peaks and fit of peaks are not saved.");
    Press("Escape");
    co_await Idle();
    ws.fitpoints = 0;
    co_await Changed();
    Root()->close();
    co_await Shown("unsaved");
    EXPECT_EQ(question(), "peaks has been changed and is not saved, nor are its peaks.");
    Press("Escape");
    co_await Idle();
    Pick(MenuUndo);
    co_await Until{[] { return PointsAreKept() && Idle().ready(); }, "the way back"};
    Root()->close();
    co_await Shown("unsaved");
    EXPECT_EQ(question(), "The peaks of peaks are not saved.");
    Press("Return");
    co_await Shown("selector");
    Press("Return");
    co_await TheEnd();
  });
  EXPECT_EQ(Root(), nullptr);
  EXPECT_TRUE(QFile::exists(QString::fromStdString(Place()) + "/peaks.pks"));
}

// Nobody is there to answer: with the question to come, with it on show, and within its save.
class LeaveBySignal : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(At, LeaveBySignal, testing::Values(0, 1, 2));
TEST_P(LeaveBySignal, Discards) {
  RunOn("signal.xy", []() -> Script {
    co_await Changed();
    if (GetParam() > 0) {
      Root()->close();
      co_await Shown("unsaved");
    }
    if (GetParam() > 1) {
      Press("Return");
      co_await Shown("dialog123");
    }
    std::raise(SIGTERM);
    co_await TheEnd();
  });
  EXPECT_EQ(Root(), nullptr);
}
