// The configuration file quillagram.ini: editor, lower limits of the fit, address, recent files.
//
//   ! Editor
//   EDT=quillagram-edit
//   MINW=0.01
//   OLD QUILLAGRAM FILES
//   /data/corundum.xy
//   END QUILLAGRAM FILES
//
// Keys stand first on their line, all in upper or all in lower case. Users may edit the file;
// lines that are not known stay in it.
#include <algorithm>
#include <vector>

#include "shell/shell.h"
#include "workspace/lines.h"
#include "workspace/menuids.h"
#include "workspace/record.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr int kKeptLines = 50;  // lines of the file that survive an update
constexpr const char* kEditor = "quillagram-edit";
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
  if (Begins(line, "MINU")) ReadRecord<"(f10.0)">(value, ws.caglmin(1));
  if (Begins(line, "MINV")) ReadRecord<"(f10.0)">(value, ws.caglmin(2));
  if (Begins(line, "MINW")) ReadRecord<"(f10.0)">(value, ws.caglmin(3));
  for (const TextKey& text : kAddress)
    if (Begins(line, text.key)) *text.value = Field(value);
}

void SetBuiltInValues() {
  ws.editorpath = kEditor;
  ws.caglmin = {{0, 0, 0.02f}};
  ws.shapemin = {{0.5f, 0, 0}};
  for (std::string& file : ws.recentfiles.cells) file.clear();
  for (std::string* text :
       {&ws.infodepartment, &ws.infocompany, &ws.infoaddress, &ws.instrument, &ws.infoline})
    text->clear();
}

bool WriteLines(const std::vector<std::string>& lines) {
  LineWriter file(ws.inipath);
  if (!file.IsOpen()) return false;
  for (const std::string& line : lines) file.Write(line);
  return file.Close();
}

// Lines of the block behind its marker until its end.
void ReadRecentFiles(LineReader& file) {
  std::string line;
  int n = 0;
  while (n < MaxRecent && file.Read(line, TextLength)) {
    if (line.starts_with('!') || line.starts_with('[') || Begins(line, kBlockEnd)) return;
    if (!line.empty() && static_cast<unsigned char>(line[0]) > ' ') ws.recentfiles(++n) = line;
  }
}

void ShowRecentFiles() {
  for (int k = 1; k <= MaxRecent; ++k) WMenuSetString(MenuRecent1 + k - 1, ws.recentfiles(k));
}

void PassValuesOn() {
  ws.spu = ws.caglmin(1);
  ws.spv = ws.caglmin(2);
  ws.spw = ws.caglmin(3);
  ShowRecentFiles();
}

// Rewrites the file from its first lines after `change` has been made to them. Everything behind
// them is lost.
void UpdateFile(void (*change)(std::vector<std::string>& lines)) {
  LineReader file(ws.inipath);
  bool good = file.IsOpen();
  if (good) {
    std::vector<std::string> lines;
    std::string line;
    while (std::ssize(lines) < kKeptLines && file.Read(line, TextLength)) lines.push_back(line);
    change(lines);
    good = WriteLines(lines);
  }
  if (!good) MessageBoxError("Error", "Error opening inifile");
}

// Puts the present block behind the marker, which is added to a file without one.
void ReplaceRecentFiles(std::vector<std::string>& lines) {
  const auto marker =
      std::ranges::find_if(lines, [](const auto& line) { return Begins(line, kBlockStart); });
  if (marker == lines.end())
    lines.push_back("OLD QUILLAGRAM FILES");
  else
    lines.erase(marker + 1, lines.end());
  lines.insert(lines.end(), ws.recentfiles.cells.begin(), ws.recentfiles.cells.end());
  lines.push_back("END QUILLAGRAM FILES");
}

void ReplaceAddress(std::vector<std::string>& lines) {
  for (std::string& line : lines)
    for (const TextKey& text : kAddress)
      if (Begins(line, text.key)) line = text.written + std::string(Trim(*text.value));
}

}  // namespace

void ReadConfiguration() {
  ws.inipath = ws.startdir + "quillagram.ini";
  SetBuiltInValues();
  if (!LineReader(ws.inipath).IsOpen() && !WriteLines({std::begin(kNewFile), std::end(kNewFile)}))
    return MessageBoxError("Error", "Error creating ini-file");
  LineReader file(ws.inipath);
  if (!file.IsOpen()) MessageBoxError("Error", "Error opening ini-file");
  std::string line;
  while (file.IsOpen() && file.Read(line, TextLength))
    if (Begins(line, kBlockStart))
      ReadRecentFiles(file);
    else
      TakeKey(line);
  PassValuesOn();
}

void UpdateRecentFiles() {
  if (!ws.patternpath.empty() && ws.patternpath != ws.recentfiles(1)) {
    for (int k = MaxRecent; k > 1; --k) ws.recentfiles(k) = ws.recentfiles(k - 1);
    ws.recentfiles(1) = ws.patternpath;
  }
  ShowRecentFiles();
  if (ws.recentpending != 0) UpdateFile(ReplaceRecentFiles);
}

void WriteInfoToConfiguration() { UpdateFile(ReplaceAddress); }
