// A file that is being written.
#include "toolkit/newfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

// What a path names behind its symbolic links, whether it is there or not.
std::string TargetOf(fs::path path) {
  constexpr int kMostLinks = 40;
  std::error_code failure;
  for (int i = 0; i < kMostLinks && fs::is_symlink(path, failure); ++i)
    path = path.parent_path() / fs::read_symlink(path, failure);
  return path.string();
}

// Opens a file beside the old one with its owner and permissions; null if it is not to be replaced,
// or the directory takes no files.
std::FILE* OpenBeside(const std::string& target, const std::string& fresh) {
  constexpr mode_t kPermissions = 07777;
  struct stat old {};
  if (stat(target.c_str(), &old) != 0 || !S_ISREG(old.st_mode)) return nullptr;
  if (access(target.c_str(), W_OK) != 0) return nullptr;
  unlink(fresh.c_str());  // what a program that died may have left
  const int file = open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (file < 0) return nullptr;
  // Only the administrator may give a file back to another owner; it is saved all the same.
  if (fchown(file, old.st_uid, old.st_gid) != 0) errno = 0;
  std::FILE* stream = fchmod(file, old.st_mode & kPermissions) == 0 ? fdopen(file, "wb") : nullptr;
  if (!stream) {
    close(file);
    unlink(fresh.c_str());
  }
  return stream;
}

}  // namespace

NewFile::NewFile(const std::string& path) : target_(TargetOf(path)) {
  fresh_ = target_ + "." + std::to_string(getpid());
  stream_ = OpenBeside(target_, fresh_);
  if (stream_) return;
  fresh_.clear();
  stream_ = std::fopen(path.c_str(), "wb");
  Checked(stream_ != nullptr);
}

NewFile::~NewFile() {
  if (!stream_) return;
  std::fclose(stream_);
  if (!fresh_.empty()) unlink(fresh_.c_str());
}

// Keeps the reason of the first failure; whether all has gone well so far.
bool NewFile::Checked(bool success) {
  if (!success && reason_.empty()) reason_ = std::generic_category().message(errno);
  return reason_.empty();
}

bool NewFile::Write(const char* bytes, std::size_t count) {
  return stream_ && reason_.empty() && Checked(std::fwrite(bytes, 1, count, stream_) == count);
}

bool NewFile::Keep() {
  if (!stream_) return reason_.empty();
  const bool replaces = !fresh_.empty();
  if (replaces && reason_.empty())
    Checked(std::fflush(stream_) == 0 && fsync(fileno(stream_)) == 0);
  Checked(std::fclose(stream_) == 0);
  stream_ = nullptr;
  if (replaces && Checked(reason_.empty())) Checked(rename(fresh_.c_str(), target_.c_str()) == 0);
  if (replaces && !reason_.empty()) unlink(fresh_.c_str());
  return reason_.empty();
}
