// What the user takes back, and what a failed or cancelled open leaves alone.
#include <gtest/gtest.h>

#include <QAction>
#include <fstream>

#include "shell/shell.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/snapshot.h"

namespace {

QAction* Item(int id) { return Root()->findChild<QAction*>(QString("menu%1").arg(id)); }

// A command by its menu item; where something asks, `entry` goes where the focus is.
struct Step {
  int id;
  const char* entry;  // null: nothing asks
};
constexpr const char* None = nullptr;
// clang-format off
constexpr Step kSteps[] = {
    {40061, "9"}, {40100, None}, {40131, None}, {40127, None}, {40128, None}, {40126, None},
    {40130, None}, {40101, None}, {40031, None}, {40052, "0.4"}, {40064, ""}, {40056, "0.02"},
    {40059, "25"}, {40060, "2"}, {40062, "4"}, {40063, "3"}, {40065, None}, {40077, None},
    {40078, ""}, {40089, None}, {40072, "0.8"}, {40105, None}, {40017, None}, {40096, ""},
    {40099, ""}, {40095, None}, {40038, "Tone"}, {40124, "1.5"}, {40057, "12"}, {40054, "0.5"},
    {40100, None}};
// clang-format on

// The program waits for a command, and the window for keys, which no window manager gives it here.
Until Ready() {
  return {[idle = Idle()] {
            if (idle.ready() && !Root()->isActiveWindow()) Root()->activateWindow();
            return idle.ready() && Root()->isActiveWindow();
          },
          "an idle window"};
}

struct Seen {
  Snapshot snapshot;
  QImage sheet;
};

Seen Look() { return {TakeSnapshot(), Sheet()}; }
bool Same(const Seen& seen) {
  return TakeSnapshot(&seen.snapshot) == seen.snapshot && Sheet() == seen.sheet;
}

}  // namespace

TEST(Undo, TakesASessionBackByKeyboardAndDoesItAgain) {
  RunOn("session.xy", []() -> Script {
    std::vector<Seen> seen{Look()};
    for (const Step& step : kSteps) {
      Pick(step.id);
      if (step.entry) {
        co_await Until{[] {
                         const QWidget* asking = QApplication::activeModalWidget();
                         return asking && asking->isActiveWindow();
                       },
                       "a question"};
        Type(step.entry);
        Press("Return");
      }
      co_await Ready();
      seen.push_back(Look());
    }
    const int n = static_cast<int>(std::size(kSteps));
    EXPECT_GE(n, 30);
    EXPECT_EQ(Item(MenuUndo)->text().remove('&'), "Undo x-axis grid");
    for (int k = n - 1; k >= 0; --k) {
      Press("Ctrl+Z");
      co_await Ready();
      EXPECT_TRUE(Same(seen[k])) << kSteps[k].id;
    }
    for (int k = 1; k <= n; ++k) {
      Press("Ctrl+Shift+Z");
      co_await Ready();
      EXPECT_TRUE(Same(seen[k])) << kSteps[k - 1].id;
    }
    EXPECT_FALSE(Item(MenuRedo)->isEnabled());
    // The load is the first of all.
    for (int k = 0; k <= n; ++k) {
      Press("Ctrl+Z");
      co_await Ready();
    }
    EXPECT_EQ(Root()->windowTitle(), "Quillagram");
    EXPECT_FALSE(Item(MenuUndo)->isEnabled());
    EXPECT_FALSE(Item(MenuPopupModify)->isEnabled());
    Press("Ctrl+Shift+Z");
    co_await Ready();
    EXPECT_EQ(Root()->windowTitle(), "session - Quillagram");
  });
}

TEST(Undo, AFailedOrCancelledOpenLeavesAllAsItWas) {
  RunOn("kept.xy", []() -> Script {
    QTest::mousePress(Root()->canvas, Qt::LeftButton, {}, OnPlot(20, 990));
    QTest::mouseRelease(Root()->canvas, Qt::LeftButton, {}, OnPlot(40, 10));
    co_await Until{[] { return ws.viewxmin > 18; }, "the zoom"};
    co_await Ready();
    const Seen before = Look();
    const std::string answers[] = {"", Place() + "/broken.gdf"};
    std::ofstream(answers[1]) << "1\n2\n";
    for (const std::string& answer : answers) {
      Pick(40004);
      co_await Shown("selector");
      Type(QString::fromStdString(answer));
      Press(!answer.empty() ? "Return" : "Escape");
      if (!answer.empty()) {
        co_await Shown("box");
        Press("Return");
      }
      co_await Ready();
      EXPECT_TRUE(Same(before)) << answer;
      EXPECT_EQ(Root()->windowTitle(), "kept - Quillagram");
    }
  });
}
