// The configuration file as a file: where it lies, who may change it now, and how it is replaced.
#include "shell/inifile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
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

}  // namespace

InifilePlace FindInifile(const std::string& startdir) {
  const std::string beside = startdir + kName, folder = ConfigurationFolder();
  if (!Variable("QUILLAGRAM_HOME").empty() || folder.empty() || MayReplace(beside))
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
  constexpr mode_t kPermissions = 07777, kOfNewFiles = 0666;
  const std::string target = Target(path).string();
  struct stat old {};
  const bool exists = stat(target.c_str(), &old) == 0;
  if (exists && !S_ISREG(old.st_mode)) return "is no regular file";
  if (exists && !MayWrite(target)) return SystemReason();

  const std::string fresh = target + "." + std::to_string(getpid());
  unlink(fresh.c_str());  // what a program that died may have left
  const int file = open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOfNewFiles);
  if (file < 0) return SystemReason();
  LineWriter out(fresh);
  for (const std::string& line : lines) out.Write(line);
  out.Close();
  std::string reason = out.Reason();
  // Only the administrator may give a file back to another owner; it is saved all the same.
  if (exists && fchown(file, old.st_uid, old.st_gid) != 0) errno = 0;
  const bool good = (!exists || fchmod(file, old.st_mode & kPermissions) == 0) &&
                    fsync(file) == 0 && reason.empty() &&
                    rename(fresh.c_str(), target.c_str()) == 0;
  if (!good && reason.empty()) reason = SystemReason();
  close(file);
  if (!good) unlink(fresh.c_str());
  return reason;
}
