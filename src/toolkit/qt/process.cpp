// Child processes.
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include "toolkit/frontend.h"

namespace {

// A bare name is a program beside this one, or one of the search path.
QString FindProgram(const QString& name) {
  if (name.contains('/')) return name;
  const QFileInfo beside(QCoreApplication::applicationDirPath() + '/' + name);
  if (beside.isFile() && beside.isExecutable()) return beside.filePath();
  return QStandardPaths::findExecutable(name);
}

}  // namespace

namespace frontend {

bool StartProcess(const std::vector<std::string>& words) {
  if (words.empty()) return false;
  QStringList arguments;
  for (const std::string& word : words) arguments += QFile::decodeName(word.c_str());
  const QString program = FindProgram(arguments.takeFirst());
  return !program.isEmpty() && QProcess::startDetached(program, arguments);
}

}  // namespace frontend
