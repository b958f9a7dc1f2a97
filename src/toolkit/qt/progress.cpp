// The busy bar and the Stop button.
#include "toolkit/qt/progress.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>

namespace {

// Milliseconds: of work before the bar appears, and between repaints.
constexpr int kPatience = 300, kRepaintInterval = 50;
constexpr int kBarLetters = 12;
constexpr int kBarSteps = 1000;

}  // namespace

ProgressBar::ProgressBar(QStatusBar* status)
    : QWidget(status), bar_(new QProgressBar), stop_(new QPushButton("Stop (Esc)")) {
  setObjectName("progress");
  stop_->setObjectName("stop");
  stop_->setFocusPolicy(Qt::NoFocus);
  connect(stop_, &QPushButton::clicked, this, [this] { stopped_ = true; });
  bar_->setObjectName("bar");
  bar_->setFormat("%p %");  // the first per cent of the bar are too narrow to be seen
  bar_->setFixedWidth(kBarLetters * fontMetrics().averageCharWidth());
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(bar_);
  row->addWidget(stop_);
  status->insertWidget(0, this);  // no dialog beside the plot reaches that far to the left
  hide();
}

void ProgressBar::SetBusy(bool busy) {
  stopped_ = false;
  begun_.start();
  if (!busy) hide();
}

bool ProgressBar::Due() const {
  return !painted_.isValid() || painted_.elapsed() >= kRepaintInterval;
}

// A bar without a range shows that there is no end to see.
void ProgressBar::ShowDone(std::optional<float> done) {
  bar_->setRange(0, done ? kBarSteps : 0);
  if (done) bar_->setValue(static_cast<int>(kBarSteps * *done));
}

void ProgressBar::TakeStop() {
  if (begun_.elapsed() >= kPatience) show();
  qApp->installEventFilter(this);
  QApplication::processEvents();
  qApp->removeEventFilter(this);
  painted_.start();
}

// The system's windows pass mouse events on to the widgets, which are asked here again.
bool ProgressBar::eventFilter(QObject* receiver, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) stopped_ = true;
      break;
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
      break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
      if (receiver == stop_ || receiver->isWindowType()) return false;
      break;
    default:
      return false;
  }
  event->accept();
  return true;
}
