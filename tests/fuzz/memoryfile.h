// A file in memory that takes the bytes of one input after the other.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

class MemoryFile {
 public:
  const std::string& Path() const { return path_; }
  void Hold(const std::uint8_t* data, std::size_t size) const {
    if (ftruncate(file_, 0) != 0 || pwrite(file_, data, size, 0) != static_cast<ssize_t>(size))
      std::abort();
  }

  std::string Content() const {
    std::string text(static_cast<std::size_t>(lseek(file_, 0, SEEK_END)), ' ');
    if (pread(file_, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size()))
      std::abort();
    return text;
  }

 private:
  int file_ = memfd_create("input", 0);
  std::string path_ = "/proc/self/fd/" + std::to_string(file_);
};
