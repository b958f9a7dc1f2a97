// The main window: menu bar, canvas, status bar; and plain child windows.
#pragma once

#include <QMainWindow>

#include "toolkit/qt/canvas.h"
#include "toolkit/qt/menus.h"
#include "toolkit/qt/progress.h"
#include "toolkit/qt/statusbar.h"

class MainWindow : public QMainWindow {
 public:
  MainWindow();
  void Place(QRect wanted);

  Canvas* canvas;
  QToolBar* toolbar;
  Menus menus;
  StatusParts* status;
  const std::vector<StatusPart*>& parts = status->parts;
  ProgressBar* progress;
  // Closed while a command is at work: it is to stop, and has nobody to tell its result.
  bool closing = false;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
};

class ChildWindow : public QWidget {
 public:
  explicit ChildWindow(int handle) : handle_(handle) {}

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  int handle_;
};

// The main window while it is open, else null.
MainWindow* Root();
// What a box or dialog stands in front of.
QWidget* FrontWindow();
