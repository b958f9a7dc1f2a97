// Child processes, and texts for other programs.
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>

#include "toolkit/frontend.h"

namespace frontend {

void CopyText(const std::string& text) {
  QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

bool StartProcess(const std::vector<std::string>& words) {
  if (words.empty()) return false;
  QStringList arguments;
  for (const std::string& word : words) arguments += QFile::decodeName(word.c_str());
  const QString name = arguments.takeFirst();
  const QString program = name.contains('/') ? name : QStandardPaths::findExecutable(name);
  return !program.isEmpty() && QProcess::startDetached(program, arguments);
}

}  // namespace frontend
