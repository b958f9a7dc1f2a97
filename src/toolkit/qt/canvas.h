// The sheet in the middle of the main window: shows the display list and takes the mouse.
#pragma once

#include <QEventLoop>
#include <QImage>
#include <QWidget>
#include <optional>

#include "toolkit/toolkit.h"

class Canvas : public QWidget {
 public:
  explicit Canvas(QWidget* parent);

  // The list is another one now.
  void ListChanged();
  // Tracks a drag that began at (x, y) to its end and returns the type of the ending message.
  int RubberBand(float x, float y, float& endx, float& endy);
  // Breaks off a drag with another ending.
  void EndBand(int ending);
  // Posts the last of the moves, and the change of size, that have come since the last call.
  void PostLate();
  double ThinLine() const;  // width of a thin line, in logical pixels
  bool HasLate() const { return move_ || resized_; }
  QSize sizeHint() const override { return {800, 500}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  Message MouseMessage(int type, int button, QPointF at) const;
  void PaintSheet(QSize pixels, double ratio);
  void PaintHint(QPainter& painter);
  void PaintBand(QPainter& painter);

  QImage sheet_;
  bool stale_ = true;
  bool unused_ = true;  // nothing has been drawn yet
  std::optional<Message> move_;
  bool resized_ = false;
  bool leftdown_ = false;
  QPointF released_;  // where the left button was last let go
  QEventLoop* band_ = nullptr;
  QPointF bandfrom_, bandto_;
  int ending_ = 0;
};
