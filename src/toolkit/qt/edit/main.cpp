// A plain-text editor, for a machine that offers no other.
#include <QFile>
#include <memory>

#include "toolkit/qt/edit/editor.h"
#include "toolkit/qt/startup.h"

namespace {

const ProgramInfo kProgram = {
    "quillagram-edit",
    "Usage: quillagram-edit [FILE...]\n"
    "Plain-text editor. Each FILE opens in a window; one that is not there yet is empty.\n"
    "\n"
    "  --help     this text\n"
    "  --version  the version\n"
    "  --         what follows is a file, even if it begins with -\n"
    "Options of Qt, such as -style NAME and -platform NAME, are passed on.\n",
    "The editor needs one.",
};

// False if none of the files can be shown.
bool OpenAll(int argc, char** argv) {
  bool opened = argc < 2;
  if (opened) (new Editor)->show();
  for (int i = 1; i < argc; ++i) {
    auto* editor = new Editor;
    const bool loaded = editor->Load(QFile::decodeName(argv[i]));
    if (loaded)
      editor->show();
    else
      delete editor;
    opened = opened || loaded;
  }
  return opened;
}

}  // namespace

int main(int argc, char** argv) {
  const std::unique_ptr<QApplication> application(StartQt(argc, argv, kProgram));
  WatchSignals([] { QApplication::closeAllWindows(); });
  if (!OpenAll(argc, argv)) return 1;
  QApplication::setQuitOnLastWindowClosed(true);
  return QApplication::exec();
}
