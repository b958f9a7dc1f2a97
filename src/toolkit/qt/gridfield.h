// A table of numbers in a dialog, whose cells can be picked with the mouse or the arrow keys; a
// double click accepts the dialog with the cell.
#pragma once

#include <QTableWidget>
#include <functional>

#include "toolkit/frontend.h"

class GridField : public QTableWidget {
 public:
  GridField(const Control& control, std::function<void()> picked, std::function<void()> accepted);
  void ShowCells(const GridState& state);
  // "COLUMN,ROW" of the current cell, from 1.
  QString Picked() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ShowCell(int row, int column, const GridRow& shown);

  std::function<void()> picked_;
};
