// The front end's frame: start, windows, status bar, and the wait for what the user does.
#include "toolkit/frontend.h"

#include <QAbstractButton>
#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMessageBox>
#include <QScreen>
#include <QSessionManager>
#include <algorithm>
#include <map>

#include "toolkit/qt/events.h"
#include "toolkit/qt/startup.h"
#include "toolkit/qt/window.h"

namespace {

const ProgramInfo kProgram = {
    "quillagram",
    "Usage: quillagram [FILE]\n"
    "Workbench for X-ray powder diffraction patterns.\n"
    "FILE is a pattern to open: xy, gdf, txt, uxd, cif, dat, xrdml, udf or chi.\n"
    "\n"
    "  --help     this text\n"
    "  --version  the version\n"
    "  --         what follows is a file, even if it begins with -\n"
    "Options of Qt, such as -style NAME and -platform NAME, are passed on.\n",
    "On a machine without one, quillagram-replay does the same work from a file of commands.",
};

constexpr int kRepaintInterval = 50;  // milliseconds between repaints in a long calculation

MainWindow* root;
std::map<int, ChildWindow*> children;
int lasthandle = RootWindow;

QEventLoop* waiting;  // while the program waits for a message
bool posted;          // a message has come since the last wait
bool busy;            // the program is at work

// Texts for the status bar that have come too soon after others to be seen, by their part.
std::map<int, std::string> latetexts;

// There is nobody to ask what to do with unsaved work any more: the process has to end, or the
// user has been asked at the end of the session.
bool ending, agreed;

// The process was asked to end: as if the user closed all that is open.
void EndInOrder() {
  ending = true;
  while (QWidget* modal = QApplication::activeModalWidget())
    if (!modal->close()) break;
  if (root) root->close();
}

// The desktop ends the session. What is open on the program's side cannot be left in between.
void EndOfSession(QSessionManager& session) {
  if (ending || !ReadyForCommands() || !session.allowsInteraction()) return;
  agreed = !Hooks().mayend || Hooks().mayend();
  if (!agreed) session.cancel();
  session.release();
}

void ShowText(int part, const std::string& text) {
  root->status->Show(part, QString::fromStdString(text));
}

void ShowLateTexts() {
  for (const auto& [part, text] : latetexts) ShowText(part, text);
  latetexts.clear();
}

void EndWait() {
  posted = true;
  WakeUp();
}

}  // namespace

MainWindow* Root() { return root; }

QWidget* FrontWindow() {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  // What a dialog beside the plot opens gives the focus back to it.
  auto* dialog = qobject_cast<QDialog*>(QApplication::activeWindow());
  return dialog && dialog->isVisible() ? static_cast<QWidget*>(dialog) : root;
}

void Post(const Message& message) {
  PostMessage(message);
  EndWait();
}

void PostDropped(const std::string& path) {
  PostFileDropped(path);
  EndWait();
}

void WakeUp() {
  if (waiting) waiting->quit();
}

bool ReadyForCommands() { return waiting && root && !root->menus.Locked(); }

bool AtWork() { return busy; }

namespace frontend {

void Initialise(int& argc, char** argv) {
  StartQt(argc, argv, kProgram);
  QApplication::setApplicationName("quillagram");
  QApplication::setDesktopFileName("quillagram");
  WatchSignals(EndInOrder);
  QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, EndOfSession);
}

SettingsUse Settings() { return SettingsUse::Write; }

void ScreenSize(int& width, int& height) {
  const QSize size = QApplication::primaryScreen()->size();
  width = size.width();
  height = size.height();
}

void OpenWindow(int x, int y, int width, int height, const std::string& title) {
  root = new MainWindow;
  SetTitle(title);
  root->Place({x, y, width, height});
  root->show();
  root->canvas->setFocus();
}

void SetTitle(const std::string& title) {
  // "[*]" would stand for a mark of unsaved changes.
  if (root) root->setWindowTitle(QString::fromStdString(title).replace("[*]", "[*][*]"));
}

int OpenChildWindow(int width, int height, const std::string& title) {
  ChildWindow* child = new ChildWindow(++lasthandle);
  children[lasthandle] = child;
  child->setWindowTitle(QString::fromStdString(title));
  child->resize(QSize(width, height).boundedTo(child->screen()->availableGeometry().size()));
  child->show();
  return lasthandle;
}

void CloseWindow(int handle) {
  if (handle == RootWindow) {
    delete root;
    root = nullptr;
    delete qApp;  // the root window closes last
  } else if (const auto child = children.find(handle); child != children.end()) {
    delete child->second;
    children.erase(child);
  }
}

void SetStatusParts(const std::vector<int>& widths) {
  if (root) root->status->SetShares(widths);
}

void Tell(int part, const std::string& text) {
  latetexts.erase(part);
  if (root) ShowText(part, text);
}

void SetStatus(int part, const std::string& text) {
  if (!root || part < 1 || part > static_cast<int>(root->parts.size())) return;
  latetexts.erase(part);
  ShowText(part, text);
  if (!busy) return;
  root->parts[part - 1]->repaint();
  KeepAlive();
}

bool Progress(int part, const std::string& text, std::optional<float> done) {
  if (!root) return true;
  latetexts[part] = text;
  if (root->progress->Due()) {
    ShowLateTexts();
    root->progress->ShowDone(done);
    root->progress->TakeStop();
  }
  return !root->closing && !root->progress->Stopped();
}

// The session has gone on after all.
void CommandEnded(bool) {
  agreed = false;
  if (root) root->closing = false;
}

SaveAnswer AskSave(const std::string& caption, const std::string& text) {
  if (ending || agreed) return SaveAnswer::Discard;
  QMessageBox box(QMessageBox::Warning, QString::fromStdString(caption),
                  QString::fromStdString(text),
                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, FrontWindow());
  box.setObjectName("unsaved");
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(QMessageBox::Save);
  box.button(QMessageBox::Discard)->setText("&Discard");
  const int answer = box.exec();
  if (answer == QMessageBox::Discard) return SaveAnswer::Discard;
  return answer == QMessageBox::Save ? SaveAnswer::Save : SaveAnswer::Cancel;
}

void ShowToolbar(bool shown) {
  if (root) root->toolbar->setVisible(shown);
}

void MenuChanged(int id) {
  if (root) root->menus.Update(id);
}

void WaitEvent() {
  QEventLoop loop;
  waiting = &loop;
  while (!posted) {
    if (!root || !root->canvas->HasLate()) loop.exec();
    if (root) root->canvas->PostLate();
  }
  posted = false;
  waiting = nullptr;
}

void KeepAlive() {
  static QElapsedTimer last;
  if (last.isValid() && last.elapsed() < kRepaintInterval) return;
  last.start();
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void SetBusy(bool working) {
  busy = working;
  if (busy)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
  if (!root) return;
  ShowLateTexts();
  root->progress->SetBusy(busy);
}

void SetCursor(int shape) {
  if (root) root->canvas->setCursor(shape == 1 ? Qt::WaitCursor : Qt::ArrowCursor);
}

void AreaPixels(int& width, int& height) {
  const QSize size = root ? root->canvas->size() : QSize(800, 500);
  width = size.width();
  height = size.height();
}

void Repaint() {
  if (root) root->canvas->ListChanged();
}

bool IsWatched() { return true; }

int TrackDrag(bool band, DrawPoint& place, const std::function<void(DrawPoint)>& moved) {
  return root ? root->canvas->TrackDrag(band, place, moved) : MessageClose;
}

}  // namespace frontend
