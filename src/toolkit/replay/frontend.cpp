// The front end of transcripts: a window that is only written about. When a dialog or selector
// opens it is drawn as it is, for lines that look at it; in front of a query it has been refreshed.
#include <spawn.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string_view>

#include "toolkit/common.h"
#include "toolkit/replay/actions.h"
#include "toolkit/replay/image.h"
#include "toolkit/replay/transcript.h"

extern char** environ;

using replay::Emit;
using replay::Perform;
using replay::Place;
using replay::Situation;

namespace {

constexpr const char* Usage =
    "Usage: quillagram-replay [OPTION...] [FILE]\n"
    "Does what the lines of FILE (or of standard input) say and prints what a user would see.\n"
    "\n"
    "  --strict        end at the first command that fails\n"
    "  --run-commands  start child processes instead of only naming them\n"
    "  --settings WHAT of the configuration file: none, read (the default) or write\n"
    "  --help          this text\n"
    "  --version       the version\n"
    "  --              what follows is a file, even if it begins with -\n";

bool runcommands = false, strict = false;
SettingsUse settings = SettingsUse::Read;
int windowwidth = 1536, windowheight = 864;
std::vector<DialogState*> beside;  // dialogs that stand beside the plot, the last one in front
bool closed = false;               // the window has been asked to close
std::string printfile;

[[noreturn]] void Answer(const char* text) {
  std::fputs(text, stdout);
  std::exit(0);
}

[[noreturn]] void Refuse(const std::string& reason) {
  std::fprintf(stderr, "quillagram-replay: %s\nTry quillagram-replay --help\n", reason.c_str());
  std::exit(2);
}

SettingsUse SettingsOf(std::string_view word) {
  if (word == "none") return SettingsUse::None;
  if (word == "read") return SettingsUse::Read;
  if (word == "write") return SettingsUse::Write;
  Refuse("--settings is one of none, read and write");
}

// Returns how many of the words behind it belong to the option; `next` is the first of them.
int TakeOption(const std::string& option, const char* next) {
  if (option == "--help" || option == "-h") Answer(Usage);
  if (option == "--version") Answer("quillagram-replay " QUILLAGRAM_VERSION "\n");
  if (option == "--settings") {
    settings = SettingsOf(next ? next : "");
    return 1;
  }
  if (option == "--run-commands")
    runcommands = true;
  else if (option == "--strict")
    strict = true;
  else
    Refuse("unknown option " + option);
  return 0;
}

// "1" for a control that takes input.
std::string Usable(const FieldState& field) { return field.enabled && field.visible ? "1" : "0"; }

// What a field shows: of a grid all cells, row by row.
std::string ShownText(const FieldState& field) {
  if (field.grid.columns == 0) return field.text;
  std::string text;
  for (const GridRow& row : field.grid.rows) {
    if (!text.empty()) text += '\n';
    for (const std::string& cell : row.cells) text += (&cell == row.cells.data() ? "" : " ") + cell;
  }
  return text;
}

void EmitDialog(const DialogState& dialog) {
  const DialogResource& resource = *dialog.resource;
  Emit({"dialog", std::to_string(resource.number), resource.caption});
  for (std::size_t i = 0; i < dialog.fields.size(); ++i) {
    const Control& control = resource.controls[i];
    const FieldState& field = dialog.fields[i];
    Emit({"field", std::to_string(control.id), replay::Shown(control.label), ShownText(field),
          Usable(field)});
  }
}

// A command as a user would type it.
std::string CommandText(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    const bool quoted = word.empty() || word.find_first_of(" \t") != std::string::npos;
    text += (text.empty() ? "" : " ") + (quoted ? "\"" + word + "\"" : word);
  }
  return text;
}

}  // namespace

namespace frontend {

void Initialise(int& argc, char** argv) {
  std::string transcript;
  int files = 0;
  bool options = true;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (options && word == "--")
      options = false;
    else if (options && word.size() > 1 && word[0] == '-')
      i += TakeOption(argv[i], i + 1 < argc ? argv[i + 1] : nullptr);
    else if (++files > 1)
      Refuse("one file at a time, please");
    else
      transcript = word;
  }
  argc = std::min(argc, 1);
  if (runcommands) std::signal(SIGCHLD, SIG_IGN);  // children end by themselves
  if (!replay::OpenTranscript(transcript == "-" ? "" : transcript))
    replay::Fail("cannot read " + transcript);
}

SettingsUse Settings() { return settings; }

void ScreenSize(int& width, int& height) {
  width = 1920;
  height = 1080;
}

void OpenWindow(int, int, int width, int height, const std::string&) {
  windowwidth = width;
  windowheight = height;
}

// What follows is seen only on a real window.
void SetTitle(const std::string&) {}
int OpenChildWindow(int, int, const std::string&) { return RootWindow + 1; }
void CloseWindow(int) {}
void SetStatusParts(const std::vector<int>&) {}
void MenuChanged(int) {}
void ShowToolbar(bool) {}
void KeepAlive() {}
void SetBusy(bool) {}
void SetCursor(int) {}
void Repaint() {}
bool IsWatched() { return false; }
void DialogChanged(DialogState&, int) {}

void Tell(int, const std::string&) {}
void SetStatus(int part, const std::string& text) { Emit({"status", std::to_string(part), text}); }

// The same text once more says nothing.
bool Progress(int part, const std::string& text, std::optional<float>) {
  if (WStatusText(part) != text) SetStatus(part, text);
  int& left = replay::ReportsToStop();
  return left == 0 || --left > 0;
}

void CommandEnded(bool failed) {
  if (failed && strict) replay::Fail("the command failed");
}

void WaitEvent() {
  replay::ReportsToStop() = 0;
  if (replay::Release& release = replay::PendingRelease(); release.pending) {
    release.pending = false;
    if (release.message.type == MessageMouseUp) return PostMessage(release.message);
  }
  Situation now;
  if (!beside.empty()) now = {.place = Place::Beside, .dialog = beside.back()};
  if (Perform(now)) {
    closed = false;
    return;
  }
  if (closed) replay::Fail("the window does not close");
  closed = true;
  PostMessage({.type = MessageClose, .window = RootWindow});
}

bool ShowBox(BoxKind kind, const std::string& caption, const std::string& text) {
  Emit({kind == BoxKind::Query ? "query" : "box", caption, text});
  if (kind != BoxKind::Query) return true;
  Situation now{.place = Place::Query};
  Perform(now);
  return now.accepted;
}

bool BoxesWait() { return false; }
SaveAnswer AskSave(const std::string&, const std::string&) { return SaveAnswer::Discard; }

std::vector<std::string> SelectFiles(const std::string& filter, int flags, const std::string& name,
                                     const std::string& title, const std::string&) {
  Emit({"select", title, filter, name});
  IGrFinish();
  Situation now{.place = Place::Selector, .several = (flags & FileSeveral) != 0};
  Perform(now);
  return now.paths;
}

void ShowDialog(DialogState& dialog, const std::function<void(int)>& changed) {
  EmitDialog(dialog);
  IGrFinish();
  if (!dialog.modal) return beside.push_back(&dialog);
  Situation now{.place = Place::Modal, .dialog = &dialog, .changed = &changed};
  Perform(now);
}

void HideDialog(DialogState& dialog) { std::erase(beside, &dialog); }

void AreaPixels(int& width, int& height) {
  width = windowwidth;
  height = windowheight;
}

int TrackDrag(bool, DrawPoint& place, const std::function<void(DrawPoint)>& moved) {
  replay::Release& release = replay::PendingRelease();
  release.pending = false;
  const DrawPoint end{release.message.x, release.message.y};
  if (release.message.type == MessageMouseUp && !(end == place)) moved(place = end);
  return release.message.type;
}

bool PrintDialog(const std::string& job) {
  printfile = (job.empty() ? "job" : job) + ".pdf";
  WSelectFile("PDF file|*.pdf|", FileSave, printfile, "Print to file");
  return !printfile.empty();
}

bool Print(const DisplayList& list, const std::string& job) {
  constexpr float a4width = 210 * PointsPerMillimetre, a4height = 297 * PointsPerMillimetre;
  if (WritePdf(list, printfile, job, PaperWidth * PointsPerMillimetre,
               PaperHeight * PointsPerMillimetre, a4width, a4height))
    return true;
  KeepFileReason(printfile + ": " + FileReason());
  return false;
}

bool SaveImage(const DisplayList& list, const std::string& path, const std::string& format) {
  return replay::WriteImage(list, path, format, windowwidth, windowheight);
}

void CopyText(const std::string& text) { Emit({"copied", text}); }

void CopyPicture(const DisplayList&, const std::string&) {
  Emit({"copied", "picture " + std::to_string(windowwidth) + 'x' + std::to_string(windowheight)});
}

bool StartProcess(const std::vector<std::string>& words) {
  Emit({"command", CommandText(words)});
  if (!runcommands) return true;
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  // Children wait for their own children as they are used to.
  posix_spawnattr_t attributes;
  sigset_t defaults;
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGCHLD);
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigdefault(&attributes, &defaults);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  pid_t child = 0;
  const int failed =
      posix_spawnp(&child, arguments[0], nullptr, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  return failed == 0;
}

}  // namespace frontend
