// The configuration file as a file: where it lies, who may change it now, and how it is replaced.
#pragma once

#include <span>
#include <string>

struct InifilePlace {
  std::string path;
  std::string start;  // the file that a new one begins with and that is read until then, or blank
};

// The place beside the program, `startdir`. Where nothing can be written there, or the program is
// installed, and the environment does not name the place either, it is the user's folder of
// configuration files.
InifilePlace FindInifile(const std::string& startdir);

// Keeps other programs from changing the file until it goes away; waits while they do the same.
class InifileLock {
 public:
  explicit InifileLock(const std::string& path);
  ~InifileLock();
  InifileLock(const InifileLock&) = delete;
  InifileLock& operator=(const InifileLock&) = delete;

 private:
  int directory_;
};

// Puts a file of these lines in the place of the one at `path`, or of what a symbolic link there
// points to. The old file stays whole until the new one is on the disk, and its owner and its
// permissions stay. Returns why it failed, or nothing.
std::string ReplaceFile(const std::string& path, std::span<const std::string> lines);
