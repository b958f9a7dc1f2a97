// Painting, mouse, wheel and drags of the canvas.
#include "toolkit/qt/canvas.h"

#include <QApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "toolkit/displaylist.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/painter.h"
#include "toolkit/qt/window.h"

namespace {

const char* const kHint = "Open a pattern with File > Open pattern file, or drop a file here";
const QColor kHintColour(90, 90, 90);  // on a sheet that is white under any desktop colours
const QColor kBandColour(0, 140, 150);

constexpr double kLargeCanvas = 900;  // from here on lines grow with the canvas, as letters do

constexpr double kTremble = 4;  // pixels that a click may stray

int ButtonOf(const QMouseEvent& event) {
  switch (event.button()) {
    case Qt::LeftButton:
      return MouseLeft;
    case Qt::MiddleButton:
      return MouseMiddle;
    case Qt::RightButton:
      return MouseRight;
    default:
      return 0;
  }
}

int ModifiersOf(Qt::KeyboardModifiers held) {
  return (held & Qt::ShiftModifier ? ModifierShift : 0) |
         (held & Qt::ControlModifier ? ModifierControl : 0);
}

}  // namespace

Canvas::Canvas(QWidget* parent) : QWidget(parent) {
  setObjectName("canvas");
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  qApp->installEventFilter(this);
  setMinimumSize(240, 160);  // in which letters of a size to be read have room
}

void Canvas::ListChanged() {
  stale_ = true;
  update();
}

double Canvas::ThinLine() const {
  return std::max(1.0, std::min(width(), height()) / kLargeCanvas);
}

void Canvas::PaintSheet(QSize pixels, double ratio) {
  stale_ = false;
  sheet_ = QImage(pixels, QImage::Format_RGB32);
  sheet_.fill(Qt::white);
  QPainter painter(&sheet_);
  const DisplayList& list = ScreenList();
  PaintList(painter, list, QSizeF(size()) * ratio, ThinLine() * ratio, Detail::PerColumn);
  unused_ = unused_ && list.strokes.empty() && list.texts.empty();
  if (!unused_) return;
  painter.scale(ratio, ratio);
  PaintHint(painter);
}

void Canvas::PaintHint(QPainter& painter) {
  QFont hintfont = font();
  const double room = 0.95 * width();
  const double wanted = QFontMetricsF(hintfont).horizontalAdvance(kHint);
  if (wanted > room) hintfont.setPointSizeF(hintfont.pointSizeF() * room / wanted);
  painter.setFont(hintfont);
  painter.setPen(kHintColour);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, kHint);
}

void Canvas::PaintBand(QPainter& painter) {
  const QRectF box = QRectF(from_, to_).normalized() & QRectF(rect().adjusted(0, 0, -1, -1));
  QColor inside = kBandColour;
  inside.setAlpha(40);
  painter.fillRect(box, inside);
  painter.setPen(QPen(kBandColour, 1.5, Qt::DashLine));
  painter.drawRect(box);
}

void Canvas::paintEvent(QPaintEvent*) {
  const double ratio = devicePixelRatioF();
  const QSize pixels(std::ceil(width() * ratio), std::ceil(height() * ratio));
  if (stale_ || sheet_.size() != pixels) PaintSheet(pixels, ratio);
  QPainter painter(this);
  // Pixel for pixel: at an uneven density the sheet may begin between two of them.
  const QTransform base = painter.deviceTransform();
  painter.setWorldTransform(
      QTransform::fromTranslate(std::round(base.dx()), std::round(base.dy())) * base.inverted());
  painter.drawImage(0, 0, sheet_);
  painter.resetTransform();
  if (drag_ && band_) PaintBand(painter);
}

void Canvas::resizeEvent(QResizeEvent*) {
  resized_ = true;
  WakeUp();
}

Message Canvas::MouseMessage(int type, int value, const QSinglePointEvent& event) const {
  const DrawPoint units = Mapping(ScreenList(), size()).Units(event.position());
  return {.type = type,
          .value1 = value,
          .x = units.x,
          .y = units.y,
          .window = RootWindow,
          .modifiers = ModifiersOf(event.modifiers())};
}

void Canvas::PostLate() {
  if (std::exchange(resized_, false)) Post({.type = MessageResize, .window = RootWindow});
  for (auto* late : {&wheel_, &move_})
    if (const auto message = std::exchange(*late, std::nullopt)) Post(*message);
}

void Canvas::mousePressEvent(QMouseEvent* event) {
  const int button = ButtonOf(*event);
  const bool pans = button == MouseMiddle || (button == MouseLeft && space_);
  const bool drags = pans || button == MouseLeft;
  const bool another = held_ != Qt::NoButton && held_ != event->button();
  if (button == 0 || drag_ || (drags && another)) return;
  if (drags) {
    held_ = event->button();
    from_ = to_ = event->position();
    moved_ = false;
  }
  PostLate();
  Post(MouseMessage(pans ? MessagePan : MessageMouseDown, button, *event));
}

// The second press of a quick pair comes as this.
void Canvas::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || space_) return mousePressEvent(event);
  if (drag_) return;
  PostLate();
  Post(MouseMessage(MessageDoubleClick, MouseLeft, *event));
}

void Canvas::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == held_) {
    Follow(event->position());
    held_ = Qt::NoButton;
    if (drag_) return EndDrag(MessageMouseUp);
  }
  if (drag_ || ButtonOf(*event) == 0) return;
  PostLate();
  Post(MouseMessage(MessageMouseUp, ButtonOf(*event), *event));
}

// Where the mouse has come to while the button of a drag is held.
void Canvas::Follow(QPointF to) {
  to_ = to;
  moved_ = moved_ || (to_ - from_).manhattanLength() > kTremble;
}

void Canvas::mouseMoveEvent(QMouseEvent* event) {
  if (held_ != Qt::NoButton) Follow(event->position());
  if (!drag_) {
    move_ = MouseMessage(MessageMouseMove, 0, *event);
    return WakeUp();
  }
  if (moved_) follow_();
  update();
  // The release may have gone to another window.
  if (event->buttons() & held_) return;
  held_ = Qt::NoButton;
  EndDrag(MessageMouseUp);
}

// Turns that the program has not got to yet are one turn, at the place of the last. One across is
// what others turn with Shift held.
void Canvas::wheelEvent(QWheelEvent* event) {
  event->accept();
  const QPoint delta = event->angleDelta();
  if (drag_ || delta.isNull()) return;
  const bool across = std::abs(delta.x()) > std::abs(delta.y());
  Message turn = MouseMessage(MessageWheel, across ? delta.x() : delta.y(), *event);
  if (across) turn.modifiers = ModifierShift;
  if (wheel_ && wheel_->modifiers != turn.modifiers) PostLate();
  if (wheel_) turn.value1 += wheel_->value1;
  wheel_ = turn;
  WakeUp();
}

// Where clicks pick, the right one does, too.
void Canvas::contextMenuEvent(QContextMenuEvent* event) {
  if (ReadyForCommands()) Root()->menus.PopUp(event->globalPos());
}

void Canvas::SetSpace(bool down) {
  space_ = down;
  setCursor(down ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

// A dialog beside the plot has the focus until the mouse is pressed here. The key is its own, too:
// a button that loses the focus meanwhile is not pressed.
bool Canvas::eventFilter(QObject* receiver, QEvent* event) {
  const bool down = event->type() == QEvent::KeyPress;
  if (event->type() == QEvent::ApplicationDeactivate && space_) SetSpace(false);
  if (!down && event->type() != QEvent::KeyRelease) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool elsewhere = receiver != this && receiver->isWidgetType();
  if (elsewhere && key->key() == Qt::Key_Space && !key->isAutoRepeat()) SetSpace(down);
  return false;
}

void Canvas::keyPressEvent(QKeyEvent* event) {
  if (drag_ && event->key() == Qt::Key_Escape) return EndDrag(MessageKey);
  if (event->key() != Qt::Key_Space) return QWidget::keyPressEvent(event);
  if (!event->isAutoRepeat()) SetSpace(true);
}

void Canvas::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space) return QWidget::keyReleaseEvent(event);
  if (!event->isAutoRepeat()) SetSpace(false);
}

void Canvas::focusOutEvent(QFocusEvent* event) {
  if (space_) SetSpace(false);
  QWidget::focusOutEvent(event);
}

void Canvas::EndDrag(int ending) {
  if (!drag_) return;
  ending_ = ending;
  drag_->quit();
}

int Canvas::TrackDrag(bool band, DrawPoint& place, const std::function<void(DrawPoint)>& moved) {
  const Mapping mapping(ScreenList(), size());
  ending_ = MessageMouseUp;
  // A quick click is over before the program gets to it.
  if (held_ != Qt::NoButton) {
    QEventLoop loop;
    drag_ = &loop;
    band_ = band;
    follow_ = [&] { moved(mapping.Units(to_)); };
    activateWindow();
    setFocus();
    loop.exec();
    drag_ = nullptr;
    update();
  }
  if (ending_ == MessageMouseUp && moved_) place = mapping.Units(to_);
  return ending_;
}
