// Showing dialogs, boxes and the file selector.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QTreeView>
#include <algorithm>
#include <map>
#include <memory>

#include "toolkit/qt/dialogview.h"
#include "toolkit/qt/window.h"

namespace {

constexpr QSize kSelectorSize(120, 30);  // letters

// Dialogs on show.
std::map<const DialogState*, std::unique_ptr<DialogView>> views;

QString ShownText(const std::string& text) {
  return QString::fromStdString(text).replace("\r\n", "\n").replace('\r', '\n');
}

// At the right edge of the main window, beside the plot or over its margin.
void PlaceBeside(QDialog& dialog) {
  if (!Root()) return;
  QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  dialog.adjustSize();
  const QRect window = Root()->frameGeometry(), room = Root()->screen()->availableGeometry();
  const QSize size = dialog.frameGeometry().size();
  const int left = std::min(window.right() + 8, room.right() - size.width() - 8);
  const int top = Root()->canvas->mapToGlobal(QPoint(0, 0)).y();
  dialog.move(std::max(left, room.left()), std::min(top, room.bottom() - size.height()));
}

void LockMenus() {
  if (!Root()) return;
  const auto modeless = [](const auto& view) { return !view.first->modal; };
  Root()->menus.SetLocked(std::any_of(views.begin(), views.end(), modeless));
}

struct FileFilter {
  QStringList names;       // "Huber (*.gdf)"
  QStringList extensions;  // "gdf", blank where a filter takes several
};

// "description|*.ext|description|*.ext1;*.ext2|"
FileFilter ParseFilter(const std::string& filter) {
  FileFilter parsed;
  const QStringList parts = QString::fromStdString(filter).split('|');
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString patterns = QString(parts[i + 1]).replace(';', ' ').simplified();
    const bool single = patterns.startsWith("*.") && !patterns.contains(' ');
    parsed.names += parts[i].trimmed() + " (" + patterns + ")";
    parsed.extensions += single ? patterns.mid(2) : QString();
  }
  parsed.names += "All files (*)";
  parsed.extensions += parsed.extensions.isEmpty() ? QString() : parsed.extensions.first();
  return parsed;
}

// Qt's own selector takes double quotes for the marks around several names; here they belong to the
// one name where there is such a file, or only one can be picked.
class Selector : public QFileDialog {
 public:
  using QFileDialog::QFileDialog;
  QStringList Picked() const { return quoted_.isEmpty() ? selectedFiles() : QStringList(quoted_); }
  void accept() override {
    QString name = findChild<QLineEdit*>("fileNameEdit")->text();
    const bool several =
        fileMode() == ExistingFiles && !QFileInfo(directory().absoluteFilePath(name)).isFile();
    if (!name.contains('"') || several) return QFileDialog::accept();
    const bool saving = acceptMode() == AcceptSave;
    if (saving && !name.contains('.') && !defaultSuffix().isEmpty()) name += '.' + defaultSuffix();
    const QFileInfo file(directory().absoluteFilePath(name));
    if (saving ? file.exists() && !MayReplace(name) : !file.isFile()) return;
    quoted_ = file.filePath();
    done(Accepted);
  }

 private:
  bool MayReplace(const QString& name) {
    return QMessageBox::warning(this, windowTitle(),
                                name + " already exists.\nDo you want to replace it?",
                                QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
  }
  QString quoted_;
};

}  // namespace

void RejectBeside() {
  const auto beside = [](const auto& view) { return !view.first->modal; };
  const auto view = std::find_if(views.begin(), views.end(), beside);
  if (view != views.end()) view->second->reject();
}

namespace frontend {

bool ShowBox(BoxKind kind, const std::string& caption, const std::string& text) {
  if (kind == BoxKind::Info && Root() && Root()->closing) return true;
  QMessageBox box(FrontWindow());
  box.setObjectName("box");
  box.setWindowTitle(QString::fromStdString(caption));
  box.setTextFormat(Qt::PlainText);
  box.setText(ShownText(text));
  box.setIcon(kind == BoxKind::Error  ? QMessageBox::Critical
              : kind == BoxKind::Info ? QMessageBox::Information
                                      : QMessageBox::Question);
  box.setStandardButtons(kind == BoxKind::Query ? QMessageBox::Ok | QMessageBox::Cancel
                                                : QMessageBox::StandardButtons(QMessageBox::Ok));
  box.setDefaultButton(QMessageBox::Ok);
  return box.exec() == QMessageBox::Ok;
}

bool BoxesWait() { return true; }

std::vector<std::string> SelectFiles(const std::string& filter, int flags, const std::string& name,
                                     const std::string& title, const std::string& directory) {
  const bool saving = flags & FileSave;
  const FileFilter filters = ParseFilter(filter);
  Selector dialog(FrontWindow(), QString::fromStdString(title), QString::fromStdString(directory));
  dialog.setObjectName("selector");
  const QSize letter(dialog.fontMetrics().averageCharWidth(), dialog.fontMetrics().height());
  dialog.resize(
      QSize(kSelectorSize.width() * letter.width(), kSelectorSize.height() * letter.height())
          .boundedTo(dialog.screen()->availableGeometry().size() * 0.9));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  // Sizes and dates are seen whole, the names have the rest; types only repeat the names' ends.
  auto* files = dialog.findChild<QTreeView*>("treeView");
  files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  files->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  files->hideColumn(2);
  dialog.setAcceptMode(saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(flags & FileSeveral                  ? QFileDialog::ExistingFiles
                     : !saving && (flags & FileMustExist) ? QFileDialog::ExistingFile
                                                          : QFileDialog::AnyFile);
  dialog.setNameFilters(filters.names);
  // The question before overwriting needs the name as it will be.
  const auto suffix = [&dialog, &filters](const QString& chosen) {
    const qsizetype at = std::max<qsizetype>(filters.names.indexOf(chosen), 0);
    dialog.setDefaultSuffix(filters.extensions[at]);
  };
  if (saving) {
    suffix(filters.names.first());
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, suffix);
  }
  // A default such as "*.xy" only repeats the filter.
  if (!name.empty() && name.front() != '*') dialog.selectFile(QString::fromStdString(name));
  if (dialog.exec() != QDialog::Accepted) return {};
  std::vector<std::string> paths;
  for (const QString& path : dialog.Picked())
    paths.push_back(QFile::encodeName(path).toStdString());
  return paths;
}

void ShowDialog(DialogState& dialog, const std::function<void(int)>& changed) {
  HideDialog(dialog);
  DialogView* view =
      (views[&dialog] = std::make_unique<DialogView>(dialog, changed, FrontWindow())).get();
  if (dialog.modal) {
    view->exec();
    views.erase(&dialog);
    return;
  }
  LockMenus();
  PlaceBeside(*view);
  view->show();
}

void DialogChanged(DialogState& dialog, int index) {
  if (const auto view = views.find(&dialog); view != views.end()) view->second->Update(index);
}

void HideDialog(DialogState& dialog) {
  const auto view = views.find(&dialog);
  if (view == views.end()) return;
  // It may be one of its own buttons that ends it.
  view->second->hide();
  view->second.release()->deleteLater();
  views.erase(view);
  LockMenus();
}

}  // namespace frontend
