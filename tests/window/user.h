// A user at the window: a script of waits and actions that runs inside the program's own loops.
#pragma once

#include <QApplication>
#include <QMenu>
#include <QTest>
#include <coroutine>
#include <functional>
#include <string>
#include <vector>

#include "shell/shell.h"

// A coroutine that is resumed from the event loop whenever what it waits for has come true.
struct Script {
  struct promise_type {
    Script get_return_object() {
      return {std::coroutine_handle<promise_type>::from_promise(*this)};
    }
    std::suspend_always initial_suspend() { return {}; }
    std::suspend_always final_suspend() noexcept { return {}; }
    void return_void() {}
    void unhandled_exception() { std::terminate(); }
  };
  std::coroutine_handle<promise_type> handle;
};

// co_await Until(...): the loops turn until `ready` holds. A minute is an error that ends the
// process, as nothing else would end a loop that waits for a user.
struct Until {
  Until(std::function<bool()> come, const char* named = "") : ready(std::move(come)), what(named) {}
  std::function<bool()> ready;
  const char* what;
  bool await_ready() const { return false; }
  void await_suspend(std::coroutine_handle<> waiting) const;
  void await_resume() const {}
};

// The program waits for a command and has drawn what there is to draw.
Until Idle();
// A dialog, box or selector of this object name is on show.
Until Shown(const char* name);

// Runs the whole program with a user in front of it, who closes the window in the end and discards
// what is not saved.
// `arguments` are those of the command line; another `program` may take the place of the event
// loop.
void RunWith(const std::function<Script()>& user, std::vector<std::string> arguments = {},
             const std::function<void()>& program = RunProgram);
// The same with a pattern of this name, as MakePattern makes it.
void RunOn(const char* pattern, const std::function<Script()>& user);

QWidget* Find(const QString& name);
template <class T>
T* FindA(const QString& name) {
  return qobject_cast<T*>(Find(name));
}
// Presses keys where the focus is: "Alt+S", "Return", or a text typed letter by letter.
void Press(const char* keys);
void Type(const QString& text);
// Chooses a menu item.
void Pick(int id);
// Places on the canvas: in fractions of its size from the top left corner, and in data units.
QPoint OnCanvas(double x, double y);
QPoint OnPlot(double twotheta, double counts);
void Click(double twotheta, double counts, Qt::MouseButton button = Qt::LeftButton);
QImage Sheet();

// A file with a pattern of 1000 points: flat, with one peak of 1000 counts at 30 degrees.
std::string MakePattern(const std::string& name);
// The last line of the history.
std::string LastDeed();
// Directory of this test.
const std::string& Place();
