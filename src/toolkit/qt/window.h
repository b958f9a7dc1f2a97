// The main window: menu bar, canvas, status bar; and plain child windows.
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <vector>

#include "toolkit/qt/canvas.h"
#include "toolkit/qt/menus.h"
#include "toolkit/qt/progress.h"

// A part of the status bar. A text too long for it ends in dots and is whole in the tool tip.
class StatusPart : public QLabel {
 public:
  StatusPart();
  void Show(const QString& text);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

class MainWindow : public QMainWindow {
 public:
  MainWindow();
  void Place(QRect wanted);
  void SetParts(const std::vector<int>& widths);

  Canvas* canvas;
  QToolBar* toolbar;
  Menus menus;
  std::vector<StatusPart*> parts;
  ProgressBar* progress;

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
