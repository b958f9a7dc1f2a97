// A long calculation, and a user who wants it to stop.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>

#include "toolkit/qt/window.h"
#include "user.h"

namespace {

constexpr int kMenuAbout = 40008;  // any command: here it calculates

QElapsedTimer working;
std::vector<int> taken;  // types of the messages
int reports, reportsafter;

// Reports as fast as it can until it is stopped, and tells so.
void Calculate() {
  working.start();
  for (reports = 0; WProgress(3, "Report " + std::to_string(reports + 1)); ++reports) {
  }
  reportsafter = 0;
  for (int i = 0; i < 3; ++i) reportsafter += WProgress(4, "still at it");
  MessageBoxInfo("Calculation", "Stopped");
}

void CalculateOnMenu() {
  Message message;
  do {
    taken.push_back(WMessage(message));
    if (message.type == MessageMenu) Calculate();
  } while (message.type != MessageClose);
  WindowClose();
}

bool StopIsShown() { return Find("stop")->isVisible(); }

// How full the bar is with what the last report has told; below 0 where no end is known.
double Full() {
  const auto* bar = FindA<QProgressBar>("bar");
  return bar->maximum() > 0 ? static_cast<double>(bar->value()) / bar->maximum() : -1;
}

QString BarText() {
  const auto* bar = FindA<QProgressBar>("bar");
  return bar->isTextVisible() ? bar->text() : QString();
}

// Reports long enough for the bar to be painted again.
void CalculateFor(int milliseconds, std::optional<float> done) {
  QElapsedTimer time;
  for (time.start(); time.elapsed() < milliseconds;) WProgress(3, "Report", done);
  WProgress(3, "Report", done);  // of a busy machine the only one that is late enough
}

// Counts how often a widget is painted.
struct Paints : QObject {
  explicit Paints(QWidget* widget) { widget->installEventFilter(this); }
  bool eventFilter(QObject*, QEvent* event) override {
    count += event->type() == QEvent::Paint;
    return false;
  }
  int count = 0;
};

}  // namespace

TEST(Progress, StopAndEscapeEndACalculationAndNothingElseIsTaken) {
  const auto user = []() -> Script {
    const Until shown{StopIsShown, "the Stop button"};
    taken.clear();  // the first size of the window
    for (const bool escape : {false, true}) {
      EXPECT_FALSE(StopIsShown());
      Pick(kMenuAbout);
      co_await Until{[] { return working.isValid(); }, "the calculation"};
      Paints paints(Root()->parts[2]);
      co_await shown;
      EXPECT_GE(working.elapsed(), 300);
      EXPECT_GT(paints.count, 0);
      EXPECT_LE(paints.count, 2 + working.elapsed() / 50);
      // A page, a command, a press on the plot and one on the menu: none is for now or for later.
      QTest::keyClick(Root()->canvas, Qt::Key_Right);
      QTest::keyClick(Root()->canvas, Qt::Key_F1);
      QTest::mouseClick(Root()->canvas, Qt::LeftButton);
      QTest::mouseClick(Root()->menuBar(), Qt::LeftButton, {}, {20, 10});
      EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
      const int before = reports;
      co_await Until{[=] { return reports > before; }, "further reports"};
      if (escape)
        QTest::keyClick(Root()->canvas, Qt::Key_Escape);
      else
        QTest::mouseClick(Find("stop"), Qt::LeftButton);
      co_await Shown("box");
      EXPECT_FALSE(StopIsShown()) << "the program asks";
      EXPECT_EQ(Root()->parts[2]->text(), QString("Report %1").arg(reports + 1));
      EXPECT_EQ(reportsafter, 0);
      working.invalidate();
      Press("Return");
      co_await Idle();
      EXPECT_EQ(taken, std::vector<int>(escape ? 2 : 1, MessageMenu));
    }
    // A wish to close stops the calculation, whose result nobody waits for.
    Pick(kMenuAbout);
    co_await shown;
    Root()->close();
    co_await Until{[] { return !Root(); }, "the end"};
  };
  RunWith(user, {}, CalculateOnMenu);
  EXPECT_EQ(taken.size(), 4u);
  EXPECT_EQ(taken.back(), MessageClose);
}

TEST(Progress, TheBarShowsHowMuchIsDoneWhereThatIsKnown) {
  std::vector<double> seen;
  QStringList told;
  RunWith(
      []() -> Script {
        Pick(kMenuAbout);
        co_await Shown("box");
        Press("Return");
      },
      {},
      [&seen, &told] {
        Message message;
        while (WMessage(message) != MessageClose) {
          if (message.type != MessageMenu) continue;
          for (const std::optional<float> done : {std::optional<float>{}, {0.03f}, {1.0f}, {}}) {
            CalculateFor(120, done);
            seen.push_back(Full());
            if (done) told.append(BarText());
          }
          MessageBoxInfo("Calculation", "Done");
        }
        WindowClose();
      });
  EXPECT_EQ(seen, (std::vector<double>{-1, 0.03, 1, -1}));
  EXPECT_EQ(told, (QStringList{"3 %", "100 %"}));
}

// Progress stays behind a command that has come to its end, until the next one; what is told last
// stays behind one that has failed, too.
TEST(Progress, NothingStaleIsLeftInTheStatusBar) {
  std::vector<std::string> seen;
  RunWith(
      []() -> Script {
        Pick(kMenuAbout);
        for (int box = 1; box <= 5; ++box) {
          co_await Shown("box");
          Press("Return");
        }
      },
      {},
      [&seen] {
        const auto command = [&seen](const std::function<void()>& work, bool done) {
          WCommandBegins();
          work();
          WTell("told", done);
          MessageBoxInfo("Calculation", "The texts that came too soon to be seen are shown");
          seen.push_back(FindA<QLabel>("status3")->text().toStdString());
        };
        const auto progress = [] { WProgress(3, "Report"); };
        const auto text = [] { WindowOutStatusBar(3, "Text"); };
        Message message;
        while (WMessage(message) != MessageClose) {
          if (message.type != MessageMenu) continue;
          command(progress, true);
          command([] {}, true);
          command(progress, false);
          command(text, false);
          command([] {}, false);
        }
        WindowClose();
      });
  EXPECT_EQ(seen, (std::vector<std::string>{"Report", "", "", "Text", ""}));
}
