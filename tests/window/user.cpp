// The user's hands and eyes.
#include "user.h"

#include <QAbstractSpinBox>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "shell/history.h"
#include "toolkit/common.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/window.h"

// Font and window system libraries keep what they allocate once.
extern "C" const char* __asan_default_options() { return "detect_leaks=0"; }

namespace {

constexpr int kPatience = 60000, kGlance = 5;  // milliseconds

void Look(const Until& until, std::coroutine_handle<> waiting, QElapsedTimer since) {
  if (until.ready()) return waiting.resume();
  if (since.elapsed() > kPatience) {
    QWidget* modal = QApplication::activeModalWidget();
    std::fprintf(stderr, "The user waits in vain for: %s (on show: %s)\n", until.what,
                 modal ? qPrintable(modal->objectName()) : "nothing");
    std::_Exit(1);
  }
  QTimer::singleShot(kGlance, qApp, [=] { Look(until, waiting, since); });
}

// The script, then leaving the program.
Script Whole(std::function<Script()> user) {
  co_await Until{[] { return Root() && Root()->isActiveWindow(); }, "the window"};
  co_await Idle();
  Script script = user();
  script.handle.resume();
  while (!script.handle.done()) co_await Until{[&] { return true; }};
  script.handle.destroy();
  co_await Idle();
  Root()->close();
  co_await Shown("unsaved");
  FindA<QMessageBox>("unsaved")->button(QMessageBox::Discard)->click();
}

QWidget* Focused() {
  if (QWidget* popup = QApplication::activePopupWidget()) return popup;
  if (QWidget* focus = QApplication::focusWidget()) return focus;
  return QApplication::activeWindow();
}

}  // namespace

void Until::await_suspend(std::coroutine_handle<> waiting) const {
  QElapsedTimer since;
  since.start();
  QTimer::singleShot(0, qApp, [until = *this, waiting, since] { Look(until, waiting, since); });
}

Until Idle() {
  return {[] { return ReadyForCommands() && !QApplication::activeModalWidget(); },
          "an idle program"};
}

Until Shown(const char* name) {
  return {[name] {
            QWidget* widget = Find(name);
            return widget && widget->isVisible() && widget->window()->isActiveWindow();
          },
          name};
}

void RunWith(const std::function<Script()>& user, std::vector<std::string> arguments,
             const std::function<void()>& program) {
  setenv("QUILLAGRAM_HOME", Place().c_str(), 1);
  arguments.insert(arguments.begin(), QUILLAGRAM_PROGRAM);
  std::vector<char*> words;
  for (std::string& word : arguments) words.push_back(word.data());
  words.push_back(nullptr);
  WInitialise(static_cast<int>(arguments.size()), words.data());
  const Script whole = Whole(user);
  QTimer::singleShot(0, qApp, [&] { whole.handle.resume(); });
  StartProgram();
  program();
  whole.handle.destroy();
}

void RunOn(const char* pattern, const std::function<Script()>& user) {
  RunWith(user, {MakePattern(pattern)});
}

QWidget* Find(const QString& name) {
  QWidget* found = nullptr;
  for (QWidget* widget : QApplication::allWidgets())
    if (widget->objectName() == name && (!found || widget->isVisible())) found = widget;
  return found;
}

void Press(const char* keys) {
  const QKeySequence sequence(keys);
  ASSERT_EQ(sequence.count(), 1) << keys;
  QTest::keyClick(Focused(), sequence[0].key(), sequence[0].keyboardModifiers());
}

void Type(const QString& text) {
  for (const QChar letter : text)
    QTest::sendKeyEvent(QTest::Click, Focused(), Qt::Key(letter.toUpper().unicode()), letter, {});
}

void Pick(int id) { Root()->findChild<QAction*>(QString("menu%1").arg(id))->trigger(); }

QPoint OnCanvas(double x, double y) {
  const QSize size = Root()->canvas->size();
  return {static_cast<int>(x * size.width()), static_cast<int>(y * size.height())};
}

QPoint OnPlot(double twotheta, double counts) {
  const auto [x, y] = PlotPosition(twotheta, counts);
  return OnCanvas(x / 1000, 1 - y / 1000);
}

void Click(double twotheta, double counts, Qt::MouseButton button) {
  QTest::mouseClick(Root()->canvas, button, {}, OnPlot(twotheta, counts));
}

QImage Sheet() { return Root()->canvas->grab().toImage(); }

const std::string& Place() {
  static const QTemporaryDir directory;
  static const std::string path = directory.path().toStdString();
  return path;
}

std::string MakePattern(const std::string& name) {
  const std::string path = Place() + "/" + name;
  std::ofstream file(path);
  for (int i = 0; i < 1000; ++i) {
    const double x = 10 + 0.05 * i, width = (x - 30) / 0.2;
    file << x << ' ' << 50 + 950 / (1 + width * width) << '\n';
  }
  return path;
}

std::string LastDeed() {
  const std::string path = Place() + "/deeds.replay";
  WriteHistory(path);
  std::ifstream file(path);
  std::string last;
  for (std::string line; std::getline(file, line);) last = line;
  return last;
}
