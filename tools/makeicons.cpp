// Writes the program's icon as SVG and in the sizes of desktops: makeicons DIRECTORY.
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>

#include "toolkit/qt/icons.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication application(argc, argv);
  const QDir directory(argc > 1 ? argv[1] : ".");
  QFile file(directory.filePath("quillagram.svg"));
  bool written = file.open(QIODevice::WriteOnly) && file.write(ProgramPicture()) > 0;
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    const QString name = QString("quillagram-%1.png").arg(size);
    written = ProgramPixmap(size).save(directory.filePath(name)) && written;
  }
  return written ? 0 : 1;
}
