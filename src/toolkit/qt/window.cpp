// The main window.
#include "toolkit/qt/window.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <algorithm>

#include "toolkit/qt/dialogview.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/icons.h"

namespace {

constexpr QMargins kFrame(1, 0, 1, 32);  // room for what the window manager adds below a position

struct KeyRow {
  int qtkey;
  Qt::KeyboardModifiers held;
  Message message;
};

constexpr KeyRow Row(int qtkey, int key, bool shift = false) {
  return {qtkey,
          shift ? Qt::ShiftModifier : Qt::NoModifier,
          {.type = MessageKey,
           .value1 = key,
           .window = RootWindow,
           .modifiers = shift ? ModifierShift : 0}};
}

const KeyRow kKeys[] = {
    Row(Qt::Key_Left, KeyLeft),
    Row(Qt::Key_Right, KeyRight),
    Row(Qt::Key_Up, KeyUp),
    Row(Qt::Key_Down, KeyDown),
    Row(Qt::Key_Home, KeyHome),
    Row(Qt::Key_Backspace, KeyBackspace),
    Row(Qt::Key_Backspace, KeyBackspace, true),
};

// The first file among what is dragged.
QString FileIn(const QMimeData* data) {
  for (const QUrl& url : data->urls())
    if (url.isLocalFile()) return url.toLocalFile();
  return {};
}

// Whatever was offered: after a move its owner would remove the file.
void AcceptAsCopy(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

}  // namespace

MainWindow::MainWindow()
    : canvas(new Canvas(this)),
      toolbar(addToolBar("Tools")),
      status(new StatusParts(statusBar())),
      progress(new ProgressBar(statusBar())) {
  setObjectName("main");
  QApplication::setWindowIcon(ProgramIcon());
  setCentralWidget(canvas);
  setFocusProxy(canvas);
  setAcceptDrops(true);
  toolbar->setObjectName("toolbar");
  toolbar->setMovable(false);
  toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
  setContextMenuPolicy(Qt::NoContextMenu);
  setAttribute(Qt::WA_AlwaysShowToolTips);  // also beside a dialog, which has the focus
  menus.Build(menuBar(), toolbar);
  statusBar()->setContentsMargins(6, 0, 0, 0);
  statusBar()->addWidget(status, 1);
}

// The menu bar is shown whole and the window lies on the screen, as far as the screen goes.
void MainWindow::Place(QRect wanted) {
  const QRect room = screen()->availableGeometry().marginsRemoved(kFrame);
  wanted.setWidth(std::max(wanted.width(), menuBar()->sizeHint().width()));
  wanted.setSize(wanted.size().boundedTo(room.size()));
  wanted.moveRight(std::min(wanted.right(), room.right()));
  wanted.moveBottom(std::min(wanted.bottom(), room.bottom()));
  wanted.moveLeft(std::max(wanted.left(), room.left()));
  wanted.moveTop(std::max(wanted.top(), room.top()));
  move(wanted.topLeft());
  resize(wanted.size());
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();  // the program closes it
  canvas->EndDrag(MessageClose);
  closing = AtWork();
  Post({.type = MessageClose, .window = RootWindow});
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) return RejectBeside();
  const auto held = event->modifiers() & ~Qt::KeypadModifier;
  const auto row = std::find_if(std::begin(kKeys), std::end(kKeys), [&](const KeyRow& known) {
    return known.qtkey == event->key() && known.held == held;
  });
  if (row == std::end(kKeys)) return QMainWindow::keyPressEvent(event);
  canvas->PostLate();
  Post(row->message);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (ReadyForCommands() && !FileIn(event->mimeData()).isEmpty()) AcceptAsCopy(*event);
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QString file = FileIn(event->mimeData());
  if (file.isEmpty() || !ReadyForCommands()) return;
  AcceptAsCopy(*event);
  PostDropped(file.toStdString());
}

void ChildWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  Post({.type = MessageClose, .window = handle_});
}
