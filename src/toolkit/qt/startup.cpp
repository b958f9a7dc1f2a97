// Options, locale, display and signals of a windowed program.
#include "toolkit/qt/startup.h"

#include <unistd.h>

#include <QLocale>
#include <QSocketNotifier>
#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

namespace {

// Options of the window system, each with one value; they are passed on to Qt. A desktop that
// takes up its last session starts programs with "-session".
constexpr std::string_view SystemOptions[] = {
    "-platform", "-platformpluginpath", "-platformtheme",   "-style",   "-stylesheet",
    "-display",  "-geometry",           "-qwindowgeometry", "-session",
};

const ProgramInfo* starting;

[[noreturn]] void Leave(int status) {
  std::fflush(nullptr);
  std::_Exit(status);
}

[[noreturn]] void Refuse(const ProgramInfo& program, const char* reason, const char* option) {
  std::fprintf(stderr, "%s: %s %s\nTry %s --help\n", program.name, reason, option, program.name);
  Leave(2);
}

// With two dashes as well as one, and with a value behind "=" too.
bool IsSystemOption(std::string_view option) {
  if (option.starts_with("--")) option.remove_prefix(1);
  return std::ranges::count(SystemOptions, option.substr(0, option.find('='))) > 0;
}

void TakeOption(const char* word, const ProgramInfo& program) {
  const std::string_view option = word;
  if (option == "--help" || option == "-h") {
    std::fputs(program.usage, stdout);
    Leave(0);
  }
  if (option == "--version") {
    std::printf("%s %s\n", program.name, QUILLAGRAM_VERSION);
    Leave(0);
  }
  Refuse(program, "unknown option", word);
}

// Parts the arguments into those of the window system and the files.
void SortArguments(int argc, char** argv, const ProgramInfo& program, std::vector<char*>& system,
                   std::vector<char*>& files) {
  system.push_back(argv[0]);
  files.push_back(argv[0]);
  bool options = true;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (!options || word.size() < 2 || word[0] != '-') {
      files.push_back(argv[i]);
    } else if (word == "--") {
      options = false;
    } else if (IsSystemOption(word)) {
      char* equals = std::strchr(argv[i], '=');
      if (!equals && i + 1 == argc) Refuse(program, "there is no value behind", argv[i]);
      system.push_back(argv[i]);
      system.push_back(equals ? equals + 1 : argv[++i]);
      if (equals) *equals = 0;
    } else {
      TakeOption(argv[i], program);
    }
  }
}

// Qt aborts when no display can be opened; say what is wrong and leave in order instead.
void StartMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type != QtFatalMsg) return;
  std::fprintf(stderr, "%s: no display could be opened. %s\n", starting->name, starting->nodisplay);
  if (std::getenv("QT_DEBUG_PLUGINS")) std::fprintf(stderr, "%s\n", qPrintable(text));
  Leave(1);
}

int signalpipe[2];

void OnSignal(int) {
  const char byte = 1;
  [[maybe_unused]] const ssize_t written = write(signalpipe[1], &byte, 1);
}

}  // namespace

QApplication* StartQt(int& argc, char** argv, const ProgramInfo& program) {
  // QApplication keeps references to its arguments.
  static std::vector<char*> system;
  static int systemcount;
  std::vector<char*> files;
  SortArguments(argc, argv, program, system, files);
  argc = static_cast<int>(files.size());
  std::copy(files.begin(), files.end(), argv);
  argv[argc] = nullptr;

  systemcount = static_cast<int>(system.size());
  system.push_back(nullptr);
  starting = &program;
  const QtMessageHandler earlier = qInstallMessageHandler(StartMessage);
  auto* application = new QApplication(systemcount, system.data());
  qInstallMessageHandler(earlier);

  // Numbers never follow the language of the desktop, which QApplication has just adopted.
  std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale::c());
  QApplication::setQuitOnLastWindowClosed(false);
  return application;
}

void WatchSignals(const std::function<void()>& ended) {
  if (pipe(signalpipe) != 0) return;
  auto* notifier = new QSocketNotifier(signalpipe[0], QSocketNotifier::Read, qApp);
  QObject::connect(notifier, &QSocketNotifier::activated, qApp, [ended] {
    char byte;
    if (read(signalpipe[0], &byte, 1) == 1) ended();
  });
  struct sigaction action = {};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_RESTART | SA_RESETHAND;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}
