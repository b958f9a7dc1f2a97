// A disk that is full after a few bytes, as long as the object lives.
#pragma once

#include <sys/resource.h>

#include <csignal>

class SmallFiles {
 public:
  explicit SmallFiles(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);  // a write beyond the limit fails, "File too large"
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SmallFiles() { setrlimit(RLIMIT_FSIZE, &before_); }
  SmallFiles(const SmallFiles&) = delete;
  SmallFiles& operator=(const SmallFiles&) = delete;

 private:
  rlimit before_{};
};
