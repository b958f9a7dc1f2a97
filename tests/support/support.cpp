#include "support/support.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "plot/zoomhistory.h"
#include "shell/history.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "toolkit/frontend.h"
#include "toolkit/replay/transcript.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

std::vector<std::string> events;

// Brings the toolkit of this process up once, with events kept for Events().
void StartToolkit() {
  static const bool started = [] {
    replay::Redirect([](const std::string& event) { events.push_back(event); },
                     [] { throw std::runtime_error("transcript: " + events.back()); });
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    WInitialise(1, arguments);
    replay::NoInput();
    return true;
  }();
  static_cast<void>(started);
}

}  // namespace

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "quillagram-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary directory");
  path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code failed;
  std::filesystem::remove_all(path_, failed);
}

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

std::string ReadFile(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  EXPECT_NE(text.find(from), text.npos) << from;
  for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
    text.replace(at, from.size(), to);
  return text;
}

std::string Utf16(const std::string& ascii, bool bigendian) {
  std::string wide = bigendian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii) wide += bigendian ? std::string{'\0', c} : std::string{c, '\0'};
  return wide;
}

ReplayRun RunReplay(const std::string& transcript, const std::string& workdir,
                    const std::vector<std::string>& options, const std::string& home) {
  const TempDir temp;
  const std::string input = temp.file("transcript"), output = temp.file("output");
  WriteFile(input, transcript);

  std::vector<std::string> words{QUILLAGRAM_REPLAY};
  words.insert(words.end(), options.begin(), options.end());
  words.push_back(input);
  std::string command =
      "cd '" + workdir + "' && QUILLAGRAM_HOME='" + (home.empty() ? temp.path() : home) + "' exec";
  for (const std::string& word : words) command += " '" + word + "'";
  const int status = std::system((command + " > '" + output + "'").c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, LinesOf(ReadFile(output))};
}

void Answer(const std::string& transcriptlines) {
  StartToolkit();
  replay::FeedLines(transcriptlines);
}

std::vector<std::string> Events() { return std::exchange(events, {}); }

void FreshWorkspace() {
  StartToolkit();
  replay::NoInput();
  RegisterMenu();
  SetApplicationHooks({FieldText, PlotPosition});
  WindowOpen(20, 20, 1536, 864, MainMenu, "Quillagram");
  IGrInit("");
  IGrArea(0, 0, 1, 1);
  IGrUnits(0, 0, 1000, 1000);
  IGrAreaClear();
  ws = *std::make_unique<Workspace>();
  ResetWorkspace();
  ClearPeakFit();
  ws.plotmask = 0;
  ForgetUndo();
  ForgetHistory();
  ForgetZooms();
  SetMenuLoaded(0);
  events.clear();
}

void PutGrid(int slot, float first, float step, int n, const std::function<double(double)>& y) {
  ws.npts(slot) = n;
  for (int i = 1; i <= n; ++i) {
    const float x = first + step * static_cast<float>(i - 1);
    ws.xval(AxisTth, slot, i) = x;
    ws.yval(slot, i) = static_cast<float>(y(x));
  }
}

std::string HintOf(int id) {
  const auto item =
      std::ranges::find(MenuItems(), id, [](const MenuItem& one) { return one.row.id; });
  return item->enabled ? "" : item->hint;
}

void RunMenu(int id, const std::string& answers) {
  Answer(answers);
  int quitflag = 0;
  OnMenu(id, quitflag);
}
