// Command line, files, child processes and the clock.
#include <chrono>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "toolkit/common.h"

namespace fs = std::filesystem;

namespace {

std::vector<std::string> arguments;
std::string startdirectory;
int lasterror = 0;
std::string filereason;

void Keep(const std::error_code& outcome) { lasterror = outcome.value(); }

// Words of a command, parted at blanks outside double quotes; the quotes themselves go.
std::vector<std::string> SplitCommand(const std::string& text) {
  std::vector<std::string> words;
  bool quoted = false, inword = false;
  for (char c : text) {
    if (c == '"') {
      quoted = !quoted;
    } else if (!quoted && (c == ' ' || c == '\t')) {
      inword = false;
      continue;
    }
    if (!inword) words.emplace_back();
    inword = true;
    if (c != '"') words.back() += c;
  }
  return words;
}

void Start(std::vector<std::string> words, const std::string& shown) {
  if (!words.empty()) words.front() = FindProgram(words.front());
  if (words.empty() || words.front().empty() || !frontend::StartProcess(words))
    MessageBoxError("Error", "Cannot start " + shown);
}

std::tm LocalTime() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm parts{};
  localtime_r(&now, &parts);
  return parts;
}

}  // namespace

std::string FindProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) return name;
  std::error_code failure;
  const fs::path program = IOsFullPath(IOsArgument(0));
  for (const fs::path& place : {program, fs::canonical(program, failure)})
    if (const fs::path beside = place.parent_path() / name; fs::is_regular_file(beside, failure))
      return beside.string();
  return name;
}

void KeepFileReason(const std::string& reason) { filereason = reason; }
std::string FileReason() { return filereason; }

void KeepArguments(int argc, char** argv) {
  arguments.assign(argv, argv + argc);
  std::error_code failure;
  startdirectory = fs::current_path(failure).string();
  // A program that was found by its bare name knows its place only through the system.
  if (argc > 0 && arguments[0].find('/') == std::string::npos)
    arguments[0] = fs::read_symlink("/proc/self/exe", failure).string();
  if (argc > 1) RememberDirectory(arguments[1]);
}

int IOsArgumentCount() { return arguments.empty() ? 0 : static_cast<int>(arguments.size()) - 1; }

std::string IOsArgument(int n) {
  return n >= 0 && n < static_cast<int>(arguments.size()) ? arguments[n] : "";
}

void IOsDirChange(const std::string& path) {
  if (path.empty()) return;
  std::error_code outcome;
  fs::current_path(path, outcome);
  Keep(outcome);
}

std::string IOsFullPath(const std::string& path) {
  return (fs::path(startdirectory) / path).string();
}

void IOsCommand(const std::string& text, int) { Start(SplitCommand(text), text); }

void IOsCommandOnFile(const std::string& command, const std::string& file) {
  std::vector<std::string> words = SplitCommand(command);
  if (!words.empty()) words.push_back(file);
  Start(words, command);
}

void IOsCopyFile(const std::string& from, const std::string& to) {
  std::error_code outcome;
  fs::copy_file(from, to, fs::copy_options::overwrite_existing, outcome);
  Keep(outcome);
}

void IOsDeleteFile(const std::string& file) {
  std::error_code outcome;
  if (!fs::remove(file, outcome) && !outcome)
    outcome = std::make_error_code(std::errc::no_such_file_or_directory);
  Keep(outcome);
}

SettingsUse WSettings() { return frontend::Settings(); }

int WInfoError(int) { return lasterror; }

int IOsDate() {
  const std::tm t = LocalTime();
  return (t.tm_year + 1900) * 10000 + (t.tm_mon + 1) * 100 + t.tm_mday;
}

int IOsTime() {
  const std::tm t = LocalTime();
  return t.tm_hour * 10000 + t.tm_min * 100 + t.tm_sec;
}
