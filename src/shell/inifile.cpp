// The configuration file as a file: where it lies, who may change it now, and how it is replaced.
#include "shell/inifile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "workspace/lines.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kName = "quillagram.ini";

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

// Blank where the environment does not tell.
std::string ConfigurationFolder() {
  const std::string folder = Variable("XDG_CONFIG_HOME"), home = Variable("HOME");
  if (folder.starts_with('/')) return folder;
  return home.empty() ? "" : home + "/.config";
}

// What a path names behind its symbolic links, whether it is there or not.
fs::path Target(fs::path path) {
  constexpr int kMostLinks = 40;
  std::error_code failure;
  for (int i = 0; i < kMostLinks && fs::is_symlink(path, failure); ++i)
    path = path.parent_path() / fs::read_symlink(path, failure);
  return path;
}

bool MayWrite(const fs::path& path) { return access(path.c_str(), W_OK) == 0; }

bool MayReplace(const fs::path& path) {
  const fs::path target = Target(path);
  std::error_code failure;
  return MayWrite(target.parent_path() / ".") && (!fs::exists(target, failure) || MayWrite(target));
}

// A program among those of a system or a user, for which its neighbours tell, writes nothing there.
bool IsInstalled(const std::string& startdir) {
  std::error_code failure;
  return fs::exists(startdir + "../share/doc/quillagram/copyright", failure);
}

}  // namespace

InifilePlace FindInifile(const std::string& startdir) {
  const std::string beside = startdir + kName, folder = ConfigurationFolder();
  if (!Variable("QUILLAGRAM_HOME").empty() || folder.empty() ||
      (MayReplace(beside) && !IsInstalled(startdir)))
    return {beside, ""};
  return {folder + "/quillagram/" + kName, beside};
}

// The directory is locked, for the file itself is another one after each change.
InifileLock::InifileLock(const std::string& path)
    : directory_(open(Target(path).parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  while (directory_ >= 0 && flock(directory_, LOCK_EX) != 0 && errno == EINTR) {
  }
}

InifileLock::~InifileLock() {
  if (directory_ >= 0) close(directory_);
}

std::string ReplaceFile(const std::string& path, std::span<const std::string> lines) {
  std::error_code failure;
  const bool exists = fs::exists(path, failure);
  if (exists && !fs::is_regular_file(path, failure)) return "is no regular file";
  LineWriter out(path);
  for (const std::string& line : lines) out.Write(line);
  // Half a file would be taken for a whole one.
  if (!out.Close() && !exists) fs::remove(path, failure);
  return out.Reason();
}
