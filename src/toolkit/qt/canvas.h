// The sheet in the middle of the main window: shows the display list and takes the mouse.
#pragma once

#include <QEventLoop>
#include <QImage>
#include <QMouseEvent>
#include <QWidget>
#include <functional>
#include <optional>

#include "toolkit/displaylist.h"
#include "toolkit/toolkit.h"

class Canvas : public QWidget {
 public:
  explicit Canvas(QWidget* parent);

  // The list is another one now.
  void ListChanged();
  // Tracks a drag from a place to its end and returns the type of the ending message.
  int TrackDrag(bool band, DrawPoint& place, const std::function<void(DrawPoint)>& moved);
  // Ends a drag, or breaks it off with another ending than the release of the button.
  void EndDrag(int ending);
  // Posts what has come since the last call: the change of size, the turns of the wheel as one, the
  // last of the moves.
  void PostLate();
  double ThinLine() const;  // width of a thin line, in logical pixels
  bool Drags() const { return drag_; }
  bool HasLate() const { return move_ || wheel_ || resized_; }
  QSize sizeHint() const override { return {800, 500}; }
  bool eventFilter(QObject* receiver, QEvent* event) override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  Message MouseMessage(int type, int value, const QSinglePointEvent& event) const;
  void Follow(QPointF to);
  void SetSpace(bool down);
  void PaintSheet(QSize pixels, double ratio);
  void PaintHint(QPainter& painter);
  void PaintBand(QPainter& painter);

  QImage sheet_;
  bool stale_ = true;
  bool unused_ = true;  // nothing has been drawn yet
  std::optional<Message> move_, wheel_;
  bool resized_ = false;
  bool space_ = false;  // the key is held down
  // The button of a drag while it is held, where it was pressed, and where the mouse has come
  // since; of a quick click they remain until the program gets to it.
  Qt::MouseButton held_ = Qt::NoButton;
  QPointF from_, to_;
  bool moved_ = false;  // farther than a hand trembles
  QEventLoop* drag_ = nullptr;
  bool band_ = false;  // the drag draws one
  std::function<void()> follow_;
  int ending_ = 0;
};
