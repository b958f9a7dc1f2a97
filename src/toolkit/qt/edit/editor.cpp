// Editing, finding and saving in the text editor.
#include "toolkit/qt/edit/editor.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSaveFile>
#include <QShortcut>
#include <QStatusBar>
#include <QTextBlock>
#include <QVBoxLayout>
#include <algorithm>

namespace {

constexpr int kColumns = 90, kRows = 36;  // of a new window, in letters

// The line end of a block is kept as its user state, so that it moves with the block.
void PutText(QPlainTextEdit& edit, const TextFile& file) {
  QString all;
  for (std::size_t i = 0; i < file.lines.size(); ++i) {
    if (i) all += QChar::ParagraphSeparator;
    all += file.lines[i];
  }
  edit.setPlainText(all);
  for (QTextBlock block = edit.document()->begin(); block.isValid(); block = block.next()) {
    const LineEnd end = file.ends[block.blockNumber()];
    if (end != file.lineend) block.setUserState(static_cast<int>(end));
  }
}

// QTextDocument's own plain text would turn protected blanks into plain ones.
void TakeText(const QPlainTextEdit& edit, TextFile& file) {
  file.lines.clear();
  file.ends.clear();
  for (QTextBlock block = edit.document()->begin(); block.isValid(); block = block.next()) {
    // A line break pasted into a line is shown as one and saved as one.
    QString line = block.text();
    file.lines.push_back(line.replace(QChar::LineSeparator, '\n'));
    file.ends.push_back(static_cast<LineEnd>(block.userState()));
  }
}

QString NameOf(const QString& path) {
  return path.isEmpty() ? QString("Untitled") : QFileInfo(path).fileName();
}

}  // namespace

Editor::Editor() : text_(new QPlainTextEdit) {
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("editor");
  text_->setObjectName("text");
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  auto* centre = new QWidget;
  auto* layout = new QVBoxLayout(centre);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(text_);
  MakeFindBar();
  layout->addWidget(findbar_);
  setCentralWidget(centre);
  MakeMenus();
  connect(text_, &QPlainTextEdit::modificationChanged, this, &QWidget::setWindowModified);
  const QFontMetrics letters = text_->fontMetrics();
  resize(kColumns * letters.horizontalAdvance('0'), kRows * letters.lineSpacing());
  statusBar();
  ShowName("");
}

void Editor::MakeMenus() {
  const auto add = [](QMenu* menu, const char* text, QKeySequence keys, auto act) {
    QAction* action = menu->addAction(text);
    action->setShortcut(keys);
    connect(action, &QAction::triggered, menu, [act] { act(); });
  };
  QMenu* file = menuBar()->addMenu("&File");
  add(file, "&Open...", QKeySequence::Open, [this] { Open(); });
  add(file, "&Save", QKeySequence::Save, [this] { Save(); });
  add(file, "Save &as...", QKeySequence("Ctrl+Shift+S"), [this] { SaveAs(); });
  file->addSeparator();
  add(file, "&Close", QKeySequence("Ctrl+W"), [this] { close(); });
  add(file, "&Quit", QKeySequence("Ctrl+Q"), [] { QApplication::closeAllWindows(); });
  QMenu* edit = menuBar()->addMenu("&Edit");
  add(edit, "&Undo", QKeySequence::Undo, [this] { text_->undo(); });
  add(edit, "&Redo", QKeySequence::Redo, [this] { text_->redo(); });
  edit->addSeparator();
  add(edit, "Cu&t", QKeySequence::Cut, [this] { text_->cut(); });
  add(edit, "&Copy", QKeySequence::Copy, [this] { text_->copy(); });
  add(edit, "&Paste", QKeySequence::Paste, [this] { text_->paste(); });
  add(edit, "Select &all", QKeySequence::SelectAll, [this] { text_->selectAll(); });
  edit->addSeparator();
  add(edit, "&Find...", QKeySequence::Find, [this] {
    findbar_->show();
    pattern_->setFocus();
    pattern_->selectAll();
  });
  add(edit, "Find &next", QKeySequence("F3"), [this] { Find(true); });
  add(edit, "Find pre&vious", QKeySequence("Shift+F3"), [this] { Find(false); });
}

void Editor::MakeFindBar() {
  findbar_ = new QWidget;
  pattern_ = new QLineEdit;
  pattern_->setObjectName("pattern");
  auto* label = new QLabel("F&ind:");
  label->setBuddy(pattern_);
  auto* next = new QPushButton("&Next");
  auto* row = new QHBoxLayout(findbar_);
  row->addWidget(label);
  row->addWidget(pattern_, 1);
  row->addWidget(next);
  connect(pattern_, &QLineEdit::returnPressed, this, [this] { Find(true); });
  connect(next, &QPushButton::clicked, this, [this] { Find(true); });
  auto* escape =
      new QShortcut(Qt::Key_Escape, findbar_, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  connect(escape, &QShortcut::activated, this, [this] {
    findbar_->hide();
    text_->setFocus();
  });
  findbar_->hide();
}

// Goes on at the other end of the text when there is nothing more.
void Editor::Find(bool forward) {
  const auto way = forward ? QTextDocument::FindFlags() : QTextDocument::FindBackward;
  statusBar()->clearMessage();
  if (pattern_->text().isEmpty() || text_->find(pattern_->text(), way)) return;
  const QTextCursor before = text_->textCursor();
  text_->moveCursor(forward ? QTextCursor::Start : QTextCursor::End);
  if (text_->find(pattern_->text(), way))
    return statusBar()->showMessage("Found from the other end");
  text_->setTextCursor(before);
  statusBar()->showMessage("Not found: " + pattern_->text());
}

void Editor::ShowName(const QString& path) {
  path_ = path;
  setWindowTitle(NameOf(path).replace("[*]", "[*][*]") + "[*] - Editor");
}

void Editor::Complain(const QString& what, const QString& path, const QString& why) {
  QMessageBox box(QMessageBox::Warning, "Error", what + ' ' + path + ".\n" + why, QMessageBox::Ok,
                  this);
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

bool Editor::Load(const QString& path) {
  QByteArray bytes;
  if (QFile file(path); file.exists()) {
    const bool opened = file.open(QIODevice::ReadOnly);
    if (opened) bytes = file.readAll();
    if (!opened || file.error() != QFileDevice::NoError) {
      Complain("Cannot read", path, file.errorString());
      return false;
    }
  }
  file_ = ParseText(bytes);
  PutText(*text_, file_);
  text_->document()->setModified(false);
  ShowName(QFileInfo(path).absoluteFilePath());
  return true;
}

void Editor::Open() {
  if (!MayDiscard()) return;
  const QString path = QFileDialog::getOpenFileName(this, "Open", QFileInfo(path_).path());
  if (!path.isEmpty()) Load(path);
}

bool Editor::Save() {
  if (path_.isEmpty()) return SaveAs();
  TakeText(*text_, file_);
  const QByteArray bytes = TextBytes(file_);
  QSaveFile file(path_);
  file.setDirectWriteFallback(true);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
    Complain("Cannot write", path_, file.errorString());
    return false;
  }
  text_->document()->setModified(false);
  statusBar()->showMessage("Saved " + path_);
  return true;
}

bool Editor::SaveAs() {
  const QString path = QFileDialog::getSaveFileName(this, "Save as", path_);
  if (path.isEmpty()) return false;
  const QString before = path_;
  ShowName(path);
  if (Save()) return true;
  ShowName(before);
  return false;
}

bool Editor::MayDiscard() {
  if (!text_->document()->isModified()) return true;
  QMessageBox box(QMessageBox::Question, "Editor", "Save the changes in " + NameOf(path_) + "?",
                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(QMessageBox::Save);
  const int answer = box.exec();
  return answer == QMessageBox::Discard || (answer == QMessageBox::Save && Save());
}

void Editor::closeEvent(QCloseEvent* event) { event->setAccepted(MayDiscard()); }
