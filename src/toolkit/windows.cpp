// Windows, the status bar, boxes and the file selector.
#include <algorithm>
#include <filesystem>
#include <map>

#include "toolkit/common.h"
#include "toolkit/journal.h"

namespace {

// Parts of the status bar for what commands tell on their way, and for what they have done.
constexpr int kOnTheWay = 3, kDone = 4;

std::map<int, std::string> statustexts;
enum class Spoken { Nothing, Progress, Text } spoken;  // on its way by the command under way
std::string complaint;                                 // the first one since a command has ended
std::string lastdirectory;  // of the file selector; blank: where the program was started
std::optional<std::vector<std::string>> heldtexts;  // of boxes, while they are held
int droppingboxes = 0;

bool Answer(frontend::BoxKind kind, const std::string& caption, const std::string& text) {
  if (heldtexts && kind != frontend::BoxKind::Query) {
    heldtexts->push_back(text);
    if (frontend::BoxesWait()) return true;
  }
  const PauseBusy pause;
  ShowDrawing();
  return frontend::ShowBox(kind, caption, text);
}

// ".eps" of "EPS file|*.eps|"; blank if the filter names no single extension.
std::string FilterExtension(const std::string& filter) {
  const std::size_t star = filter.find("|*.");
  if (star == std::string::npos) return "";
  const std::size_t begin = star + 2;
  return filter.substr(begin, filter.find_first_of("|; ", begin) - begin);
}

std::vector<std::string> Select(const std::string& filter, int flags, const std::string& name,
                                const std::string& title) {
  const PauseBusy pause;
  ShowDrawing();
  const std::string directory = lastdirectory.empty() ? IOsFullPath("") : lastdirectory;
  auto paths = frontend::SelectFiles(filter, flags, name, title, directory);
  for (std::string& path : paths) {
    path = IOsFullPath(path);
    if ((flags & (FileSave | FileMayBeNew)) && std::filesystem::path(path).extension().empty())
      path += FilterExtension(filter);
    RememberDirectory(path);
  }
  JournalFiles(paths);
  return paths;
}

}  // namespace

int WInfoScreen(int which) {
  int width = 0, height = 0;
  frontend::ScreenSize(width, height);
  return which == 1 ? width : height;
}

void WindowOpen(int x, int y, int width, int height, int menu, const std::string& title) {
  UseMenu(menu);
  frontend::OpenWindow(x, y, width, height, title);
}

void WindowTitle(const std::string& title) { frontend::SetTitle(title); }

int WindowOpenChild(int width, int height, int, const std::string& title) {
  constexpr int whole = 10000;
  int columns = 0, rows = 0;
  frontend::AreaPixels(columns, rows);
  return frontend::OpenChildWindow(columns * width / whole, rows * height / whole, title);
}

void WindowCloseChild(int handle) { frontend::CloseWindow(handle); }
// All plots go to the root window, so that there is nothing to switch.
void WindowSelect(int) {}
void WindowClose() { frontend::CloseWindow(RootWindow); }

void WindowStatusBarParts(int n, std::span<const int> widths) {
  const auto used = widths.first(std::min<std::size_t>(n > 0 ? n : 0, widths.size()));
  frontend::SetStatusParts({used.begin(), used.end()});
}

void KeepStatusText(int part, const std::string& text, bool progress) {
  statustexts[part] = text;
  if (part == kOnTheWay) spoken = progress ? Spoken::Progress : Spoken::Text;
}

void WindowOutStatusBar(int part, const std::string& text) {
  KeepStatusText(part, text);
  frontend::SetStatus(part, text);
}

std::string WStatusText(int part) { return statustexts[part]; }

void WCommandBegins() { spoken = Spoken::Nothing; }

void WTell(const std::string& text, bool done) {
  frontend::Tell(kDone, text);
  if (spoken == Spoken::Nothing || (spoken == Spoken::Progress && !done))
    frontend::Tell(kOnTheWay, "");
}

std::string WFirstComplaint() { return complaint; }
void ForgetComplaint() { complaint.clear(); }

void MessageBoxError(const std::string& caption, const std::string& text) {
  if (droppingboxes > 0) return;
  if (complaint.empty()) complaint = text;
  Answer(frontend::BoxKind::Error, caption, text);
}

void MessageBoxInfo(const std::string& caption, const std::string& text) {
  if (droppingboxes == 0) Answer(frontend::BoxKind::Info, caption, text);
}

int MessageBoxQuery(const std::string& caption, const std::string& text) {
  const bool ok = Answer(frontend::BoxKind::Query, caption, text);
  JournalPress(ok ? ButtonOk : ButtonCancel);
  return ok ? 1 : 0;
}

SaveAnswer MessageBoxSave(const std::string& caption, const std::string& text) {
  if (!frontend::BoxesWait()) return SaveAnswer::Discard;
  const PauseBusy pause;
  ShowDrawing();
  return frontend::AskSave(caption, text);
}

HoldBoxes::HoldBoxes() { heldtexts.emplace(); }
HoldBoxes::~HoldBoxes() { heldtexts.reset(); }
std::vector<std::string> HoldBoxes::Take() { return std::exchange(*heldtexts, {}); }

DropBoxes::DropBoxes() { ++droppingboxes; }
DropBoxes::~DropBoxes() { --droppingboxes; }

void WCopyText(const std::string& text) { frontend::CopyText(text); }

void RememberDirectory(const std::string& path) {
  lastdirectory = std::filesystem::path(IOsFullPath(path)).parent_path().string();
}

void WSelectFile(const std::string& filter, int flags, std::string& path,
                 const std::string& title) {
  const std::vector<std::string> picked = Select(filter, flags & ~FileSeveral, path, title);
  path = picked.empty() ? "" : picked.front();
}

std::vector<std::string> WSelectFiles(const std::string& filter, int flags, const std::string& name,
                                      const std::string& title) {
  return Select(filter, flags | FileSeveral, name, title);
}
