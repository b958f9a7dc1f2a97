// A table in a dialog, whose cells can be picked with the mouse or the arrow keys; a double click
// accepts the dialog with the cell.
#pragma once

#include <QTableWidget>
#include <functional>

#include "toolkit/frontend.h"

class GridField : public QTableWidget {
 public:
  // `picked` gets "COLUMN,ROW", from 1; row 0 is a head.
  GridField(const Control& control, std::function<void(const std::string&)> picked,
            std::function<void()> accepted);
  void ShowCells(const GridState& state);
  // Shows many rows as long as there is room on the screen.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ShowHeads(const QStringList& heads);
  void ShowCell(int row, int column, const GridRow& shown);
  void ShowPlace(const GridState& state);
  void FitColumns();
  void WidenColumns();
  void PickCurrent();
  QSize SizeFor(int width, int rows) const;

  std::function<void(const std::string&)> picked_;
  bool narrow_;
  int changes_ = -1;                // of the state as it is shown
  std::vector<std::string> heads_;  // none: those of the control
};
