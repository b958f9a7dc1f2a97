// What the user takes back, and what a failed or cancelled open leaves alone.
#include <gtest/gtest.h>

#include <QAction>
#include <QFileDialog>
#include <QLineEdit>
#include <fstream>

#include "shell/shell.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/snapshot.h"

namespace {

QAction* Item(int id) { return Root()->findChild<QAction*>(QString("menu%1").arg(id)); }

// A command by its menu item; with a dialog, `entry` goes where the focus is.
struct Step {
  int id;
  const char* dialog = nullptr;
  const char* entry = nullptr;
};
constexpr Step kSteps[] = {
    {40061, "dialog110", "9"},
    {40100},
    {40131},
    {40127},
    {40128},
    {40126},
    {40130},
    {40101},
    {40031},
    {40052, "dialog117", "0.4"},
    {40064, "dialog102"},
    {40056, "dialog108", "0.02"},
    {40059, "dialog114", "25"},
    {40060, "dialog107", "2"},
    {40062, "dialog116", "4"},
    {40063, "dialog115", "3"},
    {40065},
    {40077},
    {40078, "box"},
    {40089},
    {40072, "dialog120", "0.8"},
    {40105},
    {40017},
    {40096, "box"},
    {40099, "box"},
    {40095},
    {40038, "dialog104", "Tone"},
    {40124, "dialog136", "1.5"},
    {40057, "dialog109", "12"},
    {40054, "dialog112", "0.5"},
    {40100},
};

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
      if (step.dialog) {
        co_await Shown(step.dialog);
        if (step.entry) Type(step.entry);
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
    for (const char* answer : {"Escape", "broken.gdf", "kept.xy"}) {
      const bool named = std::string(answer) != "Escape";
      if (named && std::string(answer) == "broken.gdf") {
        std::ofstream(Place() + "/broken.gdf") << "1\n2\n";
      }
      Pick(40004);
      co_await Shown("selector");
      if (named) {
        FindA<QFileDialog>("selector")->setDirectory(QString::fromStdString(Place()));
        FindA<QFileDialog>("selector")->setNameFilter("All files (*)");
        FindA<QFileDialog>("selector")->findChild<QLineEdit*>("fileNameEdit")->setText(answer);
        Press("Return");
        co_await Shown("box");
        Press("Return");
      } else {
        Press("Escape");
      }
      co_await Ready();
      EXPECT_TRUE(Same(before)) << answer;
      EXPECT_EQ(Root()->windowTitle(), "kept - Quillagram");
    }
  });
}
