// The configuration file quillagram.ini: editor, lower limits of the fit, address, recent files.
//
//   ! Editor
//   EDT=quillagram-edit
//   MINW=0.01
//   TOOLBAR=1
//   OLD QUILLAGRAM FILES
//   /data/corundum.xy
//   END QUILLAGRAM FILES
//
// Keys stand first on their line, all in upper or all in lower case. Users may edit the file;
// lines that are not known stay in it.
#include <algorithm>
#include <filesystem>
#include <limits>
#include <span>
#include <vector>

#include "shell/inifile.h"
#include "shell/shell.h"
#include "workspace/lines.h"
#include "workspace/menuids.h"
#include "workspace/record.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

using Lines = std::vector<std::string>;

constexpr int kKeptLines = 50;              // lines of the file that survive an update
constexpr int kBlockLines = MaxRecent + 1;  // behind the marker of the recent files
constexpr const char* kEditor = "quillagram-edit";
constexpr const char* kToolbar = "TOOLBAR";
constexpr const char* kBlockStart = "OLD QUILLAGRAM";
constexpr const char* kBlockEnd = "END QUILLAGRAM";

constexpr const char* kNewFile[] = {
    "ini-file for quillagram",
    "",
    "! Starting directory",
    "",
    "DIR=/home/",
    "",
    "! Editor",
    "",
    "EDT=quillagram-edit",
    "",
    "! Minimum Cagliotti parameters",
    "",
    "MINU=0.",
    "MINV=0.",
    "MINW=0.01",
    "",
    "! Your coordinates",
    "",
    "DEPARTMENT=",
    "COMPANY=",
    "ADDRESS=",
    "",
};

// Whether a line begins with a key, in upper or in lower case but in no mix of them.
bool Begins(std::string_view line, std::string_view key) {
  return line.starts_with(key) || line.starts_with(LowerText(key));
}

struct TextKey {
  const char* key;
  const char* written;  // the key as an update writes it
  std::string* value;
};
constexpr TextKey kAddress[] = {
    {"DEPART", "DEPARTMENT=", &ws.infodepartment},
    {"COMPANY", "COMPANY=", &ws.infocompany},
    {"ADDRESS", "ADDRESS=", &ws.infoaddress},
};

void TakeKey(const std::string& line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string::npos) return;
  const std::string value = line.substr(equals + 1);
  if (Begins(line, "EDT")) ws.editorpath = Field(value);
  if (Begins(line, kToolbar)) ReadRecord<"(i10)">(value, ws.toolbar);
  if (Begins(line, "MINU")) ReadRecord<"(f10.0)">(value, ws.caglmin(1));
  if (Begins(line, "MINV")) ReadRecord<"(f10.0)">(value, ws.caglmin(2));
  if (Begins(line, "MINW")) ReadRecord<"(f10.0)">(value, ws.caglmin(3));
  for (const TextKey& text : kAddress)
    if (Begins(line, text.key)) *text.value = Field(value);
}

void SetBuiltInValues() {
  ws.editorpath = kEditor;
  ws.toolbar = 1;
  ws.caglmin = {{0, 0, 0.02f}};
  ws.shapemin = {{0.5f, 0, 0}};
  for (std::string& file : ws.recentfiles.cells) file.clear();
  for (std::string* text :
       {&ws.infodepartment, &ws.infocompany, &ws.infoaddress, &ws.instrument, &ws.infoline})
    text->clear();
}

bool failuretold = false;

void Tell(const std::string& text, const std::string& reason) {
  failuretold = true;
  MessageBoxError("Error", FileMessage(text, ws.inipath, reason));
}

// What goes wrong behind the user's back is told once a run, not at every load.
void TellOnce(const std::string& text, const std::string& reason) {
  if (!failuretold && !reason.empty()) Tell(text, reason);
}

Lines ReadLines(LineReader& file, int most) {
  Lines lines;
  for (std::string line; std::ssize(lines) < most && file.Read(line, TextLength);)
    lines.push_back(line);
  return lines;
}

bool IsThere(const std::string& path) {
  std::error_code failure;
  return std::filesystem::exists(path, failure);
}

// Makes sure that there is a file; returns why there is none that can be read, or nothing.
std::string CreateFile(const InifilePlace& place) {
  std::error_code failure;
  if (!place.start.empty()) std::filesystem::create_directories(FileDirectory(place.path), failure);
  if (failure) return failure.message();
  const InifileLock lock(place.path);
  const LineReader present(place.path);
  if (present.IsOpen() || IsThere(place.path)) return present.Reason();
  LineReader start(place.start);
  if (!start.IsOpen())
    return ReplaceFile(place.path, Lines{std::begin(kNewFile), std::end(kNewFile)});
  return ReplaceFile(place.path, ReadLines(start, std::numeric_limits<int>::max()));
}

// Lines of the block behind its marker until its end. A name that its field does not hold whole
// is none.
void ReadRecentFiles(LineReader& file) {
  std::string line;
  int n = 0;
  while (n < MaxRecent && file.Read(line, TextLength + 1)) {
    if (line.starts_with('!') || line.starts_with('[') || Begins(line, kBlockEnd)) return;
    if (!line.empty() && static_cast<unsigned char>(line[0]) > ' ' && FitsField(line))
      ws.recentfiles(++n) = line;
  }
}

void ReadValues(LineReader& file) {
  std::string line;
  while (file.Read(line, TextLength))
    if (Begins(line, kBlockStart))
      ReadRecentFiles(file);
    else
      TakeKey(line);
}

void PassValuesOn() {
  ws.spu = ws.caglmin(1);
  ws.spv = ws.caglmin(2);
  ws.spw = ws.caglmin(3);
  ShowRecentFiles();
}

// Changes the first lines of the file, which are all that stays of it. A file in which nothing
// changes is left alone. Returns why it failed, or nothing.
std::string UpdateFile(void (*change)(Lines& lines)) {
  if (WSettings() != SettingsUse::Write) return "";
  const InifileLock lock(ws.inipath);
  LineReader file(ws.inipath);
  if (!file.IsOpen()) return file.Reason();
  const Lines before = ReadLines(file, kKeptLines + kBlockLines);
  Lines lines(before.begin(),
              before.begin() + std::min<std::ptrdiff_t>(kKeptLines, std::ssize(before)));
  change(lines);
  const bool same = lines.size() <= before.size() &&
                    std::ranges::equal(lines, std::span(before).first(lines.size()));
  return same ? "" : ReplaceFile(ws.inipath, lines);
}

Lines::iterator BlockOf(Lines& lines) {
  return std::ranges::find_if(lines, [](const auto& line) { return Begins(line, kBlockStart); });
}

// Puts the present block behind the marker, which is added to a file without one. A path with line
// ends would become lines of its own, with keys perhaps: its line stays empty.
void ReplaceRecentFiles(Lines& lines) {
  const auto marker = BlockOf(lines);
  if (marker == lines.end())
    lines.push_back("OLD QUILLAGRAM FILES");
  else
    lines.erase(marker + 1, lines.end());
  for (const std::string& file : ws.recentfiles.cells)
    lines.push_back(OnOneLine(file) == file ? file : "");
  lines.push_back("END QUILLAGRAM FILES");
}

void ReplaceAddress(Lines& lines) {
  for (std::string& line : lines)
    for (const TextKey& text : kAddress)
      if (Begins(line, text.key)) line = text.written + std::string(Trim(OnOneLine(*text.value)));
}

void ReplaceToolbar(Lines& lines) {
  std::erase_if(lines, [](const auto& line) { return Begins(line, kToolbar); });
  lines.insert(BlockOf(lines), std::string(kToolbar) + "=" + std::to_string(ws.toolbar));
}

}  // namespace

void ReadConfiguration() {
  const InifilePlace place = FindInifile(ws.startdir);
  ws.inipath = place.path;
  SetBuiltInValues();
  failuretold = false;
  if (WSettings() == SettingsUse::Write) {
    const std::string reason = CreateFile(place);
    TellOnce("Error creating ini-file", reason);
    if (!reason.empty() && place.start.empty()) return;
  }
  const std::string& source = IsThere(place.path) ? place.path : place.start;
  if (WSettings() != SettingsUse::None && IsThere(source)) {
    LineReader file(source);
    TellOnce("Error opening ini-file", file.Reason());
    ReadValues(file);
  }
  PassValuesOn();
}

void ShowRecentFiles() {
  for (int k = 1; k <= MaxRecent; ++k) WMenuSetString(MenuRecent1 + k - 1, ws.recentfiles(k));
}

void UpdateRecentFiles() {
  if (!ws.patternpath.empty() && ws.patternpath != ws.recentfiles(1)) {
    for (int k = MaxRecent; k > 1; --k) ws.recentfiles(k) = ws.recentfiles(k - 1);
    ws.recentfiles(1) = ws.patternpath;
  }
  ShowRecentFiles();
  if (ws.recentpending != 0) TellOnce("Error opening inifile", UpdateFile(ReplaceRecentFiles));
}

// The user has asked for it and is told of every failure.
void WriteInfoToConfiguration() {
  const std::string reason = UpdateFile(ReplaceAddress);
  if (!reason.empty()) Tell("Error opening inifile", reason);
}

void WriteToolbarToConfiguration() {
  TellOnce("Error opening inifile", UpdateFile(ReplaceToolbar));
}
