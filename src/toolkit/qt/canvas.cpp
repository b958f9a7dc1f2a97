// Painting, mouse and rubber band of the canvas.
#include "toolkit/qt/canvas.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "toolkit/displaylist.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/painter.h"

namespace {

const char* const kHint = "Open a pattern with File > Open pattern file, or drop a file here";
const QColor kHintColour(90, 90, 90);  // on a sheet that is white under any desktop colours
const QColor kBandColour(0, 140, 150);

constexpr double kLargeCanvas = 900;  // from here on lines grow with the canvas, as letters do

int ButtonOf(const QMouseEvent& event) {
  if (event.button() == Qt::LeftButton) return MouseLeft;
  return event.button() == Qt::RightButton ? MouseRight : 0;
}

}  // namespace

Canvas::Canvas(QWidget* parent) : QWidget(parent) {
  setObjectName("canvas");
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(160, 120);
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
  const QRectF box =
      QRectF(bandfrom_, bandto_).normalized() & QRectF(rect().adjusted(0, 0, -1, -1));
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
  if (band_) PaintBand(painter);
}

void Canvas::resizeEvent(QResizeEvent*) {
  resized_ = true;
  WakeUp();
}

Message Canvas::MouseMessage(int type, int button, QPointF at) const {
  const DrawPoint units = Mapping(ScreenList(), size()).Units(at);
  return {.type = type, .value1 = button, .x = units.x, .y = units.y, .window = RootWindow};
}

void Canvas::PostLate() {
  if (resized_) Post({.type = MessageResize, .window = RootWindow});
  resized_ = false;
  if (move_) Post(*move_);
  move_.reset();
}

void Canvas::mousePressEvent(QMouseEvent* event) {
  if (band_ || ButtonOf(*event) == 0) return;
  if (event->button() == Qt::LeftButton) leftdown_ = true;
  PostLate();
  Post(MouseMessage(MessageMouseDown, ButtonOf(*event), event->position()));
}

// The second press of a quick pair comes as this.
void Canvas::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

void Canvas::mouseReleaseEvent(QMouseEvent* event) {
  if (ButtonOf(*event) == 0) return;
  if (event->button() == Qt::LeftButton) {
    leftdown_ = false;
    released_ = event->position();
    if (band_) return EndBand(MessageMouseUp);
  }
  if (band_) return;
  PostLate();
  Post(MouseMessage(MessageMouseUp, ButtonOf(*event), event->position()));
}

void Canvas::mouseMoveEvent(QMouseEvent* event) {
  if (band_) {
    bandto_ = event->position();
    update();
    // The release may have gone to another window.
    if (!(event->buttons() & Qt::LeftButton)) {
      leftdown_ = false;
      released_ = bandto_;
      EndBand(MessageMouseUp);
    }
    return;
  }
  move_ = MouseMessage(MessageMouseMove, 0, event->position());
  WakeUp();
}

void Canvas::keyPressEvent(QKeyEvent* event) {
  if (band_ && event->key() == Qt::Key_Escape) return EndBand(MessageKey);
  QWidget::keyPressEvent(event);
}

void Canvas::EndBand(int ending) {
  if (!band_) return;
  ending_ = ending;
  band_->quit();
}

int Canvas::RubberBand(float x, float y, float& endx, float& endy) {
  const Mapping mapping(ScreenList(), size());
  ending_ = MessageMouseUp;
  // A quick click is over before the program gets to it.
  if (leftdown_) {
    QEventLoop loop;
    bandfrom_ = bandto_ = mapping.Place({x, y});
    band_ = &loop;
    setFocus();
    loop.exec();
    band_ = nullptr;
    update();
  }
  const DrawPoint end = mapping.Units(released_);
  if (ending_ == MessageMouseUp) {
    endx = end.x;
    endy = end.y;
  }
  return ending_;
}
