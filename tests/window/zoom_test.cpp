// Wheel, pan, keys and picks on the plot, and what the status bar has room for.
#include <gtest/gtest.h>

#include <QLabel>
#include <QWheelEvent>

#include "plot/zoomhistory.h"
#include "shell/shell.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

constexpr int MenuManualBackground = 40088;

void Turn(QPoint at, QPoint delta, Qt::KeyboardModifiers held = {}) {
  QWidget* canvas = Root()->canvas;
  QWheelEvent event(at, canvas->mapToGlobal(at), {}, delta, Qt::NoButton, held, Qt::NoScrollPhase,
                    false);
  QApplication::sendEvent(canvas, &event);
}
void Turn(QPoint at, int delta, Qt::KeyboardModifiers held = {}) {
  Turn(at, QPoint(0, delta), held);
}

void KeyOnPlot(Qt::Key key, Qt::KeyboardModifiers held = {}) {
  QTest::keyClick(Root()->canvas, key, held);
}

// The program follows a drag.
Until Dragging() {
  return {[] { return !ReadyForCommands() && Root()->canvas->Drags(); }, "the drag"};
}

Until Beside(const char* dialog) {
  return {[=] { return Find(dialog) && Find(dialog)->isVisible() && !Root()->canvas->Drags(); },
          dialog};
}

struct Drag {
  Qt::MouseButton button;
  QPoint from, to;
  void Begin() const { QTest::mousePress(Root()->canvas, button, {}, from); }
  void Move() const {
    // As the system sends it: with the button held.
    QMouseEvent move(QEvent::MouseMove, to, Root()->canvas->mapToGlobal(to), Qt::NoButton, button,
                     {});
    QApplication::sendEvent(Root()->canvas, &move);
  }
  void End() const { QTest::mouseRelease(Root()->canvas, button, {}, to); }
};

float Width() { return ws.viewxmax - ws.viewxmin; }
std::string ReadOut() { return Root()->parts[0]->text().toStdString(); }

}  // namespace

TEST(Zoom, ByWheelAndBackByKeys) {
  RunOn("wheel.xy", []() -> Script {
    const float full = Width();
    // Three turns that come while the program is at work are one.
    const QPoint at = OnPlot(30, 500);
    for (const int delta : {120, 60, 60}) Turn(at, delta);
    co_await Until{[=] { return Width() < full; }, "the zoom"};
    co_await Idle();
    EXPECT_NEAR(Width(), full * 0.64f, 1e-3f);
    EXPECT_TRUE(LastDeed().starts_with("wheel ") && LastDeed().ends_with(" 2")) << LastDeed();
    EXPECT_LE((OnPlot(30, 500) - at).manhattanLength(), 1);
    Turn(at, 120, Qt::ControlModifier);
    co_await Until{[] { return ws.viewymin > 0; }, "the zoom in y"};
    EXPECT_NEAR(Width(), full * 0.64f, 1e-3f);
    Turn({5, at.y()}, -120);
    co_await Until{[] { return ws.viewymin <= 1; }, "the zoom out over the axis"};
    EXPECT_NEAR(Width(), full * 0.64f, 1e-3f);
    co_await Idle();
    // Two turns across are one, too; the wheel to the right shows what is there.
    const float left = ws.viewxmin;
    for (const int delta : {-60, -180}) Turn(at, QPoint(delta, 30));
    co_await Until{[=] { return ws.viewxmin != left; }, "the move to the right"};
    EXPECT_NEAR(ws.viewxmin - left, 0.2f * Width(), 1e-3f);
    EXPECT_NEAR(Width(), full * 0.64f, 1e-3f);
    co_await Idle();
    EXPECT_TRUE(LastDeed().ends_with(" -2 shift")) << LastDeed();
    EXPECT_TRUE(Root()->findChild<QAction*>(QString("menu%1").arg(MenuZoomBack))->isEnabled());
    Press("Backspace");
    co_await Until{[=] { return Width() == full; }, "the way back"};
    co_await Idle();
    Press("Shift+Backspace");
    co_await Until{[=] { return Width() < full; }, "the way forward"};
    co_await Idle();
    Press("Home");
    co_await Until{[=] { return Width() == full; }, "the full pattern"};
    co_await Idle();
    Press("Backspace");
    co_await Until{[=] { return Width() < full; }, "the way back from it"};
    co_await Idle();
    QTest::mouseDClick(Root()->canvas, Qt::LeftButton, {}, at);
    co_await Until{[=] { return Width() == full; }, "the full pattern"};
    co_await Idle();
    EXPECT_TRUE(LastDeed().starts_with("doubleclick ")) << LastDeed();
  });
}

TEST(Zoom, PansWithTheMiddleButtonOrSpace) {
  RunOn("pan.xy", []() -> Script {
    Turn(OnPlot(30, 500), 480);
    co_await Until{[] { return ws.viewexact == 1; }, "the zoom"};
    co_await Idle();
    const float left = ws.viewxmin, width = Width();
    const Drag middle{Qt::MiddleButton, OnPlot(30, 500), OnPlot(27, 500)};
    middle.Begin();
    co_await Dragging();
    middle.Move();
    EXPECT_NEAR(ws.viewxmin, left + 3, 0.05f) << "the view follows while the button is held";
    KeyOnPlot(Qt::Key_Escape);
    co_await Idle();
    middle.End();
    co_await Idle();
    EXPECT_EQ(ws.viewxmin, left);
    EXPECT_TRUE(LastDeed().starts_with("wheel "));

    const Drag space{Qt::LeftButton, middle.from, middle.to};
    QTest::keyPress(Root()->canvas, Qt::Key_Space);
    space.Begin();
    co_await Dragging();
    space.Move();
    space.End();
    QTest::keyRelease(Root()->canvas, Qt::Key_Space);
    co_await Idle();
    EXPECT_NEAR(ws.viewxmin, left + 3, 0.05f);
    EXPECT_NEAR(Width(), width, 1e-4f);
    EXPECT_TRUE(LastDeed().starts_with("pan ")) << LastDeed();
    EXPECT_EQ(ws.bandx2, 0);
  });
}

// Beside a dialog that takes picks a drag is a zoom and the wheel one too; a click picks, and a
// double click does not. Escape on the plot is that of the dialog.
TEST(Zoom, BesideBothDialogsThatPick) {
  RunOn("pick.xy", []() -> Script {
    for (const bool background : {true, false}) {
      const char* dialog = background ? "dialog128" : "dialog130";
      const int& picked = background ? ws.nmanualbg : ws.npeaks;
      const float full = Width();
      Pick(background ? MenuManualBackground : MenuManualPeaks);
      co_await Shown(dialog);
      const Drag drag{Qt::LeftButton, OnPlot(20, 100), OnPlot(40, 900)};
      drag.Begin();
      co_await Dragging();
      drag.Move();
      drag.End();
      co_await Until{[=] { return Width() < full; }, "the zoom"};
      co_await Beside(dialog);
      EXPECT_EQ(picked, 0);
      const float zoomed = Width();
      Turn(OnPlot(30, 500), 120);
      co_await Until{[=] { return Width() < zoomed; }, "the wheel"};
      // A click of a real hand: held for a while, and it trembles.
      const Drag click{Qt::LeftButton, OnPlot(31, 400), OnPlot(31, 400) + QPoint(2, -2)};
      click.Begin();
      co_await Dragging();
      click.Move();
      click.End();
      co_await Until{[&] { return picked == 1; }, "the pick"};
      const float at = background ? ws.manualbg(1, 1) : ws.peaks(ptth, 1);
      EXPECT_NEAR(at, 31, 0.05f);
      co_await Beside(dialog);
      const QPoint twice = OnPlot(33, 400);
      QTest::mouseClick(Root()->canvas, Qt::LeftButton, {}, twice);
      co_await Until{[&] { return picked == 2; }, "the first click"};
      QTest::mouseEvent(QTest::MouseDClick, Root()->canvas, Qt::LeftButton, {}, twice);
      co_await Until{[=] { return Width() == full; }, "the full pattern"};
      co_await Beside(dialog);
      EXPECT_EQ(picked, 1);
      if (!background) {
        EXPECT_EQ(FindA<QLabel>("field1202")->text(), "1");
      }
      KeyOnPlot(Qt::Key_Backspace);
      co_await Until{[=] { return Width() < zoomed; }, "the way back"};
      drag.Begin();
      co_await Dragging();
      KeyOnPlot(Qt::Key_Escape);
      co_await Beside(dialog);
      drag.End();
      EXPECT_TRUE(Find(dialog)->isVisible());
      KeyOnPlot(Qt::Key_Escape);
      co_await Idle();
      EXPECT_EQ(picked, background ? 0 : 1);
      Press("Home");
      co_await Until{[=] { return Width() == full; }, "the full pattern"};
      co_await Idle();
    }
  });
}

// With the focus in the dialog its keys go to the plot, unless a field has use for them.
TEST(Zoom, ByTheKeysOfADialogBeside) {
  RunOn("keys.xy", []() -> Script {
    const float full = Width();
    Pick(MenuManualPeaks);
    co_await Shown("dialog130");
    EXPECT_EQ(Find("dialog130")->focusWidget()->objectName(), "button1") << "OK";
    const auto press = [](Qt::Key key) { QTest::keyClick(Find("dialog130")->focusWidget(), key); };
    Turn(OnPlot(30, 500), 480);
    co_await Until{[=] { return Width() < full; }, "the zoom"};
    const float zoomed = Width(), left = ws.viewxmin;
    press(Qt::Key_Backspace);
    co_await Until{[=] { return Width() == full; }, "the way back"};
    QTest::keyClick(Find("dialog130")->focusWidget(), Qt::Key_Backspace, Qt::ShiftModifier);
    co_await Until{[=] { return Width() == zoomed; }, "the way forward"};

    // The button that has the focus is not pressed by the blank of a pull.
    const Drag pull{Qt::LeftButton, OnPlot(30, 500), OnPlot(27, 500)};
    QTest::keyPress(Find("dialog130")->focusWidget(), Qt::Key_Space);
    pull.Begin();
    co_await Dragging();
    pull.Move();
    pull.End();
    QTest::keyRelease(Root()->canvas, Qt::Key_Space);
    co_await Beside("dialog130");
    EXPECT_NEAR(ws.viewxmin, left + 3, 0.05f);
    EXPECT_EQ(ws.npeaks, 0);
    Find("dialog130")->activateWindow();
    co_await Shown("dialog130");
    press(Qt::Key_Home);
    co_await Until{[=] { return Width() == full; }, "the full pattern"};
    press(Qt::Key_Escape);
    co_await Idle();
  });
}

TEST(StatusParts, GiveEveryTextItsRoomAndCutTheLongest) {
  const std::vector<int> shares = {1000, 1000, 1500, 1000, 2500};
  const struct {
    std::vector<int> needs;
    int room;
    std::vector<int> widths;
  } cases[] = {
      {{0, 0, 0, 0, 0}, 700, {100, 100, 150, 100, 250}},
      {{80, 90, 150, 0, 250}, 700, {100, 100, 150, 100, 250}},
      {{90, 110, 0, 0, 400}, 700, {90, 110, 60, 40, 400}},
      {{90, 110, 900, 0, 400}, 800, {90, 110, 300, 0, 300}},
      {{90, 110, 900, 20, 900}, 100, {26, 26, 26, 20, 26}},
  };
  for (const auto& c : cases) {
    const std::vector<int> widths = PartWidths(c.needs, shares, c.room);
    int sum = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      EXPECT_NEAR(widths[i], c.widths[i], 6) << c.room << ", part " << i + 1;
      sum += widths[i];
    }
    EXPECT_LE(sum, c.room);
  }
}

// At 1024 pixels, with all that a fit and an indexing run have to say.
TEST(StatusParts, AreReadOnAWindowOf1024Pixels) {
  RunOn("bar.xy", []() -> Script {
    Root()->resize(1024, 700);
    WindowOutStatusBar(3, "Cycle  12  Rw 0.0413");
    QTest::mouseMove(Root()->canvas, OnPlot(45, 500));
    co_await Until{[] { return !ReadOut().empty(); }, "the read-outs"};
    co_await Until{[] { return Root()->parts[4]->width() > 0; }};
    for (const int part : {0, 1, 2, 4})
      EXPECT_EQ(Root()->parts[part]->toolTip(), "") << "cut: part " << part + 1;
    WindowOutStatusBar(3, std::string(300, 'x'));
    for (const int part : {0, 1}) EXPECT_EQ(Root()->parts[part]->toolTip(), "") << part + 1;
    EXPECT_NE(Root()->parts[2]->toolTip(), "");
  });
}
